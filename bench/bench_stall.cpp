// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The longest the GUI thread is held, and the peak memory, for documents at the reply size
// limit: fetched, shown, scrolled to the end with the End key, and fetched again while
// shown. A timer on the GUI thread that should tick every millisecond is the probe: the
// longest gap between its ticks is the longest time nothing else could run there.
//   tests/run-isolated.sh build-release/bench/bench_stall [--json FILE]

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
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include <atomic>

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

QByteArray document(int sections, int bodyBytes)
{
    QJsonArray list;
    const QString sentence = QStringLiteral("The service keeps what you write for as long as you keep it. ");
    const QString body = sentence.repeated(bodyBytes / int(sentence.size()) + 1).left(bodyBytes);
    for (int i = 0; i < sections; ++i)
        list.append(QJsonObject{{QStringLiteral("title"), QStringLiteral("%1. Section").arg(i + 1)},
                                {QStringLiteral("body"), body}});
    return QJsonDocument(QJsonObject{{QStringLiteral("title"), QStringLiteral("Terms of Service")},
                                     {QStringLiteral("updatedAt"), QStringLiteral("2017-07-04T10:00:00.000+0000")},
                                     {QStringLiteral("sections"), list}})
        .toJson(QJsonDocument::Compact);
}

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

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (!isolateTestHost(QStringLiteral("bench_stall")))
        return 1;
    TVRManager::setAPIKey(QStringLiteral("a"), QStringLiteral("b"));
    QTextStream out(stdout);
    const QStringList args = app.arguments();
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
        const QByteArray json = document(k.sections, k.bodyBytes);
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
