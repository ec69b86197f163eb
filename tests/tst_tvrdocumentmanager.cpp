// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

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

QJsonValue cached(const QString &key)
{
    return keptCopy(key);
}

} // namespace

class tst_TVRDocumentManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void fetchHoldsAndCaches_data();
    void fetchHoldsAndCaches();
    void cacheAnswersWhileNothingIsHeld();
    void unwritableCopyIsLogged();
    void errorStatusIsTakenAsDocument();
    void emptyReplyKeepsTheCache_data();
    void emptyReplyKeepsTheCache();
    void transportFailureChangesNothing_data();
    void transportFailureChangesNothing();
    void noCacheAndNoNetwork();
    void wrongTypesNeverCrash_data();
    void wrongTypesNeverCrash();
    void replyOverTheLimitFails_data();
    void replyOverTheLimitFails();
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
    QString m_host;
    std::unique_ptr<TVRDocumentManager> m_manager;
};

void tst_TVRDocumentManager::initTestCase()
{
    QVERIFY(startLoopbackService(u"tst_tvrdocumentmanager"_s, m_server, m_session));
    m_host = TVRNetworkManager::baseURLComponents().host();
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

void tst_TVRDocumentManager::fetchHoldsAndCaches_data()
{
    QTest::addColumn<bool>("terms");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("otherKey");

    QTest::newRow("Terms of Service") << true << u"/api/terms-of-service"_s << u"kTVRTermsOfServiceDataPath"_s
                                      << u"kTVRPrivacyPolicyDataPath"_s;
    QTest::newRow("Privacy Policy") << false << u"/api/privacy-policy"_s << u"kTVRPrivacyPolicyDataPath"_s
                                    << u"kTVRTermsOfServiceDataPath"_s;
}

void tst_TVRDocumentManager::fetchHoldsAndCaches()
{
    QFETCH(bool, terms);
    QFETCH(QString, path);
    QFETCH(QString, key);
    QFETCH(QString, otherKey);

    const QJsonObject reply = sampleDocument(u"Fresh"_s);
    m_server.reply(TestReply::json(200, compact(reply)));
    RecordingDelegate delegate;
    m_manager->setDelegate(&delegate);
    terms ? m_manager->fetchTermsOfService() : m_manager->fetchPrivacyPolicy();
    QTRY_COMPARE(delegate.calls, QStringList{u"finished"_s});

    const TestRequest &sent = m_server.requests().constLast();
    QCOMPARE(sent.method, QByteArray("GET"));
    QCOMPARE(sent.path, path);
    QVERIFY(sent.query.isEmpty());
    QVERIFY(sent.body.isEmpty());
    QCOMPARE(sent.header("Authorization"), QByteArray("Basic YTpi"));

    QCOMPARE(cached(key), QJsonValue(reply));
    QVERIFY(cached(otherKey).isUndefined());
    const auto held = terms ? m_manager->termsOfService() : m_manager->privacyPolicy();
    QVERIFY(held);
    QCOMPARE(held->title(), u"Fresh"_s);
    QVERIFY(!(terms ? m_manager->privacyPolicy() : m_manager->termsOfService()));
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
    QVERIFY(cached(kTVRTermsOfServiceDataPath).isUndefined());
    m_manager->setTermsOfService(nullptr);
    QVERIFY(!m_manager->termsOfService());
}

void tst_TVRDocumentManager::unwritableCopyIsLogged()
{
    // The copies' folder cannot be made: a file has its name.
    const QString config = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    const QString folder = config + u"/Tovra"_s;
    QDir(folder).removeRecursively();
    QVERIFY(QDir().mkpath(config));
    QFile blocker(folder);
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Keeping kTVRTermsOfServiceDataPath failed: "_s));
    RecordingDelegate delegate;
    const bool fetched = fetchTerms(delegate);
    QFile::remove(folder);
    QVERIFY(fetched);
    // The reply is still the document, for this launch.
    QCOMPARE(delegate.calls, QStringList{u"finished"_s});
    QCOMPARE(m_manager->termsOfService()->title(), u"Terms"_s);
}

void tst_TVRDocumentManager::errorStatusIsTakenAsDocument()
{
    const QJsonObject error{{u"error"_s, u"Unauthorized"_s}};
    m_server.reply(TestReply::json(401, compact(error)));
    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    QCOMPARE(delegate.calls, QStringList{u"finished"_s});
    QCOMPARE(cached(kTVRTermsOfServiceDataPath), QJsonValue(error));
    QVERIFY(m_manager->termsOfService()->title().isNull());
}

void tst_TVRDocumentManager::emptyReplyKeepsTheCache_data()
{
    QTest::addColumn<QByteArray>("body");

    QTest::newRow("empty body") << QByteArray();
    QTest::newRow("JSON null") << QByteArray("null");
    QTest::newRow("not JSON") << QByteArray("<html>Bad gateway</html>");
    QTest::newRow("invalid UTF-8") << QByteArray("{\"title\":\"\xc3\x28\"}");
    QTest::newRow("nested 10,000 deep") << QByteArray(10000, '[') + QByteArray(10000, ']');
}

void tst_TVRDocumentManager::emptyReplyKeepsTheCache()
{
    QFETCH(QByteArray, body);

    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    const QJsonValue before = cached(kTVRTermsOfServiceDataPath);
    QVERIFY(before.isObject());

    m_server.reply(TestReply::json(200, body));
    QVERIFY(fetchTerms(delegate, 2));
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"finished"_s}));
    QCOMPARE(cached(kTVRTermsOfServiceDataPath), before);

    // The held document is replaced all the same, by one without content.
    const auto held = m_manager->termsOfService();
    QVERIFY(held);
    QVERIFY(held->title().isNull());
    QVERIFY(held->sections().isEmpty());

    // The next launch still finds the earlier copy.
    QCOMPARE(TVRDocumentManager().termsOfService()->title(), u"Terms"_s);
}

void tst_TVRDocumentManager::transportFailureChangesNothing_data()
{
    QTest::addColumn<TestReply>("reply");

    QTest::newRow("connection dropped") << TestReply::dropped();
    // The status line came, then the connection broke off in the middle of the body.
    TestReply cut = TestReply::json(200, compact(sampleDocument(u"Cut"_s)));
    cut.cutBodyAt = 40;
    QTest::newRow("body cut short") << cut;
}

void tst_TVRDocumentManager::transportFailureChangesNothing()
{
    QFETCH(TestReply, reply);

    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    const auto held = m_manager->termsOfService();
    const QJsonValue before = cached(kTVRTermsOfServiceDataPath);

    m_server.reply(reply);
    QVERIFY(fetchTerms(delegate, 2));
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"failed"_s}));
    QCOMPARE(delegate.errors.constFirst().code(), int(QNetworkReply::RemoteHostClosedError));
    QCOMPARE(m_manager->termsOfService(), held);
    QCOMPARE(cached(kTVRTermsOfServiceDataPath), before);
}

void tst_TVRDocumentManager::noCacheAndNoNetwork()
{
    TestSession offline;
    QVERIFY(offline.routeToClosedPort(m_host));
    m_manager->setSession(&offline);

    RecordingDelegate delegate;
    m_manager->setDelegate(&delegate);
    m_manager->fetchTermsOfService();
    m_manager->fetchPrivacyPolicy();
    QTRY_COMPARE(delegate.calls, QStringList({u"failed"_s, u"failed"_s}));
    QVERIFY(!m_manager->termsOfService());
    QVERIFY(!m_manager->privacyPolicy());
    QVERIFY(cached(kTVRTermsOfServiceDataPath).isUndefined());
    QVERIFY(cached(kTVRPrivacyPolicyDataPath).isUndefined());
    QTRY_COMPARE(offline.liveReplies(), 0);
}

void tst_TVRDocumentManager::wrongTypesNeverCrash_data()
{
    QTest::addColumn<QJsonObject>("reply");
    QTest::addColumn<QByteArray>("lead"); // bytes the server sends before the JSON

    QJsonObject numberTitle = sampleDocument(u"x"_s);
    numberTitle.insert(u"title"_s, 42);
    QJsonObject objectSections = sampleDocument(u"x"_s);
    objectSections.insert(u"sections"_s, QJsonObject{{u"title"_s, u"Scope"_s}});
    QJsonObject odd = sampleDocument(u"x"_s);
    odd.insert(u"sections"_s,
               QJsonArray{u"text"_s, QJsonArray{1, 2}, QJsonValue::Null, 3,
                          QJsonObject{{u"title"_s, 7}, {u"body"_s, QJsonArray()}}});
    QJsonObject numberDate = sampleDocument(u"x"_s);
    numberDate.insert(u"updatedAt"_s, 1456835400);
    QJsonObject nullDate = sampleDocument(u"x"_s);
    nullDate.insert(u"updatedAt"_s, QJsonValue::Null);
    QJsonObject typed = sampleDocument(u"Typed"_s);
    typed.insert(u"title"_s, QJsonValue::Null);
    typed.insert(u"version"_s, 3.25);
    typed.insert(u"published"_s, true);
    typed.insert(u"extra"_s, QJsonObject{{u"list"_s, QJsonArray{QJsonValue::Null, false, u""_s, QJsonObject()}}});
    typed.remove(u"_id"_s);
    QJsonObject large = sampleDocument(u"Large"_s);
    QJsonArray many;
    const QString paragraph(2400, u'w');
    for (int i = 0; i < 2000; ++i)
        many.append(QJsonObject{{u"title"_s, QString::number(i)}, {u"body"_s, paragraph}});
    large.insert(u"sections"_s, many);

    QTest::newRow("title a number") << numberTitle << QByteArray();
    QTest::newRow("sections an object") << objectSections << QByteArray();
    QTest::newRow("section elements of every kind") << odd << QByteArray();
    QTest::newRow("updatedAt a number") << numberDate << QByteArray();
    QTest::newRow("updatedAt JSON null") << nullDate << QByteArray();
    QTest::newRow("every JSON type") << typed << QByteArray();
    QTest::newRow("4.8 MB document, under the limit") << large << QByteArray();
    QTest::newRow("byte order mark and blanks") << typed << QByteArray("\xef\xbb\xbf \r\n");
}

void tst_TVRDocumentManager::wrongTypesNeverCrash()
{
    QFETCH(QJsonObject, reply);
    QFETCH(QByteArray, lead);

    m_server.reply(TestReply::json(200, lead + compact(reply)));
    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    QCOMPARE(delegate.calls, QStringList{u"finished"_s});

    // Kept exactly, and every property of the held and the cached document can be read.
    QCOMPARE(cached(kTVRTermsOfServiceDataPath), QJsonValue(reply));
    TVRDocumentManager later;
    for (const auto &document : {m_manager->termsOfService(), later.termsOfService()}) {
        QVERIFY(document);
        document->identifier();
        document->title();
        document->date();
        for (const auto &section : document->sections()) {
            section->title();
            section->body();
        }
    }
    QCOMPARE(later.termsOfService()->sections().size(), m_manager->termsOfService()->sections().size());
}

void tst_TVRDocumentManager::replyOverTheLimitFails_data()
{
    QTest::addColumn<TestReply>("reply");
    QTest::addColumn<QString>("message");

    QJsonObject document = sampleDocument(u"Large"_s);
    document.insert(u"padding"_s, QString(4000, u'p'));
    const QByteArray json = compact(document);
    const qint64 limit = 2048;

    QTest::newRow("announced by Content-Length")
        << TestReply::json(200, json)
        << u"The reply of %1 bytes is larger than the limit of %2 bytes"_s.arg(json.size()).arg(limit);
    // No length is announced: the bytes received tell.
    TestReply chunked = TestReply::json(200, {});
    chunked.headers.append(qMakePair(QByteArray("Transfer-Encoding"), QByteArray("chunked")));
    for (qsizetype at = 0; at < json.size(); at += 1000) {
        const QByteArray chunk = json.mid(at, 1000);
        chunked.body += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    chunked.body += "0\r\n\r\n";
    QTest::newRow("chunked, no length") << chunked << u"more than the limit of %1 bytes"_s.arg(limit);
}

void tst_TVRDocumentManager::replyOverTheLimitFails()
{
    QFETCH(TestReply, reply);
    QFETCH(QString, message);

    RecordingDelegate delegate;
    QVERIFY(fetchTerms(delegate));
    const QJsonValue before = cached(kTVRTermsOfServiceDataPath);

    TVRManager::setMaximumReplySize(2048);
    m_server.reply(reply);
    const bool ended = fetchTerms(delegate, 2);
    TVRManager::setMaximumReplySize(0); // back to the default
    QVERIFY(ended);
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"failed"_s}));
    QVERIFY2(delegate.errors.constFirst().message().contains(message),
             qPrintable(delegate.errors.constFirst().message()));
    QCOMPARE(m_manager->termsOfService()->title(), u"Terms"_s);
    QCOMPARE(cached(kTVRTermsOfServiceDataPath), before);

    // The same reply within the limit is a document.
    TVRManager::setMaximumReplySize(1024 * 1024);
    QVERIFY(fetchTerms(delegate, 3));
    TVRManager::setMaximumReplySize(0);
    QCOMPARE(delegate.calls.constLast(), u"finished"_s);
    QCOMPARE(m_manager->termsOfService()->title(), u"Large"_s);
}

void tst_TVRDocumentManager::delegateIsHeldWeakly()
{
    auto *gone = new RecordingDelegate;
    m_manager->setDelegate(gone);
    QCOMPARE(m_manager->delegate(), gone);
    QSignalSpy destroyed(gone, &QObject::destroyed);
    delete gone;
    QCOMPARE(destroyed.size(), 1);
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
}

void tst_TVRDocumentManager::signalsReachEveryListener()
{
    using Document = TVRDocumentManager::Document;
    RecordingDelegate delegate;
    m_manager->setDelegate(&delegate);
    // Two listeners besides the delegate, as a page and a model would be.
    QSignalSpy changedForPage(m_manager.get(), &TVRDocumentManager::documentChanged);
    QSignalSpy changedForModel(m_manager.get(), &TVRDocumentManager::documentChanged);
    QSignalSpy failed(m_manager.get(), &TVRDocumentManager::fetchFailed);

    m_server.setHandler([](const TestRequest &request) {
        if (request.path == u"/api/privacy-policy"_s)
            return TestReply::dropped();
        return TestReply::json(200, compact(sampleDocument(u"Fresh terms"_s)));
    });
    m_manager->fetch(Document::TermsOfService);
    QTRY_COMPARE(changedForPage.size(), 1);
    QCOMPARE(changedForModel.size(), 1);
    QCOMPARE(changedForPage[0][0].value<Document>(), Document::TermsOfService);
    QCOMPARE(m_manager->documentFor(Document::TermsOfService)->title(), u"Fresh terms"_s);
    QCOMPARE(delegate.calls, QStringList{u"finished"_s}); // the delegate is heard as before

    const std::shared_ptr<TVRDocument> privacyBefore = m_manager->privacyPolicy();
    m_manager->fetch(Document::PrivacyPolicy);
    QTRY_COMPARE(failed.size(), 1);
    QCOMPARE(failed[0][0].value<Document>(), Document::PrivacyPolicy);
    QCOMPARE(failed[0][1].value<TVRError>().domain(), TVRError::networkDomain());
    QCOMPARE(delegate.calls, QStringList({u"finished"_s, u"failed"_s}));
    QCOMPARE(changedForPage.size(), 1);
    QCOMPARE(m_manager->privacyPolicy(), privacyBefore);

    // Setting a document tells the listeners too.
    m_manager->setPrivacyPolicy(std::make_shared<TVRDocument>(sampleDocument(u"Set"_s)));
    QCOMPARE(changedForModel.size(), 2);
    QCOMPARE(changedForModel[1][0].value<Document>(), Document::PrivacyPolicy);
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

    QTRY_VERIFY(cached(kTVRTermsOfServiceDataPath).isObject());
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
