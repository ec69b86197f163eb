// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The screens as a screen reader and a keyboard user meet them: the accessible tree walked
// through Qt's QAccessible interfaces, real key presses, and the focus as it is painted.

#include "AccessibleTree.h"
#include "DocumentJson.h"
#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QAccessible>
#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalSpy>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

const QString appName = u"Acme Notes"_s;

// The rows' texts as a reader should hear them, top to bottom.
QStringList rowTexts(const QJsonObject &document)
{
    QStringList texts;
    for (const QJsonValue &section : document[u"sections"_s].toArray()) {
        if (section[u"title"_s].isString())
            texts << section[u"title"_s].toString();
        texts << section[u"body"_s].toString().replace(u"#####"_s, appName);
    }
    return texts;
}

// The strongest contrast between two pictures of the same widget, pixel against pixel.
double strongestChange(const QImage &before, const QImage &after)
{
    double strongest = 1;
    for (int y = 0; y < qMin(before.height(), after.height()); ++y) {
        for (int x = 0; x < qMin(before.width(), after.width()); ++x)
            strongest = qMax(strongest, contrast(before.pixelColor(x, y), after.pixelColor(x, y)));
    }
    return strongest;
}

// How the keyboard focus is named in the expected Tab orders.
QString focusName()
{
    QWidget *focus = QApplication::focusWidget();
    if (qobject_cast<TVRTableView *>(focus))
        return u"document"_s;
    if (auto *button = qobject_cast<QToolButton *>(focus))
        return button->text();
    if (qobject_cast<QTextEdit *>(focus))
        return u"body"_s;
    return focus ? QString::fromLatin1(focus->metaObject()->className()) : u"nothing"_s;
}

} // namespace

class tst_Accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void screenReaderWalk_data();
    void screenReaderWalk();
    void keyboard_data();
    void keyboard();
    void aPaintedBodyIsEditableText_data();
    void aPaintedBodyIsEditableText();
    void keysScroll_data();
    void keysScroll();
    void focusIsPainted();

private:
    // Shows the screen \a kind names the way a host does; returns the document screen.
    TVRDocumentViewController *show(const QString &kind);
    TVRTableView *table(TVRDocumentViewController *screen) { return screen->tableView(); }
    void pressTab(Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, modifiers);
    }

    TestHttpsServer m_server;
    TestSession m_session;
    HostScreen *m_host = nullptr;
    QJsonObject m_terms = documentJson(u"Terms"_s, 40, u"2017-07-04T09:00:00.000+0000"_s);
    const QJsonObject m_privacy = documentJson(u"Privacy"_s, 8, u"2017-07-04T09:00:00.000+0000"_s);
};

void tst_Accessibility::initTestCase()
{
    QVERIFY(startLoopbackService(u"tst_accessibility"_s, m_server, m_session));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    TVRManager::setAppName(appName);
    TVRDocumentManager::sharedInstance()->setSession(&m_session);
    m_server.setHandler([this](const TestRequest &request) {
        const bool terms = request.path == u"/api/terms-of-service"_s;
        return TestReply::json(200, QJsonDocument(terms ? m_terms : m_privacy).toJson(QJsonDocument::Compact));
    });
}

void tst_Accessibility::cleanup()
{
    delete m_host;
    m_host = nullptr;
    QTRY_COMPARE(m_session.liveReplies(), 0);
}

TVRDocumentViewController *tst_Accessibility::show(const QString &kind)
{
    m_host = new HostScreen;
    m_host->setWindowTitle(u"Host"_s);
    m_host->setGeometry(QGuiApplication::primaryScreen()->geometry());
    m_host->show();
    TVRDocumentViewController *screen = nullptr;
    if (kind == u"terms, pushed"_s) {
        auto *navigation = new TVRNavigationController(new HostScreen);
        m_host->view()->layout()->addWidget(navigation);
        screen = TVRManager::termsOfServiceViewController();
        navigation->pushViewController(screen);
    } else if (kind.startsWith(u"privacy, presented"_s)) {
        screen = TVRManager::privacyPolicyViewController();
        if (kind.endsWith(u"alone"_s))
            m_host->presentViewController(screen);
        else
            m_host->presentViewController(new TVRNavigationController(screen));
    } else {
        auto *agreement = new TVRTermsViewController(std::make_shared<TVRDocument>(m_terms));
        // As a host that wants the reader to reach the end before answering.
        agreement->agreeBarButtonItem()->setEnabled(false);
        agreement->disagreeBarButtonItem()->setEnabled(false);
        m_host->presentViewController(new TVRNavigationController(agreement));
        screen = agreement;
    }
    QWidget *window = screen->window();
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window))
        qWarning("the screen's window did not become active");
    [&] { QTRY_VERIFY(!screen->tableView()->visibleCells().isEmpty()); }();
    return screen;
}

void tst_Accessibility::screenReaderWalk_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QStringList>("enabledButtons");
    QTest::addColumn<QStringList>("disabledButtons");
    QTest::addColumn<QString>("press"); // pressed by the screen reader at the end

    QTest::newRow("terms, pushed") << u"terms, pushed"_s << QString() << QStringList{u"Back"_s} << QStringList()
                                   << QString();
    QTest::newRow("privacy, presented") << u"privacy, presented"_s << u"Privacy Policy"_s << QStringList{u"Close"_s}
                                        << QStringList() << u"Close"_s;
    QTest::newRow("privacy, presented alone")
        << u"privacy, presented alone"_s << u"Privacy Policy"_s << QStringList() << QStringList() << QString();
    QTest::newRow("agreement") << u"agreement"_s << u"Terms of Service"_s << QStringList()
                               << QStringList{u"Disagree"_s, u"Agree"_s} << u"Agree"_s;
}

void tst_Accessibility::screenReaderWalk()
{
    QFETCH(QString, kind);
    QFETCH(QString, dialog);
    QFETCH(QStringList, enabledButtons);
    QFETCH(QStringList, disabledButtons);
    QFETCH(QString, press);

    QPointer<TVRDocumentViewController> screen = show(kind);
    QAccessibleInterface *window = QAccessible::queryAccessibleInterface(screen->window());
    QVERIFY(window);

    // A presented screen is a dialog named by its title.
    if (!dialog.isNull()) {
        QCOMPARE(window->role(), QAccessible::Dialog);
        QCOMPARE(window->text(QAccessible::Name), dialog);
        QVERIFY(window->text(QAccessible::Description).isEmpty());
    } else {
        // Not presented, the window keeps the name its own title gives it.
        QVERIFY(window->role() != QAccessible::Dialog);
        QCOMPARE(window->text(QAccessible::Name), screen->window()->windowTitle());
    }

    // The document is a list: the header with its date as static text, then one item per
    // row on screen, named by the row's text, placeholder filled in.
    QAccessibleInterface *list = find(window, QAccessible::List);
    QVERIFY(list);
    QCOMPARE(list->text(QAccessible::Name), screen->title());
    QVERIFY(list->state().focusable);
    QAccessibleInterface *date = find(list->child(0), QAccessible::StaticText);
    QVERIFY(date);
    QVERIFY2(date->text(QAccessible::Name).contains(u"2017"_s), qPrintable(date->text(QAccessible::Name)));

    const QStringList expected = rowTexts(kind.startsWith(u"privacy"_s) ? m_privacy : m_terms);
    const int rows = list->childCount() - 1;
    QCOMPARE(rows, int(table(screen)->visibleCells().size()));
    QVERIFY(rows >= 3);
    for (int i = 0; i < rows; ++i) {
        QAccessibleInterface *item = list->child(i + 1);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QCOMPARE(item->text(QAccessible::Name), expected.at(i));
        QCOMPARE(item->text(QAccessible::Value), expected.at(i));
        QVERIFY(item->text(QAccessible::Description).isEmpty());
        // A heading is read once, as the item; a body's editable text is the item's child.
        const bool body = expected.at(i).contains(appName);
        QCOMPARE(item->childCount(), body ? 1 : 0);
        if (body) {
            QCOMPARE(item->child(0)->role(), QAccessible::EditableText);
            QCOMPARE(item->child(0)->text(QAccessible::Value), expected.at(i));
        }
        QCOMPARE(list->indexOfChild(item), i + 1);
        QCOMPARE(item->parent()->object(), list->object());
        QVERIFY(list->childAt(item->rect().center().x(), item->rect().center().y()) == item);
    }
    // Asked past either end, any node answers with no child, as a screen reader expects.
    const QList<QAccessibleInterface *> nodes = descendants(window) << window;
    for (QAccessibleInterface *node : nodes) {
        QVERIFY(!node->child(-1));
        QVERIFY(!node->child(node->childCount()));
    }
    // With no header, the list is its rows alone.
    table(screen)->setTableHeaderView(nullptr);
    QCOMPARE(list->childCount(), int(table(screen)->visibleCells().size()));

    // Buttons are buttons with their names, and a disabled one says so. (That it then offers
    // no press action is Qt's own doing.)
    for (const QStringList &names : {enabledButtons, disabledButtons}) {
        for (const QString &name : names) {
            QAccessibleInterface *button = find(window, QAccessible::Button, name);
            QVERIFY2(button && button->actionInterface(), qPrintable(name));
            QCOMPARE(button->state().disabled, names == disabledButtons);
        }
    }
    if (press.isEmpty())
        return;

    // Pressed by the screen reader: the agreement's answers once the end was reached with
    // the keyboard (a page down is not enough), Close at once, which dismisses the screen.
    QAccessibleInterface *button = find(window, QAccessible::Button, press);
    auto *agreement = qobject_cast<TVRTermsViewController *>(screen);
    if (agreement) {
        QTest::keyClick(table(screen), Qt::Key_PageDown);
        QVERIFY(button->state().disabled);
        QTest::keyClick(table(screen), Qt::Key_End);
        QTRY_VERIFY(!button->state().disabled);
    }
    QSignalSpy pressed(agreement
                           ? agreement->agreeBarButtonItem()
                           : static_cast<TVRReadOnlyDocumentViewController *>(screen.data())->closeBarButtonItem(),
                       &QAction::triggered);
    QCOMPARE(screen->presentingViewController(), m_host);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(pressed.size(), 1);
    if (!agreement) {
        QTRY_VERIFY(!screen);
        QVERIFY(!m_host->presentedViewController());
    }
}

void tst_Accessibility::aPaintedBodyIsEditableText_data()
{
    QTest::addColumn<int>("sentences");
    QTest::newRow("short") << 3;
    QTest::newRow("long") << 1500;
}

void tst_Accessibility::aPaintedBodyIsEditableText()
{
    // A body is painted until it is edited, and a screen reader reads it and moves into it
    // as into the text view it stands for.
    QFETCH(int, sentences);
    const QString body = u"Every word of this body counts. "_s.repeated(sentences);
    const auto restore = qScopeGuard([this, kept = m_terms] { m_terms = kept; });
    m_terms = QJsonObject{{u"sections"_s, QJsonArray{QJsonObject{{u"body"_s, body}}}}};
    TVRDocumentViewController *screen = show(u"terms, pushed"_s);
    // The screen shows the document it holds, then the one the service sends.
    const auto firstItem = [&] {
        const QList<TVRTableViewCell *> cells = table(screen)->visibleCells();
        return cells.size() == 1 ? QAccessible::queryAccessibleInterface(cells.first()) : nullptr;
    };
    QTRY_VERIFY(firstItem() && firstItem()->text(QAccessible::Name) == body);
    QAccessibleInterface *item = firstItem();
    QCOMPARE(item->childCount(), 1);
    QAccessibleInterface *text = item->child(0);
    QCOMPARE(text->role(), QAccessible::EditableText);
    QCOMPARE(text->text(QAccessible::Value), body);
    QVERIFY(text->state().editable);

    QVERIFY(text->actionInterface());
    text->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QCOMPARE(focusName(), u"body"_s);
    auto *textView = qobject_cast<QTextEdit *>(QApplication::focusWidget());
    QTest::keyClick(textView, Qt::Key_X);
    QCOMPARE(textView->toPlainText(), u"x"_s + body);
    // Its window hidden and shown again, the screen leaves the focus in the body.
    screen->window()->hide();
    screen->window()->show();
    QVERIFY(QTest::qWaitForWindowActive(screen->window()));
    QCoreApplication::processEvents();
    QCOMPARE(screen->window()->focusWidget(), textView);

    // Tab leaves the body, and types no tab into it.
    pressTab();
    QVERIFY2(focusName() != u"body"_s, "Tab stayed in the body");
    QCOMPARE(textView->toPlainText(), u"x"_s + body);
}

void tst_Accessibility::keysScroll_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("to");

    QTest::newRow("Down") << int(Qt::Key_Down) << int(Qt::NoModifier) << u"a line down"_s;
    QTest::newRow("Up") << int(Qt::Key_Up) << int(Qt::NoModifier) << u"a line up"_s;
    QTest::newRow("Page Down") << int(Qt::Key_PageDown) << int(Qt::NoModifier) << u"a page down"_s;
    QTest::newRow("Page Up") << int(Qt::Key_PageUp) << int(Qt::NoModifier) << u"a page up"_s;
    QTest::newRow("Space") << int(Qt::Key_Space) << int(Qt::NoModifier) << u"a page down"_s;
    QTest::newRow("Shift+Space") << int(Qt::Key_Space) << int(Qt::ShiftModifier) << u"a page up"_s;
    QTest::newRow("End") << int(Qt::Key_End) << int(Qt::NoModifier) << u"the end"_s;
    QTest::newRow("Home") << int(Qt::Key_Home) << int(Qt::NoModifier) << u"the top"_s;
}

void tst_Accessibility::keysScroll()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, to);

    TVRDocumentViewController *screen = show(u"terms, pushed"_s);
    QScrollBar *bar = table(screen)->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 2 * bar->pageStep());
    bar->setValue(bar->maximum() / 2);
    const int start = bar->value();
    // The keys reach the table through the application, as a keyboard's would.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    const QHash<QString, int> exact{{u"a page down"_s, start + bar->pageStep()},
                                    {u"a page up"_s, start - bar->pageStep()},
                                    {u"the end"_s, bar->maximum()},
                                    {u"the top"_s, 0}};
    const int moved = bar->value() - start;
    if (exact.contains(to))
        QCOMPARE(bar->value(), exact.value(to));
    else
        QVERIFY2(moved != 0 && qAbs(moved) < bar->pageStep() && (moved > 0) == to.endsWith(u"down"_s),
                 qPrintable(u"from %1 to %2"_s.arg(start).arg(bar->value())));
}

void tst_Accessibility::keyboard_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("order"); // the Tab order
    QTest::addColumn<bool>("escapeCloses");

    QTest::newRow("terms, pushed") << u"terms, pushed"_s << QStringList{u"document"_s, u"Back"_s} << false;
    QTest::newRow("privacy, presented") << u"privacy, presented"_s << QStringList{u"document"_s, u"Close"_s} << true;
    QTest::newRow("agreement") << u"agreement"_s << QStringList{u"document"_s, u"Disagree"_s, u"Agree"_s} << false;
}

void tst_Accessibility::keyboard()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, order);
    QFETCH(bool, escapeCloses);

    QPointer<TVRDocumentViewController> screen = show(kind);
    // A shown screen takes focus on its document.
    QCOMPARE(focusName(), u"document"_s);
    if (kind == u"agreement"_s)
        QTest::keyClick(table(screen), Qt::Key_End); // the answers take focus once enabled

    // Tab goes round the order and back again.
    QStringList forward{focusName()};
    for (int i = 0; i < order.size(); ++i) {
        pressTab();
        forward << focusName();
    }
    QCOMPARE(forward, order + QStringList{order.first()});
    QStringList backward{focusName()};
    for (int i = 0; i < order.size(); ++i) {
        pressTab(Qt::ShiftModifier);
        backward << focusName();
    }
    QStringList reversed(order.crbegin(), order.crend());
    reversed.prepend(order.first());
    QCOMPARE(backward, reversed);

    // Escape closes a presented screen; pushed in the host's window, the screen leaves Escape
    // to the host's own shortcut.
    auto *hostEscape = new QShortcut(QKeySequence(Qt::Key_Escape), m_host);
    QSignalSpy hostEscaped(hostEscape, &QShortcut::activated);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    if (escapeCloses) {
        QTRY_VERIFY(!screen);
        QVERIFY(!m_host->presentedViewController());
    } else {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(screen && screen->isVisible());
    }
    QCOMPARE(hostEscaped.size(), kind == u"terms, pushed"_s ? 1 : 0);
}

void tst_Accessibility::focusIsPainted()
{
    TVRDocumentViewController *screen = show(u"privacy, presented"_s);
    QWidget *window = screen->window();
    TVRTableView *document = table(screen);
    QWidget *close = nullptr;
    for (QToolButton *button : window->findChildren<QToolButton *>()) {
        if (button->text() == u"Close"_s)
            close = button;
    }
    QVERIFY(close);

    // Focus that came from the keyboard shows, with a contrast of 3:1 at least against what
    // was there without it: on a button its own pixels change, on the document a ring
    // appears at its edge.
    pressTab();
    QCOMPARE(QApplication::focusWidget(), close);
    QCoreApplication::processEvents();
    const QImage closeFocused = close->grab().toImage();
    pressTab();
    QCOMPARE(QApplication::focusWidget(), document);
    QCoreApplication::processEvents();
    const QImage withRing = window->grab().toImage();
    const QImage closeUnfocused = close->grab().toImage();
    QVERIFY(saveScreenshot(window, u"focus-on-document"_s));
    const double buttonChange = strongestChange(closeUnfocused, closeFocused);
    QVERIFY2(buttonChange >= 3, qPrintable(u"focus on Close changes it by %1:1"_s.arg(buttonChange)));

    pressTab();
    QCoreApplication::processEvents();
    const QImage withoutRing = window->grab().toImage();
    const QRect documentRect(document->mapTo(window, QPoint(0, 0)), document->size());
    const qreal ratio = withRing.devicePixelRatio();
    for (const QPoint &edge : {QPoint(documentRect.left() + 1, documentRect.center().y()),
                               QPoint(documentRect.center().x(), documentRect.top() + 1),
                               QPoint(documentRect.center().x(), documentRect.bottom() - 1)}) {
        const QColor ring = withRing.pixelColor(edge * ratio);
        const QColor page = withoutRing.pixelColor(edge * ratio);
        QVERIFY2(
            contrast(ring, page) >= 3,
            qPrintable(
                u"%1 with focus, %2 without, at %3,%4"_s.arg(ring.name(), page.name()).arg(edge.x()).arg(edge.y())));
    }
}

TOVRA_OFFSCREEN_TEST_MAIN(tst_Accessibility, QSize(390, 844))
#include "tst_accessibility.moc"
