// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// What a reader sees on the document screens, read off the painted pixels and off the text
// as Qt lays it out for painting: the appearance settings, rows exactly as tall as their
// text at any width and in any script, long words, a dark system palette, the keyboard,
// and screens that take what they made with them. Offscreen on a 1280 x 800 screen;
// screenshots go to TOVRA_SCREENSHOT_DIR.

#include "LoopbackSession.h"
#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"

#include <Tovra.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

struct Script
{
    QString heading;
    QString sentence;
};

Script script(const QString &name)
{
    if (name == u"Arabic"_s)
        return {u"كيف نستخدم بياناتك"_s,
                u"توضح هذه الشروط كيف يتعامل ##### مع بياناتك وما يمكنك أن تتوقعه من الخدمة وما تتوقعه الخدمة منك. "_s};
    if (name == u"Hebrew"_s)
        return {u"כיצד אנו משתמשים בנתונים שלך"_s,
                u"תנאים אלה מסבירים כיצד ##### מטפלת בנתונים שלך, מה אתה יכול לצפות מהשירות ומה השירות מצפה ממך. "_s};
    if (name == u"CJK"_s)
        return {u"我们如何使用您的数据"_s,
                u"本条款说明#####如何处理您的数据、您可以从服务中期待什么以及服务对您有何期待。"_s};
    if (name == u"long words"_s)
        return {u"Supercalifragilisticexpialidociousnessandbeyondx"_s,
                u"Send notices to https://legal.example.com/"_s + QString(240, u'n') + u" and keep a copy. "_s};
    return {u"How ##### uses the data you give it"_s,
            u"This section explains how ##### handles your data, what you may expect from the service and what "
            "it expects from you. "_s};
}

// A document of \a script: titled sections with bodies of one, three and eight sentences,
// an untitled one, and, when asked, one body of 20,000 characters.
std::shared_ptr<TVRDocument> document(const QString &name, bool huge = false)
{
    const Script text = script(name);
    QJsonArray sections;
    for (int sentences : {1, 3, 8, 2}) {
        QJsonObject section{{u"body"_s, text.sentence.repeated(sentences).trimmed()}};
        if (sentences != 2)
            section.insert(u"title"_s, text.heading);
        sections.append(section);
    }
    if (huge) {
        QString body;
        while (body.size() < 20000)
            body += text.sentence;
        sections.append(QJsonObject{{u"title"_s, text.heading}, {u"body"_s, body.left(20000)}});
    }
    return std::make_shared<TVRDocument>(QJsonObject{{u"_id"_s, name},
                                                     {u"title"_s, u"Terms"_s},
                                                     {u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s},
                                                     {u"sections"_s, sections}});
}

// \a count titled sections of three sentences each.
std::shared_ptr<TVRDocument> headings(int count)
{
    QJsonArray sections;
    for (int i = 0; i < count; ++i)
        sections.append(
            QJsonObject{{u"title"_s, u"Heading %1"_s.arg(i)}, {u"body"_s, script(u"Latin"_s).sentence.repeated(3)}});
    return std::make_shared<TVRDocument>(QJsonObject{{u"sections"_s, sections}});
}

QImage render(QWidget *window)
{
    if (!QTest::qWaitForWindowExposed(window))
        return {};
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
    return window->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// Where \a widget lies in its window's image.
QRect inWindow(const QWidget *widget, const QRect &rect = {})
{
    const QRect local = rect.isNull() ? widget->rect() : rect;
    return QRect(widget->mapTo(widget->window(), local.topLeft()), local.size());
}

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

// \a area, in device-independent pixels, as the pixels of \a image that cover it.
QRect devicePixels(const QImage &image, const QRect &logical)
{
    const qreal ratio = image.devicePixelRatio();
    return QRect(QPoint(qRound(logical.left() * ratio), qRound(logical.top() * ratio)),
                 QSize(qRound(logical.width() * ratio), qRound(logical.height() * ratio)));
}

// The colour most of \a logicalArea is painted with.
QRgb background(const QImage &image, const QRect &logicalArea)
{
    const QRect area = devicePixels(image, logicalArea);
    QHash<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            ++counts[image.pixel(x, y)];
    }
    QRgb most = 0;
    int best = -1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        if (it.value() > best) {
            best = it.value();
            most = it.key();
        }
    }
    return most;
}

// The ink of the text in \a logicalArea: the pixel that differs most from the background,
// which for text of this size is a pixel the glyphs cover fully.
QRgb ink(const QImage &image, const QRect &logicalArea)
{
    const QRgb paper = background(image, logicalArea);
    const QRect area = devicePixels(image, logicalArea);
    QRgb found = paper;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (distance(image.pixel(x, y), paper) > distance(found, paper))
                found = image.pixel(x, y);
        }
    }
    return found;
}

// The box around every pixel of \a logicalArea that is not its background, in device pixels.
QRect deviceInkBounds(const QImage &image, const QRect &logicalArea)
{
    const QRgb paper = background(image, logicalArea);
    const QRect area = devicePixels(image, logicalArea);
    QRect bounds;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (distance(image.pixel(x, y), paper) > 48)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

// The same box in device-independent pixels.
QRect inkBounds(const QImage &image, const QRect &logicalArea)
{
    const QRect device = deviceInkBounds(image, logicalArea);
    if (device.isNull())
        return {};
    const qreal ratio = image.devicePixelRatio();
    return QRect(QPoint(int(device.left() / ratio), int(device.top() / ratio)),
                 QPoint(int(device.right() / ratio), int(device.bottom() / ratio)));
}

// The appearance settings of one part of a document screen.
struct Appearance
{
    void (*setColor)(const QColor &);
    void (*setFont)(std::optional<QFont>);
    QFont (*font)();
    int defaultPixelSize;
};

Appearance appearance(const QString &part)
{
    if (part == u"date"_s)
        return {TVRDesignClass::setDocumentDateColor, TVRDesignClass::setDocumentDateFont,
                TVRDesignClass::documentDateFont, 12};
    if (part == u"title"_s)
        return {TVRDesignClass::setSectionTitleColor, TVRDesignClass::setSectionTitleFont,
                TVRDesignClass::sectionTitleFont, 24};
    return {TVRDesignClass::setSectionBodyColor, TVRDesignClass::setSectionBodyFont, TVRDesignClass::sectionBodyFont,
            16};
}

QPalette darkPalette()
{
    QPalette dark;
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        dark.setColor(group, QPalette::Window, QColor(0x30, 0x30, 0x30));
        dark.setColor(group, QPalette::WindowText, Qt::white);
        dark.setColor(group, QPalette::Base, QColor(0x20, 0x20, 0x20));
        dark.setColor(group, QPalette::Text, Qt::white);
        dark.setColor(group, QPalette::Button, QColor(0x35, 0x35, 0x35));
        dark.setColor(group, QPalette::ButtonText, Qt::white);
        dark.setColor(group, QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    }
    return dark;
}

} // namespace

class tst_Rendering : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void rowsAreAsTallAsTheirText_data();
    void rowsAreAsTallAsTheirText();
    void newWidthMeasuresAgain();
    void bodyPaintsAsItsTextView_data();
    void bodyPaintsAsItsTextView();
    void clickOnABodyEditsItThere_data();
    void clickOnABodyEditsItThere();
    void appearanceReachesThePixels_data();
    void appearanceReachesThePixels();
    void arabicIsShaped();
    void rightToLeftAlignsRight_data();
    void rightToLeftAlignsRight();
    void darkSystemPalette();
    void sharpAtTheScreensDensity();
    void keyboardScrolls();
    void keyboardReachesTheEndOfTheAgreement();
    void screensTakeWhatTheyMade_data();
    void screensTakeWhatTheyMade();

private:
    // The terms screen in a navigation controller, shown in a window of \a size.
    TVRTermsOfServiceViewController *showTerms(QSize size);
    // Checks every row of \a table, scrolled into view one after another.
    void checkEveryRow(TVRTableView *table, const QString &what);
    void checkRow(TVRTableView *table, TVRIndexPath path, const QString &what);

    LoopbackSession m_offline;
    std::unique_ptr<QWidget> m_window;
};

void tst_Rendering::initTestCase()
{
    QVERIFY(isolateTestHost(u"tst_rendering"_s));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    TVRManager::setAppName(u"Acme"_s);
    // The screens' own fetches fail at once: they show the document set by each test.
    m_offline.routeToClosedPort(TVRNetworkManager::baseURLComponents().host());
    TVRDocumentManager::sharedInstance()->setSession(&m_offline);
}

void tst_Rendering::cleanup()
{
    m_window.reset();
    QApplication::setPalette(QPalette());
}

TVRTermsOfServiceViewController *tst_Rendering::showTerms(QSize size)
{
    auto *screen = new TVRTermsOfServiceViewController;
    m_window = std::make_unique<TVRNavigationController>(screen);
    m_window->resize(size);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    QCoreApplication::processEvents();
    return screen;
}

void tst_Rendering::checkRow(TVRTableView *table, TVRIndexPath path, const QString &what)
{
    const QRect row = table->rectForRowAtIndexPath(path);
    QScrollBar *bar = table->verticalScrollBar();
    bar->setValue(std::min(bar->maximum(), row.top()));
    QCoreApplication::processEvents();
    TVRTableViewCell *cell = table->cellForRowAtIndexPath(path);
    const QString where = u"%1, section %2 row %3"_s.arg(what).arg(path.section).arg(path.row);
    QVERIFY2(cell, qPrintable(where));
    QCOMPARE(cell->height(), row.height());

    // The text as Qt lays it out to paint it, and one line of it.
    qreal textHeight = 0;
    qreal line = 0;
    if (auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(cell)) {
        QTextEdit *view = body->bodyTextView();
        QCOMPARE(view->height(), row.height());
        textHeight = view->document()->size().height();
        line = QFontMetricsF(view->font()).height();
        QVERIFY2(view->verticalScrollBar()->maximum() == 0, qPrintable(where + u": text below the row"_s));
        // A word longer than the line is broken, not pushed past the edge.
        QVERIFY2(view->document()->idealWidth() <= view->viewport()->width() + 0.5,
                 qPrintable(where + u": a line wider than the view"_s));
    } else {
        auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(cell);
        QVERIFY(title);
        QLabel *label = title->titleLabel();
        QCOMPARE(label->height(), row.height());
        // Laid out again by QTextDocument, with the label's font and width.
        QTextDocument document;
        document.setDefaultFont(label->font());
        document.setDocumentMargin(0);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        document.setDefaultTextOption(option);
        document.setPlainText(label->text());
        document.setTextWidth(label->contentsRect().width());
        textHeight = document.size().height();
        line = QFontMetricsF(label->font()).height();
        // Nothing painted outside the text's width: a long word is not cut at the edge.
        const QImage image = render(table->window());
        const QRect painted = inkBounds(image, inWindow(label));
        const QRect text = inWindow(label, label->contentsRect());
        QVERIFY2(painted.left() >= text.left() - 1 && painted.right() <= text.right() + 1,
                 qPrintable(u"%1: ink from x %2 to %3, text from %4 to %5"_s.arg(where)
                                .arg(painted.left())
                                .arg(painted.right())
                                .arg(text.left())
                                .arg(text.right())));
    }
    // No line clipped, and no blank tail longer than a line (40 px rows aside).
    QVERIFY2(textHeight <= row.height(),
             qPrintable(u"%1: text %2 px in a row of %3"_s.arg(where).arg(textHeight).arg(row.height())));
    QVERIFY2(
        row.height() == 40 || row.height() - textHeight < line,
        qPrintable(u"%1: %2 px blank under %3 px of text"_s.arg(where).arg(row.height() - textHeight).arg(textHeight)));
}

void tst_Rendering::checkEveryRow(TVRTableView *table, const QString &what)
{
    QVERIFY(table->numberOfSections() > 0);
    for (int section = 0; section < table->numberOfSections(); ++section) {
        for (int row = 0; row < table->numberOfRowsInSection(section); ++row) {
            checkRow(table, {section, row}, what);
            if (QTest::currentTestFailed())
                return;
        }
    }
}

void tst_Rendering::rowsAreAsTallAsTheirText_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QSize>("window");
    QTest::addColumn<bool>("huge");

    const QList<QPair<const char *, QSize>> windows{
        {"320x568", {320, 568}}, {"390x844 on a wider screen", {390, 844}}, {"1280x800", {1280, 800}}};
    for (const char *name : {"Latin", "Arabic", "Hebrew", "CJK", "long words"}) {
        for (const auto &[size, window] : windows)
            QTest::addRow("%s, %s", name, size) << QString::fromUtf8(name) << window << false;
    }
    QTest::newRow("20,000 characters, 390x844") << u"Latin"_s << QSize(390, 844) << true;
    QTest::newRow("20,000 characters, 1280x800") << u"Latin"_s << QSize(1280, 800) << true;
    QTest::newRow("20,000 Arabic characters, 390x844") << u"Arabic"_s << QSize(390, 844) << true;
}

void tst_Rendering::rowsAreAsTallAsTheirText()
{
    QFETCH(QString, script);
    QFETCH(QSize, window);
    QFETCH(bool, huge);

    TVRDocumentManager::sharedInstance()->setTermsOfService(document(script, huge));
    TVRTermsOfServiceViewController *screen = showTerms(window);
    QVERIFY(screen);
    if (!huge) {
        QVERIFY(saveScreenshot(m_window.get(),
                               u"%1-%2x%3"_s.arg(script).arg(window.width()).arg(window.height()).replace(u' ', u'-')));
    }
    checkEveryRow(screen->tableView(), QString::fromUtf8(QTest::currentDataTag()));
}

void tst_Rendering::newWidthMeasuresAgain()
{
    // A phone turned on its side, then a desktop window made wider.
    TVRDocumentManager::sharedInstance()->setTermsOfService(document(u"Latin"_s));
    TVRTermsOfServiceViewController *screen = showTerms({390, 844});
    QVERIFY(screen);
    checkEveryRow(screen->tableView(), u"390 wide"_s);
    for (const QSize size : {QSize(844, 390), QSize(1280, 800), QSize(320, 568)}) {
        m_window->resize(size);
        QCoreApplication::processEvents();
        QCOMPARE(screen->tableView()->viewport()->width(), size.width());
        checkEveryRow(screen->tableView(), u"resized to %1 wide"_s.arg(size.width()));
    }
}

void tst_Rendering::appearanceReachesThePixels_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QColor>("color"); // set when valid
    QTest::addColumn<QColor>("expected"); // the colour of the text's ink
    QTest::addColumn<int>("pixelSize"); // set when not 0

    QTest::newRow("date colour, default") << u"date"_s << QColor() << QColor(0xAA, 0xAA, 0xAA) << 0;
    QTest::newRow("date colour, red") << u"date"_s << QColor(Qt::red) << QColor(Qt::red) << 0;
    QTest::newRow("title colour, default") << u"title"_s << QColor() << QColor(Qt::black) << 0;
    QTest::newRow("title colour, blue") << u"title"_s << QColor(Qt::blue) << QColor(Qt::blue) << 0;
    QTest::newRow("body colour, default") << u"body"_s << QColor() << QColor(Qt::black) << 0;
    QTest::newRow("body colour, dark green") << u"body"_s << QColor(0x00, 0x64, 0x00) << QColor(0x00, 0x64, 0x00) << 0;
    QTest::newRow("date font, 24 px") << u"date"_s << QColor() << QColor(0xAA, 0xAA, 0xAA) << 24;
    QTest::newRow("title font, 48 px") << u"title"_s << QColor() << QColor(Qt::black) << 48;
    QTest::newRow("body font, 32 px") << u"body"_s << QColor() << QColor(Qt::black) << 32;
}

void tst_Rendering::appearanceReachesThePixels()
{
    QFETCH(QString, part);
    QFETCH(QColor, color);
    QFETCH(QColor, expected);
    QFETCH(int, pixelSize);

    // The text's ink and the height of one line of it, as painted.
    const Appearance setting = appearance(part);
    auto paint = [&](bool withSetting) -> QPair<QRgb, int> {
        if (withSetting && color.isValid())
            setting.setColor(color);
        if (withSetting && pixelSize) {
            QFont font = setting.font();
            font.setPixelSize(pixelSize);
            setting.setFont(font);
        }
        // One line of capitals, so that the ink's height is the capitals' height.
        TVRDocumentManager::sharedInstance()->setTermsOfService(std::make_shared<TVRDocument>(QJsonObject{
            {u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s},
            {u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, u"HEIGHT"_s}, {u"body"_s, u"HEIGHT"_s}}}}}));
        TVRTermsOfServiceViewController *screen = showTerms({390, 844});
        QWidget *painted = nullptr;
        if (part == u"date"_s) {
            screen->headerView()->dateLabel()->setText(u"HEIGHT"_s);
            painted = screen->headerView()->dateLabel();
        } else {
            TVRTableViewCell *cell = screen->tableView()->cellForRowAtIndexPath({0, part == u"title"_s ? 0 : 1});
            if (auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(cell))
                painted = title->titleLabel();
            else if (auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(cell))
                painted = body->bodyTextView();
        }
        if (!painted)
            return {0, -1};
        const QImage image = render(m_window.get());
        const QRect area = inWindow(painted);
        const QPair<QRgb, int> result{ink(image, area), inkBounds(image, area).height()};
        setting.setColor(QColor());
        setting.setFont(std::nullopt);
        m_window.reset();
        return result;
    };

    const auto [inkColor, capitals] = paint(true);
    QVERIFY(capitals > 0);
    QVERIFY2(distance(inkColor, expected.rgb()) <= 40,
             qPrintable(u"painted %1, expected %2"_s.arg(QColor(inkColor).name(), expected.name())));
    if (pixelSize) {
        // Capitals are about 0.73 of the font's size; compared with the default size, so
        // that the ratio of the painted heights is the ratio of the sizes.
        const int defaultCapitals = paint(false).second;
        const double ratio = double(capitals) / defaultCapitals;
        const double expectedRatio = double(pixelSize) / setting.defaultPixelSize;
        QVERIFY2(std::abs(ratio - expectedRatio) < 0.2 * expectedRatio,
                 qPrintable(u"capitals %1 px against %2 px by default"_s.arg(capitals).arg(defaultCapitals)));
    }
}

namespace {

// A document whose first body is \a length characters of \a name's sentences.
std::shared_ptr<TVRDocument> documentWithBody(const QString &name, qsizetype length)
{
    QString body;
    while (body.size() < length)
        body += script(name).sentence;
    return std::make_shared<TVRDocument>(
        QJsonObject{{u"sections"_s,
                     QJsonArray{QJsonObject{{u"title"_s, script(name).heading}, {u"body"_s, body.left(length)}},
                                QJsonObject{{u"body"_s, script(name).sentence}}}}});
}

// \a text as a text view of \a width lays it out in the body font.
std::unique_ptr<QTextDocument> laidOutBody(const QString &text, int width)
{
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(TVRDesignClass::sectionBodyFont());
    document->setDocumentMargin(0);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document->setDefaultTextOption(option);
    document->setPlainText(text);
    document->setTextWidth(width);
    document->size(); // lays it out
    return document;
}

} // namespace

void tst_Rendering::bodyPaintsAsItsTextView_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QSize>("window");
    QTest::addColumn<int>("length");
    QTest::newRow("Latin, 390x844") << u"Latin"_s << QSize(390, 844) << 600;
    QTest::newRow("Hebrew, 390x844") << u"Hebrew"_s << QSize(390, 844) << 600;
    QTest::newRow("CJK, 1280x800") << u"CJK"_s << QSize(1280, 800) << 600;
    QTest::newRow("long, Latin, 390x844") << u"Latin"_s << QSize(390, 844) << 40000;
    QTest::newRow("long, Arabic, 390x844") << u"Arabic"_s << QSize(390, 844) << 40000;
    QTest::newRow("long, CJK, 1280x800") << u"CJK"_s << QSize(1280, 800) << 40000;
}

void tst_Rendering::bodyPaintsAsItsTextView()
{
    QFETCH(QString, script);
    QFETCH(QSize, window);
    QFETCH(int, length);

    const std::shared_ptr<TVRDocument> terms = documentWithBody(script, length);
    TVRDocumentManager::sharedInstance()->setTermsOfService(terms);
    TVRTermsOfServiceViewController *screen = showTerms(window);
    QVERIFY(screen);
    TVRTableView *table = screen->tableView();
    auto *cell = qobject_cast<TVRSectionBodyTableViewCell *>(table->cellForRowAtIndexPath({0, 1}));
    QVERIFY(cell);
    QVERIFY(cell->findChildren<QTextEdit *>().isEmpty());

    // Once laid out whole, the row is as tall as a text view lays the body out.
    const auto reference = laidOutBody(terms->sections().first()->body(), table->viewport()->width() - 24);
    QTRY_COMPARE(table->rectForRowAtIndexPath({0, 1}).height(), int(std::ceil(reference->size().height())));

    // The painted lines, at the top and at the end, are the text view's pixels.
    const auto viewport = [&] {
        const QImage image = render(m_window.get());
        return image.copy(devicePixels(image, inWindow(table->viewport())));
    };
    const QImage paintedTop = viewport();
    QTest::keyClick(table, Qt::Key_End);
    const QImage paintedEnd = viewport();
    QVERIFY(saveScreenshot(m_window.get(), u"body-end-%1-%2"_s.arg(script).arg(length)));
    QVERIFY(cell->bodyTextView());
    QCOMPARE(viewport(), paintedEnd);
    QTest::keyClick(table, Qt::Key_Home);
    QCOMPARE(viewport(), paintedTop);
}

void tst_Rendering::clickOnABodyEditsItThere_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("short") << 600;
    QTest::newRow("long") << 40000;
}

void tst_Rendering::clickOnABodyEditsItThere()
{
    QFETCH(int, length);
    const std::shared_ptr<TVRDocument> terms = documentWithBody(u"Latin"_s, length);
    TVRDocumentManager::sharedInstance()->setTermsOfService(terms);
    TVRTermsOfServiceViewController *screen = showTerms({390, 844});
    QVERIFY(screen);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    auto *cell = qobject_cast<TVRSectionBodyTableViewCell *>(screen->tableView()->cellForRowAtIndexPath({0, 1}));
    QVERIFY(cell);

    // A click at the start of the body's third line puts the cursor there, and what is
    // typed goes in there.
    const auto reference =
        laidOutBody(terms->sections().first()->body(), screen->tableView()->viewport()->width() - 24);
    const QTextLine third = reference->firstBlock().layout()->lineAt(2);
    const QPoint at(12 + 1, int(third.y() + third.height() / 2));
    QWidget *painted = cell->childAt(at);
    QVERIFY(painted);
    QTest::mouseClick(painted, Qt::LeftButton, {}, painted->mapFrom(cell, at));
    auto *textView = qobject_cast<QTextEdit *>(QApplication::focusWidget());
    QVERIFY(textView);
    QCOMPARE(textView, cell->bodyTextView());
    QCOMPARE(textView->textCursor().position(), third.textStart());
    QTest::keyClicks(textView, u"ok "_s);
    QCOMPARE(textView->toPlainText().mid(third.textStart(), 4),
             u"ok "_s + terms->sections().first()->body().at(third.textStart()));

    // Scrolled a little, the row stays in view: its edit and its focus stay with it.
    QScrollBar *bar = screen->tableView()->verticalScrollBar();
    bar->setValue(bar->value() + 10);
    QCoreApplication::processEvents();
    QCOMPARE(screen->tableView()->cellForRowAtIndexPath({0, 1}), cell);
    QCOMPARE(QApplication::focusWidget(), textView);
    QVERIFY(textView->toPlainText().contains(u"ok "_s));
}

void tst_Rendering::arabicIsShaped()
{
    // Joined Arabic letters take another width than the same letters each on its own.
    const QString words = u"السلام عليكم ورحمة الله"_s;
    TVRDocumentManager::sharedInstance()->setTermsOfService(std::make_shared<TVRDocument>(
        QJsonObject{{u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, words}, {u"body"_s, words}}}}}));
    TVRTermsOfServiceViewController *screen = showTerms({1280, 800});
    QVERIFY(screen);
    const QImage image = render(m_window.get());
    QVERIFY(saveScreenshot(m_window.get(), u"arabic-shaped"_s));

    auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(screen->tableView()->cellForRowAtIndexPath({0, 0}));
    auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(screen->tableView()->cellForRowAtIndexPath({0, 1}));
    QVERIFY(title && body);
    const QList<QPair<QWidget *, QFont>> painted{{title->titleLabel(), title->titleLabel()->font()},
                                                 {body->bodyTextView(), body->bodyTextView()->font()}};
    for (const auto &[widget, widgetFont] : painted) {
        // The reference widths come from the font's face and size, shaped by Qt's default
        // and unshaped, whatever strategy the widget's font was given.
        QFont font = widgetFont;
        font.setStyleStrategy(QFont::PreferDefault);
        QFont unshaped = font;
        unshaped.setStyleStrategy(QFont::PreferNoShaping);
        const qreal shapedWidth = QFontMetricsF(font).horizontalAdvance(words);
        const qreal unshapedWidth = QFontMetricsF(unshaped).horizontalAdvance(words);
        if (std::abs(shapedWidth - unshapedWidth) < 4)
            QSKIP("This font shapes Arabic to the same width as it sets it unshaped");
        const int inkWidth = inkBounds(image, inWindow(widget)).width();
        QVERIFY2(std::abs(inkWidth - shapedWidth) < std::abs(inkWidth - unshapedWidth),
                 qPrintable(u"%1: ink %2 px wide; shaped %3, unshaped %4"_s
                                .arg(QString::fromLatin1(widget->metaObject()->className()))
                                .arg(inkWidth)
                                .arg(shapedWidth)
                                .arg(unshapedWidth)));
    }
}

void tst_Rendering::rightToLeftAlignsRight_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("rightToLeft");
    QTest::newRow("Arabic") << u"Arabic"_s << true;
    QTest::newRow("Hebrew") << u"Hebrew"_s << true;
    QTest::newRow("Latin") << u"Latin"_s << false;
}

void tst_Rendering::rightToLeftAlignsRight()
{
    QFETCH(QString, script);
    QFETCH(bool, rightToLeft);

    // Each text starts at the edge its own direction starts from, title and body alike.
    TVRDocumentManager::sharedInstance()->setTermsOfService(document(script));
    TVRTermsOfServiceViewController *screen = showTerms({390, 844});
    QVERIFY(screen);
    const QImage image = render(m_window.get());
    auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(screen->tableView()->cellForRowAtIndexPath({0, 0}));
    auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(screen->tableView()->cellForRowAtIndexPath({0, 1}));
    QVERIFY(title && body);
    const QRect titleInk = inkBounds(image, inWindow(title->titleLabel()));
    const QRect titleText = inWindow(title->titleLabel(), title->titleLabel()->contentsRect());
    const QRect bodyInk = inkBounds(image, inWindow(body->bodyTextView()));
    const QRect bodyText = inWindow(body->bodyTextView()->viewport());
    const auto start = [rightToLeft](const QRect &rect) { return rightToLeft ? rect.right() : rect.left(); };
    QVERIFY2(std::abs(start(titleInk) - start(titleText)) <= 3,
             qPrintable(u"title ink starts at %1, its text at %2"_s.arg(start(titleInk)).arg(start(titleText))));
    QVERIFY2(std::abs(start(bodyInk) - start(bodyText)) <= 3,
             qPrintable(u"body ink starts at %1, its text at %2"_s.arg(start(bodyInk)).arg(start(bodyText))));
    // The title's text starts level with the body's.
    QVERIFY(std::abs(start(titleText) - start(bodyText)) <= (rightToLeft ? 1 : 0));
}

void tst_Rendering::sharpAtTheScreensDensity()
{
    const qreal ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    TVRDocumentManager::sharedInstance()->setTermsOfService(document(u"Latin"_s));
    TVRTermsOfServiceViewController *screen = showTerms({390, 844});
    QVERIFY(screen);
    const QImage image = render(m_window.get());
    QVERIFY(saveScreenshot(m_window.get(), u"terms-density"_s));
    // Every device pixel is painted: the picture has the screen's density.
    QCOMPARE(image.devicePixelRatio(), ratio);
    QCOMPARE(image.size(), m_window->size() * ratio);
    if (ratio == 1)
        QSKIP("At one device pixel per pixel there is no finer detail to look for");

    // Text drawn at the screen's density has edges inside every block of ratio x ratio device
    // pixels; text drawn at one pixel per pixel and scaled up has none: each block is one colour.
    for (TVRTableViewCell *cell : screen->tableView()->visibleCells()) {
        const QRect ink = deviceInkBounds(image, inWindow(cell));
        if (ink.isEmpty())
            continue;
        const int step = int(ratio);
        int blocks = 0;
        int detailed = 0;
        for (int y = ink.top() - ink.top() % step; y + step <= ink.bottom(); y += step) {
            for (int x = ink.left() - ink.left() % step; x + step <= ink.right(); x += step) {
                const QRgb first = image.pixel(x, y);
                bool uniform = true;
                for (int dy = 0; dy < step && uniform; ++dy) {
                    for (int dx = 0; dx < step && uniform; ++dx)
                        uniform = image.pixel(x + dx, y + dy) == first;
                }
                ++blocks;
                detailed += !uniform;
            }
        }
        QVERIFY2(detailed > blocks / 20,
                 qPrintable(u"%1 of %2 blocks of %3 show detail: %4 is drawn at a lower density"_s.arg(detailed)
                                .arg(blocks)
                                .arg(step)
                                .arg(cell->accessibleName().left(20))));
    }
}

void tst_Rendering::darkSystemPalette()
{
    QApplication::setPalette(darkPalette());
    TVRDocumentManager::sharedInstance()->setTermsOfService(document(u"Latin"_s));

    // A terms screen presented over a host's window, with Close, and an agreement screen.
    m_window = std::make_unique<QWidget>();
    m_window->resize(390, 844);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    auto *terms = new TVRTermsOfServiceViewController;
    auto *navigation = new TVRNavigationController(terms);
    TVRViewController::rootViewControllerForWindow(m_window.get())->presentViewController(navigation, false);
    QVERIFY(saveScreenshot(navigation, u"dark-palette-terms"_s));
    const QImage image = render(navigation);
    QWidget *bar = navigation->navigationBar();

    QList<QPair<QString, QWidget *>> texts{{u"navigation title"_s, bar->findChild<QLabel *>()}};
    const QList<QToolButton *> barButtons = bar->findChildren<QToolButton *>();
    for (QToolButton *button : barButtons) {
        if (button->isVisible())
            texts << qMakePair(button->text(), static_cast<QWidget *>(button));
    }
    QVERIFY2(texts.size() == 2, "the presented screen shows Close");
    auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(terms->tableView()->cellForRowAtIndexPath({0, 0}));
    auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(terms->tableView()->cellForRowAtIndexPath({0, 1}));
    QVERIFY(title && body);
    texts << qMakePair(u"section title"_s, static_cast<QWidget *>(title->titleLabel()))
          << qMakePair(u"section body"_s, static_cast<QWidget *>(body->bodyTextView()));
    for (const auto &[name, widget] : std::as_const(texts)) {
        const QRect area = inWindow(widget);
        const double ratio = contrast(ink(image, area), background(image, area));
        QVERIFY2(ratio >= 4.5, qPrintable(u"%1: contrast %2"_s.arg(name).arg(ratio, 0, 'f', 2)));
    }
    QCOMPARE(QColor(background(image, inWindow(terms->tableView()->viewport()))), QColor(Qt::white));

    // The date keeps its light grey, which stays visible on the white page.
    const QRect dateArea = inWindow(terms->headerView()->dateLabel());
    QVERIFY(distance(ink(image, dateArea), qRgb(0xAA, 0xAA, 0xAA)) <= 40);
    QVERIFY(contrast(ink(image, dateArea), background(image, dateArea)) > 2);

    m_window = std::make_unique<TVRNavigationController>(new TVRTermsViewController(document(u"Latin"_s)));
    m_window->resize(390, 844);
    m_window->show();
    const QImage agreement = render(m_window.get());
    QVERIFY(saveScreenshot(m_window.get(), u"dark-palette-agreement"_s));
    const QList<QToolButton *> buttons = m_window->findChild<QToolBar *>()->findChildren<QToolButton *>();
    int checked = 0;
    for (QToolButton *button : buttons) {
        if (!button->isVisible() || button->text().isEmpty())
            continue;
        const QRect area = inWindow(button);
        const double ratio = contrast(ink(agreement, area), background(agreement, area));
        QVERIFY2(ratio >= 4.5, qPrintable(u"%1: contrast %2"_s.arg(button->text()).arg(ratio, 0, 'f', 2)));
        ++checked;
    }
    QCOMPARE(checked, 2);
}

void tst_Rendering::keyboardScrolls()
{
    TVRDocumentManager::sharedInstance()->setTermsOfService(headings(30));
    TVRTermsOfServiceViewController *screen = showTerms({390, 844});
    QVERIFY(screen);
    TVRTableView *table = screen->tableView();
    table->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QScrollBar *bar = table->verticalScrollBar();
    QVERIFY(bar->maximum() > 2 * bar->pageStep());

    QTest::keyClick(table, Qt::Key_End);
    QCOMPARE(bar->value(), bar->maximum());
    QTest::keyClick(table, Qt::Key_Home);
    QCOMPARE(bar->value(), 0);
    QTest::keyClick(table, Qt::Key_Down);
    QVERIFY(bar->value() > 0);
    QTest::keyClick(table, Qt::Key_Up);
    QCOMPARE(bar->value(), 0);
    QTest::keyClick(table, Qt::Key_PageDown);
    QCOMPARE(bar->value(), bar->pageStep());
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(bar->value(), 2 * bar->pageStep());
    QTest::keyClick(table, Qt::Key_Space, Qt::ShiftModifier);
    QCOMPARE(bar->value(), bar->pageStep());
    QTest::keyClick(table, Qt::Key_PageUp);
    QCOMPARE(bar->value(), 0);
}

void tst_Rendering::keyboardReachesTheEndOfTheAgreement()
{
    auto *screen = new TVRTermsViewController(headings(20));
    m_window = std::make_unique<TVRNavigationController>(screen);
    m_window->resize(390, 844);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    // A host that wants the reader to reach the end first disables the buttons.
    screen->agreeBarButtonItem()->setEnabled(false);
    screen->disagreeBarButtonItem()->setEnabled(false);

    screen->tableView()->setFocus();
    QTest::keyClick(screen->tableView(), Qt::Key_PageDown);
    QVERIFY(!screen->agreeBarButtonItem()->isEnabled());
    QTest::keyClick(screen->tableView(), Qt::Key_End);
    QVERIFY(screen->agreeBarButtonItem()->isEnabled());
    QVERIFY(screen->disagreeBarButtonItem()->isEnabled());
}

void tst_Rendering::screensTakeWhatTheyMade_data()
{
    QTest::addColumn<QString>("screen");
    QTest::newRow("terms of service") << u"terms"_s;
    QTest::newRow("privacy policy") << u"privacy"_s;
    QTest::newRow("agreement") << u"agreement"_s;
}

void tst_Rendering::screensTakeWhatTheyMade()
{
    QFETCH(QString, screen);

    // Made, its parts made, and deleted before it was ever shown.
    TVRDocumentViewController *made = nullptr;
    QList<QPointer<QObject>> parts;
    if (screen == u"agreement"_s) {
        auto *agreement = new TVRTermsViewController(document(u"Latin"_s));
        parts << agreement->toolbar();
        made = agreement;
    } else if (screen == u"terms"_s) {
        made = new TVRTermsOfServiceViewController;
    } else {
        made = new TVRPrivacyPolicyViewController;
    }
    parts << made->headerView() << made->tableView();
    TVRTableView *table = made->tableView();
    QCOMPARE(table->dataSource(), static_cast<TVRTableViewDataSource *>(made));

    delete made;
    for (const QPointer<QObject> &part : std::as_const(parts))
        QVERIFY2(
            !part,
            qPrintable(QString::fromLatin1(part ? part->metaObject()->className() : "") + u" outlived its screen"_s));
}

// A desktop-sized screen, so that windows narrower than it are tested too.
TOVRA_OFFSCREEN_TEST_MAIN(tst_Rendering, QSize(1280, 800))

#include "tst_rendering.moc"
