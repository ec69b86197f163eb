// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// How fast a legal document appears and scrolls, side by side with a QTextBrowser showing
// the same document as HTML. Offscreen at 390 x 844. Prints a table and writes JSON.
//
//   bench/run.sh                     build in release mode and run, isolated
//   bench_screens [--json FILE]      run (inside tests/run-isolated.sh)
//   bench_screens --quick [--size S] only the heights and the first frames (of size S)
//   bench_screens --qml [--size S]   only the QML page's first frames against the widget screen's
//   bench_screens --memory KIND SIZE (internal) peak memory of one viewer in this process

#include "BenchDocuments.h"
#include "OffscreenScreen.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextLayout>
#include <QTextStream>
#include <QWindow>
#if defined(TOVRA_BENCH_QUICK)
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#endif

#include <algorithm>
#include <functional>

namespace {

QString toHtml(const QByteArray &json)
{
    return documentAsHtml(json, TVRManager::appName());
}

double median(QList<double> samples)
{
    std::sort(samples.begin(), samples.end());
    return samples.isEmpty() ? 0 : samples[samples.size() / 2];
}

double percentile(QList<double> samples, double p)
{
    std::sort(samples.begin(), samples.end());
    if (samples.isEmpty())
        return 0;
    const qsizetype index = std::min<qsizetype>(samples.size() - 1, qsizetype(p * samples.size()));
    return samples[index];
}

// Milliseconds of \a work, the median of \a runs runs.
double timeIt(int runs, const std::function<void()> &work)
{
    QList<double> samples;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        samples << timer.nsecsElapsed() / 1e6;
    }
    return median(samples);
}

void settle()
{
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
}

void cache(const QByteArray &json)
{
    keepCopy(kTVRTermsOfServiceDataPath, QJsonDocument::fromJson(json).object());
    TVRDocumentManager::sharedInstance()->setTermsOfService(nullptr);
}

QRect phone()
{
    return QGuiApplication::primaryScreen()->geometry();
}

// Sees \a viewport painted while \a ready holds.
class PaintWatch : public QObject
{
public:
    PaintWatch(QWidget *viewport, std::function<bool()> ready)
        : m_ready(std::move(ready))
    {
        viewport->installEventFilter(this);
    }
    bool painted = false;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        // The paint itself runs right after the filter, within the same event.
        if (event->type() == QEvent::Paint && m_ready())
            painted = true;
        return false;
    }

private:
    std::function<bool()> m_ready;
};

// Runs events as the application's loop would until \a viewport has been painted, on a
// window the platform has exposed, with \a ready holding: the first frame a user sees.
void runUntilPainted(QWidget *viewport, const std::function<bool()> &ready)
{
    PaintWatch watch(viewport, ready);
    for (int pass = 0; pass < 50 && !watch.painted; ++pass) {
        QCoreApplication::processEvents();
        const QWindow *window = viewport->window()->windowHandle();
        if (!watch.painted && ready() && window && window->isExposed())
            viewport->repaint();
    }
    if (!watch.painted)
        qFatal("the first frame was never painted");
}

// The same for the terms screen on top of \a navigation, once it shows rows.
void paintWhenLaidOut(TVRNavigationController &navigation)
{
    TVRTableView *table = qobject_cast<TVRTermsOfServiceViewController *>(navigation.topViewController())->tableView();
    runUntilPainted(table->viewport(), [table] { return !table->visibleCells().isEmpty(); });
}

// 3. A terms screen made, shown and painted once, its document in the cache.
double firstFrameTovra(const QByteArray &json, int runs, bool neverMeasured = false)
{
    cache(json);
    int run = 0;
    const double result = timeIt(runs, [&] {
        if (neverMeasured)
            TVRManager::setAppName(QStringLiteral("First frame %1").arg(++run));
        TVRDocumentManager::sharedInstance()->setTermsOfService(nullptr); // read the copy again
        TVRNavigationController navigation(TVRManager::termsOfServiceViewController());
        navigation.setGeometry(phone());
        navigation.show();
        paintWhenLaidOut(navigation);
    });
    TVRManager::setAppName(QStringLiteral("Acme"));
    return result;
}

double firstFrameBrowser(const QByteArray &json, int runs)
{
    cache(json);
    return timeIt(runs, [&] {
        QTextBrowser browser;
        browser.setGeometry(phone());
        browser.setHtml(toHtml(QJsonDocument(keptCopy(kTVRTermsOfServiceDataPath).toObject()).toJson()));
        browser.show();
        runUntilPainted(browser.viewport(), [] { return true; });
    });
}

struct ScrollResult
{
    double median = 0;
    double p99 = 0;
    int frames = 0;
    int cellsAlive = -1;
};

// 4. Frames painted scrolling top to bottom, a viewport at a time.
ScrollResult scroll(QAbstractScrollArea *area, const std::function<void()> &afterEachFrame = {})
{
    QScrollBar *bar = area->verticalScrollBar();
    QList<double> frames;
    for (int round = 0; round < 3; ++round) {
        bar->setValue(0);
        settle();
        for (int y = 0;; y += area->viewport()->height()) {
            QElapsedTimer timer;
            timer.start();
            bar->setValue(std::min(y, bar->maximum()));
            area->viewport()->repaint();
            frames << timer.nsecsElapsed() / 1e6;
            if (afterEachFrame)
                afterEachFrame();
            if (y >= bar->maximum())
                break;
        }
    }
    return {median(frames), percentile(frames, 0.99), int(frames.size()), -1};
}

// A terms screen in a navigation controller, shown at phone size with its layout settled;
// \a table is set to the screen's table.
std::unique_ptr<TVRNavigationController> showTermsScreen(TVRTableView **table)
{
    auto navigation = std::make_unique<TVRNavigationController>(TVRManager::termsOfServiceViewController());
    navigation->setGeometry(phone());
    navigation->show();
    settle();
    *table = qobject_cast<TVRTermsOfServiceViewController *>(navigation->topViewController())->tableView();
    return navigation;
}

ScrollResult scrollTovra(const QByteArray &json, int *visibleMost)
{
    cache(json);
    TVRTableView *table = nullptr;
    const auto navigation = showTermsScreen(&table);
    *visibleMost = 0;
    ScrollResult result =
        scroll(table, [&] { *visibleMost = std::max(*visibleMost, int(table->visibleCells().size())); });
    result.cellsAlive = int(table->viewport()->findChildren<TVRTableViewCell *>().size());
    return result;
}

ScrollResult scrollBrowser(const QByteArray &json)
{
    QTextBrowser browser;
    browser.setGeometry(phone());
    browser.setHtml(toHtml(json));
    browser.show();
    settle();
    return scroll(&browser);
}

#if defined(TOVRA_BENCH_QUICK)
// 3q and 4q. The QML Terms of Service page, drawn by Qt Quick's software renderer, made in
// the application's Qt Quick window as a QML host opens a page; a frame is rendered whole
// into an image, as the screen would get it.
class QuickPage
{
public:
    // The kit's page, or with \a peer what a QML developer would write instead: a ScrollView
    // holding a read-only TextArea with the document as rich text.
    explicit QuickPage(bool peer = false)
        : m_peer(peer)
    {
        m_engine.addImportPath(QStringLiteral(TOVRA_QML_IMPORT_PATH));
        m_component = std::make_unique<QQmlComponent>(&m_engine);
        m_component->setData(peer
                                 ? "import QtQuick\nimport QtQuick.Controls\n"
                                   "ScrollView { property alias text: area.text; width: 390; height: 844\n"
                                   "    TextArea { id: area; readOnly: true; wrapMode: TextEdit.Wrap;"
                                   " textFormat: TextEdit.RichText } }\n"
                                 : "import Tovra\nTermsOfServicePage { width: 390; height: 844; fetchOnLoad: false }\n",
                             QUrl());
        m_window.setGeometry(phone());
    }

    // The application's window shown, one frame rendered, as it is before a page opens.
    void enter()
    {
        m_window.show();
        m_window.grabWindow();
        show(); // not timed: the first page after showing
        hide();
        settle();
    }

    // The window hidden: a shown Qt Quick window renders its pending frames in the event
    // loop of whatever else is measured.
    void leave()
    {
        m_window.hide();
        settle();
    }

    // Made, shown, and one frame rendered with rows in it.
    void show()
    {
        if (m_peer) {
            // Read and converted within the time measured, as the kit reads its copy.
            const QString html = toHtml(QJsonDocument(keptCopy(kTVRTermsOfServiceDataPath).toObject()).toJson());
            m_page.reset(qobject_cast<QQuickItem *>(m_component->createWithInitialProperties({{"text", html}})));
        } else {
            m_page.reset(qobject_cast<QQuickItem *>(m_component->create()));
        }
        if (!m_page)
            qFatal("the QML page did not load: %s", qPrintable(m_component->errorString()));
        m_page->setParentItem(m_window.contentItem());
        if (m_peer) {
            m_window.grabWindow();
            return;
        }
        for (int pass = 0; pass < 20 && view()->property("count").toInt() == 0; ++pass)
            QCoreApplication::processEvents();
        if (view()->property("count").toInt() == 0)
            qFatal("the QML page showed no rows");
        m_window.grabWindow();
    }

    void hide() { m_page.reset(); }

    QQuickItem *view() const { return m_page->property("view").value<QQuickItem *>(); }
    QQuickWindow *window() { return &m_window; }

private:
    bool m_peer = false;
    QQmlEngine m_engine;
    std::unique_ptr<QQmlComponent> m_component;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_page;
};

struct SideBySide
{
    double quick = 0;
    double widgets = 0;
    double peer = 0;
};

// 3q, the widget side: the terms screen pushed onto a navigation controller already shown,
// as the QML page is made in a window already shown.
class WidgetHost
{
public:
    WidgetHost()
        : m_navigation(new TVRViewController)
    {
        m_navigation.setGeometry(phone());
    }

    void enter()
    {
        m_navigation.show();
        settle();
        firstFrame(); // not timed: the first push after showing
    }

    void leave()
    {
        m_navigation.hide();
        settle();
    }

    // Pushed, laid out and painted once; then popped and deleted.
    void firstFrame()
    {
        m_navigation.pushViewController(TVRManager::termsOfServiceViewController(), false);
        paintWhenLaidOut(m_navigation);
        m_navigation.popViewControllerAnimated(false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    TVRNavigationController m_navigation;
};

// 3q. The QML page's first frame and the widget screen's, each made in a window already
// shown and deleted again within the time measured. Alternate rounds let both meet the
// machine in the same states; each side's window is hidden while the other is measured, as
// a shown Qt Quick window renders its pending frames in any event loop.
SideBySide firstFramesSideBySide(QuickPage &page, QuickPage &peer, WidgetHost &host, const QByteArray &json, int rounds,
                                 int runs)
{
    cache(json);
    auto reread = [] { TVRDocumentManager::sharedInstance()->setTermsOfService(nullptr); };
    QList<double> quickPeer;
    QList<double> quick;
    QList<double> widgets;
    for (int round = 0; round < rounds; ++round) {
        page.enter();
        for (int run = 0; run < runs; ++run) {
            reread();
            quick << timeIt(1, [&] {
                page.show();
                page.hide();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            });
        }
        page.leave();
        peer.enter();
        for (int run = 0; run < runs; ++run) {
            quickPeer << timeIt(1, [&] {
                peer.show();
                peer.hide();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            });
        }
        peer.leave();
        host.enter();
        for (int run = 0; run < runs; ++run) {
            reread();
            widgets << timeIt(1, [&] { host.firstFrame(); });
        }
        host.leave();
    }
    return {median(quick), median(widgets), median(quickPeer)};
}

ScrollResult scrollQuick(QuickPage &page, const QByteArray &json)
{
    cache(json);
    page.enter();
    page.show();
    QQuickItem *view = page.view();
    QList<double> frames;
    for (int round = 0; round < 3; ++round) {
        QMetaObject::invokeMethod(view, "positionViewAtBeginning");
        settle();
        for (;;) {
            const qreal contentY = view->property("contentY").toReal();
            const qreal bottom = view->property("contentHeight").toReal() + view->property("originY").toReal();
            const qreal next = std::min(contentY + view->height(), bottom - view->height());
            QElapsedTimer timer;
            timer.start();
            view->setProperty("contentY", next);
            page.window()->grabWindow();
            frames << timer.nsecsElapsed() / 1e6;
            // Estimated heights firm up on the way: the end is reached when nothing moves.
            if (view->property("atYEnd").toBool() || qFuzzyCompare(next, contentY))
                break;
        }
    }
    page.hide();
    return {median(frames), percentile(frames, 0.99), int(frames.size()), -1};
}
#endif

// 5. From fetchTermsOfService() to the table reloaded with the reply.
double fetchToRefresh(const QByteArray &json, int runs)
{
    TestHttpsServer server;
    server.start();
    // Each reply brings the document changed, as a refresh does: a reply of the text shown
    // leaves the table as it is. The two texts take turns.
    QJsonObject changed = QJsonDocument::fromJson(json).object();
    changed.insert(QStringLiteral("updatedAt"), QStringLiteral("2019-01-02T03:04:05.000+0000"));
    const QList<QByteArray> texts{json, QJsonDocument(changed).toJson(QJsonDocument::Compact)};
    server.setHandler(
        [texts, next = 0](const TestRequest &) mutable { return TestReply::json(200, texts[next++ % 2]); });
    TestSession session;
    session.route(TVRNetworkManager::baseURLComponents().host(), server.port());
    TVRDocumentManager *documents = TVRDocumentManager::sharedInstance();
    documents->setSession(&session);
    cache(json);
    TVRTableView *table = nullptr;
    const auto navigation = showTermsScreen(&table);
    QCoreApplication::processEvents(QEventLoop::AllEvents, 200); // the screen's own fetch

    const double result = timeIt(runs, [&] {
        bool reloaded = false;
        QMetaObject::Connection watch =
            QObject::connect(table->verticalScrollBar(), &QScrollBar::rangeChanged, [&] { reloaded = true; });
        // A reload resets the scroll range; a changed range is the reload's signature.
        table->verticalScrollBar()->setRange(0, 0);
        reloaded = false;
        documents->fetchTermsOfService();
        while (!reloaded)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QObject::disconnect(watch);
    });
    documents->setSession(nullptr);
    return result;
}

// 6. Runs in a process of its own: shows one viewer with the document and reports the
// peak resident memory above what the process had before.
int memoryProbe(const QString &kind, const QString &sizeName)
{
    const Size *size = std::find_if(std::begin(sizes), std::end(sizes),
                                    [&](const Size &s) { return sizeName == QLatin1String(s.name); });
    const QByteArray json = makeDocument(*size);
    // Both start from a painted empty window, so that only the document's cost differs.
    QWidget blank;
    blank.setGeometry(phone());
    blank.show();
    blank.repaint();
    const long before = processStatusKiB("VmHWM");
    std::unique_ptr<QWidget> viewer;
    if (kind == QLatin1String("tovra")) {
        // The copy is on disk from an earlier run (the parent process wrote it).
        viewer.reset(new TVRNavigationController(TVRManager::termsOfServiceViewController()));
    } else {
        auto *browser = new QTextBrowser;
        browser->setHtml(toHtml(json));
        viewer.reset(browser);
    }
    viewer->setGeometry(phone());
    viewer->show();
    settle();
    viewer->repaint();
    QTextStream(stdout) << before << ' ' << processStatusKiB("VmHWM") << Qt::endl;
    return 0;
}

struct Memory
{
    long total = -1; // KiB
    long growth = -1;
};

// The median of five fresh processes: peak memory varies by a few hundred KiB run to run.
Memory measureMemory(const QString &kind, const char *size)
{
    QList<double> totals;
    QList<double> growths;
    for (int run = 0; run < 5; ++run) {
        QProcess probe;
        probe.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--memory"), kind, QString::fromLatin1(size)});
        probe.waitForFinished(60000);
        const QList<QByteArray> parts = probe.readAllStandardOutput().trimmed().split(' ');
        if (parts.size() != 2)
            return {};
        totals << parts[1].toDouble();
        growths << parts[1].toDouble() - parts[0].toDouble();
    }
    return {long(median(totals)), long(median(growths))};
}

QtMessageHandler defaultHandler = nullptr;
void quietOffscreen(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message != QLatin1String("This plugin does not support propagateSizeHints()"))
        defaultHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    defaultHandler = qInstallMessageHandler(quietOffscreen);
    QTemporaryDir scratch;
    if (!useOffscreenScreen(scratch.path(), QSize(390, 844)))
        return 1;
    qputenv("QT_LOGGING_RULES", "tovra.info=false");

#if defined(TOVRA_BENCH_QUICK)
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
#endif
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tovra Bench"));
    QCoreApplication::setApplicationName(QStringLiteral("bench_screens"));
    TVRManager::setAppName(QStringLiteral("Acme"));
    TVRManager::setAPIKey(QStringLiteral("key"), QStringLiteral("secret"));
    // The screens' own fetches go nowhere: nothing but the measured fetch touches a network.
    LoopbackSession offline;
    offline.routeToClosedPort(TVRNetworkManager::baseURLComponents().host());
    TVRDocumentManager::sharedInstance()->setSession(&offline);

    const QStringList args = app.arguments();
    if (args.size() == 4 && args[1] == QLatin1String("--memory"))
        return memoryProbe(args[2], args[3]);
    const int jsonAt = int(args.indexOf(QStringLiteral("--json")));
    const QString jsonPath =
        jsonAt > 0 && jsonAt + 1 < args.size() ? args[jsonAt + 1] : QStringLiteral("bench_screens.json");

    QTextStream out(stdout);
    QJsonObject report;
    out << QStringLiteral("%1 %2 %3 %4 %5\n")
               .arg(QStringLiteral("measure"), -40)
               .arg(QStringLiteral("size"), -10)
               .arg(QStringLiteral("Tovra"), 12)
               .arg(QStringLiteral("QTextBrowser"), 13)
               .arg(QStringLiteral("ratio"), 7);
    auto row = [&](const QString &measure, const char *size, double tovra, double browser, const QString &unit) {
        QString line = QStringLiteral("%1 %2 %3")
                           .arg(measure, -40)
                           .arg(QLatin1String(size), -10)
                           .arg(QString::number(tovra, 'f', 3) + QLatin1Char(' ') + unit, 12);
        QJsonObject entry{{QStringLiteral("tovra"), tovra}, {QStringLiteral("unit"), unit}};
        if (browser >= 0) {
            line += QStringLiteral(" %1 %2")
                        .arg(QString::number(browser, 'f', 3) + QLatin1Char(' ') + unit, 13)
                        .arg(QString::number(tovra / browser, 'f', 2), 7);
            entry.insert(QStringLiteral("qtextbrowser"), browser);
            entry.insert(QStringLiteral("ratio"), tovra / browser);
        }
        out << line << Qt::endl;
        report.insert(measure + QLatin1Char(' ') + QLatin1String(size), entry);
    };

    // --quick: the heights and the first frames only, for a quick look while working.
    const bool quick = args.contains(QStringLiteral("--quick"));
    const qsizetype sizeAt = args.indexOf(QStringLiteral("--size"));
    const QString onlySize = sizeAt > 0 && sizeAt + 1 < args.size() ? args[sizeAt + 1] : QString();
#if defined(TOVRA_BENCH_QUICK)
    auto quickFirstFrames = [&](QuickPage &page) {
        WidgetHost host;
        QuickPage peer(true);
        for (const Size &size : sizes) {
            if (!onlySize.isEmpty() && onlySize != QLatin1String(size.name))
                continue;
            const QByteArray json = makeDocument(size);
            const SideBySide frames = firstFramesSideBySide(page, peer, host, json, 5, 6);
            row(QStringLiteral("3q QML page first frame / widgets"), size.name, frames.quick, frames.widgets,
                QStringLiteral("ms"));
            row(QStringLiteral("3q QML page first frame / QML peer"), size.name, frames.quick, frames.peer,
                QStringLiteral("ms"));
            row(QStringLiteral("3q QML page first frame / QTextBrowser"), size.name, frames.quick,
                firstFrameBrowser(json, 15), QStringLiteral("ms"));
        }
        for (const LimitDocument &limit : limitDocuments) {
            if (!onlySize.isEmpty() && onlySize != QLatin1String(limit.name))
                continue;
            const QByteArray json = documentOfBodies(limit.sections, limit.bodyBytes);
            const SideBySide frames = firstFramesSideBySide(page, peer, host, json, 1, 3);
            row(QStringLiteral("3q QML page first frame / widgets"), limit.name, frames.quick, frames.widgets,
                QStringLiteral("ms"));
            row(QStringLiteral("3q QML page first frame / QML peer"), limit.name, frames.quick, frames.peer,
                QStringLiteral("ms"));
        }
    };
    // --qml: the QML page's first frames only.
    if (args.contains(QStringLiteral("--qml"))) {
        QuickPage page;
        quickFirstFrames(page);
        return 0;
    }
#endif
    for (const Size &size : sizes) {
        if (!onlySize.isEmpty() && onlySize != QLatin1String(size.name))
            continue;
        const QByteArray json = makeDocument(size);
        report.insert(QStringLiteral("bytes %1").arg(QLatin1String(size.name)), json.size());

        const double model = timeIt(50, [&] {
            TVRDocument document(QJsonDocument::fromJson(json).object());
            qsizetype characters = document.title().size() + document.identifier().size();
            characters += document.date().isValid();
            for (const auto &section : document.sections())
                characters += section->title().size() + section->body().size();
            Q_UNUSED(characters)
        });
        row(QStringLiteral("1 model from reply bytes"), size.name, model, -1, QStringLiteral("ms"));

        TVRDocument document(QJsonDocument::fromJson(json).object());
        const TVRSectionList list = document.sections();
        // Every row's height, as a reload asks for them.
        auto allHeights = [&list] {
            qreal total = 0;
            for (const auto &section : list) {
                if (!section->title().isEmpty())
                    total += TVRSectionTitleTableViewCell::cellHeightForSection(section);
                total += TVRSectionBodyTableViewCell::cellHeightForSection(section);
            }
            return total;
        };
        const double heights = timeIt(20, allHeights);
        row(QStringLiteral("2 heights of every row"), size.name, heights, -1, QStringLiteral("ms"));

        // The same, the first time these texts are measured: another application name per
        // run makes every body a text not seen before.
        int run = 0;
        const double coldHeights = timeIt(5, [&] {
            TVRManager::setAppName(QStringLiteral("Acme %1").arg(++run));
            allHeights();
        });
        TVRManager::setAppName(QStringLiteral("Acme"));
        row(QStringLiteral("2 heights of every row, first time"), size.name, coldHeights, -1, QStringLiteral("ms"));

        // The physical cost under it: Qt's own shaped layout of the same texts at the same
        // widths, with nothing kept between runs.
        const qreal width = phone().width();
        const double rawLayout = timeIt(5, [&] {
            QTextOption option;
            option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
            qreal total = 0;
            auto layOut = [&](const QString &text, const QFont &font, qreal lineWidth) {
                QTextLayout layout(text, font);
                layout.setTextOption(option);
                layout.beginLayout();
                for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
                    line.setLineWidth(lineWidth);
                    total += line.height();
                }
                layout.endLayout();
            };
            for (const auto &section : list) {
                if (!section->title().isEmpty())
                    layOut(section->title(), TVRDesignClass::sectionTitleFont(), width - 40);
                layOut(section->body(), TVRDesignClass::sectionBodyFont(), width - 24);
            }
            Q_UNUSED(total)
        });
        row(QStringLiteral("2 QTextLayout of the same texts"), size.name, rawLayout, -1, QStringLiteral("ms"));

        row(QStringLiteral("3 first frame from the cache"), size.name, firstFrameTovra(json, 15),
            firstFrameBrowser(json, 15), QStringLiteral("ms"));
        row(QStringLiteral("3 first frame, texts never measured"), size.name, firstFrameTovra(json, 5, true),
            firstFrameBrowser(json, 5), QStringLiteral("ms"));
    }

    // The documents at the reply size limit: the first frame only.
    for (const LimitDocument &limit : limitDocuments) {
        if (!onlySize.isEmpty() && onlySize != QLatin1String(limit.name))
            continue;
        const QByteArray json = documentOfBodies(limit.sections, limit.bodyBytes);
        row(QStringLiteral("3 first frame from the cache"), limit.name, firstFrameTovra(json, 3),
            firstFrameBrowser(json, 3), QStringLiteral("ms"));
    }

    if (quick)
        return 0;
    const Size &large = sizes[2];
    const QByteArray largeJson = makeDocument(large);
    int visibleMost = 0;
    const ScrollResult tovraScroll = scrollTovra(largeJson, &visibleMost);
    const ScrollResult browserScroll = scrollBrowser(largeJson);
    row(QStringLiteral("4 scroll frame, median"), large.name, tovraScroll.median, browserScroll.median,
        QStringLiteral("ms"));
    row(QStringLiteral("4 scroll frame, p99"), large.name, tovraScroll.p99, browserScroll.p99, QStringLiteral("ms"));
    out << QStringLiteral("  %1 frames; %2 cell objects alive at the end, at most %3 rows visible at once")
               .arg(tovraScroll.frames)
               .arg(tovraScroll.cellsAlive)
               .arg(visibleMost)
        << Qt::endl;
    report.insert(QStringLiteral("4 cells alive"), tovraScroll.cellsAlive);
    report.insert(QStringLiteral("4 most visible rows"), visibleMost);

#if defined(TOVRA_BENCH_QUICK)
    // The QML page against the widget screen: the first column is the QML page here, the
    // second the widget screen.
    {
        QuickPage page;
        quickFirstFrames(page);
        const ScrollResult quickScroll = scrollQuick(page, largeJson);
        row(QStringLiteral("4q QML scroll frame, median / widg."), large.name, quickScroll.median, tovraScroll.median,
            QStringLiteral("ms"));
        row(QStringLiteral("4q QML scroll frame, p99 / widgets"), large.name, quickScroll.p99, tovraScroll.p99,
            QStringLiteral("ms"));
        out << QStringLiteral("  %1 QML frames, each rendered whole into an image").arg(quickScroll.frames) << Qt::endl;
    }
#endif

    for (const Size &size : sizes)
        row(QStringLiteral("5 fetch to refreshed table"), size.name, fetchToRefresh(makeDocument(size), 20), -1,
            QStringLiteral("ms"));

    cache(largeJson);
    const Memory tovraMemory = measureMemory(QStringLiteral("tovra"), large.name);
    const Memory browserMemory = measureMemory(QStringLiteral("browser"), large.name);
    row(QStringLiteral("6 peak memory, whole process"), large.name, tovraMemory.total / 1024.0,
        browserMemory.total / 1024.0, QStringLiteral("MiB"));
    row(QStringLiteral("6 peak memory, document's share"), large.name, tovraMemory.growth / 1024.0,
        browserMemory.growth / 1024.0, QStringLiteral("MiB"));

    QFile file(jsonPath);
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(report).toJson());
    out << "JSON: " << QFileInfo(file).absoluteFilePath() << Qt::endl;
    return 0;
}
