// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The longest the GUI thread is held, and the peak memory, for documents at the reply size
// limit: fetched, shown, scrolled to the end with the End key, and fetched again while
// shown. A timer on the GUI thread that should tick every millisecond is the probe: the
// longest gap between its ticks is the longest time nothing else could run there.
//   tests/run-isolated.sh build-release/bench/bench_stall [--json FILE]

#include "BenchDocuments.h"
#include "LoopbackSession.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QProcess>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#if defined(TOVRA_BENCH_QUICK)
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#endif

#include <atomic>
#include <functional>
#include <memory>

namespace {

// The test service on a thread of its own, so that encrypting and sending a large reply
// does not count against the GUI thread.
class ServiceThread : public QThread
{
public:
    explicit ServiceThread(QByteArray reply)
        : m_reply(std::move(reply))
    {
    }
    ~ServiceThread() override
    {
        quit();
        wait();
    }

    quint16 startService()
    {
        start();
        while (m_port == 0)
            QThread::msleep(1);
        return m_port;
    }

protected:
    void run() override
    {
        TestHttpsServer server;
        server.start();
        server.reply(TestReply::json(200, m_reply));
        m_port = server.port();
        exec();
    }

private:
    QByteArray m_reply;
    std::atomic<quint16> m_port{0};
};

class StallProbe
{
public:
    StallProbe()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_longest = std::max(m_longest, m_sinceTick.nsecsElapsed() / 1e6);
            m_sinceTick.restart();
        });
    }

    // Runs events until \a done holds; the longest stall meanwhile, in ms.
    template <typename Done>
    double during(Done done)
    {
        m_longest = 0;
        m_sinceTick.start();
        m_timer.start();
        while (!done())
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        // The frame that shows the result is part of it.
        for (int pass = 0; pass < 5; ++pass)
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        m_timer.stop();
        return std::max(m_longest, m_sinceTick.nsecsElapsed() / 1e6);
    }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    double m_longest = 0;
};

struct Stalls
{
    double fetch = 0;
    double open = 0;
    double end = 0;
    double refetch = 0;
    long peakMiB = 0;
};

Stalls measure(const QByteArray &json)
{
    removeKeptCopies();
    ServiceThread service(json);
    TestSession session;
    session.route(TVRNetworkManager::baseURLComponents().host(), service.startService());
    TVRDocumentManager *documents = TVRDocumentManager::sharedInstance();
    documents->setTermsOfService(nullptr);
    documents->setSession(&session);
    int answers = 0;
    const auto counter = QObject::connect(documents, &TVRDocumentManager::documentChanged, [&answers] { ++answers; });
    const auto failures = QObject::connect(documents, &TVRDocumentManager::fetchFailed, [](auto, const TVRError &e) {
        qFatal("the fetch failed: %s", qPrintable(e.message()));
    });
    StallProbe probe;
    Stalls stalls;

    documents->fetchTermsOfService();
    stalls.fetch = probe.during([&] { return answers == 1; });

    TVRNavigationController *navigation = nullptr;
    TVRTableView *table = nullptr;
    stalls.open = probe.during([&] {
        if (!navigation) {
            navigation = new TVRNavigationController(TVRManager::termsOfServiceViewController());
            navigation->setGeometry(QGuiApplication::primaryScreen()->geometry());
            navigation->show();
            return false;
        }
        // The screen fetches again as it opens; it counts once that reply is shown.
        table = qobject_cast<TVRTermsOfServiceViewController *>(navigation->topViewController())->tableView();
        return answers == 2 && table->numberOfSections() > 0;
    });

    stalls.end = probe.during([&, pressed = false]() mutable {
        if (!pressed) {
            QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
            QCoreApplication::sendEvent(table, &end);
            pressed = true;
        }
        return table->verticalScrollBar()->value() == table->verticalScrollBar()->maximum();
    });

    documents->fetchTermsOfService();
    stalls.refetch = probe.during([&] { return answers == 3; });

    delete navigation;
    QObject::disconnect(counter);
    QObject::disconnect(failures);
    documents->setSession(nullptr);
    documents->setTermsOfService(nullptr);
    stalls.peakMiB = processStatusKiB("VmHWM") / 1024;
    return stalls;
}

// The size ladder: one viewer opened on a document kept from an earlier launch, in a
// process of its own, timed to its first frame with rows in it, then scrolled to its end
// with the End key. The process that wrote the copy is not the one that opens it, so that
// the open pays for what a launch pays for: no memory of the writer's to reuse.
struct Opened
{
    double firstFrame = 0;
    double stall = 0;
    double end = 0; // the longest stall while End scrolls to the end
    double peakMiB = 0;
};

// Keeps \a json as the kit keeps a reply, its text as it came in an array, for the Terms of
// Service; and writes it to \a jsonPath for the QTextBrowser, which reads the same document
// from a file of its own as its host would.
void keepForNextLaunch(const QByteArray &json, const QString &jsonPath)
{
    removeKeptCopies();
    const auto write = [](const QString &path, const QByteArray &text) {
        QFile file(path);
        if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
            || file.write(text) != text.size())
            qFatal("cannot write %s", qPrintable(path));
    };
    write(keptCopyPath(kTVRTermsOfServiceDataPath), '[' + json + ']');
    write(jsonPath, json);
}

Opened openFromCache(const QString &viewer, const QString &jsonPath)
{
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    std::unique_ptr<QWidget> widget;
    TVRTableView *table = nullptr;
#if defined(TOVRA_BENCH_QUICK)
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(TOVRA_QML_IMPORT_PATH));
    QQmlComponent component(&engine);
    component.setData("import Tovra\nTermsOfServicePage { width: 390; height: 844; fetchOnLoad: false }\n", QUrl());
    QQuickWindow window;
    window.setGeometry(screen);
    std::unique_ptr<QQuickItem> page;
#endif
    StallProbe probe;
    QElapsedTimer timer;
    Opened opened;
    opened.stall = probe.during([&, made = false]() mutable {
        if (!made) {
            made = true;
            timer.start();
            if (viewer == QLatin1String("widgets")) {
                auto *screenController = TVRManager::termsOfServiceViewController();
                table = screenController->tableView();
                widget = std::make_unique<TVRNavigationController>(screenController);
            } else if (viewer == QLatin1String("QTextBrowser")) {
                auto *browser = new QTextBrowser;
                QFile document(jsonPath);
                browser->setHtml(document.open(QIODevice::ReadOnly) ? documentAsHtml(document.readAll(), {})
                                                                    : QString());
                widget.reset(browser);
            }
#if defined(TOVRA_BENCH_QUICK)
            else {
                window.show();
                page.reset(qobject_cast<QQuickItem *>(component.create()));
                if (!page)
                    qFatal("the QML page did not load: %s", qPrintable(component.errorString()));
                page->setParentItem(window.contentItem());
            }
#endif
            if (widget) {
                widget->setGeometry(screen);
                widget->show();
            }
            return false;
        }
        if (widget) {
            if (table && table->visibleCells().isEmpty())
                return false;
            widget->repaint();
        }
#if defined(TOVRA_BENCH_QUICK)
        else {
            if (page->property("view").value<QObject *>()->property("count").toInt() == 0)
                return false;
            window.grabWindow();
        }
#endif
        opened.firstFrame = timer.nsecsElapsed() / 1e6;
        return true;
    });

    // End, pressed where the viewer takes keys, until the end is in view.
    QObject *keys = widget.get();
    std::function<bool()> atEnd;
    if (table) {
        keys = table;
        atEnd = [table] { return table->verticalScrollBar()->value() == table->verticalScrollBar()->maximum(); };
    } else if (auto *browser = qobject_cast<QTextBrowser *>(widget.get())) {
        atEnd = [browser] { return browser->verticalScrollBar()->value() == browser->verticalScrollBar()->maximum(); };
    }
#if defined(TOVRA_BENCH_QUICK)
    if (!widget) {
        auto *view = page->property("view").value<QQuickItem *>();
        view->forceActiveFocus();
        keys = &window;
        atEnd = [view] { return view->property("atYEnd").toBool(); };
    }
#endif
    opened.end = probe.during([&, pressed = false]() mutable {
        if (!pressed) {
            QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
            QCoreApplication::sendEvent(keys, &end);
            pressed = true;
        }
        return atEnd();
    });
    opened.peakMiB = processStatusKiB("VmHWM") / 1024.0;
    return opened;
}

// Runs every step of the size ladder for every viewer, five processes each, and prints
// the medians side by side; with \a jsonPath, adds them to that file's object.
int ladder(QTextStream &out, const QString &jsonPath)
{
    QStringList viewers{QStringLiteral("widgets"), QStringLiteral("QTextBrowser")};
#if defined(TOVRA_BENCH_QUICK)
    viewers.insert(1, QStringLiteral("QML"));
#endif
    out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7\n")
               .arg(QStringLiteral("8 opened from the kept copy"), -28)
               .arg(QStringLiteral("size"), -10)
               .arg(QStringLiteral("viewer"), -13)
               .arg(QStringLiteral("frame ms"), 9)
               .arg(QStringLiteral("stall ms"), 9)
               .arg(QStringLiteral("End ms"), 9)
               .arg(QStringLiteral("peak MiB"), 9);
    QJsonObject report;
    QTemporaryDir scratch;
    const QString documentPath = scratch.filePath(QStringLiteral("terms.json"));
    struct Step
    {
        const char *name;
        int sections;
        int bodyBytes;
    };
    // Sections of 2.5 KB up to the reply size limit, and the longest body of the limit.
    const Step steps[] = {{"10 KB", 4, 2500},
                          {"100 KB", 40, 2500},
                          {"1 MB", 400, 2500},
                          {"5 MB", 2000, 2500},
                          {"1 MB body", 1, 1024 * 1024}};
    for (const Step &step : steps) {
        const char *stepName = step.name;
        keepForNextLaunch(documentOfBodies(step.sections, step.bodyBytes), documentPath);
        for (const QString &viewer : viewers) {
            QList<double> frames, stalls, ends, peaks;
            for (int run = 0; run < 5; ++run) {
                QProcess probe;
                probe.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--open"), viewer, documentPath});
                probe.waitForFinished(120000);
                const QList<QByteArray> parts = probe.readAllStandardOutput().trimmed().split(' ');
                if (parts.size() != 4)
                    qFatal("the %s viewer did not open %s", qPrintable(viewer), stepName);
                frames << parts[0].toDouble();
                stalls << parts[1].toDouble();
                ends << parts[2].toDouble();
                peaks << parts[3].toDouble();
            }
            const auto middle = [](QList<double> samples) {
                std::sort(samples.begin(), samples.end());
                return samples[samples.size() / 2];
            };
            out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7\n")
                       .arg(QStringLiteral("8 opened from the kept copy"), -28)
                       .arg(QLatin1String(stepName), -10)
                       .arg(viewer, -13)
                       .arg(middle(frames), 9, 'f', 1)
                       .arg(middle(stalls), 9, 'f', 1)
                       .arg(middle(ends), 9, 'f', 1)
                       .arg(middle(peaks), 9, 'f', 1);
            out.flush();
            report.insert(QStringLiteral("8 opened from the kept copy %1 %2").arg(QLatin1String(stepName), viewer),
                          QJsonObject{{QStringLiteral("first frame ms"), middle(frames)},
                                      {QStringLiteral("longest stall ms"), middle(stalls)},
                                      {QStringLiteral("longest stall to the end ms"), middle(ends)},
                                      {QStringLiteral("peak memory MiB"), middle(peaks)}});
        }
    }
    if (!jsonPath.isEmpty())
        addToReport(jsonPath, report);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
#if defined(TOVRA_BENCH_QUICK)
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
#endif
    QApplication app(argc, argv);
    if (!isolateTestHost(QStringLiteral("bench_stall")))
        return 1;
    TVRManager::setAPIKey(QStringLiteral("a"), QStringLiteral("b"));
    QTextStream out(stdout);
    const QStringList args = app.arguments();
    // --open VIEWER JSON-FILE: one step of the size ladder, on the copy kept and the file
    // written by the ladder, printed as "first-frame stall End peak".
    const qsizetype openAt = args.indexOf(QStringLiteral("--open"));
    if (openAt > 0) {
        // The screen's own fetch goes nowhere: only the kept copy is shown.
        LoopbackSession offline;
        offline.routeToClosedPort(TVRNetworkManager::baseURLComponents().host());
        TVRDocumentManager::sharedInstance()->setSession(&offline);
        const Opened opened = openFromCache(args.value(openAt + 1), args.value(openAt + 2));
        out << opened.firstFrame << ' ' << opened.stall << ' ' << opened.end << ' ' << opened.peakMiB << Qt::endl;
        TVRDocumentManager::sharedInstance()->setSession(nullptr);
        return 0;
    }
    // --keep SECTIONS BODY-BYTES JSON-FILE: what the ladder keeps before a step, for one
    // step's --open to be profiled alone.
    const qsizetype keepAt = args.indexOf(QStringLiteral("--keep"));
    if (keepAt > 0) {
        keepForNextLaunch(documentOfBodies(args.value(keepAt + 1).toInt(), args.value(keepAt + 2).toInt()),
                          args.value(keepAt + 3));
        return 0;
    }
    // --ladder: every viewer at every step, each in a process of its own.
    if (args.contains(QStringLiteral("--ladder")))
        return ladder(out,
                      args.indexOf(QStringLiteral("--json")) > 0
                          ? args.value(args.indexOf(QStringLiteral("--json")) + 1)
                          : QString());
    const qsizetype jsonAt = args.indexOf(QStringLiteral("--json"));
    // One document a run, so that each peak is the document's own: the runs are processes.
    const qsizetype kindAt = args.indexOf(QStringLiteral("--document"));
    const QString kind = kindAt > 0 ? args.value(kindAt + 1) : QString();

    struct Kind
    {
        const char *name;
        int sections;
        int bodyBytes;
    };
    const Kind kinds[] = {{"2,000 sections of 2.5 KB", 2000, 2500}, {"one section of 1 MB", 1, 1024 * 1024}};
    QJsonArray report;
    out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7\n")
               .arg(QStringLiteral("document"), -26)
               .arg(QStringLiteral("bytes"), 9)
               .arg(QStringLiteral("fetch"), 9)
               .arg(QStringLiteral("open"), 9)
               .arg(QStringLiteral("End"), 9)
               .arg(QStringLiteral("refetch"), 9)
               .arg(QStringLiteral("peak MiB"), 9);
    for (const Kind &k : kinds) {
        if (!kind.isEmpty() && kind != QLatin1String(k.name))
            continue;
        const QByteArray json = documentOfBodies(k.sections, k.bodyBytes);
        const Stalls stalls = measure(json);
        const auto ms = [](double value) { return QString::number(value, 'f', 1); };
        out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7\n")
                   .arg(QLatin1String(k.name), -26)
                   .arg(json.size(), 9)
                   .arg(ms(stalls.fetch), 9)
                   .arg(ms(stalls.open), 9)
                   .arg(ms(stalls.end), 9)
                   .arg(ms(stalls.refetch), 9)
                   .arg(stalls.peakMiB, 9);
        out.flush();
        report.append(QJsonObject{{QStringLiteral("document"), QLatin1String(k.name)},
                                  {QStringLiteral("bytes"), json.size()},
                                  {QStringLiteral("longest stall, fetch ms"), stalls.fetch},
                                  {QStringLiteral("longest stall, open ms"), stalls.open},
                                  {QStringLiteral("longest stall, End ms"), stalls.end},
                                  {QStringLiteral("longest stall, fetch while shown ms"), stalls.refetch},
                                  {QStringLiteral("peak memory MiB"), double(stalls.peakMiB)}});
    }
    if (jsonAt > 0) {
        QFile file(args.value(jsonAt + 1));
        if (file.open(QIODevice::WriteOnly))
            file.write(QJsonDocument(report).toJson());
    }
    return 0;
}
