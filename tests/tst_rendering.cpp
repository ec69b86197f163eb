// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// What a reader sees on the document screens, read off the painted pixels and off the text
// as Qt lays it out for painting: the appearance settings, rows exactly as tall as their
// text at any width and in any script, long words, a dark system palette, a body that is
// painted until it is clicked, and screens that take what they made with them. Offscreen
// on a 1280 x 800 screen; screenshots go to TOVRA_SCREENSHOT_DIR.

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

// A document of \a name's script: titled sections with bodies of one, three and eight
// sentences and an untitled one, after, when asked, a titled one whose body is \a longBody
// characters long.
std::shared_ptr<TVRDocument> document(const QString &name, int longBody = 0)
{
    const Script text = script(name);
    QJsonArray sections;
    if (longBody)
        sections.append(
            QJsonObject{{u"title"_s, text.heading},
                        {u"body"_s, text.sentence.repeated(longBody / text.sentence.size() + 1).left(longBody)}});
    for (int sentences : {1, 3, 8, 2}) {
        QJsonObject section{{u"body"_s, text.sentence.repeated(sentences).trimmed()}};
        if (sentences != 2)
            section.insert(u"title"_s, text.heading);
        sections.append(section);
    }
    return std::make_shared<TVRDocument>(QJsonObject{{u"_id"_s, name},
                                                     {u"title"_s, u"Terms"_s},
                                                     {u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s},
                                                     {u"sections"_s, sections}});
}

// \a text as a text view or label of \a width lays it out in \a font.
std::unique_ptr<QTextDocument> laidOut(const QString &text, const QFont &font, qreal width)
{
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(font);
    document->setDocumentMargin(0);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document->setDefaultTextOption(option);
    document->setPlainText(text);
    document->setTextWidth(width);
    document->size(); // lays it out
    return document;
}

QImage render(QWidget *window)
{
    if (!QTest::qWaitForWindowExposed(window))
        return {};
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
    return window->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// Where \a widget (or \a rect in it) lies in its window's image.
QRect inWindow(const QWidget *widget, const QRect &rect = {})
{
    const QRect local = rect.isNull() ? widget->rect() : rect;
    return QRect(widget->mapTo(widget->window(), local.topLeft()), local.size());
}

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

// Calls \a f(x, y, pixel) for every device pixel of \a image that covers \a logicalArea.
template <typename F>
void eachPixel(const QImage &image, const QRect &logicalArea, F f)
{
    const qreal r = image.devicePixelRatio();
    const QRect area = QRectF(QPointF(logicalArea.topLeft()) * r, QSizeF(logicalArea.size()) * r).toRect();
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            f(x, y, image.pixel(x, y));
    }
}

// The colour most of \a logicalArea is painted with.
QRgb background(const QImage &image, const QRect &logicalArea)
{
    QHash<QRgb, int> counts;
    eachPixel(image, logicalArea, [&](int, int, QRgb pixel) { ++counts[pixel]; });
    const auto most = std::max_element(counts.keyValueBegin(), counts.keyValueEnd(),
                                       [](const auto &a, const auto &b) { return a.second < b.second; });
    return most == counts.keyValueEnd() ? 0 : most->first;
}

// The ink of the text in \a logicalArea: the pixel that differs most from the background,
// which for text of this size is a pixel the glyphs cover fully.
QRgb ink(const QImage &image, const QRect &logicalArea)
{
    const QRgb paper = background(image, logicalArea);
    QRgb found = paper;
    eachPixel(image, logicalArea, [&](int, int, QRgb pixel) {
        if (distance(pixel, paper) > distance(found, paper))
            found = pixel;
    });
    return found;
}

// The box around every pixel of \a logicalArea that is not its background, in device
// pixels, or, with \a logical, in device-independent ones.
QRect inkBounds(const QImage &image, const QRect &logicalArea, bool logical = true)
{
    const QRgb paper = background(image, logicalArea);
    QRect bounds;
    eachPixel(image, logicalArea, [&](int x, int y, QRgb pixel) {
        if (distance(pixel, paper) > 48)
            bounds |= QRect(x, y, 1, 1);
    });
    const qreal r = logical ? image.devicePixelRatio() : 1;
    return bounds.isNull() ? bounds
                           : QRect(QPoint(int(bounds.left() / r), int(bounds.top() / r)),
                                   QPoint(int(bounds.right() / r), int(bounds.bottom() / r)));
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

} // namespace

class tst_Rendering : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void rowsAreAsTallAsTheirText_data();
    void rowsAreAsTallAsTheirText();
    void bodyPaintsAsItsTextViewAndEditsWhereClicked_data();
    void bodyPaintsAsItsTextViewAndEditsWhereClicked();
    void appearanceReachesThePixels_data();
    void appearanceReachesThePixels();
    void textStartsAtItsDirectionsEdgeShaped_data();
    void textStartsAtItsDirectionsEdgeShaped();
    void darkSystemPalette();
    void sharpAtTheScreensDensity();
    void screensTakeWhatTheyMade_data();
    void screensTakeWhatTheyMade();

private:
    // The terms screen showing \a terms in a navigation controller, in a window of \a size.
    TVRTermsOfServiceViewController *showTerms(const std::shared_ptr<TVRDocument> &terms, QSize size);
    // The title label or body text view of \a cell, or of row \a row of the first section.
    static QWidget *painted(TVRTableViewCell *cell);
    static QWidget *painted(TVRDocumentViewController *screen, int row)
    {
        return painted(screen->tableView()->cellForRowAtIndexPath({0, row}));
    }
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
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TVRTermsOfServiceViewController *tst_Rendering::showTerms(const std::shared_ptr<TVRDocument> &terms, QSize size)
{
    TVRDocumentManager::sharedInstance()->setTermsOfService(terms);
    auto *screen = new TVRTermsOfServiceViewController;
    m_window = std::make_unique<TVRNavigationController>(screen);
    m_window->resize(size);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    QCoreApplication::processEvents();
    return screen;
}

QWidget *tst_Rendering::painted(TVRTableViewCell *cell)
{
    if (auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(cell))
        return title->titleLabel();
    auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(cell);
    return body ? body->bodyTextView() : nullptr;
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
    QCOMPARE(cell->size(), row.size());
    // Label or text view, 8 px in from either side and as tall as the row.
    QWidget *text = painted(cell);
    QVERIFY2(text, qPrintable(where));
    QCOMPARE(text->mapTo(cell, QPoint(0, 0)), QPoint(8, 0));
    QCOMPARE(text->size(), QSize(row.width() - 16, row.height()));

    // The text as Qt lays it out to paint it, and one line of it.
    qreal textHeight = 0;
    qreal line = 0;
    if (auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(cell)) {
        QTextEdit *view = body->bodyTextView();
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
        textHeight = laidOut(label->text(), label->font(), label->contentsRect().width())->size().height();
        line = QFontMetricsF(label->font()).height();
        // Nothing painted outside the text's width: a long word is not cut at the edge.
        const QRect ink = inkBounds(render(table->window()), inWindow(label));
        const QRect text = inWindow(label, label->contentsRect());
        QVERIFY2(ink.left() >= text.left() - 1 && ink.right() <= text.right() + 1,
                 qPrintable(where
                            + QString::asprintf(": ink from x %d to %d, text from %d to %d", ink.left(), ink.right(),
                                                text.left(), text.right())));
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
    // Rows follow one another under the header without overlapping, and the table ends a
    // section's spacing under the last.
    QVERIFY(table->numberOfSections() > 0);
    int previousBottom = table->tableHeaderView() ? table->tableHeaderView()->height() : 0;
    for (int section = 0; section < table->numberOfSections(); ++section) {
        for (int row = 0; row < table->numberOfRowsInSection(section); ++row) {
            const QRect rect = table->rectForRowAtIndexPath({section, row});
            QVERIFY2(rect.top() >= previousBottom,
                     qPrintable(u"%1: row %2.%3 overlaps"_s.arg(what).arg(section).arg(row)));
            previousBottom = rect.bottom() + 1;
            checkRow(table, {section, row}, what);
            if (QTest::currentTestFailed())
                return;
        }
    }
    QCOMPARE(table->contentHeight(), previousBottom + TVRTableView::sectionSpacing());
}

void tst_Rendering::rowsAreAsTallAsTheirText_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QList<QSize>>("windows"); // shown at the first size, then resized to each next
    QTest::addColumn<int>("longBody");

    const QList<QPair<const char *, QSize>> windows{
        {"320x568", {320, 568}}, {"390x844 on a wider screen", {390, 844}}, {"1280x800", {1280, 800}}};
    for (const char *name : {"Latin", "Arabic", "Hebrew", "CJK", "long words"}) {
        for (const auto &[size, window] : windows)
            QTest::addRow("%s, %s", name, size) << QString::fromUtf8(name) << QList<QSize>{window} << 0;
    }
    QTest::newRow("20,000 characters, 390x844") << u"Latin"_s << QList<QSize>{{390, 844}} << 20000;
    QTest::newRow("20,000 characters, 1280x800") << u"Latin"_s << QList<QSize>{{1280, 800}} << 20000;
    QTest::newRow("20,000 Arabic characters, 390x844") << u"Arabic"_s << QList<QSize>{{390, 844}} << 20000;
    // A phone turned on its side, then a desktop window made wider and narrower.
    QTest::newRow("390x844 turned, then 1280x800, then 320x568")
        << u"Latin"_s << QList<QSize>{{390, 844}, {844, 390}, {1280, 800}, {320, 568}} << 0;
}

void tst_Rendering::rowsAreAsTallAsTheirText()
{
    QFETCH(QString, script);
    QFETCH(QList<QSize>, windows);
    QFETCH(int, longBody);

    TVRTermsOfServiceViewController *screen = showTerms(document(script, longBody), windows.first());
    QVERIFY(screen);
    if (!longBody && windows.size() == 1) {
        const QSize size = windows.first();
        QVERIFY(saveScreenshot(m_window.get(),
                               u"%1-%2x%3"_s.arg(script).arg(size.width()).arg(size.height()).replace(u' ', u'-')));
    }
    checkEveryRow(screen->tableView(), QString::fromUtf8(QTest::currentDataTag()));
    for (const QSize size : windows.mid(1)) {
        m_window->resize(size);
        QCoreApplication::processEvents();
        QCOMPARE(screen->tableView()->viewport()->width(), size.width());
        checkEveryRow(screen->tableView(), u"resized to %1 wide"_s.arg(size.width()));
    }
}

void tst_Rendering::bodyPaintsAsItsTextViewAndEditsWhereClicked_data()
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

void tst_Rendering::bodyPaintsAsItsTextViewAndEditsWhereClicked()
{
    QFETCH(QString, script);
    QFETCH(QSize, window);
    QFETCH(int, length);

    const std::shared_ptr<TVRDocument> terms = document(script, length);
    const QString body = terms->sections().first()->body();
    TVRTermsOfServiceViewController *screen = showTerms(terms, window);
    QVERIFY(screen);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    TVRTableView *table = screen->tableView();
    const auto cell = [table] {
        return qobject_cast<TVRSectionBodyTableViewCell *>(table->cellForRowAtIndexPath({0, 1}));
    };
    QVERIFY(cell());
    QVERIFY(cell()->findChildren<QTextEdit *>().isEmpty());

    // Once laid out whole, the row is as tall as a text view lays the body out.
    const auto reference = laidOut(body, TVRDesignClass::sectionBodyFont(), table->viewport()->width() - 24);
    QTRY_COMPARE(table->rectForRowAtIndexPath({0, 1}).height(), int(std::ceil(reference->size().height())));

    // The painted lines, at the top and at the end, are the text view's pixels.
    const auto viewport = [&] {
        const QImage image = render(m_window.get());
        const qreal r = image.devicePixelRatio();
        const QRect area = inWindow(table->viewport());
        return image.copy(QRectF(QPointF(area.topLeft()) * r, QSizeF(area.size()) * r).toRect());
    };
    const QImage paintedTop = viewport();
    QTest::keyClick(table, Qt::Key_End);
    const QImage paintedEnd = viewport();
    QVERIFY(saveScreenshot(m_window.get(), u"body-end-%1-%2"_s.arg(script).arg(length)));
    QCOMPARE(viewport(), paintedEnd);
    QTest::keyClick(table, Qt::Key_Home);
    QCOMPARE(viewport(), paintedTop);

    // A click at the start of the body's third line (its right end, right to left) puts the
    // cursor where the text view puts it for that point, on that line, and what is typed goes
    // in there.
    const QTextLine third = reference->firstBlock().layout()->lineAt(2);
    const QRectF line = third.naturalTextRect();
    const QPoint at(12 + int(body.isRightToLeft() ? line.right() - 1 : line.left() + 1), int(line.center().y()));
    QWidget *clicked = cell()->childAt(at);
    QVERIFY(clicked);
    QTest::mouseClick(clicked, Qt::LeftButton, {}, clicked->mapFrom(cell(), at));
    auto *textView = qobject_cast<QTextEdit *>(QApplication::focusWidget());
    QVERIFY(textView);
    QCOMPARE(textView, cell()->bodyTextView());
    const int position = textView->textCursor().position();
    QVERIFY2(position == third.textStart() || (body.isRightToLeft() && position == third.textStart() + 1),
             qPrintable(u"cursor at %1, the line starts at %2"_s.arg(position).arg(third.textStart())));
    QTest::keyClicks(textView, u"ok "_s);
    QCOMPARE(textView->toPlainText().mid(position, 4), u"ok "_s + body.at(position));

    // Scrolled a little, the row stays in view: its edit and its focus stay with it.
    TVRSectionBodyTableViewCell *edited = cell();
    QScrollBar *bar = table->verticalScrollBar();
    bar->setValue(bar->value() + 10);
    QCoreApplication::processEvents();
    QCOMPARE(cell(), edited);
    QCOMPARE(QApplication::focusWidget(), textView);
    QVERIFY(textView->toPlainText().contains(u"ok "_s));
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

    // The text's ink and the height of one line of capitals, as painted.
    const Appearance setting = appearance(part);
    auto paint = [&](bool withSetting) -> QPair<QRgb, int> {
        if (withSetting && color.isValid())
            setting.setColor(color);
        if (withSetting && pixelSize) {
            QFont font = setting.font();
            font.setPixelSize(pixelSize);
            setting.setFont(font);
        }
        TVRTermsOfServiceViewController *screen = showTerms(
            std::make_shared<TVRDocument>(QJsonObject{
                {u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s},
                {u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, u"HEIGHT"_s}, {u"body"_s, u"HEIGHT"_s}}}}}),
            {390, 844});
        if (!screen)
            return {0, -1};
        if (part == u"date"_s)
            screen->headerView()->dateLabel()->setText(u"HEIGHT"_s);
        QWidget *text = part == u"date"_s ? screen->headerView()->dateLabel() : painted(screen, part == u"body"_s);
        const QImage image = render(m_window.get());
        const QPair<QRgb, int> result = text
            ? qMakePair(ink(image, inWindow(text)), inkBounds(image, inWindow(text)).height())
            : qMakePair(QRgb(0), -1);
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
        // Compared with the default size, so that the ratio of the painted heights is the
        // ratio of the sizes.
        const int defaultCapitals = paint(false).second;
        const double ratio = double(capitals) / defaultCapitals;
        const double expectedRatio = double(pixelSize) / setting.defaultPixelSize;
        QVERIFY2(std::abs(ratio - expectedRatio) < 0.2 * expectedRatio,
                 qPrintable(u"capitals %1 px against %2 px by default"_s.arg(capitals).arg(defaultCapitals)));
    }
}

void tst_Rendering::textStartsAtItsDirectionsEdgeShaped_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<Qt::LayoutDirection>("layout"); // the application's, as a host sets it
    QTest::newRow("Arabic") << u"Arabic"_s << Qt::LeftToRight;
    QTest::newRow("Hebrew") << u"Hebrew"_s << Qt::LeftToRight;
    QTest::newRow("Latin") << u"Latin"_s << Qt::LeftToRight;
    QTest::newRow("Arabic, right-to-left layout") << u"Arabic"_s << Qt::RightToLeft;
    QTest::newRow("Latin, right-to-left layout") << u"Latin"_s << Qt::RightToLeft;
}

void tst_Rendering::textStartsAtItsDirectionsEdgeShaped()
{
    QFETCH(QString, script);
    QFETCH(Qt::LayoutDirection, layout);
    QGuiApplication::setLayoutDirection(layout);

    // A title and a body of one line each, so that where the ink starts and how wide it is
    // are that line's.
    const QString words = ::script(script).heading;
    const bool rightToLeft = words.isRightToLeft();
    TVRTermsOfServiceViewController *screen =
        showTerms(std::make_shared<TVRDocument>(
                      QJsonObject{{u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, words}, {u"body"_s, words}}}}}),
                  {390, 844});
    QVERIFY(screen);
    const QImage image = render(m_window.get());
    QVERIFY(saveScreenshot(m_window.get(), u"one-line-%1-%2"_s.arg(script).arg(int(layout))));
    QWidget *title = painted(screen, 0);
    auto *body = qobject_cast<QTextEdit *>(painted(screen, 1));
    QVERIFY(title && body);

    // Each text starts at the edge its own direction starts from, whatever the layout's
    // direction, title and body alike, and the title's text level with the body's.
    const auto start = [rightToLeft](const QRect &rect) { return rightToLeft ? rect.right() : rect.left(); };
    const QRect titleText = inWindow(title, static_cast<QLabel *>(title)->contentsRect());
    const QRect bodyText = inWindow(body->viewport());
    for (const auto &[ink, text] : {qMakePair(inkBounds(image, inWindow(title)), titleText),
                                    qMakePair(inkBounds(image, inWindow(body)), bodyText)}) {
        QVERIFY2(std::abs(start(ink) - start(text)) <= 3,
                 qPrintable(u"ink starts at %1, its text at %2"_s.arg(start(ink)).arg(start(text))));
    }
    QVERIFY(std::abs(start(titleText) - start(bodyText)) <= (rightToLeft ? 1 : 0));

    // Joined Arabic letters take another width than the same letters each on its own. The
    // reference widths come from the font's face and size, shaped by Qt's default and
    // unshaped, whatever strategy the widget's font was given.
    if (script != u"Arabic"_s || layout != Qt::LeftToRight)
        return;
    for (QWidget *widget : {title, static_cast<QWidget *>(body)}) {
        QFont font = widget->font();
        font.setStyleStrategy(QFont::PreferDefault);
        QFont unshaped = font;
        unshaped.setStyleStrategy(QFont::PreferNoShaping);
        const qreal shapedWidth = QFontMetricsF(font).horizontalAdvance(words);
        const qreal unshapedWidth = QFontMetricsF(unshaped).horizontalAdvance(words);
        if (std::abs(shapedWidth - unshapedWidth) < 4)
            QSKIP("This font shapes Arabic to the same width as it sets it unshaped");
        const int inkWidth = inkBounds(image, inWindow(widget)).width();
        QVERIFY2(
            std::abs(inkWidth - shapedWidth) < std::abs(inkWidth - unshapedWidth),
            qPrintable(QString::asprintf("%s: ink %d px wide; shaped %g, unshaped %g",
                                         widget->metaObject()->className(), inkWidth, shapedWidth, unshapedWidth)));
    }
}

void tst_Rendering::sharpAtTheScreensDensity()
{
    const qreal ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    TVRTermsOfServiceViewController *screen = showTerms(document(u"Latin"_s), {390, 844});
    QVERIFY(screen);
    const QImage image = render(m_window.get());
    QVERIFY(saveScreenshot(m_window.get(), u"terms-density"_s));
    if (ratio == 1)
        QSKIP("At one device pixel per pixel there is no finer detail to look for");

    // Text drawn at the screen's density has edges inside every block of ratio x ratio device
    // pixels; text drawn at one pixel per pixel and scaled up has none: each block is one colour.
    const int step = int(ratio);
    for (TVRTableViewCell *cell : screen->tableView()->visibleCells()) {
        const QRect ink = inkBounds(image, inWindow(cell), false);
        if (ink.isEmpty())
            continue;
        int blocks = 0;
        int detailed = 0;
        for (int y = ink.top() - ink.top() % step; y + step <= ink.bottom(); y += step) {
            for (int x = ink.left() - ink.left() % step; x + step <= ink.right(); x += step) {
                bool uniform = true;
                for (int d = 1; d < step * step && uniform; ++d)
                    uniform = image.pixel(x + d % step, y + d / step) == image.pixel(x, y);
                ++blocks;
                detailed += !uniform;
            }
        }
        QVERIFY2(detailed > blocks / 20,
                 qPrintable(QString::asprintf("%d of %d blocks of %d show detail: %s is drawn at a lower density",
                                              detailed, blocks, step, qPrintable(cell->accessibleName().left(20)))));
    }
}

void tst_Rendering::darkSystemPalette()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x30, 0x30, 0x30));
    dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    dark.setColor(QPalette::Button, QColor(0x35, 0x35, 0x35));
    dark.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, Qt::white);
    QApplication::setPalette(dark);
    TVRDocumentManager::sharedInstance()->setTermsOfService(document(u"Latin"_s));

    // A terms screen presented over a host's window, with Close, and an agreement screen:
    // every text readable, at 4.5:1 at least.
    const auto checkContrast = [](const QImage &image, const QString &name, QWidget *widget) {
        const QRect area = inWindow(widget);
        const double ratio = contrast(ink(image, area), background(image, area));
        QVERIFY2(ratio >= 4.5, qPrintable(u"%1: contrast %2"_s.arg(name).arg(ratio, 0, 'f', 2)));
    };
    const auto shownButtons = [](QWidget *bar) {
        QList<QToolButton *> shown;
        for (QToolButton *button : bar->findChildren<QToolButton *>()) {
            if (button->isVisible() && !button->text().isEmpty())
                shown << button;
        }
        return shown;
    };
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
    checkContrast(image, u"navigation title"_s, bar->findChild<QLabel *>());
    QCOMPARE(shownButtons(bar).size(), 1); // Close
    checkContrast(image, shownButtons(bar).constFirst()->text(), shownButtons(bar).constFirst());
    checkContrast(image, u"section title"_s, painted(terms, 0));
    checkContrast(image, u"section body"_s, painted(terms, 1));
    QCOMPARE(QColor(background(image, inWindow(terms->tableView()->viewport()))), QColor(Qt::white));

    // The date keeps its light grey, which stays visible on the white page.
    const QRect dateArea = inWindow(terms->headerView()->dateLabel());
    QVERIFY(distance(ink(image, dateArea), qRgb(0xAA, 0xAA, 0xAA)) <= 40);
    QCOMPARE(QColor(background(image, dateArea)), QColor(Qt::white));

    m_window = std::make_unique<TVRNavigationController>(new TVRTermsViewController(document(u"Latin"_s)));
    m_window->resize(390, 844);
    m_window->show();
    const QImage agreement = render(m_window.get());
    QVERIFY(saveScreenshot(m_window.get(), u"dark-palette-agreement"_s));
    const QList<QToolButton *> answers = shownButtons(m_window->findChild<QToolBar *>());
    QCOMPARE(answers.size(), 2);
    for (QToolButton *button : answers)
        checkContrast(agreement, button->text(), button);
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

    delete made;
    for (const QPointer<QObject> &part : std::as_const(parts))
        QVERIFY2(
            !part,
            qPrintable(QString::fromLatin1(part ? part->metaObject()->className() : "") + u" outlived its screen"_s));
}

// A desktop-sized screen, so that windows narrower than it are tested too.
TOVRA_OFFSCREEN_TEST_MAIN(tst_Rendering, QSize(1280, 800))

#include "tst_rendering.moc"
