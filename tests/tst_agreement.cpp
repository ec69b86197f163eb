// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The agreement check: the two empty services, the agreement screen, activateApp and the
// screen factories. Rendered offscreen at 390x844; screenshots go to TOVRA_SCREENSHOT_DIR.

#include "DocumentJson.h"
#include "OffscreenTest.h"
#include "RequestOutcome.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QDialog>
#include <QMainWindow>
#include <QToolBar>
#include <QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// A delegate of both services that counts what it is told.
class Delegate : public QObject, public TVRUserManagerDelegate, public TVRAgreementManagerDelegate
{
public:
    int calls = 0;
    void userManagerDidRespondWithCompliance(TVRUserManager *, bool, std::shared_ptr<TVRDocument>) override { ++calls; }
    void userManagerDidFailWithError(TVRUserManager *, const TVRError &) override { ++calls; }
};

// The kit's log lines, in order, as they are written; QtTest still sees every line.
QStringList kitLines;
QtMessageHandler testHandler = nullptr;

void recordKitLines(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (qstrcmp(context.category, "tovra") == 0)
        kitLines << message;
    testHandler(type, context, message);
}

int visibleWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return int(
        std::count_if(windows.cbegin(), windows.cend(), [](const QWidget *window) { return window->isVisible(); }));
}

} // namespace

class tst_Agreement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(startLoopbackService(u"tst_agreement"_s, m_server, m_session));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        TVRManager::setAppName(u"Acme"_s);
        m_server.reply(TestReply::json(200, "{}"));
        TVRUserManager::sharedInstance()->setSession(&m_session);
        TVRAgreementManager::sharedInstance()->setSession(&m_session);
        TVRDocumentManager::sharedInstance()->setSession(&m_session);
        testHandler = qInstallMessageHandler(recordKitLines);
    }

    void cleanup()
    {
        // Presented windows belong to the windows they were presented over.
        const QWidgetList all = QApplication::topLevelWidgets();
        for (const QPointer<QWidget> &window : QList<QPointer<QWidget>>(all.cbegin(), all.cend())) {
            if (window && !window->parentWidget())
                delete window;
        }
        QTRY_COMPARE(m_session.liveReplies(), 0);
        kitLines.clear();
    }

    void nothingIsSent_data()
    {
        QTest::addColumn<QVariant>("identifier");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("no user identifier") << QVariant() << QStringList{u"ACTIVATE"_s};
        QTest::newRow("a user identifier") << QVariant(u"user-42"_s) << QStringList{u"ACTIVATE"_s, u"FETCH"_s};
    }

    void nothingIsSent()
    {
        QFETCH(QVariant, identifier);
        QFETCH(QStringList, lines);
        const int before = m_server.requests().size();

        // activateApp logs, and with a user the manager hears the (empty) status service's
        // answer; a failed status check is logged, and nothing more.
        TVRManager::setUserIdentifier(identifier);
        TVRUserManager::sharedInstance()->setDelegate(nullptr);
        lines << u"ERROR: Error Domain=QNetworkReply Code=1 \"Connection refused\""_s;
        for (const QString &line : std::as_const(lines))
            QTest::ignoreMessage(QtInfoMsg, qPrintable(line));
        TVRManager::activateApp();
        TVRManager::sharedInstance()->userManagerDidFailWithError(
            TVRUserManager::sharedInstance(), TVRError(TVRError::networkDomain(), 1, u"Connection refused"_s));
        QCOMPARE(kitLines, lines);
        QCOMPARE(TVRUserManager::sharedInstance()->delegate(),
                 identifier.isValid() ? TVRManager::sharedInstance() : nullptr);
        TVRManager::logout();

        // The agreement service sends nothing; both services hold their delegates weakly.
        auto *delegate = new Delegate;
        TVRUserManager::sharedInstance()->setDelegate(delegate);
        TVRAgreementManager::sharedInstance()->setDelegate(delegate);
        TVRAgreementManager::sharedInstance()->agreeToDocument(std::make_shared<TVRDocument>(QJsonObject()));
        TVRAgreementManager::sharedInstance()->agreeToDocument(nullptr);

        // Loading an agreement screen's view makes the screen no delegate and starts no fetch;
        // its answers send nothing and tell the user manager's delegate nothing. (That the
        // screen hands its document over and stays up after the answers, complianceAnswer checks.)
        TVRTermsViewController screen(std::make_shared<TVRDocument>(documentJson(u"given"_s, 2)));
        TVRDocumentManager::sharedInstance()->setDelegate(nullptr);
        screen.view();
        QVERIFY(!TVRDocumentManager::sharedInstance()->delegate());
        screen.agreeBarButtonItem()->trigger();
        screen.disagreeBarButtonItem()->trigger();
        // One real request, sent and awaited: whatever was sent before it has arrived by then.
        TVRNetworkManager probe;
        probe.setSession(&m_session);
        const auto flush = sendRequest(probe, u"/flush"_s, QString(), TVRHTTPMethodGET);
        QTRY_COMPARE(flush->calls(), 1);
        QCOMPARE(m_server.requests().size(), before + 1);
        QCOMPARE(visibleWindows(), 0);
        QCOMPARE(delegate->calls, 0);
        delete delegate;
        QVERIFY(!TVRUserManager::sharedInstance()->delegate());
        QVERIFY(!TVRAgreementManager::sharedInstance()->delegate());
        TVRTermsViewController cleared(nullptr);
        QVERIFY(!TVRDocumentManager::sharedInstance()->termsOfService());
    }

    void complianceAnswer_data()
    {
        QTest::addColumn<QString>("host"); // the window in front: none, a main window, a kit screen, a dialog
        QTest::addColumn<bool>("compliant");
        QTest::addColumn<int>("answers");
        QTest::addColumn<bool>("presenterDeclines"); // a presenter is set that declines, as QML's does for widgets

        QTest::newRow("compliant") << u"main window"_s << true << 1 << false;
        QTest::newRow("not compliant") << u"main window"_s << false << 1 << false;
        QTest::newRow("not compliant, over a kit screen") << u"kit screen"_s << false << 1 << false;
        QTest::newRow("not compliant, a dialog in front") << u"dialog"_s << false << 1 << false;
        QTest::newRow("not compliant, no window") << u"none"_s << false << 1 << false;
        QTest::newRow("not compliant twice") << u"main window"_s << false << 2 << false;
        QTest::newRow("not compliant, a presenter declines") << u"main window"_s << false << 1 << true;
    }

    void complianceAnswer()
    {
        QFETCH(QString, host);
        QFETCH(bool, compliant);
        QFETCH(int, answers);
        QFETCH(bool, presenterDeclines);
        const bool presented = !compliant && host != u"none"_s; // with a window to go over

        // The host's window, shown filling the screen and active.
        QWidget *window = nullptr;
        QPointer<QDialog> dialog;
        if (host != u"none"_s) {
            window = host == u"kit screen"_s ? static_cast<QWidget *>(TVRManager::privacyPolicyViewController())
                                             : new QMainWindow;
            window->setGeometry(QGuiApplication::primaryScreen()->geometry());
            window->show();
            QApplication::setActiveWindow(window);
            QVERIFY(QTest::qWaitForWindowActive(window));
        }
        if (host == u"dialog"_s) {
            dialog = new QDialog(window);
            dialog->show();
            QApplication::setActiveWindow(dialog);
            QVERIFY(QTest::qWaitForWindowActive(dialog));
        }
        int asked = 0;
        if (presenterDeclines) {
            TVRManager::setAgreementPresenter([&asked](const std::shared_ptr<TVRDocument> &) {
                ++asked;
                return false;
            });
        }
        const auto before = TVRDocumentManager::sharedInstance()->termsOfService();
        QSignalSpy changed(TVRDocumentManager::sharedInstance(), &TVRDocumentManager::documentChanged);
        QStringList lines;
        std::shared_ptr<TVRDocument> given;
        for (int i = 0; i < answers; ++i) {
            given = std::make_shared<TVRDocument>(documentJson(u"doc-%1"_s.arg(i), 5 + i));
            lines << u"DOCUMENT: <TVRDocument: 0x%1; _id = %2>"_s.arg(quintptr(given.get()), 0, 16)
                         .arg(given->identifier());
            QTest::ignoreMessage(QtInfoMsg, qPrintable(lines.constLast()));
            TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(TVRUserManager::sharedInstance(),
                                                                              compliant, given);
        }
        TVRManager::setAgreementPresenter({});

        QCOMPARE(kitLines, lines);
        QCOMPARE(asked, presenterDeclines ? 1 : 0);
        // Shown or not, the last answer's document is the one the terms screens now show;
        // listeners hear of each once, not once per hand it passes through.
        QCOMPARE(TVRDocumentManager::sharedInstance()->termsOfService(), compliant ? before : given);
        QCOMPARE(changed.size(), compliant ? 0 : answers);
        // One agreement screen at most, over the main window and not the dialog in front of it.
        QCOMPARE(visibleWindows(), (window ? 1 : 0) + (dialog ? 1 : 0) + (presented ? 1 : 0));
        QPointer<TVRNavigationController> navigation =
            window ? window->findChild<TVRNavigationController *>() : nullptr;
        QCOMPARE(bool(navigation), presented);
        if (!presented)
            return;
        QCOMPARE(window->findChildren<TVRTermsViewController *>().size(), 1);

        // A navigation controller with the agreement screen at its root, over the window,
        // window-modal, at the window's size. (That it is a window of its own, shown at once,
        // the count of visible windows above already requires.)
        QCOMPARE(navigation->windowModality(), Qt::WindowModal);
        QCOMPARE(navigation->geometry(), window->geometry());
        auto *screen = qobject_cast<TVRTermsViewController *>(navigation->topViewController());
        QVERIFY(screen && screen->presentingViewController());
        QTRY_COMPARE(screen->tableView()->numberOfSections(), int(given->sections().size())); // the last answer's
        // Its toolbar: 52 px on the bottom edge, full width, the table down to it; neither answer
        // bold, and between the two the bar painted in its own colour, not the page's under it.
        // (Which answer leads and which trails, in every language, tst_languages reads.)
        QToolBar *bar = screen->toolbar();
        const QSize size = screen->view()->size();
        QTRY_COMPARE(bar->geometry(), QRect(0, size.height() - 52, size.width(), 52));
        QCOMPARE(screen->tableView()->geometry(), QRect(0, 0, size.width(), size.height() - 52));
        for (QAction *answer : {screen->disagreeBarButtonItem(), screen->agreeBarButtonItem()})
            QVERIFY(!bar->widgetForAction(answer)->font().bold());
        const QImage shot = screen->grab().toImage();
        QCOMPARE(shot.pixelColor(bar->geometry().center() * shot.devicePixelRatio()),
                 bar->palette().color(QPalette::Window));

        // The passing dialog goes and the answers are given: the screen stays.
        delete dialog;
        screen->agreeBarButtonItem()->trigger();
        screen->disagreeBarButtonItem()->trigger();
        QVERIFY(navigation && navigation->isVisible());
    }

    void screensGoOverTheWindowThatLasts_data()
    {
        QTest::addColumn<int>("type"); // of the window in front of the main window
        QTest::addColumn<bool>("parented");
        QTest::addColumn<bool>("passes"); // the main window lasts, not the one in front
        QTest::addColumn<bool>("inFront"); // with no window active, it is the one in front

        QTest::newRow("dialog") << int(Qt::Dialog) << true << true << true;
        QTest::newRow("dialog of its own") << int(Qt::Dialog) << false << true << true;
        QTest::newRow("sheet") << int(Qt::Sheet) << true << true << true;
        QTest::newRow("tool window") << int(Qt::Tool) << true << true << true;
        QTest::newRow("popup") << int(Qt::Popup) << true << true << false;
        QTest::newRow("window of its own") << int(Qt::Window) << true << false << true;
        QTest::newRow("splash screen") << int(Qt::SplashScreen) << false << false << false;
        QTest::newRow("tool tip") << int(Qt::ToolTip) << true << false << false;
    }

    void screensGoOverTheWindowThatLasts()
    {
        QFETCH(int, type);
        QFETCH(bool, parented);
        QFETCH(bool, passes);
        QFETCH(bool, inFront);

        QMainWindow main;
        main.show();
        QWidget front(parented ? &main : nullptr, Qt::WindowType(type));
        auto *inside = new QWidget(&front);
        front.show();
        QVERIFY(QTest::qWaitForWindowExposed(&front));
        QWidget *const lasting = passes ? &main : &front;
        QCOMPARE(TVRViewController::mainWindowOf(&front), lasting);
        QCOMPARE(TVRViewController::mainWindowOf(inside), lasting);
        // Without an active window, the first shown one that is no popup, tip or splash screen.
        QApplication::setActiveWindow(nullptr);
        QWidget *key = TVRViewController::keyWindow();
        QVERIFY(key == &main || (inFront && key == &front));
        front.hide();
        main.hide();
        QCOMPARE(TVRViewController::keyWindow(), nullptr);
    }

private:
    TestHttpsServer m_server;
    TestSession m_session;
};

TOVRA_OFFSCREEN_TEST_MAIN(tst_Agreement, QSize(390, 844))

#include "tst_agreement.moc"
