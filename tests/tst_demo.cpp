// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The demo's headless run, as a new user's first command runs it: it exits 0 and leaves
// one phone-sized PNG per screen, and the QML demo, linked as a QML host links the kit,
// loads no Qt Widgets. And a folder of broken documents gets a clear message.

#include <QHttpServer>
#include <QHttpServerRequest>
#include <QImage>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

struct Run
{
    int code = -1; // -1 when the demo did not end normally
    QByteArray output, errors;
};

// Runs the demo with \a arguments, serving this process's events meanwhile (the demo may
// talk to a server of the test's).
Run run(const QStringList &arguments)
{
    QProcess demo;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(u"QT_QPA_PLATFORM"_s); // the demo picks offscreen itself when headless
    demo.setProcessEnvironment(env);
    demo.start(QStringLiteral(TOVRA_DEMO), arguments);
    if (!QTest::qWaitFor([&demo] { return demo.state() == QProcess::NotRunning; }, 60000))
        return {};
    return {demo.exitStatus() == QProcess::NormalExit ? demo.exitCode() : -1, demo.readAllStandardOutput(),
            demo.readAllStandardError()};
}

} // namespace

class tst_Demo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void screenshots_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("names"); // the tour's pictures
        QTest::addColumn<QStringList>("pictures"); // those of a service's own documents
        QTest::newRow("widgets") << QStringList() << QStringList{u"terms-of-service-from-cache.png"_s,
                                                                 u"terms-of-service-dark-system-palette.png"_s,
                                                                 u"privacy-policy-presented.png"_s,
                                                                 u"agreement.png"_s,
                                                                 u"privacy-policy-german.png"_s,
                                                                 u"agreement-arabic.png"_s}
                                 << QStringList{u"terms-of-service.png"_s, u"privacy-policy.png"_s};
        QTest::newRow("QML") << QStringList{u"--quick"_s}
                             << QStringList{u"quick-terms-of-service.png"_s, u"quick-privacy-policy-presented.png"_s,
                                            u"quick-agreement.png"_s}
                             << QStringList{u"quick-termsofservice.png"_s, u"quick-privacypolicy.png"_s};
    }

    void screenshots()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, names);
        QFETCH(QStringList, pictures);
        const bool quick = arguments.contains(u"--quick"_s);
        QTemporaryDir dir;
        const Run demo = run(arguments + QStringList{u"--screenshots"_s, dir.path(), u"--libraries"_s});
        if (demo.code == 2 && quick)
            QSKIP("The demo was built without the QML module");
        QCOMPARE(demo.code, 0);

        // What the process maps once its tour has shown every screen: the widget demo has Qt
        // Widgets, the QML demo has Qt Quick and no Qt Widgets.
        QStringList printed = QString::fromUtf8(demo.output).split(u'\n', Qt::SkipEmptyParts);
        const QString libraries = printed.filter(QRegularExpression(u"^library: /"_s)).join(u'\n');
        printed.removeIf([](const QString &line) { return line.startsWith(u"library: "_s); });
#if defined(Q_OS_LINUX)
        const auto maps = [&libraries](const QString &name) { return libraries.contains(u'/' + name + u".so"_s); };
        QVERIFY2(maps(u"libQt6Quick"_s) == quick, demo.output.constData());
        QVERIFY2(maps(u"libQt6Widgets"_s) != quick, demo.output.constData());
#endif

        QCOMPARE(printed.size(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            const QString path = QDir(dir.path()).filePath(names[i]);
            QCOMPARE(printed[i], path);
            const QImage fresh = QImage(path).convertToFormat(QImage::Format_RGB32);
            QCOMPARE(fresh.size(), QSize(390, 844));

            // The README shows the committed copy: it must still be what the demo renders.
            const QString committed = QStringLiteral(TOVRA_SOURCE_DIR "/docs/screenshots/") + names[i];
            const QImage shown = QImage(committed).convertToFormat(QImage::Format_RGB32);
            QCOMPARE(shown.size(), fresh.size());
            // Pixels with a channel that moved by more than 48 of 255.
            const auto *a = reinterpret_cast<const QRgb *>(fresh.constBits());
            const auto *b = reinterpret_cast<const QRgb *>(shown.constBits());
            const auto moved = [](int before, int after) { return qAbs(before - after) > 48; };
            int differing = 0;
            for (int p = 0; p < fresh.width() * fresh.height(); ++p)
                differing += moved(qRed(a[p]), qRed(b[p])) || moved(qGreen(a[p]), qGreen(b[p]))
                    || moved(qBlue(a[p]), qBlue(b[p]));
            // A few pixels of anti-aliasing may differ; a changed screen differs in thousands.
            const QString rerun = u"./demo.sh %1 --screenshots docs/screenshots"_s.arg(arguments.join(u' '));
            QVERIFY2(differing < fresh.width() * fresh.height() / 500,
                     qPrintable(u"%1 differs from a fresh render in %2 pixels: run %3"_s.arg(
                         committed, QString::number(differing), rerun)));
        }

        // The demo shows the documents of a service given on its command line: here plain HTTP
        // on loopback, under a path prefix.
        QHttpServer server;
        QStringList served;
        server.route(u"/legal/api/<arg>"_s, [&served](const QString &document, const QHttpServerRequest &request) {
            served << request.url().path() + u' ' + QString::fromLatin1(request.value("Authorization"));
            return QJsonObject{
                {u"title"_s, document},
                {u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, document}, {u"body"_s, u"Ours."_s}}}}};
        });
        const quint16 port = server.listen(QHostAddress::LocalHost);

        QTemporaryDir shots;
        const QStringList credentials{u"--key"_s, u"k"_s, u"--secret"_s, u"s"_s, u"--screenshots"_s, shots.path()};
        const Run ours =
            run(arguments + QStringList{u"--service"_s, u"http://127.0.0.1:%1/legal"_s.arg(port)} + credentials);
        QVERIFY2(ours.code == 0, ours.errors.constData());
        for (const QString &picture : pictures)
            QVERIFY2(!QImage(shots.filePath(picture)).isNull(), qPrintable(picture));
        // Each document under the service's path, with "k:s" as Basic credentials.
        for (const QString &document : {u"terms-of-service"_s, u"privacy-policy"_s})
            QVERIFY2(served.contains(u"/legal/api/%1 Basic azpz"_s.arg(document)), qPrintable(served.join(u", "_s)));

        // An address the kit refuses ends the demo with the reason.
        const Run refused = run(arguments + QStringList{u"--service"_s, u"http://legal.example.com"_s} + credentials);
        QCOMPARE(refused.code, 2);
        QVERIFY2(refused.errors.contains("not a service address the kit takes"), refused.errors.constData());
    }

    void userDocuments_data()
    {
        QTest::addColumn<QByteArray>("terms");
        QTest::addColumn<QString>("message"); // null when the demo takes the documents

        QTest::newRow("not JSON") << QByteArray("{\"title\": ") << u"terms-of-service.json: not valid JSON at byte"_s;
        QTest::newRow("not an object") << QByteArray("[]")
                                       << u"terms-of-service.json: the document must be a JSON object"_s;
        QTest::newRow("sections missing") << QByteArray("{\"title\":\"T\"}") << u"\"sections\" must be an array"_s;
        QTest::newRow("section of the wrong kind")
            << QByteArray("{\"sections\":[{\"body\":\"b\"}, 7]}") << u"section 2 must be a JSON object"_s;
        QTest::newRow("bad date") << QByteArray("{\"updatedAt\":\"2016-03-01\",\"sections\":[]}")
                                  << u"\"updatedAt\" must read like 2016-03-01T12:30:00.000+0000"_s;
        QTest::newRow("good") << QByteArray("{\"title\":\"Mine\",\"sections\":[{\"title\":\"A\",\"body\":\"B\"}]}")
                              << QString();
    }

    void userDocuments()
    {
        QFETCH(QByteArray, terms);
        QFETCH(QString, message);

        QTemporaryDir documents;
        QTemporaryDir shots;
        // Both documents alike: the terms, read first, are the broken one.
        for (const QString &name : {u"terms-of-service.json"_s, u"privacy-policy.json"_s}) {
            QFile file(documents.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(terms) == terms.size());
        }

        // A broken document ends the demo with what is wrong and in which file.
        const Run demo = run({u"--documents"_s, documents.path(), u"--screenshots"_s, shots.path()});
        QCOMPARE(demo.code, message.isNull() ? 0 : 2);
        QVERIFY2(demo.errors.contains(message.toUtf8()), demo.errors.constData());
        QVERIFY(message.isNull() || demo.errors.contains(documents.filePath(u"terms-of-service.json"_s).toUtf8()));
    }
};

QTEST_GUILESS_MAIN(tst_Demo)
#include "tst_demo.moc"
