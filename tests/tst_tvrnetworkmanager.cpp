// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "RequestOutcome.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <TVRManager.h>
#include <TVRNetworkManager.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_TVRNetworkManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void serviceAddress_data();
    void serviceAddress();
    void credentials_data();
    void credentials();
    void body_data();
    void body();
    void pathAndQuery_data();
    void pathAndQuery();
    void everyAnswerGoesToSuccess_data();
    void everyAnswerGoesToSuccess();
    void failure_data();
    void failure();
    void nullHandlersAreSkipped();
    void redirectElsewhereIsRefused_data();
    void redirectElsewhereIsRefused();
    void redirectWithinServiceIsFollowed_data();
    void redirectWithinServiceIsFollowed();
    void unknownMethodIsNotSent_data();
    void unknownMethodIsNotSent();
    void errorsAreEqualInDomainCodeAndMessage_data();
    void errorsAreEqualInDomainCodeAndMessage();

private:
    // Waits until the request has been answered and its reply is gone, so that a second
    // handler call, had there been one, would have happened too.
    bool settle(const std::shared_ptr<RequestOutcome> &outcome);

    TestHttpsServer m_server;
    TestHttpsServer m_elsewhere;
    TestSession *m_session = nullptr;
    TVRNetworkManager m_manager;
    QString m_host;
};

void tst_TVRNetworkManager::initTestCase()
{
    QVERIFY(m_server.start());
    QVERIFY(m_elsewhere.start());
    m_host = TVRNetworkManager::baseURLComponents().host();
    m_session = new TestSession(this);
    m_session->route(m_host, m_server.port());
    m_manager.setSession(m_session);
}

void tst_TVRNetworkManager::init()
{
    m_server.reply(TestReply::json(200, "{}"));
    m_elsewhere.reply(TestReply::json(200, "{}"));
    TVRManager::setAPIKey(u"a"_s, u"b"_s);
}

bool tst_TVRNetworkManager::settle(const std::shared_ptr<RequestOutcome> &outcome)
{
    return QTest::qWaitFor([&] { return outcome->calls() > 0 && m_session->liveReplies() == 0; });
}

void tst_TVRNetworkManager::serviceAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("taken"); // the address the kit then holds; empty when refused

    const QString host = TVRNetworkManager::baseURLComponents().host();
    QTest::newRow("https with a path prefix") << u"https://%1/app"_s.arg(host) << u"https://%1/app"_s.arg(host);
    QTest::newRow("prefix with a trailing slash") << u"https://%1/a/b/"_s.arg(host) << u"https://%1/a/b"_s.arg(host);
    QTest::newRow("root slash") << u"https://%1/"_s.arg(host) << u"https://%1"_s.arg(host);
    QTest::newRow("http on 127.0.0.1") << u"http://127.0.0.1:8080/x"_s << u"http://127.0.0.1:8080/x"_s;
    QTest::newRow("http on localhost") << u"http://localhost:8080"_s << u"http://localhost:8080"_s;
    QTest::newRow("http on ::1") << u"http://[::1]:8080"_s << u"http://[::1]:8080"_s;
    QTest::newRow("http elsewhere") << u"http://legal.example.com"_s << QString();
    QTest::newRow("http on 127.0.0.0/8") << u"http://127.1.2.3"_s << u"http://127.1.2.3"_s;
    QTest::newRow("http on 127 mapped to IPv6") << u"http://[::ffff:127.0.0.1]"_s << u"http://[::ffff:127.0.0.1]"_s;
    QTest::newRow("http on a LAN address") << u"http://192.168.1.2"_s << QString();
    QTest::newRow("http on 127.0.0.255") << u"http://127.0.0.255"_s << u"http://127.0.0.255"_s;
    QTest::newRow("http on a name like 127.0.0.256") << u"http://127.0.0.256"_s << QString();
    QTest::newRow("http on a name like 127.0.0.x") << u"http://127.0.0.x"_s << QString();
    QTest::newRow("http on a host named 127") << u"http://127.example.com"_s << QString();
    QTest::newRow("http on another IPv6 address") << u"http://[::2]"_s << QString();
    QTest::newRow("another scheme") << u"ftp://legal.example.com"_s << QString();
    QTest::newRow("no host") << u"https:///app"_s << QString();
    QTest::newRow("relative") << u"/app"_s << QString();
    QTest::newRow("user information") << u"https://me:pw@legal.example.com"_s << QString();
    QTest::newRow("query") << u"https://legal.example.com/?x=1"_s << QString();
}

void tst_TVRNetworkManager::serviceAddress()
{
    QFETCH(QString, address);
    QFETCH(QString, taken);

    const QUrl before = TVRManager::serviceURL();
    if (taken.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^SERVICE: refused "_s));
    QCOMPARE(TVRManager::setServiceURL(QUrl(address)), !taken.isEmpty());
    const QUrl now = TVRManager::serviceURL();
    TVRManager::setServiceURL(before);
    QCOMPARE(now, taken.isEmpty() ? before : QUrl(taken));
}

void tst_TVRNetworkManager::credentials_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("secret");
    QTest::addColumn<QByteArray>("authorization");

    QTest::newRow("key a, secret b") << u"a"_s << u"b"_s << QByteArray("Basic YTpi");
    QTest::newRow("no key, no secret") << QString() << QString() << QByteArray("Basic Og==");
    QTest::newRow("empty secret") << u"a"_s << u""_s << QByteArray("Basic YTo=");
    QTest::newRow("colon in key") << u"a:b"_s << u"c"_s << QByteArray("Basic YTpiOmM=");
    QTest::newRow("non-ASCII, as UTF-8") << u"ключ"_s << u"秘密"_s << "Basic " + u"ключ:秘密"_s.toUtf8().toBase64();
    QTest::newRow("long, no line breaks") << QString(200, u'k') << QString(200, u's')
                                          << "Basic " + (QByteArray(200, 'k') + ':' + QByteArray(200, 's')).toBase64();
}

void tst_TVRNetworkManager::credentials()
{
    QFETCH(QString, key);
    QFETCH(QString, secret);
    QFETCH(QByteArray, authorization);

    TVRManager::setAPIKey(key, secret);
    // A host that builds its own request gets the same header.
    QCOMPARE(TVRNetworkManager::requestWithURL(QUrl(u"https://example.org/x"_s)).rawHeader("Authorization"),
             authorization);
    const auto outcome = sendRequest(m_manager, u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET);
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->successes, 1);
    const TestRequest &sent = m_server.requests().constLast();
    QCOMPARE(sent.header("Authorization"), authorization);
    QCOMPARE(sent.header("Content-Type"), QByteArray("application/json"));
}

void tst_TVRNetworkManager::body_data()
{
    QTest::addColumn<int>("method");
    QTest::addColumn<QJsonValue>("parameters");
    QTest::addColumn<QByteArray>("sentMethod");
    QTest::addColumn<QByteArray>("sentBody");

    const QJsonObject object{{u"b"_s, QJsonObject{{u"c"_s, u"d e"_s}}}, {u"a"_s, QJsonArray{1, 2}}};
    const QByteArray compact = R"({"a":[1,2],"b":{"c":"d e"}})";

    QTest::newRow("GET ignores parameters") << 0 << QJsonValue(object) << QByteArray("GET") << QByteArray();
    QTest::newRow("POST") << 1 << QJsonValue(object) << QByteArray("POST") << compact;
    QTest::newRow("PUT") << 2 << QJsonValue(object) << QByteArray("PUT") << compact;
    QTest::newRow("DELETE") << 3 << QJsonValue(object) << QByteArray("DELETE") << compact;
    QTest::newRow("PATCH") << 4 << QJsonValue(object) << QByteArray("PATCH") << compact;
    QTest::newRow("HEAD") << 5 << QJsonValue(object) << QByteArray("HEAD") << compact;
    QTest::newRow("array") << 1 << QJsonValue(QJsonArray{1, u"x"_s, QJsonValue::Null}) << QByteArray("POST")
                           << QByteArray(R"([1,"x",null])");
    QTest::newRow("empty object") << 2 << QJsonValue(QJsonObject()) << QByteArray("PUT") << QByteArray("{}");
    QTest::newRow("no parameters") << 1 << QJsonValue(QJsonValue::Undefined) << QByteArray("POST") << QByteArray();
    QTest::newRow("JSON null") << 1 << QJsonValue(QJsonValue::Null) << QByteArray("POST") << QByteArray();
    QTest::newRow("bare text") << 4 << QJsonValue(u"text"_s) << QByteArray("PATCH") << QByteArray();
}

void tst_TVRNetworkManager::body()
{
    QFETCH(int, method);
    QFETCH(QJsonValue, parameters);
    QFETCH(QByteArray, sentMethod);
    QFETCH(QByteArray, sentBody);

    // No body in the answer: a HEAD answer never has one.
    m_server.reply(TestReply::json(200, QByteArray()));
    const auto outcome = sendRequest(m_manager, u"/api/echo"_s, QString(), TVRHTTPMethod(method), parameters);
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->successes, 1);
    const TestRequest &sent = m_server.requests().constLast();
    QCOMPARE(sent.method, sentMethod);
    QCOMPARE(sent.body, sentBody);
}

void tst_TVRNetworkManager::pathAndQuery_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("sentPath");
    QTest::addColumn<QString>("sentQuery");
    QTest::addColumn<bool>("hasQuery");

    QTest::newRow("no query") << u"/api/terms-of-service"_s << QString() << u"/api/terms-of-service"_s << QString()
                              << false;
    QTest::newRow("plain query") << u"/api/user/status"_s << u"id=42&full=1"_s << u"/api/user/status"_s
                                 << u"id=42&full=1"_s << true;
    QTest::newRow("query is encoded") << u"/api/user/status"_s << u"name=Jo Doe&pct=100%"_s << u"/api/user/status"_s
                                      << u"name=Jo%20Doe&pct=100%25"_s << true;
    QTest::newRow("empty query keeps the ?") << u"/a"_s << u""_s << u"/a"_s << QString() << true;
    QTest::newRow("path is encoded") << u"/api/a b"_s << QString() << u"/api/a b"_s << QString() << false;
}

void tst_TVRNetworkManager::pathAndQuery()
{
    QFETCH(QString, path);
    QFETCH(QString, query);
    QFETCH(QString, sentPath);
    QFETCH(QString, sentQuery);
    QFETCH(bool, hasQuery);

    const auto outcome = sendRequest(m_manager, path, query, TVRHTTPMethodGET);
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->successes, 1);
    QCOMPARE(m_server.requests().constLast().path, sentPath);
    QCOMPARE(m_server.requests().constLast().query, sentQuery);
    QCOMPARE(outcome->response.url().hasQuery(), hasQuery);
}

void tst_TVRNetworkManager::everyAnswerGoesToSuccess_data()
{
    QTest::addColumn<TestReply>("reply");
    QTest::addColumn<QJsonValue>("json");

    const QJsonObject document{{u"title"_s, u"Terms"_s}};
    QTest::newRow("200 with a document") << TestReply::json(200, R"({"title":"Terms"})") << QJsonValue(document);
    QTest::newRow("500 with {}") << TestReply::json(500, "{}") << QJsonValue(QJsonObject());
    QTest::newRow("200 with an empty body") << TestReply::json(200, "") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("204") << TestReply::json(204, "") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("401 with an error object")
        << TestReply::json(401, R"({"error":"no"})") << QJsonValue(QJsonObject{{u"error"_s, u"no"_s}});
    QTest::newRow("404 with HTML") << TestReply::json(404, "<html>gone</html>") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("an array") << TestReply::json(200, "[1,2]") << QJsonValue(QJsonArray{1, 2});
    // A status of every class, the ones Qt counts as errors among them.
    QTest::newRow("300") << TestReply::json(300, "{}") << QJsonValue(QJsonObject());
    QTest::newRow("304") << TestReply::json(304, "") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("407") << TestReply::json(407, "{}") << QJsonValue(QJsonObject());
    QTest::newRow("599") << TestReply::json(599, "{}") << QJsonValue(QJsonObject());
    // A redirect that names no place to go is an answer like any other, body and all.
    for (int status : {301, 302, 303, 307, 308}) {
        QTest::addRow("%d without Location", status)
            << TestReply::json(status, R"({"moved":false})") << QJsonValue(QJsonObject{{u"moved"_s, false}});
        QTest::addRow("HEAD, %d without Location", status)
            << TestReply::json(status, "") << QJsonValue(QJsonValue::Undefined);
    }
}

void tst_TVRNetworkManager::everyAnswerGoesToSuccess()
{
    QFETCH(TestReply, reply);
    QFETCH(QJsonValue, json);

    m_server.reply(reply);
    const bool head = QByteArray(QTest::currentDataTag()).startsWith("HEAD");
    const auto outcome =
        sendRequest(m_manager, u"/api/terms-of-service"_s, QString(), head ? TVRHTTPMethodHEAD : TVRHTTPMethodGET);
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->successes, 1);
    QCOMPARE(outcome->failures, 0);
    QCOMPARE(outcome->json, json);
    QCOMPARE(outcome->response.statusCode(), reply.status);
    QCOMPARE(outcome->response.header("content-type"), QByteArray("application/json"));
    QCOMPARE(outcome->response.body(), reply.body);
    QVERIFY(!outcome->calledTooEarly);
    QVERIFY(!outcome->calledOffThread);
}

void tst_TVRNetworkManager::failure_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("error");

    QTest::newRow("connection refused") << u"refused"_s << int(QNetworkReply::ConnectionRefusedError);
    QTest::newRow("certificate of an unknown authority")
        << u"untrusted"_s << int(QNetworkReply::SslHandshakeFailedError);
    QTest::newRow("certificate for another host") << u"wrong name"_s << int(QNetworkReply::SslHandshakeFailedError);
    QTest::newRow("connection dropped") << u"dropped"_s << int(QNetworkReply::RemoteHostClosedError);
    QTest::newRow("silent past the time-out") << u"silent"_s << int(QNetworkReply::TimeoutError);
    QTest::newRow("cancelled before it") << u"cancelled"_s << int(QNetworkReply::OperationCanceledError);
    QTest::newRow("session destroyed under it") << u"session gone"_s << int(QNetworkReply::OperationCanceledError);
}

void tst_TVRNetworkManager::failure()
{
    QFETCH(QString, fault);
    QFETCH(int, error);

    // The host's session keeps its own time-out.
    auto session = std::make_unique<TestSession>();
    session->route(m_host, m_server.port());
    session->setTransferTimeout(fault == u"silent"_s ? 300 : 60 * 1000);
    if (fault == u"refused"_s)
        QVERIFY(session->routeToClosedPort(m_host));
    else if (fault == u"untrusted"_s)
        session->setAuthorities(QSslConfiguration::systemCaCertificates());
    else if (fault == u"wrong name"_s)
        session->setPeerVerifyName(u"not-the-service.example"_s);
    else if (fault == u"dropped"_s)
        m_server.reply(TestReply::dropped());
    // The last three get no answer until the test is over.
    const bool held = fault == u"silent"_s || fault == u"cancelled"_s || fault == u"session gone"_s;
    if (held) {
        TestReply silent = TestReply::json(200, "{}");
        silent.held = true;
        m_server.reply(silent);
    }
    TVRNetworkManager manager;
    manager.setSession(session.get());

    const int requestsBefore = m_server.requests().size();
    const auto outcome = sendRequest(manager, u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET);
    if (held)
        QTRY_COMPARE(m_server.requests().size(), requestsBefore + 1);
    if (fault == u"cancelled"_s)
        session->abortAll();
    if (fault == u"session gone"_s)
        session.reset();
    QVERIFY(QTest::qWaitFor([&] { return outcome->calls() > 0 && (!session || session->liveReplies() == 0); }));
    m_server.releaseHeld();
    QCOMPARE(outcome->failures, 1);
    QCOMPARE(outcome->successes, 0);
    QCOMPARE(outcome->error.domain(), TVRError::networkDomain());
    QCOMPARE(outcome->error.code(), error);
    QVERIFY(!outcome->error.message().isEmpty());
    QCOMPARE(outcome->response.statusCode(), 0);
    QVERIFY(!outcome->calledTooEarly);
    // Without a verified TLS connection the request, and its credentials, never reach the server.
    if (!held && fault != u"dropped"_s)
        QCOMPARE(m_server.requests().size(), requestsBefore);
    if (!session) {
        // A session of the kit's own takes the place of the host's, with a minute's time-out.
        QCOMPARE(manager.session()->parent(), &manager);
        QCOMPARE(manager.session()->transferTimeout(), 60 * 1000);
    }
}

void tst_TVRNetworkManager::nullHandlersAreSkipped()
{
    TestSession session;
    QVERIFY(session.routeToClosedPort(m_host));
    TVRNetworkManager manager;
    manager.setSession(&session);

    int successes = 0;
    manager.requestForPath(
        u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET, QJsonValue(),
        [&](const TVRHTTPResponse &, const QJsonValue &) { ++successes; }, nullptr);
    int failures = 0;
    manager.setSession(m_session);
    manager.requestForPath(u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET, QJsonValue(), nullptr,
                           [&](const TVRHTTPResponse &, const TVRError &) { ++failures; });
    QVERIFY(QTest::qWaitFor([&] { return session.liveReplies() == 0 && m_session->liveReplies() == 0; }));
    QCOMPARE(successes, 0);
    QCOMPARE(failures, 0);
}

void tst_TVRNetworkManager::redirectElsewhereIsRefused_data()
{
    QTest::addColumn<QString>("location");

    QTest::newRow("another port") << u"https://127.0.0.1:%1/collect"_s;
    QTest::newRow("plain HTTP") << u"http://127.0.0.1:%1/collect"_s;
}

void tst_TVRNetworkManager::redirectElsewhereIsRefused()
{
    QFETCH(QString, location);

    TestReply redirect;
    redirect.status = 302;
    redirect.headers = {{"Location", location.arg(m_elsewhere.port()).toUtf8()}};
    m_server.reply(redirect);

    const auto outcome = sendRequest(m_manager, u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET);
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->failures, 1);
    QCOMPARE(outcome->error.code(), int(QNetworkReply::InsecureRedirectError));
    QVERIFY(m_elsewhere.requests().isEmpty());
}

void tst_TVRNetworkManager::redirectWithinServiceIsFollowed_data()
{
    QTest::addColumn<int>("method");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("methodThere"); // the method that reaches the new place

    QTest::newRow("GET, 301") << int(TVRHTTPMethodGET) << 301 << QByteArray("GET");
    // A HEAD answer announces a body that never comes: the redirect is followed all the same.
    QTest::newRow("HEAD, 301") << int(TVRHTTPMethodHEAD) << 301 << QByteArray("HEAD");
    QTest::newRow("HEAD, 303 stays HEAD") << int(TVRHTTPMethodHEAD) << 303 << QByteArray("HEAD");
    QTest::newRow("POST, 302 goes on as GET") << int(TVRHTTPMethodPOST) << 302 << QByteArray("GET");
    QTest::newRow("PUT, 303 goes on as GET") << int(TVRHTTPMethodPUT) << 303 << QByteArray("GET");
    QTest::newRow("POST, 307 keeps its body") << int(TVRHTTPMethodPOST) << 307 << QByteArray("POST");
    QTest::newRow("PUT, 308 keeps its body") << int(TVRHTTPMethodPUT) << 308 << QByteArray("PUT");
}

void tst_TVRNetworkManager::redirectWithinServiceIsFollowed()
{
    QFETCH(int, method);
    QFETCH(int, status);
    QFETCH(QByteArray, methodThere);

    m_server.setHandler([status](const TestRequest &request) {
        TestReply reply = TestReply::json(200, R"({"moved":true})");
        if (request.path != u"/moved"_s) {
            reply.status = status;
            reply.headers = {{"Location", "/moved"}};
        }
        if (request.method == "HEAD") {
            reply.headers.append(qMakePair(QByteArray("Content-Length"), QByteArray("120")));
            reply.body.clear();
        }
        return reply;
    });

    const auto outcome =
        sendRequest(m_manager, u"/api/privacy-policy"_s, QString(), TVRHTTPMethod(method), QJsonObject{{u"a"_s, 1}});
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->successes, 1);
    const TestRequest &there = m_server.requests().constLast();
    QCOMPARE(there.path, u"/moved"_s);
    QCOMPARE(there.method, methodThere);
    QCOMPARE(there.body, methodThere == "GET" ? QByteArray() : QByteArray(R"({"a":1})"));
    QCOMPARE(there.header("Authorization"), QByteArray("Basic YTpi"));
    if (methodThere != "HEAD")
        QCOMPARE(outcome->json, QJsonValue(QJsonObject{{u"moved"_s, true}}));
}

void tst_TVRNetworkManager::unknownMethodIsNotSent_data()
{
    QTest::addColumn<int>("method");
    QTest::newRow("one past the end") << 6;
    QTest::newRow("negative") << -1;
    QTest::newRow("largest") << std::numeric_limits<qint32>::max();
}

void tst_TVRNetworkManager::unknownMethodIsNotSent()
{
    QFETCH(int, method);

    const int requestsBefore = m_server.requests().size();
    const auto outcome = sendRequest(m_manager, u"/api/terms-of-service"_s, QString(), TVRHTTPMethod(method));
    QVERIFY(settle(outcome));
    QCOMPARE(outcome->failures, 1);
    QCOMPARE(outcome->error.domain(), TVRError::kitDomain());
    QVERIFY(!outcome->calledTooEarly);
    QCOMPARE(m_server.requests().size(), requestsBefore);
}

void tst_TVRNetworkManager::errorsAreEqualInDomainCodeAndMessage_data()
{
    QTest::addColumn<TVRError>("other");
    QTest::addColumn<bool>("equal");
    const TVRError error(TVRError::networkDomain(), 1, u"refused"_s);
    QTest::newRow("a copy") << TVRError(error) << true;
    QTest::newRow("made alike") << TVRError(TVRError::networkDomain(), 1, u"refused"_s) << true;
    QTest::newRow("another domain") << TVRError(TVRError::kitDomain(), 1, u"refused"_s) << false;
    QTest::newRow("another code") << TVRError(TVRError::networkDomain(), 2, u"refused"_s) << false;
    QTest::newRow("another message") << TVRError(TVRError::networkDomain(), 1, u"reset"_s) << false;
    QTest::newRow("no error") << TVRError() << false;
}

void tst_TVRNetworkManager::errorsAreEqualInDomainCodeAndMessage()
{
    QFETCH(TVRError, other);
    QFETCH(bool, equal);

    const TVRError error(TVRError::networkDomain(), 1, u"refused"_s);
    QCOMPARE(error == other, equal);
    QCOMPARE(other == error, equal);
    QCOMPARE(error != other, !equal);
    QVERIFY(other == other);
}

QTEST_MAIN(tst_TVRNetworkManager)
#include "tst_tvrnetworkmanager.moc"
