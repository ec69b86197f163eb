// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The document screens, rendered offscreen at the size that TOVRA_TEST_SCREEN names
// (width x height, 390x844 unless told otherwise). Screenshots go to TOVRA_SCREENSHOT_DIR.

#include "DocumentJson.h"
#include "OffscreenTest.h"
#include "ScreenHelpers.h"
#include "Screenshot.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QLabel>
#include <QScrollBar>
#include <QTabBar>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

QSize screenSize()
{
    const QList<QByteArray> parts = qgetenv("TOVRA_TEST_SCREEN").split('x');
    if (parts.size() == 2)
        return QSize(parts[0].toInt(), parts[1].toInt());
    return QSize(390, 844);
}

class TableModel : public TVRTableViewDataSource, public TVRTableViewDelegate
{
public:
    int rows = 100;
    int made = 0;
    QList<TVRIndexPath> displayed; // in the order the table announced them
    std::shared_ptr<TVRSection> section = std::make_shared<TVRSection>(QJsonObject{{u"body"_s, u"Body"_s}});

    // Shows \a table at the screen's size, with this model as its data source and delegate.
    void show(TVRTableView &table)
    {
        table.setDataSource(this);
        table.setDelegate(this);
        table.resize(screenSize());
        table.show();
    }

    int tableViewNumberOfRowsInSection(TVRTableView *, int) override { return rows; }
    TVRTableViewCell *tableViewCellForRowAtIndexPath(TVRTableView *table, TVRIndexPath) override
    {
        auto *cell = static_cast<TVRSectionBodyTableViewCell *>(
            table->dequeueReusableCellWithIdentifier(TVRSectionBodyTableViewCell::cellIdentifier()));
        if (!cell) {
            cell = new TVRSectionBodyTableViewCell;
            ++made;
        }
        cell->setSection(section);
        return cell;
    }
    void tableViewWillDisplayCell(TVRTableView *table, TVRTableViewCell *cell, TVRIndexPath path) override
    {
        // Announced once placed, before it is shown.
        QVERIFY(!cell->isVisible());
        QCOMPARE(cell->parentWidget(), table->viewport());
        displayed << path;
    }
};

} // namespace

class tst_DocumentScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(startLoopbackService(u"tst_documentscreens"_s, m_server, m_session));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        manager()->setSession(&m_session);
    }

    void cleanup()
    {
        qDeleteAll(m_windows);
        m_windows.clear();
        QTRY_COMPARE(m_session.liveReplies(), 0);
    }

    // First: nothing is held yet.
    void cachedDocumentShowsBeforeAnyReply()
    {
        // A long document kept by an earlier launch, shown while its fetch goes unanswered.
        keepCopy(kTVRTermsOfServiceDataPath, documentJson(u"Cached terms"_s, 300));
        TestReply never = TestReply::json(200, "{}");
        never.held = true;
        m_server.reply(never);
        const int requests = m_server.requests().size();
        // However the test ends, the screen's request does not outlive it; on success, only after
        // the screen is gone.
        const auto abortRequest = qScopeGuard([this] { m_session.abortAll(); });

        auto *screen = new TVRTermsOfServiceViewController;
        show(new TVRNavigationController(screen));
        QTRY_COMPARE(m_server.requests().size(), requests + 1);
        TVRTableView *table = screen->tableView();
        // What its rows paint, kept or fetched alike, tst_rendering and the demo's screenshots check.
        QCOMPARE(table->numberOfSections(), 300);
        QCOMPARE(screen->headerView()->dateLabel()->text(), u"Tuesday, March 1, 2016"_s);
        QVERIFY(saveScreenshot(screen->window(), u"terms-cached"_s));

        // Scrolled through to the end, the table keeps little more than the cells in view.
        int mostVisible = 0;
        QScrollBar *bar = table->verticalScrollBar();
        for (int y = 0; y <= bar->maximum(); y += table->viewport()->height() / 3) {
            bar->setValue(y);
            mostVisible = qMax(mostVisible, int(table->visibleCells().size()));
        }
        bar->setValue(bar->maximum());
        QVERIFY(table->cellForRowAtIndexPath({299, table->numberOfRowsInSection(299) - 1}));
        const int alive = int(table->viewport()->findChildren<TVRTableViewCell *>().size());
        QVERIFY2(alive <= mostVisible + 4, qPrintable(u"%1 cells alive for %2 visible"_s.arg(alive).arg(mostVisible)));
        QVERIFY(saveScreenshot(screen->window(), u"terms-end-of-300"_s));

        // Until a row is measured its height is estimated from its text in its own font, near
        // enough that the scroll range does not jump as rows come into view.
        for (int section = 0; section < 12; ++section) {
            for (int row = 0; row < table->numberOfRowsInSection(section); ++row) {
                const qreal estimate = screen->tableViewEstimatedHeightForRowAtIndexPath(table, {section, row});
                const qreal height = screen->tableViewHeightForRowAtIndexPath(table, {section, row});
                QVERIFY2(
                    estimate * 1.5 > height && estimate < height * 1.5,
                    qPrintable(
                        u"row %1.%2: %3 px estimated, %4 measured"_s.arg(section).arg(row).arg(estimate).arg(height)));
            }
        }

        // The screen goes away before its answer comes: the answer finds no delegate.
        delete screen->window();
        m_windows.clear();
    }

    void laterFontChangesHeightsNotCells()
    {
        // A cell made before a host sets the body font keeps its own. (That rows are then
        // measured, and new cells made, in the host's font, tst_rendering's host-appearance
        // row reads off the painted rows.)
        TVRSectionBodyTableViewCell existing;
        QFont large = TVRDesignClass::sectionBodyFont();
        large.setPixelSize(30);
        TVRDesignClass::setSectionBodyFont(large);
        const int kept = existing.bodyTextView()->font().pixelSize();
        TVRDesignClass::setSectionBodyFont(std::nullopt);
        QCOMPARE(kept, 16);
    }

    void cellsAreReused()
    {
        TableModel model;
        TVRTableView table;
        model.show(table);

        const int firstMade = model.made;
        QCOMPARE(model.displayed.size(), table.visibleCells().size());
        QCOMPARE(model.displayed.constFirst(), TVRIndexPath({0, 0}));
        auto *top = qobject_cast<TVRSectionBodyTableViewCell *>(table.cellForRowAtIndexPath({0, 0}));
        QVERIFY(top);
        QTextEdit *subview = top->bodyTextView();

        // Scrolled one screen down, the rows that left give their cells to the rows that came.
        table.verticalScrollBar()->setValue(table.viewport()->height() + 100);
        QVERIFY(!table.cellForRowAtIndexPath({0, 0}));
        QVERIFY(model.made <= firstMade + 2);
        QVERIFY(table.visibleCells().contains(top));
        QCOMPARE(top->bodyTextView(), subview);
        QCOMPARE(top->findChildren<QTextEdit *>().size(), 1);
        QCOMPARE(table.viewport()->findChildren<TVRTableViewCell *>().size(), model.made);

        // At the top, a header that grows pushes the rows down, and the view stays at the top.
        table.verticalScrollBar()->setValue(0);
        auto *header = new QWidget;
        header->setFixedHeight(44);
        table.setTableHeaderView(header);
        table.reloadData();
        header->setFixedHeight(80);
        table.reloadData();
        QCOMPARE(table.verticalScrollBar()->value(), 0);
        QCOMPARE(table.cellForRowAtIndexPath({0, 0})->y(), 80);
    }

    void estimatesSettleWithoutAJump()
    {
        // Rows estimated at 60 px and measured at 40 to 120: shown and scrolled to the middle
        // at once, before the event loop has measured the rest.
        struct Estimated : TableModel
        {
            qreal tableViewEstimatedHeightForRowAtIndexPath(TVRTableView *, TVRIndexPath) override { return 60; }
            qreal tableViewHeightForRowAtIndexPath(TVRTableView *, TVRIndexPath path) override
            {
                return 40 + 20 * (path.row % 5);
            }
        } model;
        model.rows = 400;
        TVRTableView table;
        model.show(table);
        QScrollBar *bar = table.verticalScrollBar();
        const int measuredLength = 80 * 400; // a plain table: no gaps between sections
        QVERIFY(bar->maximum() < measuredLength - table.viewport()->height() - 1000); // still estimated
        bar->setValue(bar->maximum() / 2);
        // Every row shown is measured before it is shown.
        QList<QPair<int, QRect>> shown;
        for (int row = 0; row < model.rows; ++row) {
            if (TVRTableViewCell *cell = table.cellForRowAtIndexPath({0, row})) {
                QCOMPARE(cell->height(), int(model.tableViewHeightForRowAtIndexPath(&table, {0, row})));
                shown.append({row, cell->geometry()});
            }
        }
        QVERIFY(shown.size() > 3);

        // Measured from the event loop: the range becomes the measured one, nothing in view moves.
        QTRY_COMPARE(bar->maximum(), measuredLength - table.viewport()->height());
        for (const auto &[row, geometry] : std::as_const(shown)) {
            TVRTableViewCell *cell = table.cellForRowAtIndexPath({0, row});
            QVERIFY(cell);
            QCOMPARE(cell->geometry(), geometry);
        }
    }

    void screensShowTheLastCompletion()
    {
        serve(u"Document"_s, 6, u"2017-07-04T09:00:00.000+0000"_s);
        manager()->setTermsOfService(nullptr);
        manager()->setPrivacyPolicy(nullptr);
        removeKeptCopies();
        auto *terms = new TVRTermsOfServiceViewController;
        auto *privacy = new TVRPrivacyPolicyViewController;
        TVRReadOnlyDocumentViewController *const screens[] = {terms, privacy};
        for (TVRReadOnlyDocumentViewController *screen : screens) {
            TVRNavigationController *navigation = show(new TVRNavigationController(screen));
            QTRY_COMPARE(screen->headerView()->dateLabel()->text(), u"Tuesday, July 4, 2017"_s);
            TVRTableView *table = screen->tableView();
            QVERIFY(saveScreenshot(navigation, screen == privacy ? u"privacy"_s : u"terms"_s));

            // The table fills the screen's view; the header spans the table. Where the date lies in
            // it, the demo's screenshots show, and the replaced date label's test below.
            QCOMPARE(table->geometry(), screen->view()->rect());
            QCOMPARE(navigation->navigationBar()->height(), 44);
            QCOMPARE(screen->headerView()->geometry(), QRect(0, 0, table->viewport()->width(), 44));
            // Where each row and its text lie, at many widths and in many scripts, tst_rendering checks.

            // A titled section takes two rows. With no table at hand, a row is measured for the
            // primary screen's width: the height of the row that this screen, as wide as the
            // primary screen, shows.
            QCOMPARE(table->viewport()->width(), screenSize().width());
            const TVRSectionList sections =
                (screen == privacy ? manager()->privacyPolicy() : manager()->termsOfService())->sections();
            for (int s = 0; s < sections.size(); ++s) {
                const bool titled = !sections[s]->title().isEmpty();
                if (titled)
                    QCOMPARE(TVRSectionTitleTableViewCell::cellHeightForSection(sections[s]),
                             qreal(table->rectForRowAtIndexPath({s, 0}).height()));
                QCOMPARE(TVRSectionBodyTableViewCell::cellHeightForSection(sections[s]),
                         qreal(table->rectForRowAtIndexPath({s, titled ? 1 : 0}).height()));
            }
        }
        QCOMPARE(TVRSectionBodyTableViewCell::cellHeightForSection(std::make_shared<TVRSection>(QJsonObject())), 40.0);
        QCOMPARE(TVRSectionTitleTableViewCell::cellHeightForSection(nullptr), 40.0);
        // The privacy screen keeps its title whatever a host sets.
        privacy->setTitle(u"Something else"_s);
        QCOMPARE(privacy->navigationController()->navigationBar()->findChild<QLabel *>()->text(), u"Privacy Policy"_s);

        // The screen shown last is the manager's delegate. A new Terms of Service arrives: the
        // privacy screen hears of it and, its own document unchanged, leaves its rows as they
        // are; the terms screen hears nothing.
        QCOMPARE(manager()->delegate(), privacy);
        serve(u"New terms"_s, 2, u"2020-01-31T12:00:00.000+0000"_s);
        terms->headerView()->dateLabel()->setText(u"unchanged"_s);
        privacy->headerView()->dateLabel()->setText(u"unchanged"_s);
        manager()->fetchTermsOfService();
        QTRY_COMPARE(manager()->termsOfService()->title(), u"New terms"_s);
        QCoreApplication::processEvents();
        QCOMPARE(privacy->headerView()->dateLabel()->text(), u"unchanged"_s);
        QCOMPARE(terms->headerView()->dateLabel()->text(), u"unchanged"_s);

        // Told of a completion, even one without success, the terms screen shows what the
        // manager holds. (Told of a failure, it keeps what it shows: tst_rendering's screens are
        // painted while every fetch of theirs is refused.)
        terms->managerDidFinishWithSuccess(manager(), false);
        QTRY_COMPARE(terms->headerView()->dateLabel()->text(), u"Friday, January 31, 2020"_s);
        QCOMPARE(terms->tableView()->numberOfSections(), 2);

        // A reply of the text the rows were loaded from leaves them as they are: a body being
        // edited keeps the focus and what was typed in it.
        manager()->setDelegate(terms);
        terms->window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(terms->window()));
        auto *body = static_cast<TVRSectionBodyTableViewCell *>(terms->tableView()->cellForRowAtIndexPath({0, 1}));
        QTest::mouseClick(body->childAt(20, 10), Qt::LeftButton, {}, QPoint(10, 5));
        QTest::keyClicks(QApplication::focusWidget(), u"typed "_s);
        const qsizetype requests = m_server.requests().size();
        manager()->fetchTermsOfService();
        QTRY_COMPARE(m_server.requests().size(), requests + 1);
        QTRY_COMPARE(m_session.liveReplies(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), body->bodyTextView());
        QVERIFY2(body->bodyTextView()->toPlainText().contains(u"typed "_s),
                 qPrintable(body->bodyTextView()->toPlainText().left(40)));
    }

    void modality_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<bool>("modal");

        QTest::newRow("bare, no navigation") << u"bare"_s << true;
        QTest::newRow("presented in navigation") << u"presented navigation"_s << true;
        QTest::newRow("in tabs") << u"tabs"_s << false;
        QTest::newRow("tabs presented by tabs") << u"tabs presented by tabs"_s << true;
    }

    void modality()
    {
        QFETCH(QString, setting);
        QFETCH(bool, modal);

        auto *screen = new TVRTermsOfServiceViewController;
        auto *host = show(new HostScreen);

        // That a screen pushed onto a host's own navigation is no modal, without Close, tst_accessibility
        // and tst_languages show; a screen presented alone counts as modal as a bare one does, and
        // tst_accessibility presents one and closes it.
        TVRNavigationController *navigation = nullptr;
        if (setting == u"bare"_s) {
            host->embed(screen);
        } else if (setting == u"presented navigation"_s) {
            navigation = new TVRNavigationController(screen);
            // A navigation controller takes a screen once, and no null one.
            navigation->pushViewController(screen);
            navigation->pushViewController(nullptr);
            QCOMPARE(navigation->viewControllers().size(), 1);
            host->presentViewController(navigation);
        } else {
            auto *tabs = new TVRTabBarController;
            QCOMPARE(tabs->selectedViewController(), nullptr); // none as made
            navigation = new TVRNavigationController(screen);
            tabs->setViewControllers({navigation, new HostScreen});
            if (setting == u"tabs"_s) {
                host->embed(tabs);
            } else {
                auto *outer = new TVRTabBarController;
                outer->setViewControllers({new HostScreen});
                show(outer)->presentViewController(tabs);
            }
        }
        QTRY_VERIFY(screen->isViewLoaded());
        QCOMPARE(screen->isModal(), modal);
        QCOMPARE(screen->navigationItem()->leftBarButtonItem() == screen->closeBarButtonItem(), modal);
        QVERIFY(screen->closeBarButtonItem()->font().bold());
        if (navigation) {
            auto *left = navigation->navigationBar()->findChildren<QToolButton *>().constFirst();
            QCOMPARE(left->isVisible() && left->text() == u"Close"_s, modal);
            if (setting == u"presented navigation"_s) {
                QVERIFY(saveScreenshot(navigation, u"terms-presented"_s));
                // The bar is filled with its colour, and Close lies flat on it, without a frame.
                QWidget *bar = navigation->navigationBar();
                const QImage shot = bar->grab().toImage();
                const QColor fill = bar->palette().color(QPalette::Window);
                QCOMPARE_NE(fill, screen->tableView()->palette().color(QPalette::Base));
                const QRect close = left->geometry();
                const QPoint center = close.center();
                for (const QPoint &at : {QPoint(bar->width() * 3 / 4, 2), QPoint(close.left(), center.y()),
                                         QPoint(close.right(), center.y()), QPoint(center.x(), close.top()),
                                         QPoint(center.x(), close.bottom())})
                    QCOMPARE(shot.pixelColor(at * shot.devicePixelRatio()), fill);
                // Turned right to left while shown, Close moves to the bar's right end.
                navigation->setLayoutDirection(Qt::RightToLeft);
                QCOMPARE(left->geometry().right(), bar->width() - 1 - close.left());
            }
        }
        if (setting == u"tabs"_s) {
            // An index past either end changes nothing; the tabs share the whole bar; emptied,
            // the tabs have none selected.
            TVRTabBarController *tabs = screen->tabBarController();
            for (int index : {1, -1, 2})
                tabs->setSelectedIndex(index);
            QCOMPARE(tabs->selectedViewController(), tabs->viewControllers().at(1));
            QCOMPARE(tabs->tabBar()->tabRect(0).width() + tabs->tabBar()->tabRect(1).width(), tabs->tabBar()->width());
            tabs->setViewControllers({});
            QCOMPARE(tabs->selectedViewController(), nullptr);
        }
    }

    void subviewWritersReplacePlaceAndOwn()
    {
        const auto document = std::make_shared<TVRDocument>(QJsonValue(documentJson(u"Agreement"_s, 4)));
        // Hands \a now over through \a set in place of \a old: the old one goes at once, the new
        // one is shown, where the old one was unless \a samePlace is false.
        QList<QPointer<QWidget>> given;
        const auto replace = [&given](QWidget *old, QWidget *now, const std::function<void()> &set,
                                      bool samePlace = true) {
            given << now;
            const QPointer<QWidget> gone = old;
            const QRect place = old->geometry();
            set();
            QVERIFY2(!gone, "the old one outlived its replacement");
            QVERIFY(now->isVisible());
            if (samePlace)
                QTRY_COMPARE(now->geometry(), place);
        };

        // Given before the view exists, a subview is placed when the screen is shown.
        auto *early = new TVRTermsViewController(document);
        auto *earlyToolbar = new QToolBar;
        given << earlyToolbar;
        early->setToolbar(earlyToolbar);
        show(new TVRNavigationController(early));
        QTRY_VERIFY(earlyToolbar->isVisible());
        QCOMPARE(earlyToolbar->window(), early->window());
        // A table replaced on a screen without a header.
        TVRTermsViewController headless(document);
        headless.tableView();
        headless.setHeaderView(nullptr);
        headless.setTableView(new TVRTableView);

        // Given to a shown screen, each replaces the one before: the toolbar under the table,
        // and the table, keeping the rows and the header, each in the old one's place; the
        // header heads the table, the date label spans the header.
        auto *screen = new TVRTermsViewController(document);
        show(new TVRNavigationController(screen));
        QTRY_VERIFY(!screen->tableView()->visibleCells().isEmpty());
        auto *toolbar = new QToolBar;
        toolbar->setFixedHeight(screen->toolbar()->height());
        replace(screen->toolbar(), toolbar, [&] { screen->setToolbar(toolbar); });

        QPointer<TVRHeaderView> header = screen->headerView();
        auto *table = new TVRTableView(TVRTableView::Style::Grouped);
        replace(screen->tableView(), table, [&] { screen->setTableView(table); });
        QCOMPARE(table->numberOfSections(), 4);
        QVERIFY(header);
        QCOMPARE(header->parentWidget(), table->viewport());

        auto *newHeader = new TVRHeaderView(QRect(0, 0, 100, 60));
        replace(
            header, newHeader, [&] { screen->setHeaderView(newHeader); }, false);
        auto *date = new QLabel(u"May 1, 2026"_s);
        replace(
            newHeader->dateLabel(), date, [&] { newHeader->setDateLabel(date); }, false);
        QCOMPARE(date->width(), newHeader->width());

        // The cells' new label and text view take the old ones' places and show the section.
        QTRY_VERIFY(table->cellForRowAtIndexPath({0, 1}));
        auto *titleCell = qobject_cast<TVRSectionTitleTableViewCell *>(table->cellForRowAtIndexPath({0, 0}));
        auto *bodyCell = qobject_cast<TVRSectionBodyTableViewCell *>(table->cellForRowAtIndexPath({0, 1}));
        QVERIFY(titleCell && bodyCell);
        auto *title = new QLabel;
        auto *body = new QTextEdit;
        replace(titleCell->titleLabel(), title, [&] { titleCell->setTitleLabel(title); });
        replace(bodyCell->bodyTextView(), body, [&] { bodyCell->setBodyTextView(body); });
        QCOMPARE(title->text(), titleCell->section()->title());
        QCOMPARE(body->toPlainText(), bodyCell->section()->body());
        QVERIFY(titleCell->isAncestorOf(title) && bodyCell->isAncestorOf(body));

        // All of it belongs to the screens now.
        qDeleteAll(m_windows);
        m_windows.clear();
        for (const QPointer<QWidget> &subview : std::as_const(given))
            QVERIFY2(!subview, subview ? subview->metaObject()->className() : "");
    }

private:
    TVRDocumentManager *manager() { return TVRDocumentManager::sharedInstance(); }
    // The service answers every request with documentJson(\a title, \a sections, \a updatedAt).
    void serve(const QString &title, int sections, const QString &updatedAt)
    {
        m_server.reply(TestReply::json(200, QJsonDocument(documentJson(title, sections, updatedAt)).toJson()));
    }
    // Shows \a window filling the screen, until the test ends.
    template <typename Window>
    Window *show(Window *window)
    {
        window->setGeometry(QGuiApplication::primaryScreen()->geometry());
        window->show();
        m_windows << window;
        return window;
    }

    TestHttpsServer m_server;
    TestSession m_session;
    QList<QPointer<QWidget>> m_windows;
};

TOVRA_OFFSCREEN_TEST_MAIN(tst_DocumentScreens, screenSize())

#include "tst_documentscreens.moc"
