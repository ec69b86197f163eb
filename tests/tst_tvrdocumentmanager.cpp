// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "DocumentJson.h"
#include "HelperProcess.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <TovraCore.h>

#include <QtTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

// Records every delegate call, in order.
class RecordingDelegate : public QObject, public TVRDocumentManagerDelegate
{
public:
    QStringList calls;
    QList<TVRError> errors;

    void managerDidFinishWithSuccess(TVRDocumentManager *, bool success) override
    {
        calls << (success ? u"finished"_s : u"finished without success"_s);
    }
    void managerFailedWithError(TVRDocumentManager *, const TVRError &error) override
    {
        calls << u"failed"_s;
        errors << error;
    }
};

// A reply of one section, whose body names the app.
QByteArray sampleReply(const QString &title, const QString &updatedAt = u"2016-03-01T12:30:00.000+0000"_s)
{
    const QJsonObject reply{
        {u"_id"_s, u"doc-"_s + title},
        {u"title"_s, title},
        {u"updatedAt"_s, updatedAt},
        {u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, u"Scope"_s}, {u"body"_s, u"##### applies."_s}}}}};
    return QJsonDocument(reply).toJson(QJsonDocument::Compact);
}

// The kit's debug lines, while one lives.
class DebugLines
{
public:
    DebugLines() { previous = qInstallMessageHandler(record); }
    ~DebugLines() { qInstallMessageHandler(previous); }
    static inline QStringList lines;

private:
    static inline QtMessageHandler previous = nullptr;
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type == QtDebugMsg && qstrcmp(context.category, "tovra") == 0)
            lines << message;
        previous(type, context, message);
    }
};

// Everything a screen reads of \a document.
QStringList readOut(TVRDocument &document)
{
    // A document without a date is dated when it is asked.
    const QDateTime date = document.date();
    const bool now = date.isValid() && qAbs(date.secsTo(QDateTime::currentDateTime())) < 60;
    QStringList texts{document.identifier(), document.title(), now ? u"now"_s : date.toString(Qt::ISODateWithMs)};
    for (const auto &section : document.sections())
        texts << section->title() << section->body();
    return texts;
}

} // namespace

class tst_TVRDocumentManager : public QObject
{
    Q_OBJECT

    TestHttpsServer m_server;
    TestSession m_session;
    std::unique_ptr<TVRDocumentManager> m_manager;

    bool fetchTerms(RecordingDelegate &delegate, int calls = 1)
    {
        m_manager->setDelegate(&delegate);
        m_manager->fetchTermsOfService();
        return QTest::qWaitFor([&] { return delegate.calls.size() >= calls && m_session.liveReplies() == 0; }, 30000);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(startLoopbackService(u"tst_tvrdocumentmanager"_s, m_server, m_session)); }

    void init()
    {
        removeKeptCopies();
        m_server.reply(TestReply::json(200, sampleReply(u"Terms"_s)));
        m_manager = std::make_unique<TVRDocumentManager>();
        m_manager->setSession(&m_session);
    }

    void cleanup()
    {
        TVRManager::setMaximumReplySize(0); // back to the default
        m_manager.reset();
        QTRY_COMPARE(m_session.liveReplies(), 0);
    }

    void keptCopyAtLaunch_data()
    {
        QTest::addColumn<QByteArray>("file"); // the kept file's text; null for none
        QTest::addColumn<QString>("title"); // of the document then held; "-" for none

        // Release 1.0 kept a copy in the host's settings: it is read where no file is kept.
        QTest::newRow("release 1.0's copy") << QByteArray() << u"Cached"_s;
        // A kept file that does not hold exactly one value is no copy: nothing is shown from it.
        QTest::newRow("two values") << QByteArray(R"([{"title":"A"},{"title":"B"}])") << u"-"_s;
        QTest::newRow("no value") << QByteArray("[]") << u"-"_s;
        QTest::newRow("a value not in an array") << QByteArray(R"({"title":"A"})") << u"-"_s;
        // A copy damaged on disk: only what QJsonDocument reads is shown.
        QTest::newRow("UTF-8") << QByteArray("[{\"title\":\"\xc3\xa9\xe4\xb8\xad\xf0\x9f\x98\x80\"}]") << u"é中😀"_s;
        QTest::newRow("a character cut short") << QByteArray("[{\"title\":\"\xe4\xb8X\"}]") << u"-"_s;
        QTest::newRow("no first byte") << QByteArray("[{\"title\":\"\x80\x80\x80\x80\"}]") << u"-"_s;
        QTest::newRow("an overlong character") << QByteArray("[{\"title\":\"\xc0\xafX\"}]") << u"-"_s;
        QTest::newRow("an overlong character of four bytes")
            << QByteArray("[{\"title\":\"\xf0\x8f\xbf\xbf\"}]") << u"-"_s;
        QTest::newRow("nested too deep") << "[{\"title\":\"A\",\"x\":" + QByteArray(1100, '[') + QByteArray(1100, ']')
                + "}]" << u"-"_s;
        QTest::newRow("a surrogate in UTF-8") << QByteArray("[{\"title\":\"\xed\xa0\x80\"}]") << u"-"_s;
        QTest::newRow("past U+10FFFF") << QByteArray("[{\"title\":\"\xf4\x90\x80\x80\"}]") << u"-"_s;
        QTest::newRow("a broken escape") << QByteArray(R"([{"title":"\u00zz"}])") << u"-"_s;
        QTest::newRow("the file cut short") << QByteArray(R"([{"title":"A","sections":[{"body":"B"})") << u"-"_s;
        QTest::newRow("the file cut in a character") << QByteArray("[{\"title\":\"\xf0\x9f") << u"-"_s;
    }

    void keptCopyAtLaunch()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, title);

        QFile kept(keptCopyPath(kTVRTermsOfServiceDataPath));
        if (file.isNull())
            QSettings().setValue(kTVRTermsOfServiceDataPath, QString::fromUtf8(sampleReply(u"Cached"_s)));
        else
            QVERIFY(QDir().mkpath(QFileInfo(kept).absolutePath()) && kept.open(QIODevice::WriteOnly)
                    && kept.write(file) == file.size() && kept.flush());
        const auto first = m_manager->termsOfService();
        QCOMPARE(first ? first->title() : u"-"_s, title);
        // Held from then on: the same document, even once the copy is gone.
        QSettings().remove(kTVRTermsOfServiceDataPath);
        kept.remove();
        QCOMPARE(m_manager->termsOfService(), first);

        // Setting a document keeps no copy of it.
        m_manager->setTermsOfService(std::make_shared<TVRDocument>(QJsonObject()));
        QVERIFY(keptCopy(kTVRTermsOfServiceDataPath).isUndefined());
    }

    // The copy read at the next launch reads exactly as the reply it keeps.
    void keptCopyReadsAsItsReply_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<bool>("indexed"); // read without a parse of the whole copy

        const QByteArray date = R"("updatedAt":"2016-03-01T12:30:00.000+0100")";
        QTest::newRow("sample") << sampleReply(u"Terms"_s) << true;
        QTest::newRow("escapes, scripts")
            << "{\"title\":\"\\\"Q\\\" \\\\ \\/ \\b\\f\\n\\r\\t \\u00e9\\u4e2d \\ud83d\\ude00\"," + date
                + R"(,"sections":[{"title":"مرحبا שלום 中文 😀","body":"a\u0000b ##### é"}]})"
            << true;
        QTest::newRow("other kinds") << QByteArray(
            R"({"_id":1024,"title":null,"updatedAt":false,"sections":[{"title":[1,-0.5,{"a":true}],"body":{"b":null}},7,"x",null,[]]})")
                                     << true;
        QTest::newRow("repeated keys") << R"({"title":"A","sections":[{"body":"1"}],"title":"B",)" + date
                + R"(,"sections":1,"sections":[{"title":"T","title":"U","body":""}]})"
                                       << true;
        QTest::newRow("no sections") << R"({"title":"A",)" + date + R"(,"sections":{"body":"B"}})" << true;
        QTest::newRow("spaces") << " \n{ \"title\" :\t\"A\" , " + date
                + " ,\"sections\" : [ { } , { \"body\" : \"B\" } ] }\r\n"
                                << true;
        QTest::newRow("not an object") << QByteArray(R"(["a", {"title": "A"}])") << true;
        // Read whole, not indexed.
        QTest::newRow("lone surrogate") << R"({"title":"\ud800 \udc00",)" + date + "}" << false;
        QTest::newRow("control character") << "{\"title\":\"a\tb\"," + date + "}" << false;
        QTest::newRow("exponent, long number")
            << R"({"title":1e2,)" + date + R"(,"sections":[{"body":12345678901234567890}]})" << false;
        QTest::newRow("escaped key") << R"({"t\u0069tle":"A",)" + date + "}" << false;
        QTest::newRow("deep") << R"({"sections":[{"body":)" + QByteArray(100, '[') + QByteArray(100, ']') + "}]," + date
                + "}" << false;
    }

    void keptCopyReadsAsItsReply()
    {
        QFETCH(QByteArray, reply);
        QFETCH(bool, indexed);

        RecordingDelegate delegate;
        m_server.reply(TestReply::json(200, reply));
        QVERIFY(fetchTerms(delegate));
        QCOMPARE(delegate.calls, QStringList{u"finished"_s});
        const QStringList fetched = readOut(*m_manager->termsOfService());
        m_manager = std::make_unique<TVRDocumentManager>(); // the next launch
        DebugLines::lines.clear();
        const DebugLines debugLines;
        const auto kept = m_manager->termsOfService();
        QVERIFY(kept);
        QCOMPARE(readOut(*kept), fetched);
        QCOMPARE(DebugLines::lines.contains(u"A kept copy that is not plain JSON is parsed whole"_s), !indexed);
    }

    // A copy large enough to be read on another thread, as the screens have it read as they are
    // made: what is held or kept after the read began wins over what it read.
    void keptCopyReadAhead_data()
    {
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<QString>("title"); // of the document then held; "-" for none

        QTest::newRow("nothing") << u"nothing"_s << u"Kept"_s;
        QTest::newRow("a reply, then nothing held") << u"reply"_s << u"Terms"_s;
        QTest::newRow("the application renamed") << u"rename"_s << u"-"_s;
        QTest::newRow("the manager gone") << u"gone"_s << u"Kept"_s;
    }

    void keptCopyReadAhead()
    {
        QFETCH(QString, meanwhile);
        QFETCH(QString, title);

        QJsonObject large = QJsonDocument::fromJson(sampleReply(u"Kept"_s)).object();
        large[u"sections"_s] = QJsonArray{QJsonObject{{u"body"_s, QString(300'000, u'x')}}};
        keepCopy(kTVRTermsOfServiceDataPath, large);
        m_manager->readAhead(TVRDocumentManager::Document::TermsOfService);
        const QString application = QCoreApplication::applicationName();
        RecordingDelegate delegate;
        if (meanwhile == u"reply"_s) {
            QVERIFY(fetchTerms(delegate));
            m_manager->setTermsOfService(nullptr);
        } else if (meanwhile == u"rename"_s) {
            QCoreApplication::setApplicationName(application + u" 2"_s);
        } else if (meanwhile == u"gone"_s) {
            m_manager = std::make_unique<TVRDocumentManager>();
        }
        const auto held = m_manager->termsOfService();
        QCoreApplication::setApplicationName(application);
        QCOMPARE(held ? held->title() : u"-"_s, title);
    }

    void unwritableCopyIsLogged_data()
    {
        QTest::addColumn<QString>("blocked"); // a folder where it ends in .json, else a file
        QTest::newRow("a file has the folder's name") << u"/Tovra"_s;
        QTest::newRow("a folder has the copy's name") << u"/Tovra/kTVRTermsOfServiceDataPath.json"_s;
    }

    void unwritableCopyIsLogged()
    {
        QFETCH(QString, blocked);

        const QString config = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
        QVERIFY(QDir().mkpath(QFileInfo(config + blocked).absolutePath()));
        QFile blocker(config + blocked);
        QVERIFY(blocked.endsWith(u".json"_s) ? QDir().mkpath(config + blocked) : blocker.open(QIODevice::WriteOnly));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Keeping kTVRTermsOfServiceDataPath failed: "_s));
        RecordingDelegate delegate;
        const bool fetched = fetchTerms(delegate);
        QFile::remove(config + u"/Tovra"_s); // the next test's set-up removes a folder
        QVERIFY(fetched);
        // The reply is still the document, for this launch.
        QCOMPARE(delegate.calls, QStringList{u"finished"_s});
        QCOMPARE(m_manager->termsOfService()->title(), u"Terms"_s);
    }

    void secondReply_data()
    {
        QTest::addColumn<TestReply>("reply");
        QTest::addColumn<qint64>("limit"); // the largest reply taken; 0 for the default
        QTest::addColumn<int>("code"); // of the failure; 0 where the reply is the document
        QTest::addColumn<QString>("message"); // a part of the failure's message
        QTest::addColumn<QJsonValue>("copy"); // the copy then kept; undefined where the earlier one stays

        const QJsonValue stays(QJsonValue::Undefined);
        const auto failure = [&](const char *name, const TestReply &reply, int code, const QString &text) {
            QTest::newRow(name) << reply << qint64(2048) << code << text << stays;
        };
        const auto answer = [](const char *name, const TestReply &reply, const QJsonValue &copy, qint64 limit = 0) {
            QTest::newRow(name) << reply << limit << 0 << QString() << copy;
        };
        const auto ok = [](const QByteArray &body) { return TestReply::json(200, body); };
        const auto parsed = [](const QByteArray &json) { return QJsonValue(QJsonDocument::fromJson(json).object()); };

        // A failure changes nothing, neither the document held nor its copy. Here the status line
        // came, then the connection broke off in the middle of the body.
        TestReply cut = ok(sampleReply(u"Cut"_s));
        cut.cutBodyAt = 40;
        failure("body cut short", cut, QNetworkReply::RemoteHostClosedError, {});
        const QByteArray json = QJsonDocument(documentJson(u"Large"_s, 20)).toJson(QJsonDocument::Compact);
        failure("over the limit, announced by Content-Length", ok(json), QNetworkReply::UnknownContentError,
                u"The reply of %1 bytes is larger than the limit of 2048 bytes"_s.arg(json.size()));
        // No length is announced: the bytes received tell.
        failure("over the limit, chunked", TestReply::chunked(200, json), QNetworkReply::UnknownContentError,
                u"more than the limit of 2048 bytes"_s);

        // A reply of exactly the largest size taken is the document.
        answer("the limit, announced by Content-Length", ok(json), parsed(json), json.size());
        answer("the limit, chunked", TestReply::chunked(200, json), parsed(json), json.size());

        // Any JSON is the document, and kept exactly, whatever its types.
        const QByteArray typed =
            R"({"title":null,"version":3.25,"published":true,"updatedAt":"2016-03-01T12:30:00.000+0000",)"
            R"("sections":[{"title":"Scope","body":"##### applies."}],"extra":{"list":[null,false,"",{}]}})";
        const QByteArray large = QJsonDocument(documentJson(u"Large"_s, 12200)).toJson(QJsonDocument::Compact);
        answer("every JSON type", ok(typed), parsed(typed));
        answer("4.8 MB document, under the limit", ok(large), parsed(large));
        answer("byte order mark and blanks", ok("\xef\xbb\xbf \r\n" + typed), parsed(typed));
        answer("an array", ok(" [1,2]"), QJsonArray{1, 2});
        // An array's own text is kept only when it starts the reply: after a mark, it is written out again.
        answer("an array after a byte order mark", ok("\xef\xbb\xbf[1,2]"), QJsonArray{1, 2});

        // No JSON: the held document is one without content, and the copy stays.
        answer("not JSON", TestReply::json(502, "<html>Bad gateway</html>"), stays);
        answer("nested 10,000 deep", ok(QByteArray(10000, '[') + QByteArray(10000, ']')), stays);
    }

    void secondReply()
    {
        QFETCH(TestReply, reply);
        QFETCH(qint64, limit);
        QFETCH(int, code);
        QFETCH(QString, message);
        QFETCH(QJsonValue, copy);

        RecordingDelegate delegate;
        QVERIFY(fetchTerms(delegate));
        const auto first = m_manager->termsOfService();
        const QJsonValue before = keptCopy(kTVRTermsOfServiceDataPath);
        QVERIFY(before.isObject());

        TVRManager::setMaximumReplySize(limit);
        m_server.reply(reply);
        QVERIFY(fetchTerms(delegate, 2));
        QCOMPARE(delegate.calls, QStringList({u"finished"_s, code ? u"failed"_s : u"finished"_s}));
        QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), copy.isUndefined() ? before : copy);
        // An object's or an array's text is kept as it came, not written out again.
        QFile kept(keptCopyPath(kTVRTermsOfServiceDataPath));
        const QByteArray text = reply.body.trimmed();
        if (!copy.isUndefined() && (text.startsWith('{') || text.startsWith('[')))
            QCOMPARE(kept.open(QIODevice::ReadOnly) ? kept.readAll() : QByteArray(), '[' + reply.body + ']');
        const auto held = m_manager->termsOfService();
        if (code) {
            const TVRError error = delegate.errors.constFirst();
            QCOMPARE(error.code(), code);
            QVERIFY2(error.message().contains(message), qPrintable(error.message()));
            QCOMPARE(held, first);
        } else {
            // The reply is held; where it is no JSON, as a document without content.
            TVRDocument expected(copy);
            QCOMPARE(held->title(), expected.title());
            QCOMPARE(held->sections().size(), expected.sections().size());
        }
    }

    void nobodyLeftToTell()
    {
        // A delegate that is not a QObject: the manager cannot watch it, so it does not keep it.
        TVRDocumentManagerDelegate plain;
        m_manager->setDelegate(&plain);
        QVERIFY(!m_manager->delegate());

        // A fetch whose manager is gone before the reply still keeps the copy: the reply is held
        // until the request has reached the server and the manager is gone.
        TestReply late = TestReply::json(200, sampleReply(u"Late"_s));
        late.held = true;
        m_server.reply(late);
        const qsizetype requests = m_server.requests().size();
        m_manager->fetchTermsOfService();
        m_manager.reset();
        QTRY_COMPARE(m_server.requests().size(), requests + 1);
        m_server.releaseHeld();
        QTRY_VERIFY(keptCopy(kTVRTermsOfServiceDataPath).isObject());
        QCOMPARE(TVRDocumentManager().termsOfService()->title(), u"Late"_s);
    }

    // Both documents are asked for at once and answer in the other order; each reply is held
    // for its own document only. (That the delegate set last is the one told, and that it
    // finds the reply held, tst_documentscreens checks; that a failure is signalled with its
    // document, tst_documentmodel.)
    void listenersHearEachAnswer()
    {
        using Document = TVRDocumentManager::Document;
        QSignalSpy changed(m_manager.get(), &TVRDocumentManager::documentChanged);
        m_server.setHandler([](const TestRequest &request) {
            TestReply reply = TestReply::json(200, sampleReply(request.path));
            reply.held = request.path == u"/api/terms-of-service"_s;
            return reply;
        });
        m_manager->fetchTermsOfService();
        m_manager->fetch(Document::PrivacyPolicy);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].value<Document>(), Document::PrivacyPolicy);
        QVERIFY(!m_manager->termsOfService());
        m_server.releaseHeld();
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(changed[1][0].value<Document>(), Document::TermsOfService);
        QCOMPARE(m_manager->termsOfService()->title(), u"/api/terms-of-service"_s);
        QCOMPARE(m_manager->privacyPolicy()->title(), u"/api/privacy-policy"_s);

        // Setting a document tells the listeners too.
        m_manager->setPrivacyPolicy(std::make_shared<TVRDocument>(QJsonObject()));
        QCOMPARE(changed.size(), 3);
        QCOMPARE(changed[2][0].value<Document>(), Document::PrivacyPolicy);
    }

    void documentSurvivesAKill()
    {
        m_server.reply(TestReply::json(200, sampleReply(u"Terms of Service"_s, u"2016-03-01T12:30:00.000-0800"_s)));

        // A launch is killed as its delegate hears of the reply: the document is on disk by then,
        // and the next launch, which sends no request, has it.
        QProcess first;
        first.start(QStringLiteral(TOVRA_TEST_HELPER), {u"fetch-terms-and-die"_s, QString::number(m_server.port())});
        QVERIFY(first.waitForStarted());
        QVERIFY(QTest::qWaitFor([&first] { return first.state() == QProcess::NotRunning; }, 60000));
        QCOMPARE(first.exitStatus(), QProcess::CrashExit);
        QCOMPARE(first.exitCode(), SIGKILL);
        QCOMPARE(runHelper({u"read-terms"_s}),
                 QStringList({u"doc-Terms of Service"_s, u"Terms of Service"_s, u"2016-03-01T12:30:00.000-08:00"_s,
                              u"Scope | tovra-host applies."_s}));
    }
};

QTEST_MAIN(tst_TVRDocumentManager)
#include "tst_tvrdocumentmanager.moc"
