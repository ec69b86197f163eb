// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "DocumentJson.h"
#include "HelperProcess.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <TVRDocumentManager.h>
#include <TVRDocumentManagerDelegate.h>
#include <TVRManager.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
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
    QStringList titlesHeld; // at each "finished": the titles of both documents held then

    void managerDidFinishWithSuccess(TVRDocumentManager *manager, bool success) override
    {
        calls << (success ? u"finished"_s : u"finished without success"_s);
        const auto terms = manager->termsOfService();
        const auto privacy = manager->privacyPolicy();
        titlesHeld << (terms ? terms->title() : u"-"_s) + u" + "_s + (privacy ? privacy->title() : u"-"_s);
    }
    void managerFailedWithError(TVRDocumentManager *, const TVRError &error) override
    {
        calls << u"failed"_s;
        errors << error;
    }
};

// A delegate that is not a QObject: the manager cannot watch it, so it does not keep it.
class PlainDelegate : public TVRDocumentManagerDelegate
{
};

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject sampleDocument(const QString &title)
{
    return QJsonObject{
        {u"_id"_s, u"doc-"_s + title},
        {u"title"_s, title},
        {u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s},
        {u"sections"_s, QJsonArray{QJsonObject{{u"title"_s, u"Scope"_s}, {u"body"_s, u"##### applies."_s}}}},
    };
}

} // namespace

class tst_TVRDocumentManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void cacheAnswersWhileNothingIsHeld();
    void unwritableCopyIsLogged_data();
    void unwritableCopyIsLogged();
    void failedFetchChangesNothing_data();
    void failedFetchChangesNothing();
    void replyOfTheLimitIsTaken_data();
    void replyOfTheLimitIsTaken();
    void anyReplyIsAnAnswer_data();
    void anyReplyIsAnAnswer();
    void delegateIsHeldWeakly();
    void lastDelegateHearsBothDocuments();
    void signalsReachEveryListener();
    void managerGoneStillCaches();
    void documentSurvivesARestart_data();
    void documentSurvivesARestart();

private:
    bool fetchTerms(RecordingDelegate &delegate, int calls = 1);

    TestHttpsServer m_server;
    TestSession m_session;
    std::unique_ptr<TVRDocumentManager> m_manager;
};

void tst_TVRDocumentManager::initTestCase()
{
    QVERIFY(startLoopbackService(u"tst_tvrdocumentmanager"_s, m_server, m_session));
    TVRManager::setAPIKey(u"a"_s, u"b"_s);
}

void tst_TVRDocumentManager::init()
{
    removeKeptCopies();
    m_server.reply(TestReply::json(200, compact(sampleDocument(u"Terms"_s))));
    m_manager = std::make_unique<TVRDocumentManager>();
    m_manager->setSession(&m_session);
}

void tst_TVRDocumentManager::cleanup()
{
    m_manager.reset();
    QTRY_COMPARE(m_session.liveReplies(), 0);
}

bool tst_TVRDocumentManager::fetchTerms(RecordingDelegate &delegate, int calls)
{
    m_manager->setDelegate(&delegate);
    m_manager->fetchTermsOfService();
    return QTest::qWaitFor([&] { return delegate.calls.size() >= calls && m_session.liveReplies() == 0; }, 30000);
}

void tst_TVRDocumentManager::cacheAnswersWhileNothingIsHeld()
{
    // A copy that release 1.0 kept in the host's settings is read until a reply replaces it.
    QSettings().setValue(kTVRTermsOfServiceDataPath, QString::fromUtf8(compact(sampleDocument(u"Cached"_s))));
    const auto first = m_manager->termsOfService();
    QVERIFY(first);
    QCOMPARE(first->title(), u"Cached"_s);
    // Held from then on: the same document, even once the copy is gone.
    QSettings().remove(kTVRTermsOfServiceDataPath);
    QCOMPARE(m_manager->termsOfService(), first);

    // Setting a document holds it and leaves the copy alone.
    auto given = std::make_shared<TVRDocument>(sampleDocument(u"Given"_s));
    m_manager->setTermsOfService(given);
    QCOMPARE(m_manager->termsOfService(), given);
    QVERIFY(keptCopy(kTVRTermsOfServiceDataPath).isUndefined());
    m_manager->setTermsOfService(nullptr);
    QVERIFY(!m_manager->termsOfService());
}

void tst_TVRDocumentManager::unwritableCopyIsLogged_data()
{
    QTest::addColumn<QString>("blocked");
    QTest::newRow("a file has the folder's name") << u"/Tovra"_s;
    QTest::newRow("a folder has the copy's name") << u"/Tovra/kTVRTermsOfServiceDataPath.json"_s;
}

void tst_TVRDocumentManager::unwritableCopyIsLogged()
{
    QFETCH(QString, blocked);

    const QString config = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QDir(config + u"/Tovra"_s).removeRecursively();
    QVERIFY(QDir().mkpath(QFileInfo(config + blocked).absolutePath()));
    if (blocked.endsWith(u".json"_s)) {
        QVERIFY(QDir().mkpath(config + blocked));
    } else {
        QFile blocker(config + blocked);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Keeping kTVRTermsOfServiceDataPath failed: "_s));
    RecordingDelegate delegate;
    const bool fetched = fetchTerms(delegate);
    QFile::remove(config + u"/Tovra"_s);
    QDir(config + u"/Tovra"_s).removeRecursively();
    QVERIFY(fetched);
    // The reply is still the document, for this launch.
    QCOMPARE(delegate.calls, QStringList{u"finished"_s});
    QCOMPARE(m_manager->termsOfService()->title(), u"Terms"_s);
}

void tst_TVRDocumentManager::failedFetchChangesNothing_data()
{
    QTest::addColumn<TestReply>("reply");
    QTest::addColumn<qint64>("limit"); // the largest reply taken; 0 for the default
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message"); // a part of the error's message

    QTest::newRow("connection dropped") << TestReply::dropped() << qint64(0)
                                        << int(QNetworkReply::RemoteHostClosedError) << QString();
    // The status line came, then the connection broke off in the middle of the body.
    TestReply cut = TestReply::json(200, compact(sampleDocument(u"Cut"_s)));
    cut.cutBodyAt = 40;
    QTest::newRow("body cut short") << cut << qint64(0) << int(QNetworkReply::RemoteHostClosedError) << QString();

    const QByteArray json = compact(documentJson(u"Large"_s, 20));
    QTest::newRow("over the limit, announced by Content-Length")
        << TestReply::json(200, json) << qint64(2048) << int(QNetworkReply::UnknownContentError)
        << u"The reply of %1 bytes is larger than the limit of 2048 bytes"_s.arg(json.size());
    // No length is announced: the bytes received tell.
    QTest::newRow("over the limit, chunked")
        << TestReply::chunked(200, json) << qint64(2048) << int(QNetworkReply::UnknownContentError)
        << u"more than the limit of 2048 bytes"_s;
}

void tst_TVRDocumentManager::failedFetchChangesNothing()
{
    QFETCH(TestReply, reply);
    QFETCH(qint64, limit);
    QFETCH(int, code);
    QFETCH(QString, message);

    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    const auto held = m_manager->termsOfService();
    const QJsonValue before = keptCopy(kTVRTermsOfServiceDataPath);

    TVRManager::setMaximumReplySize(limit);
    m_server.reply(reply);
    const bool ended = fetchTerms(delegate, 2);
    TVRManager::setMaximumReplySize(0); // back to the default
    QVERIFY(ended);
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"failed"_s}));
    const TVRError error = delegate.errors.constFirst();
    QCOMPARE(error.code(), code);
    QVERIFY2(error.message().contains(message), qPrintable(error.message()));
    QCOMPARE(m_manager->termsOfService(), held);
    QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), before);
}

void tst_TVRDocumentManager::replyOfTheLimitIsTaken_data()
{
    QTest::addColumn<bool>("chunked");
    QTest::newRow("announced by Content-Length") << false;
    QTest::newRow("chunked") << true;
}

// A reply of exactly the largest size taken is the document.
void tst_TVRDocumentManager::replyOfTheLimitIsTaken()
{
    QFETCH(bool, chunked);

    const QJsonObject document = documentJson(u"Edge"_s, 20);
    const QByteArray json = compact(document);
    m_server.reply(chunked ? TestReply::chunked(200, json) : TestReply::json(200, json));
    TVRManager::setMaximumReplySize(json.size());
    RecordingDelegate delegate;
    const bool ended = fetchTerms(delegate);
    TVRManager::setMaximumReplySize(0);
    QVERIFY(ended);
    QCOMPARE(delegate.calls, QStringList{u"finished"_s});
    QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), QJsonValue(document));
}

void tst_TVRDocumentManager::anyReplyIsAnAnswer_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QJsonValue>("copy"); // the copy then kept; undefined where the earlier one stays

    // Any JSON is the document, and kept exactly, whatever its status and its types.
    const QJsonObject error{{u"error"_s, u"Unauthorized"_s}};
    QTest::newRow("401 with an error object") << 401 << compact(error) << QJsonValue(error);
    QJsonObject wrongTypes = sampleDocument(u"x"_s);
    wrongTypes.insert(u"title"_s, 42);
    wrongTypes.insert(u"updatedAt"_s, 1456835400);
    wrongTypes.insert(u"sections"_s, QJsonObject{{u"title"_s, u"Scope"_s}});
    QJsonObject odd = sampleDocument(u"x"_s);
    odd.insert(u"updatedAt"_s, QJsonValue::Null);
    odd.insert(u"sections"_s,
               QJsonArray{u"text"_s, QJsonArray{1, 2}, QJsonValue::Null, 3,
                          QJsonObject{{u"title"_s, 7}, {u"body"_s, QJsonArray()}}});
    QJsonObject typed = sampleDocument(u"Typed"_s);
    typed.insert(u"title"_s, QJsonValue::Null);
    typed.insert(u"version"_s, 3.25);
    typed.insert(u"published"_s, true);
    typed.insert(u"extra"_s, QJsonObject{{u"list"_s, QJsonArray{QJsonValue::Null, false, u""_s, QJsonObject()}}});
    typed.remove(u"_id"_s);
    const QJsonObject large = documentJson(u"Large"_s, 12200);
    QTest::newRow("title, date and sections of other types") << 200 << compact(wrongTypes) << QJsonValue(wrongTypes);
    QTest::newRow("section elements of every kind, date null") << 200 << compact(odd) << QJsonValue(odd);
    QTest::newRow("every JSON type") << 200 << compact(typed) << QJsonValue(typed);
    QTest::newRow("4.8 MB document, under the limit") << 200 << compact(large) << QJsonValue(large);
    QTest::newRow("byte order mark and blanks") << 200 << "\xef\xbb\xbf \r\n" + compact(typed) << QJsonValue(typed);
    QTest::newRow("an array") << 200 << QByteArray(" [1,2]") << QJsonValue(QJsonArray{1, 2});
    QTest::newRow("an array after a byte order mark")
        << 200 << QByteArray("\xef\xbb\xbf[1,2]") << QJsonValue(QJsonArray{1, 2});

    // No JSON: the held document is one without content, and the copy stays.
    const QJsonValue stays(QJsonValue::Undefined);
    QTest::newRow("empty body") << 200 << QByteArray() << stays;
    QTest::newRow("JSON null") << 200 << QByteArray("null") << stays;
    QTest::newRow("not JSON") << 502 << QByteArray("<html>Bad gateway</html>") << stays;
    QTest::newRow("invalid UTF-8") << 200 << QByteArray("{\"title\":\"\xc3\x28\"}") << stays;
    QTest::newRow("nested 10,000 deep") << 200 << QByteArray(10000, '[') + QByteArray(10000, ']') << stays;
}

void tst_TVRDocumentManager::anyReplyIsAnAnswer()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(QJsonValue, copy);

    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    const QJsonValue before = keptCopy(kTVRTermsOfServiceDataPath);
    QVERIFY(before.isObject());
    m_server.reply(TestReply::json(status, body));
    QVERIFY(fetchTerms(delegate, 2));
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"finished"_s}));
    QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), copy.isUndefined() ? before : copy);

    // Every property of the held document, and of the one the next launch reads, can be read.
    const auto held = m_manager->termsOfService();
    TVRDocumentManager later;
    for (const auto &document : {held, later.termsOfService()}) {
        QVERIFY(document);
        document->identifier();
        document->title();
        document->date();
        for (const auto &section : document->sections()) {
            section->title();
            section->body();
        }
    }
    if (copy.isUndefined()) {
        QVERIFY(held->title().isNull());
        QVERIFY(held->sections().isEmpty());
        QCOMPARE(later.termsOfService()->title(), u"Terms"_s);
    } else {
        QCOMPARE(later.termsOfService()->sections().size(), held->sections().size());
    }
}

void tst_TVRDocumentManager::delegateIsHeldWeakly()
{
    auto *gone = new RecordingDelegate;
    m_manager->setDelegate(gone);
    QCOMPARE(m_manager->delegate(), gone);
    delete gone;
    QVERIFY(!m_manager->delegate());

    // The fetch completes with nobody to tell, and the document is still kept.
    m_manager->fetchTermsOfService();
    QTRY_VERIFY(m_manager->termsOfService());
    QTRY_COMPARE(m_session.liveReplies(), 0);

    PlainDelegate plain;
    m_manager->setDelegate(&plain);
    QVERIFY(!m_manager->delegate());
}

void tst_TVRDocumentManager::lastDelegateHearsBothDocuments()
{
    RecordingDelegate first;
    RecordingDelegate last;
    m_manager->setDelegate(&first);
    m_manager->setDelegate(&last);

    // The Privacy Policy answers first here; the calls follow the answers.
    m_server.setHandler([](const TestRequest &request) {
        TestReply reply = TestReply::json(200, compact(sampleDocument(request.path)));
        reply.held = request.path == u"/api/terms-of-service"_s;
        return reply;
    });
    m_manager->fetchTermsOfService();
    m_manager->fetchPrivacyPolicy();
    QTRY_COMPARE(last.calls, QStringList{u"finished"_s});
    m_server.releaseHeld();
    QTRY_COMPARE(last.calls, QStringList({u"finished"_s, u"finished"_s}));
    QVERIFY(first.calls.isEmpty());
    QCOMPARE(last.titlesHeld,
             QStringList({u"- + /api/privacy-policy"_s, u"/api/terms-of-service + /api/privacy-policy"_s}));
    // Each is kept under its own key; both were asked for with GET.
    QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), QJsonValue(sampleDocument(u"/api/terms-of-service"_s)));
    QCOMPARE(keptCopy(kTVRPrivacyPolicyDataPath), QJsonValue(sampleDocument(u"/api/privacy-policy"_s)));
    for (const TestRequest &request : m_server.requests())
        QCOMPARE(request.method, QByteArray("GET"));
}

void tst_TVRDocumentManager::signalsReachEveryListener()
{
    using Document = TVRDocumentManager::Document;
    RecordingDelegate delegate;
    m_manager->setDelegate(&delegate);
    QSignalSpy changed(m_manager.get(), &TVRDocumentManager::documentChanged);
    QSignalSpy failed(m_manager.get(), &TVRDocumentManager::fetchFailed);

    m_server.setHandler([](const TestRequest &request) {
        if (request.path == u"/api/privacy-policy"_s)
            return TestReply::dropped();
        return TestReply::json(200, compact(sampleDocument(u"Fresh terms"_s)));
    });
    m_manager->fetch(Document::TermsOfService);
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(changed[0][0].value<Document>(), Document::TermsOfService);
    QCOMPARE(m_manager->documentFor(Document::TermsOfService)->title(), u"Fresh terms"_s);
    QCOMPARE(delegate.calls, QStringList{u"finished"_s}); // the delegate is heard as before

    const std::shared_ptr<TVRDocument> privacyBefore = m_manager->privacyPolicy();
    m_manager->fetch(Document::PrivacyPolicy);
    QTRY_COMPARE(failed.size(), 1);
    QCOMPARE(failed[0][0].value<Document>(), Document::PrivacyPolicy);
    QCOMPARE(failed[0][1].value<TVRError>().domain(), TVRError::networkDomain());
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"failed"_s}));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_manager->privacyPolicy(), privacyBefore);

    // Setting a document tells the listeners too.
    m_manager->setPrivacyPolicy(std::make_shared<TVRDocument>(sampleDocument(u"Set"_s)));
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed[1][0].value<Document>(), Document::PrivacyPolicy);
}

void tst_TVRDocumentManager::managerGoneStillCaches()
{
    TestReply late = TestReply::json(200, compact(sampleDocument(u"Late"_s)));
    late.delayMs = 100;
    m_server.reply(late);
    auto *manager = new TVRDocumentManager;
    manager->setSession(&m_session);
    manager->fetchTermsOfService();
    const int requests = m_server.requests().size();
    QTRY_COMPARE(m_server.requests().size(), requests + 1);
    delete manager;

    QTRY_VERIFY(keptCopy(kTVRTermsOfServiceDataPath).isObject());
    QCOMPARE(TVRDocumentManager().termsOfService()->title(), u"Late"_s);
}

void tst_TVRDocumentManager::documentSurvivesARestart_data()
{
    QTest::addColumn<QString>("launch");

    QTest::newRow("fetches and exits") << u"fetch-terms"_s;
    // Whatever the delegate hears of is already on disk.
    QTest::newRow("killed as the delegate hears of the reply") << u"fetch-terms-and-die"_s;
}

void tst_TVRDocumentManager::documentSurvivesARestart()
{
    QFETCH(QString, launch);

    QJsonObject reply = sampleDocument(u"Terms of Service"_s);
    reply.insert(u"updatedAt"_s, u"2016-03-01T12:30:00.000-0800"_s);
    m_server.reply(TestReply::json(200, compact(reply)));

    // One launch fetches and ends; the next, which sends no request, has the document.
    QProcess first;
    first.start(QStringLiteral(TOVRA_TEST_HELPER), {launch, QString::number(m_server.port())});
    QVERIFY(first.waitForStarted());
    QVERIFY(QTest::qWaitFor([&first] { return first.state() == QProcess::NotRunning; }, 60000));
    if (launch == u"fetch-terms-and-die"_s) {
        QCOMPARE(first.exitStatus(), QProcess::CrashExit);
        QCOMPARE(first.exitCode(), SIGKILL);
    } else {
        QCOMPARE(first.readAllStandardOutput().trimmed(), QByteArray("fetched"));
    }
    const QStringList expected{
        u"doc-Terms of Service"_s,
        u"Terms of Service"_s,
        u"2016-03-01T12:30:00.000-08:00"_s,
        u"Scope | tovra-host applies."_s,
    };
    QCOMPARE(runHelper({u"read-terms"_s}), expected);
}

QTEST_MAIN(tst_TVRDocumentManager)
#include "tst_tvrdocumentmanager.moc"
