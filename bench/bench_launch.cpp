// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// What a user waits for: from exec() of a host to the first frame of the Terms of Service,
// its document kept from an earlier launch. Four hosts (launch_host.cpp) are started in
// turn, each a fresh process every time: the kit's widget screen against a QTextBrowser,
// and the kit's QML page against a ScrollView with a rich-text TextArea. Prints the median
// and the spread (10th to 90th percentile) of each, and how much of it passed before
// main(): loading and linking the libraries.
//   tests/run-isolated.sh build-release/bench/bench_launch [--runs N] [--json FILE]
// With --json the rows are added to FILE's object, which is made if there is none.

#include "BenchDocuments.h"
#include "TestFixture.h"

#include <Tovra.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <ctime>

namespace {

struct Host
{
    const char *name;
    const char *program;
};

const Host hosts[] = {{"widgets", TOVRA_LAUNCH_WIDGETS},
                      {"QTextBrowser", TOVRA_LAUNCH_BROWSER},
                      {"QML", TOVRA_LAUNCH_QUICK},
                      {"QML peer", TOVRA_LAUNCH_QUICK_PEER}};
constexpr int hostCount = int(std::size(hosts));

struct Launch
{
    double main = -1; // ms from exec to main()
    double frame = -1; // ms from exec to the first frame
};

qint64 monotonicNs()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

Launch launch(const Host &host, const QString &jsonPath)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    environment.insert(QStringLiteral("TOVRA_LAUNCH_T0"), QString::number(monotonicNs()));
    process.setProcessEnvironment(environment);
    process.start(QString::fromLocal8Bit(host.program), {jsonPath});
    Launch result;
    while (result.frame < 0 && process.waitForReadyRead(30000)) {
        while (process.canReadLine()) {
            const QList<QByteArray> parts = process.readLine().trimmed().split(' ');
            const double ms = parts.value(1).toLongLong() / 1e6;
            if (parts.value(0) == "main")
                result.main = ms;
            else if (parts.value(0) == "frame")
                result.frame = ms;
        }
    }
    process.waitForFinished(30000);
    if (result.frame < 0)
        qFatal("%s showed no frame: %s", host.name, process.readAllStandardError().constData());
    return result;
}

double percentile(QList<double> samples, double p)
{
    std::sort(samples.begin(), samples.end());
    return samples.isEmpty() ? 0 : samples[std::min<qsizetype>(samples.size() - 1, qsizetype(p * samples.size()))];
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // The hosts' organisation and application: the kit's copy is kept where they read it.
    QCoreApplication::setOrganizationName(QStringLiteral("Tovra Bench"));
    QCoreApplication::setApplicationName(QStringLiteral("launch"));
    const QStringList args = app.arguments();
    const qsizetype runsAt = args.indexOf(QStringLiteral("--runs"));
    const int runs = runsAt > 0 ? std::max(1, args.value(runsAt + 1).toInt()) : 15;
    const qsizetype jsonAt = args.indexOf(QStringLiteral("--json"));

    QTemporaryDir scratch;
    QTextStream out(stdout);
    out << QStringLiteral("%1 %2 %3 %4 %5 %6\n")
               .arg(QStringLiteral("launch to first frame, ms"), -34)
               .arg(QStringLiteral("size"), -8)
               .arg(QStringLiteral("median"), 8)
               .arg(QStringLiteral("p10-p90"), 15)
               .arg(QStringLiteral("main()"), 8)
               .arg(QStringLiteral("ratio"), 7);
    QJsonObject report;
    for (const char *sizeName : {"small", "large"}) {
        const Size &size = *std::find_if(std::begin(sizes), std::end(sizes),
                                         [&](const Size &s) { return qstrcmp(s.name, sizeName) == 0; });
        const QByteArray json = makeDocument(size);
        removeKeptCopies();
        keepCopy(kTVRTermsOfServiceDataPath, QJsonDocument::fromJson(json).object());
        const QString jsonPath = scratch.filePath(QStringLiteral("terms.json"));
        QFile file(jsonPath);
        if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size())
            qFatal("cannot write %s", qPrintable(jsonPath));
        file.close();

        // Each host once before timing, so that every one meets warm file caches; then
        // round after round, the order turning, so that none always follows the same one.
        QList<double> frames[hostCount];
        QList<double> mains[hostCount];
        for (const Host &host : hosts)
            launch(host, jsonPath);
        for (int run = 0; run < runs; ++run) {
            for (int i = 0; i < hostCount; ++i) {
                const int h = (i + run) % hostCount;
                const Launch result = launch(hosts[h], jsonPath);
                frames[h] << result.frame;
                mains[h] << result.main;
            }
        }
        double medians[hostCount];
        for (int h = 0; h < hostCount; ++h) {
            medians[h] = percentile(frames[h], 0.5);
            // The kit's hosts against their peers: widgets / QTextBrowser, QML / QML peer.
            const int peer = h % 2 == 0 ? h + 1 : -1;
            const QString measure = QStringLiteral("7 launch to first frame, %1").arg(QLatin1String(hosts[h].name));
            const double spreadLow = percentile(frames[h], 0.1);
            const double spreadHigh = percentile(frames[h], 0.9);
            const double toMain = percentile(mains[h], 0.5);
            out << QStringLiteral("%1 %2 %3 %4 %5")
                       .arg(measure, -34)
                       .arg(QLatin1String(sizeName), -8)
                       .arg(medians[h], 8, 'f', 1)
                       .arg(QStringLiteral("%1-%2").arg(spreadLow, 0, 'f', 1).arg(spreadHigh, 0, 'f', 1), 15)
                       .arg(toMain, 8, 'f', 1);
            QJsonObject entry{{QStringLiteral("median"), medians[h]},
                              {QStringLiteral("p10"), spreadLow},
                              {QStringLiteral("p90"), spreadHigh},
                              {QStringLiteral("to main"), toMain},
                              {QStringLiteral("unit"), QStringLiteral("ms")}};
            if (peer > 0) {
                // The peer's median is known only after its own row: measured the same way.
                const double peerMedian = percentile(frames[peer], 0.5);
                out << QStringLiteral(" %1 (%2)")
                           .arg(medians[h] / peerMedian, 7, 'f', 2)
                           .arg(QLatin1String(hosts[peer].name));
                entry.insert(QStringLiteral("ratio"), medians[h] / peerMedian);
            }
            out << Qt::endl;
            report.insert(measure + QLatin1Char(' ') + QLatin1String(sizeName), entry);
        }
    }

    if (jsonAt > 0) {
        addToReport(args.value(jsonAt + 1), report);
    }
    return 0;
}
