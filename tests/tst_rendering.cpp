// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// What a reader sees on the document screens, read off the painted pixels and off the text
// as Qt lays it out for painting: rows exactly as tall as their text at any width and in any
// script, each text starting from its own direction's side, shaped and sharp; long words; a
// long body of paragraphs in both directions, each on its own side, painted the same each time,
// edited where it is clicked and then laid out whole; the texts in their colours and sizes, a
// host's or the kit's own under a dark system palette; and screens that take what they made
// with them. Offscreen on a 1280 x 800 screen; screenshots go to TOVRA_SCREENSHOT_DIR.

#include "LoopbackSession.h"
#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"

#include <Tovra.h>

#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <QToolBar>
#include <QtTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// A heading and a sentence in each script, and in capitals alone.
const QHash<QString, std::pair<QString, QString>> scripts{
    {u"Latin"_s,
     {u"How ##### uses the data you give it"_s,
      u"This section explains how ##### handles your data, what you may expect from the service and what "
      "it expects from you. "_s}},
    {u"Arabic"_s,
     {u"كيف نستخدم بياناتك"_s,
      u"توضح هذه الشروط كيف يتعامل ##### مع بياناتك وما يمكنك أن تتوقعه من الخدمة وما تتوقعه الخدمة منك. "_s}},
    {u"Hebrew"_s,
     {u"כיצד אנו משתמשים בנתונים שלך"_s,
      u"תנאים אלה מסבירים כיצד ##### מטפלת בנתונים שלך, מה אתה יכול לצפות מהשירות ומה השירות מצפה ממך. "_s}},
    {u"CJK"_s,
     {u"我们如何使用您的数据"_s, u"本条款说明#####如何处理您的数据、您可以从服务中期待什么以及服务对您有何期待。"_s}},
    {u"capitals"_s, {u"TEXT"_s, u"TEXT"_s}},
    {u"long words"_s,
     {u"Supercalifragilisticexpialidociousnessandbeyondx"_s,
      u"Send notices to https://legal.example.com/"_s + QString(240, u'n') + u" and keep a copy. "_s}}};

// A document of \a name's script: titled sections with bodies of one, three and eight
// sentences and an untitled one, after, when asked, a titled one whose body is \a longBody
// characters long: its first half in paragraphs of eight sentences, each followed by one of
// two sentences in the other direction, its second half one paragraph.
std::shared_ptr<TVRDocument> document(const QString &name, int longBody = 0)
{
    const auto [heading, sentence] = scripts.value(name);
    const QString other = scripts.value(sentence.isRightToLeft() ? u"Latin"_s : u"Arabic"_s).second;
    QStringList paragraphs;
    for (int length = 0; length < longBody / 2; length += paragraphs.last().size() + 1)
        paragraphs << (paragraphs.size() % 2 ? other.repeated(2) : sentence.repeated(8)).trimmed();
    if (longBody)
        paragraphs << sentence.repeated(longBody / int(sentence.size()));
    QJsonArray sections;
    if (longBody)
        sections.append(QJsonObject{{u"title"_s, heading}, {u"body"_s, paragraphs.join(u'\n').left(longBody)}});
    for (int sentences : {1, 3, 8, 2}) {
        QJsonObject section{{u"body"_s, sentence.repeated(sentences).trimmed()}};
        if (sentences != 2)
            section.insert(u"title"_s, heading);
        sections.append(section);
    }
    return std::make_shared<TVRDocument>(
        QJsonObject{{u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s}, {u"sections"_s, sections}});
}

// What a host sets for the date, a title and a body: the font, as read and as set, and the colour.
const std::tuple<QFont (*)(), void (*)(std::optional<QFont>), void (*)(const QColor &)> appearance[]{
    {TVRDesignClass::documentDateFont, TVRDesignClass::setDocumentDateFont, TVRDesignClass::setDocumentDateColor},
    {TVRDesignClass::sectionTitleFont, TVRDesignClass::setSectionTitleFont, TVRDesignClass::setSectionTitleColor},
    {TVRDesignClass::sectionBodyFont, TVRDesignClass::setSectionBodyFont, TVRDesignClass::setSectionBodyColor}};

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
    return document;
}

// Where \a widget lies in its window's image.
QRect inWindow(const QWidget *widget)
{
    return QRect(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
}

int distance(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

// What an area of an image shows: the colour most of it is painted with; the ink of its
// text, the pixel that differs most from that paper, which for text of this size is a pixel
// the glyphs cover fully; and the box around every pixel that is not paper, in
// device-independent pixels.
struct Ink
{
    QRgb paper = 0, color = 0;
    QRect bounds;
};

Ink inkIn(const QImage &image, const QRect &logicalArea)
{
    const qreal r = image.devicePixelRatio();
    const QRect area = QRectF(QPointF(logicalArea.topLeft()) * r, QSizeF(logicalArea.size()) * r).toRect();
    const auto eachPixel = [&](auto f) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                f(x, y, image.pixel(x, y));
        }
    };
    QHash<QRgb, int> counts;
    eachPixel([&](int, int, QRgb pixel) { ++counts[pixel]; });
    const auto most = std::max_element(counts.keyValueBegin(), counts.keyValueEnd(),
                                       [](const auto &a, const auto &b) { return a.second < b.second; });
    Ink ink;
    ink.paper = ink.color = most == counts.keyValueEnd() ? 0 : most->first;
    eachPixel([&](int x, int y, QRgb pixel) {
        if (distance(pixel, ink.paper) > distance(ink.color, ink.paper))
            ink.color = pixel;
        if (distance(pixel, ink.paper) > 48)
            ink.bounds |= QRect(int(x / r), int(y / r), 1, 1);
    });
    return ink;
}

// Checks every row of \a table, scrolled into view one after another.
void checkEveryRow(TVRTableView *table, const QString &what)
{
    // Rows follow one another under the header without overlapping, and the table ends a
    // section's spacing under the last.
    int previousBottom = table->tableHeaderView() ? table->tableHeaderView()->height() : 0;
    for (int section = 0; section < table->numberOfSections(); ++section) {
        for (int index = 0; index < table->numberOfRowsInSection(section); ++index) {
            const QRect row = table->rectForRowAtIndexPath({section, index});
            const QString where = u"%1, section %2 row %3"_s.arg(what).arg(section).arg(index);
            QVERIFY2(row.top() >= previousBottom, qPrintable(where + u" overlaps"_s));
            previousBottom = row.bottom() + 1;
            table->verticalScrollBar()->setValue(row.top()); // as far as it goes
            QCoreApplication::processEvents();

            // The title label or body text view, 8 px in from either side of the cell and as
            // tall as the row.
            TVRTableViewCell *cell = table->cellForRowAtIndexPath({section, index});
            auto *title = qobject_cast<TVRSectionTitleTableViewCell *>(cell);
            auto *body = qobject_cast<TVRSectionBodyTableViewCell *>(cell);
            QLabel *label = title ? title->titleLabel() : nullptr;
            QTextEdit *view = body ? body->bodyTextView() : nullptr;
            QWidget *text = label ? static_cast<QWidget *>(label) : view;
            QVERIFY2(text, qPrintable(where));
            QCOMPARE(text->mapTo(cell, QPoint(0, 0)), QPoint(8, 0));
            QCOMPARE(text->size(), QSize(row.width() - 16, row.height()));

            // The text as Qt lays it out to paint it, and one line of it.
            const qreal line = QFontMetricsF(text->font()).height();
            const qreal textHeight = view
                ? view->document()->size().height()
                : laidOut(label->text(), text->font(), label->contentsRect().width())->size().height();
            // A word longer than the line is broken, not pushed past the edge.
            QVERIFY2(!view || view->document()->idealWidth() <= view->viewport()->width() + 0.5,
                     qPrintable(where + u": a line wider than the view"_s));
            // No line clipped, and no blank tail longer than a line (40 px rows aside).
            QVERIFY2(textHeight <= row.height() && (row.height() == 40 || row.height() - textHeight < line),
                     qPrintable(u"%1: %2 px of text in a row of %3"_s.arg(where).arg(textHeight).arg(row.height())));
        }
    }
    QCOMPARE(table->contentHeight(), previousBottom + TVRTableView::sectionSpacing());
}

// Checks the rows of \a table whose first line \a image shows: their text starts 12 px in
// from the side its own direction starts from, whatever the layout's direction; a line of
// Arabic is as wide as its letters joined, not as each on its own; and on a screen of more
// than one device pixel per pixel, the text is drawn at the screen's density: it has edges
// inside every block of ratio x ratio device pixels, where text drawn at one pixel per pixel
// and scaled up has none.
void checkPainted(const QImage &image, TVRTableView *table)
{
    const int step = int(image.devicePixelRatio());
    for (TVRTableViewCell *cell : table->visibleCells()) {
        // The label or painted body, 8 px in from either side of the row; its lines 4 px in
        // from the side the text starts from, and 20 (a title) or 4 (a body) from the other.
        const QRect area = inWindow(cell).adjusted(8, 0, -8, 0).intersected(inWindow(table->viewport()));
        if (area.top() != inWindow(cell).top() || area.height() < 40)
            continue;
        const QString text = cell->accessibleName();
        const bool rightToLeft = text.isRightToLeft();
        const bool title = qobject_cast<TVRSectionTitleTableViewCell *>(cell);
        const QRect lines = area.adjusted(rightToLeft ? (title ? 20 : 4) : 4, 0, rightToLeft || !title ? -4 : -20, 0);
        // Nothing painted outside the lines (a long word is broken), and the text starts at their start.
        const QRect ink = inkIn(image, area).bounds;
        const int offset = rightToLeft ? lines.right() - ink.right() : ink.left() - lines.left();
        QVERIFY2(lines.adjusted(-1, 0, 1, 0).contains(ink) && offset <= 3,
                 qPrintable(u"%1: ink from x %2 to %3"_s.arg(text.left(20)).arg(ink.left()).arg(ink.right())));

        // The reference widths come from the font's face and size, shaped by Qt's default and
        // unshaped, whatever strategy the cell's font was given.
        QFont font = title ? TVRDesignClass::sectionTitleFont() : TVRDesignClass::sectionBodyFont();
        font.setStyleStrategy(QFont::PreferDefault);
        const qreal shaped = QFontMetricsF(font).horizontalAdvance(text);
        font.setStyleStrategy(QFont::PreferNoShaping);
        const qreal unshaped = QFontMetricsF(font).horizontalAdvance(text);
        // The fonts the kit's scripts install shape Arabic to another width than its letters
        // set apart, so a line of it tells the two apart.
        if (text.at(0).script() == QChar::Script_Arabic && ink.height() < QFontMetricsF(font).height() * 1.5) {
            QVERIFY2(
                std::abs(shaped - unshaped) >= 4 && std::abs(ink.width() - shaped) < std::abs(ink.width() - unshaped),
                qPrintable(u"ink %1 px wide; shaped %2, unshaped %3"_s.arg(ink.width()).arg(shaped).arg(unshaped)));
        }

        if (step == 1)
            continue;
        // A block has detail where one of its pixels differs from its first.
        QSet<std::pair<int, int>> detailed;
        for (int y = ink.top() * step; y < (ink.bottom() + 1) * step; ++y) {
            for (int x = ink.left() * step; x < (ink.right() + 1) * step; ++x) {
                if (image.pixel(x, y) != image.pixel(x - x % step, y - y % step))
                    detailed.insert({x / step, y / step});
            }
        }
        QVERIFY2(
            detailed.size() > ink.width() * ink.height() / 20,
            qPrintable(
                u"%1 blocks show detail: %2 is drawn at a lower density"_s.arg(detailed.size()).arg(text.left(20))));
    }
}

} // namespace

class tst_Rendering : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(isolateTestHost(u"tst_rendering"_s));
        TVRManager::setAppName(u"Acme"_s);
        // The screens' own fetches fail at once: they show the document set by each test.
        m_offline.routeToClosedPort(TVRNetworkManager::baseURLComponents().host());
        TVRDocumentManager::sharedInstance()->setSession(&m_offline);
    }

    void cleanup()
    {
        m_window.reset();
        for (const auto &[font, setFont, setColor] : appearance) {
            setFont(std::nullopt);
            setColor(QColor());
        }
        QApplication::setPalette(QPalette());
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void screens_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QList<QSize>>("windows"); // shown at the first size, then resized to each next
        QTest::addColumn<int>("longBody"); // the first section's body, clicked into when there is one
        QTest::addColumn<Qt::LayoutDirection>("layout"); // the application's, as a host sets it
        QTest::addColumn<QPalette>("palette"); // the system's
        QTest::addColumn<QList<int>>("sizes"); // a host's pixel sizes for the date, a title and a body, if any
        QTest::addColumn<QList<QColor>>("inks"); // the date's, a title's and a body's
        const auto row = [](const QByteArray &tag, const char *script, const QList<QSize> &windows, int longBody = 0,
                            Qt::LayoutDirection layout = Qt::LeftToRight, const QPalette &palette = QPalette(),
                            const QList<int> &sizes = {},
                            const QList<QColor> &inks = {QColor(0xAA, 0xAA, 0xAA), Qt::black, Qt::black}) {
            QTest::newRow(tag.constData())
                << QString::fromUtf8(script) << windows << longBody << layout << palette << sizes << inks;
        };

        const QList<QPair<const char *, QSize>> windows{
            {"320x568", {320, 568}}, {"390x844 on a wider screen", {390, 844}}, {"1280x800", {1280, 800}}};
        for (const char *name : {"Latin", "Arabic", "Hebrew", "CJK", "long words"}) {
            for (const auto &[size, window] : windows)
                row(QByteArray(name) + ", " + size, name, {window});
        }
        // A section's side follows its text's direction alone (the Arabic rows above), whatever the
        // layout's: Latin stays on the left of a right-to-left application.
        row("Latin, right-to-left layout", "Latin", {{390, 844}}, 0, Qt::RightToLeft);
        row("20,000 characters, 390x844", "Latin", {{390, 844}}, 20000);
        row("20,000 Arabic characters, 390x844", "Arabic", {{390, 844}}, 20000);
        // Bodies long enough to be painted from lines laid out a slice at a time.
        row("40,000 characters, 390x844", "Latin", {{390, 844}}, 40000);
        row("40,000 Arabic characters, 390x844", "Arabic", {{390, 844}}, 40000);
        row("40,000 CJK characters, 1280x800", "CJK", {{1280, 800}}, 40000);
        // A phone turned on its side, then a desktop window made wider and narrower.
        row("390x844 turned, then 1280x800, then 320x568", "Latin", {{390, 844}, {844, 390}, {1280, 800}, {320, 568}});
        // A host's colours and sizes; and white text on dark grey windows, buttons and bases,
        // under which the kit's own colours stay on its white page.
        row("capitals, a host's appearance", "capitals", {{390, 844}}, 0, Qt::LeftToRight, QPalette(), {24, 48, 32},
            {Qt::red, Qt::blue, QColor(0x00, 0x64, 0x00)});
        row("capitals, dark system palette", "capitals", {{390, 844}}, 0, Qt::LeftToRight,
            QPalette(Qt::white, QColor(0x30, 0x30, 0x30), QColor(0x50, 0x50, 0x50), Qt::black, QColor(0x40, 0x40, 0x40),
                     Qt::white, QColor(0x20, 0x20, 0x20)));
    }

    void screens()
    {
        QFETCH(QString, script);
        QFETCH(QList<QSize>, windows);
        QFETCH(int, longBody);
        QFETCH(Qt::LayoutDirection, layout);
        QFETCH(QPalette, palette);
        QFETCH(QList<int>, sizes);
        QFETCH(QList<QColor>, inks);
        // Set before the screen is made (cleanup() resets them).
        QGuiApplication::setLayoutDirection(layout);
        QApplication::setPalette(palette);
        for (int part = 0; part < sizes.size(); ++part) {
            const auto &[font, setFont, setColor] = appearance[part];
            QFont sized = font();
            sized.setPixelSize(sizes[part]);
            setFont(sized);
            setColor(inks[part]);
        }

        // An agreement screen, in its navigation controller's window.
        auto *screen = new TVRTermsViewController(document(script, longBody));
        m_window = std::make_unique<TVRNavigationController>(screen);
        m_window->resize(windows.first());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        if (script == u"capitals"_s)
            screen->headerView()->dateLabel()->setText(u"TEXT"_s);
        TVRTableView *table = screen->tableView();
        // The rows as painted, before a click or a check of every row makes a body's text view.
        const QString tag = QString::fromUtf8(QTest::currentDataTag());
        const QImage image = screenshot(m_window.get(), QString(tag).replace(u", "_s, u"-"_s));
        checkPainted(image, table);

        // The date, the first title and the first body are each painted in its ink on the white
        // page, a line of capitals as tall as its font's capitals.
        const QList<std::tuple<QWidget *, QColor, QFont>> parts{
            {screen->headerView()->dateLabel(), inks[0], TVRDesignClass::documentDateFont()},
            {table->cellForRowAtIndexPath({0, 0}), inks[1], TVRDesignClass::sectionTitleFont()},
            {table->cellForRowAtIndexPath({0, 1}), inks[2], TVRDesignClass::sectionBodyFont()}};
        for (const auto &[text, color, font] : parts) {
            QVERIFY(text);
            const Ink ink = inkIn(image, inWindow(text).intersected(inWindow(table->viewport())));
            QVERIFY2(distance(ink.color, color.rgb()) <= 40 && QColor(ink.paper) == Qt::white,
                     qPrintable(u"painted %1 on %2, expected %3"_s.arg(QColor(ink.color).name(),
                                                                       QColor(ink.paper).name(), color.name())));
            const qreal expected = QFontMetricsF(font).capHeight();
            QVERIFY2(script != u"capitals"_s || std::abs(ink.bounds.height() - expected) < 0.2 * expected,
                     qPrintable(u"capitals %1 px, the font's %2 px"_s.arg(ink.bounds.height()).arg(expected)));
        }
        // The bars' texts readable, at 4.5:1 at least: the title, Disagree and Agree.
        QToolBar *bar = screen->toolbar();
        for (QWidget *text :
             {static_cast<QWidget *>(screen->navigationController()->navigationBar()->findChild<QLabel *>()),
              bar->widgetForAction(screen->disagreeBarButtonItem()),
              bar->widgetForAction(screen->agreeBarButtonItem())}) {
            QVERIFY(text && text->isVisible());
            const Ink ink = inkIn(image, inWindow(text));
            const double ratio = contrast(ink.color, ink.paper);
            QVERIFY2(ratio >= 4.5,
                     qPrintable(u"%1: contrast %2"_s.arg(text->property("text").toString()).arg(ratio, 0, 'f', 2)));
        }

        if (longBody) {
            const auto cell = [table] {
                return qobject_cast<TVRSectionBodyTableViewCell *>(table->cellForRowAtIndexPath({0, 1}));
            };
            QVERIFY(cell() && cell()->findChildren<QTextEdit *>().isEmpty());
            const QString body = cell()->section()->body();

            // Once laid out whole, the row is as tall as a text view lays the body out.
            const auto reference = laidOut(body, TVRDesignClass::sectionBodyFont(), table->viewport()->width() - 24);
            QTRY_COMPARE(table->rectForRowAtIndexPath({0, 1}).height(), int(std::ceil(reference->size().height())));

            // The painted lines stay put: painted again at the end they are the same, and back at
            // the top they are the ones first painted there.
            const QImage paintedTop = screenshot(table->viewport(), {});
            // The last line of each paragraph in view is painted where the text view puts it:
            // on its own direction's side, whichever paragraph comes before it.
            int paragraphsInView = 0;
            const QPoint origin = cell()->mapTo(table->viewport(), QPoint(12, 0));
            for (QTextBlock block = reference->begin(); block.isValid(); block = block.next()) {
                const QTextLayout *lines = block.layout();
                const QRect last = lines->lineAt(lines->lineCount() - 1)
                                       .naturalTextRect()
                                       .translated(lines->position() + origin)
                                       .toAlignedRect();
                if (!table->viewport()->rect().contains(last))
                    continue;
                const QRect ink = inkIn(paintedTop, last.adjusted(-4, 0, 4, 0)).bounds;
                const bool rightToLeft = block.text().isRightToLeft();
                QVERIFY2((rightToLeft ? std::abs(ink.right() - last.right()) : std::abs(ink.left() - last.left())) <= 3
                             && ink.width() <= last.width() + 6,
                         qPrintable(u"a last line laid out from x %1 to %2, painted from %3 to %4"_s.arg(last.left())
                                        .arg(last.right())
                                        .arg(ink.left())
                                        .arg(ink.right())));
                ++paragraphsInView;
            }
            QVERIFY(paragraphsInView >= 2);
            QTest::keyClick(table, Qt::Key_End);
            const QImage paintedEnd = screenshot(table->viewport(), u"body-end-%1-%2"_s.arg(script).arg(longBody));
            QCOMPARE(screenshot(table->viewport(), {}), paintedEnd);
            QTest::keyClick(table, Qt::Key_Home);
            QCOMPARE(screenshot(table->viewport(), {}), paintedTop);

            // A click at the start of the body's third line (its right end, right to left) puts
            // the cursor where the text view puts it for that point, on that line; what is typed
            // goes in there, and scrolled a little, the row stays in view with its edit and its
            // focus.
            const QTextLine third = reference->firstBlock().layout()->lineAt(2);
            const QRectF line = third.naturalTextRect();
            const QPoint at(12 + int(body.isRightToLeft() ? line.right() - 1 : line.left() + 1),
                            int(line.center().y()));
            QWidget *clicked = cell()->childAt(at);
            QVERIFY(clicked);
            QTest::mouseClick(clicked, Qt::LeftButton, {}, clicked->mapFrom(cell(), at));
            QTextEdit *textView = cell()->bodyTextView();
            const int position = textView->textCursor().position();
            QVERIFY2(position == third.textStart() || (body.isRightToLeft() && position == third.textStart() + 1),
                     qPrintable(u"cursor at %1, the line starts at %2"_s.arg(position).arg(third.textStart())));
            QTest::keyClicks(textView, u"ok "_s);
            table->verticalScrollBar()->setValue(table->verticalScrollBar()->value() + 10);
            QCoreApplication::processEvents();
            QCOMPARE(QApplication::focusWidget(), textView);
            QCOMPARE(textView->toPlainText().mid(position, 4), u"ok "_s + body.at(position));
            // Undone, the body is again the text its row was measured for.
            textView->undo();
        }

        checkEveryRow(table, tag);
        for (const QSize size : windows.mid(1)) {
            m_window->resize(size);
            QCoreApplication::processEvents();
            QCOMPARE(table->viewport()->width(), size.width());
            checkEveryRow(table, u"resized to %1 wide"_s.arg(size.width()));
        }
    }

    void screensTakeWhatTheyMade()
    {
        // Each screen made, its parts made, and deleted before it was ever shown.
        auto *agreement = new TVRTermsViewController(document(u"Latin"_s));
        for (TVRDocumentViewController *made : std::initializer_list<TVRDocumentViewController *>{
                 new TVRTermsOfServiceViewController, new TVRPrivacyPolicyViewController, agreement}) {
            QList<QPointer<QObject>> parts{made->headerView(), made->tableView()};
            if (made == agreement)
                parts << agreement->toolbar();
            delete made;
            for (const QPointer<QObject> &part : std::as_const(parts))
                QVERIFY2(!part, part ? part->metaObject()->className() : "");
        }
    }

private:
    LoopbackSession m_offline;
    std::unique_ptr<QWidget> m_window;
};

// A desktop-sized screen, so that windows narrower than it are tested too.
TOVRA_OFFSCREEN_TEST_MAIN(tst_Rendering, QSize(1280, 800))

#include "tst_rendering.moc"
