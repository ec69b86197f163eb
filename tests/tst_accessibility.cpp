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

#include <QScrollBar>
#include <QShortcut>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

#include <climits>

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
    void initTestCase()
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

    void cleanup()
    {
        delete m_host;
        m_host = nullptr;
        QTRY_COMPARE(m_session.liveReplies(), 0);
    }

    void screens_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("dialog"); // the window's name when presented
        QTest::addColumn<QStringList>("buttons"); // in Tab order after the document
        QTest::addColumn<QString>("leave"); // Escape, or the button the screen reader presses at the end

        const auto row = [](const QString &kind) -> QTestData & { return QTest::newRow(qPrintable(kind)) << kind; };
        row(u"terms, pushed"_s) << QString() << QStringList{u"Back"_s} << QString();
        row(u"privacy, presented"_s) << u"Privacy Policy"_s << QStringList{u"Close"_s} << u"Close"_s;
        row(u"privacy, presented alone"_s) << u"Privacy Policy"_s << QStringList() << u"Escape"_s;
        row(u"agreement"_s) << u"Terms of Service"_s << QStringList{u"Disagree"_s, u"Agree"_s} << u"Agree"_s;
    }

    void screens()
    {
        QFETCH(QString, kind);
        QFETCH(QString, dialog);
        QFETCH(QStringList, buttons);
        QFETCH(QString, leave);

        QPointer<TVRDocumentViewController> screen = show(kind);
        QWidget *shown = screen->window();
        // A presented screen is a dialog named by its title; any other keeps its window's title.
        QAccessibleInterface *window = QAccessible::queryAccessibleInterface(shown);
        QCOMPARE(window->role() == QAccessible::Dialog, !dialog.isNull());
        QCOMPARE(window->text(QAccessible::Name), dialog.isNull() ? u"Host"_s : dialog);
        QVERIFY(window->text(QAccessible::Description).isEmpty());

        // The document is a list: the header with its date as static text, then one item per
        // row on screen, named by the row's text, placeholder filled in.
        QAccessibleInterface *list = find(window, QAccessible::List);
        QVERIFY(list && list->state().focusable);
        QCOMPARE(list->text(QAccessible::Name), screen->title());
        QAccessibleInterface *date = find(list->child(0), QAccessible::StaticText);
        QVERIFY(date && date->text(QAccessible::Name).contains(u"2017"_s));

        const QStringList expected = rowTexts(kind.startsWith(u"privacy"_s) ? m_privacy : m_terms);
        const int rows = list->childCount() - 1;
        QCOMPARE(rows, int(screen->tableView()->visibleCells().size()));
        for (int i = 0; i < rows; ++i) {
            QAccessibleInterface *item = list->child(i + 1);
            QCOMPARE(item->role(), QAccessible::ListItem);
            QCOMPARE(item->text(QAccessible::Name), expected.at(i));
            QCOMPARE(item->text(QAccessible::Value), expected.at(i));
            QVERIFY(item->text(QAccessible::Description).isEmpty());
            // A heading is read once, as the item; a body's editable text is the item's child.
            QCOMPARE(item->childCount(), expected.at(i).contains(appName) ? 1 : 0);
            QCOMPARE(list->indexOfChild(item), i + 1);
            QCOMPARE(item->parent()->object(), list->object());
            QVERIFY(list->childAt(item->rect().center().x(), item->rect().center().y()) == item);
        }
        // Asked past either end, any node answers with no child, as a screen reader expects.
        const QList<QAccessibleInterface *> nodes = descendants(window) << window;
        for (QAccessibleInterface *node : nodes)
            QVERIFY(!node->child(-1) && !node->child(node->childCount()));
        // With no header, the list is its rows alone.
        screen->tableView()->setTableHeaderView(nullptr);
        QCOMPARE(list->childCount(), int(screen->tableView()->visibleCells().size()));

        // Buttons are buttons with their names; the agreement's answers say they are disabled
        // until the end was reached with the keyboard (a page down is not enough).
        for (const QString &name : buttons) {
            QAccessibleInterface *button = find(window, QAccessible::Button, name);
            QVERIFY2(button && button->actionInterface(), qPrintable(name));
            QCOMPARE(button->state().disabled, kind == u"agreement"_s);
        }
        auto *agreement = qobject_cast<TVRTermsViewController *>(screen);
        if (agreement) {
            QAccessibleInterface *agree = find(window, QAccessible::Button, u"Agree"_s);
            QTest::keyClick(screen->tableView(), Qt::Key_PageDown);
            QVERIFY(agree->state().disabled);
            QTest::keyClick(screen->tableView(), Qt::Key_End);
            QTRY_VERIFY(!agree->state().disabled);
        }

        // Tab goes from the document, where a shown screen puts the focus, round the buttons and
        // back to it, Shift+Tab the other way.
        QHash<QString, QImage> painted; // the window as it is painted with the focus on each stop
        const auto round = [&](Qt::KeyboardModifiers modifiers) {
            QStringList visited{focusName()};
            for (int i = 0; i <= buttons.size(); ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, modifiers);
                QCoreApplication::processEvents();
                visited << focusName();
                painted.insert(visited.last(), shown->grab().toImage());
            }
            return visited;
        };
        QStringList order = QStringList{u"document"_s} + buttons + QStringList{u"document"_s};
        QCOMPARE(round(Qt::NoModifier), order);
        std::reverse(order.begin(), order.end());
        QCOMPARE(round(Qt::ShiftModifier), order);
        if (kind == u"privacy, presented"_s)
            QVERIFY(saveScreenshot(shown, u"focus-on-document"_s));

        // Focus that came from the keyboard shows, with a contrast of 3:1 at least against what
        // was there without it: on a button its own pixels change, on the document a ring
        // appears at its edge.
        const QImage withRing = painted.value(u"document"_s);
        const qreal ratio = withRing.devicePixelRatio();
        const QRect document(screen->tableView()->mapTo(shown, QPoint(0, 0)), screen->tableView()->size());
        for (const QString &name : buttons) {
            const QRect area =
                find(window, QAccessible::Button, name)->rect().translated(-shown->mapToGlobal(QPoint()));
            const QRect pixels(area.topLeft() * ratio, area.size() * ratio);
            const double change = strongestChange(painted.value(name).copy(pixels), withRing.copy(pixels));
            QVERIFY2(change >= 3, qPrintable(u"focus on %1 changes it by %2:1"_s.arg(name).arg(change)));
            for (const QPoint &edge :
                 {QPoint(document.left() + 1, document.center().y()), QPoint(document.center().x(), document.top() + 1),
                  QPoint(document.center().x(), document.bottom() - 1)}) {
                const QColor ring = withRing.pixelColor(edge * ratio);
                const QColor plain = painted.value(name).pixelColor(edge * ratio);
                QVERIFY2(contrast(ring, plain) >= 3,
                         qPrintable(u"%1 with focus, %2 on %3"_s.arg(ring.name(), plain.name(), name)));
            }
        }

        // The keys scroll every screen's document, the focus back on it.
        QScrollBar *bar = screen->tableView()->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 2 * bar->pageStep());
        const int start = bar->maximum() / 2;
        const int page = bar->pageStep();
        // Each key from the middle of the document, and the range the bar must then be in: a
        // line is less than a page in the key's direction. (Up, Page Up and Page Down take the
        // scroll area's own path that Down takes.)
        const QList<std::tuple<QKeyCombination, int, int>> moves{
            {Qt::Key_Down, start + 1, start + page - 1},
            {Qt::Key_Space, start + page, start + page},
            {Qt::SHIFT | Qt::Key_Space, start - page, start - page},
            {Qt::Key_End, INT_MAX, INT_MAX},
            {Qt::Key_Home, 0, 0}};
        for (const auto &[key, lowest, highest] : moves) {
            bar->setValue(start);
            // The keys reach the table through the application, as a keyboard's would.
            QTest::keyClick(QApplication::focusWidget(), key.key(), key.keyboardModifiers());
            // The end is wherever the bar's maximum is once the key has moved it there.
            QVERIFY2(bar->value() >= qMin(lowest, bar->maximum()) && bar->value() <= highest,
                     qPrintable(u"%1 from %2 to %3"_s.arg(QKeySequence(key).toString()).arg(start).arg(bar->value())));
        }

        // A body is painted until it is edited; a screen reader reads it and moves into it as
        // into the text view it stands for.
        QAccessibleInterface *text = find(list, QAccessible::EditableText);
        QVERIFY(text && text->actionInterface() && text->state().editable);
        const QString body = expected.at(1); // the first section's, under its title
        QCOMPARE(text->text(QAccessible::Value), body);
        text->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(focusName(), u"body"_s);
        auto *textView = qobject_cast<QTextEdit *>(QApplication::focusWidget());
        QTest::keyClick(textView, Qt::Key_X);
        QCOMPARE(textView->toPlainText(), u"x"_s + body);
        // Its window hidden, shown and active again, the screen leaves the focus in the body.
        shown->hide();
        shown->show();
        QVERIFY(QTest::qWaitForWindowExposed(shown));
        QApplication::setActiveWindow(shown);
        QTRY_COMPARE(QApplication::activeWindow(), shown);
        QCoreApplication::processEvents(); // what the screen does once shown has run
        QCOMPARE(focusName(), u"body"_s);
        // Tab leaves the body, and types no tab into it.
        QTest::keyClick(textView, Qt::Key_Tab);
        QVERIFY2(focusName() != u"body"_s, "Tab stayed in the body");
        QCOMPARE(textView->toPlainText(), u"x"_s + body);

        // Escape closes a presented screen; pushed in the host's window, the screen leaves Escape
        // to the host's own shortcut. The screen reader presses Close or Agree.
        QSignalSpy hostEscaped(new QShortcut(QKeySequence(Qt::Key_Escape), m_host), &QShortcut::activated);
        if (leave != u"Close"_s)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        if (leave != u"Escape"_s) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(screen && screen->isVisible());
        }
        QCOMPARE(hostEscaped.size(), kind == u"terms, pushed"_s ? 1 : 0);
        if (leave == u"Close"_s || leave == u"Agree"_s) {
            auto *readOnly = qobject_cast<TVRReadOnlyDocumentViewController *>(screen);
            QSignalSpy pressed(agreement ? agreement->agreeBarButtonItem() : readOnly->closeBarButtonItem(),
                               &QAction::triggered);
            QCOMPARE(screen->presentingViewController(), m_host);
            QAccessibleActionInterface *press = find(window, QAccessible::Button, leave)->actionInterface();
            press->doAction(QAccessibleActionInterface::pressAction());
            QCOMPARE(pressed.size(), 1);
        }
        if (leave == u"Close"_s || leave == u"Escape"_s) {
            QTRY_VERIFY(!screen);
            QVERIFY(!m_host->presentedViewController());
        }
    }

private:
    // Shows the screen \a kind names the way a host does; returns the document screen.
    TVRDocumentViewController *show(const QString &kind)
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
            m_host->presentViewController(kind.endsWith(u"alone"_s) ? static_cast<TVRViewController *>(screen)
                                                                    : new TVRNavigationController(screen));
        } else {
            auto *agreement = new TVRTermsViewController(std::make_shared<TVRDocument>(m_terms));
            // As a host that wants the reader to reach the end before answering.
            agreement->agreeBarButtonItem()->setEnabled(false);
            agreement->disagreeBarButtonItem()->setEnabled(false);
            m_host->presentViewController(new TVRNavigationController(agreement));
            screen = agreement;
        }
        screen->window()->activateWindow();
        [&] {
            QVERIFY(QTest::qWaitForWindowActive(screen->window()));
            QTRY_VERIFY(!screen->tableView()->visibleCells().isEmpty());
            // The screen's own fetch has landed and the reload it asked for has run, before a
            // reader moves in it.
            QTRY_COMPARE(m_session.liveReplies(), 0);
            QCoreApplication::processEvents();
        }();
        return screen;
    }

    TestHttpsServer m_server;
    TestSession m_session;
    HostScreen *m_host = nullptr;
    const QJsonObject m_terms = documentJson(u"Terms"_s, 40, u"2017-07-04T09:00:00.000+0000"_s);
    const QJsonObject m_privacy = documentJson(u"Privacy"_s, 20, u"2017-07-04T09:00:00.000+0000"_s);
};

TOVRA_OFFSCREEN_TEST_MAIN(tst_Accessibility, QSize(390, 844))
#include "tst_accessibility.moc"
