// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "RequestOutcome.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <TVRManager.h>
#include <TVRNetworkManager.h>

#include <QNetworkReply>
#include <QSslConfiguration>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_TVRNetworkManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_server.start());
        m_host = TVRNetworkManager::baseURLComponents().host();
        m_session.route(m_host, m_server.port());
        m_manager.setSession(&m_session);
    }

    void init()
    {
        m_server.reply(TestReply::json(200, "{}"));
        TVRManager::setAPIKey(u"a"_s, u"b"_s);
    }

    void serviceAddress_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("taken"); // the address the kit then holds; empty when refused

        QTest::newRow("prefix with a trailing slash")
            << u"https://%1/a/b/"_s.arg(m_host) << u"https://%1/a/b"_s.arg(m_host);
        QTest::newRow("root slash") << u"https://%1/"_s.arg(m_host) << u"https://%1"_s.arg(m_host);
        QTest::newRow("http on localhost") << u"http://localhost:8080"_s << u"http://localhost:8080"_s;
        QTest::newRow("http on ::1") << u"http://[::1]:8080"_s << u"http://[::1]:8080"_s;
        QTest::newRow("http on 127 mapped to IPv6") << u"http://[::ffff:127.0.0.1]"_s << u"http://[::ffff:127.0.0.1]"_s;
        QTest::newRow("http on a LAN address") << u"http://192.168.1.2"_s << QString();
        QTest::newRow("http on 127.0.0.255") << u"http://127.0.0.255"_s << u"http://127.0.0.255"_s;
        QTest::newRow("http on a name like 127.0.0.256") << u"http://127.0.0.256"_s << QString();
        QTest::newRow("http on a name like 127.0.0.x") << u"http://127.0.0.x"_s << QString();
        QTest::newRow("http on a host named 127") << u"http://127.example.com"_s << QString();
        QTest::newRow("another scheme") << u"ftp://legal.example.com"_s << QString();
        QTest::newRow("no host") << u"https:///app"_s << QString();
        QTest::newRow("user information") << u"https://me:pw@legal.example.com"_s << QString();
        QTest::newRow("query") << u"https://legal.example.com/?x=1"_s << QString();
    }

    void serviceAddress()
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

    void credentials()
    {
        // The kit builds its own requests on this one: the server's view of the header, for
        // ASCII credentials, is checked by the request rows, as is the content type. Non-ASCII
        // ones go as UTF-8.
        TVRManager::setAPIKey(u"ключ"_s, u"秘密"_s);
        QCOMPARE(TVRNetworkManager::requestWithURL(QUrl(u"https://example.org/x"_s)).rawHeader("Authorization"),
                 "Basic " + u"ключ:秘密"_s.toUtf8().toBase64());
    }

    void request_data()
    {
        QTest::addColumn<int>("method");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QJsonValue>("parameters");
        QTest::addColumn<int>("status"); // of the first answer, which redirects to location when that is set
        QTest::addColumn<QString>("location");
        QTest::addColumn<QString>("sent"); // the method and encoded target that reach the server last; empty: refused
        QTest::addColumn<QByteArray>("body");

        const auto row = [](const char *name, TVRHTTPMethod method, const QJsonValue &parameters, const QString &sent,
                            const QByteArray &body, const QString &query = QString(), int status = 200,
                            const QString &location = QString()) {
            QTest::newRow(name) << int(method) << query << parameters << status << location << sent << body;
        };
        const QJsonValue object = QJsonObject{{u"b"_s, QJsonObject{{u"c"_s, u"d e"_s}}}, {u"a"_s, QJsonArray{1, 2}}};
        const QByteArray compact = R"({"a":[1,2],"b":{"c":"d e"}})";
        const QJsonValue none(QJsonValue::Undefined);
        row("DELETE", TVRHTTPMethodDELETE, object, u"DELETE /api/a%20b"_s, compact);
        row("PATCH", TVRHTTPMethodPATCH, object, u"PATCH /api/a%20b"_s, compact);
        row("array", TVRHTTPMethodPOST, QJsonArray{1, u"x"_s, QJsonValue::Null}, u"POST /api/a%20b"_s,
            R"([1,"x",null])");
        row("no parameters", TVRHTTPMethodPOST, none, u"POST /api/a%20b"_s, {});
        row("query is encoded", TVRHTTPMethodGET, none, u"GET /api/a%20b?name=Jo%20Doe&pct=100%25"_s, {},
            u"name=Jo Doe&pct=100%"_s);
        row("empty query keeps the ?", TVRHTTPMethodGET, none, u"GET /api/a%20b?"_s, {}, u""_s);
        // A HEAD answer announces a body that never comes: the redirect is followed all the same.
        const QString moved = u"/moved"_s;
        row("HEAD, 301", TVRHTTPMethodHEAD, object, u"HEAD /moved"_s, compact, {}, 301, moved);
        row("HEAD, 303 stays HEAD", TVRHTTPMethodHEAD, object, u"HEAD /moved"_s, compact, {}, 303, moved);
        row("POST, 302 goes on as GET", TVRHTTPMethodPOST, object, u"GET /moved"_s, {}, {}, 302, moved);
        row("PUT, 303 goes on as GET", TVRHTTPMethodPUT, object, u"GET /moved"_s, {}, {}, 303, moved);
        row("POST, 307 keeps its body", TVRHTTPMethodPOST, object, u"POST /moved"_s, compact, {}, 307, moved);
        row("PUT, 308 keeps its body", TVRHTTPMethodPUT, object, u"PUT /moved"_s, compact, {}, 308, moved);
        // A redirect that leaves the service's origin, by its port or its scheme alone, is refused.
        row("to another port", TVRHTTPMethodGET, none, {}, {}, {}, 302, u"https://%1:8443/collect"_s.arg(m_host));
        row("to plain HTTP", TVRHTTPMethodGET, none, {}, {}, {}, 302, u"http://%1:443/collect"_s.arg(m_host));
        // So is one that comes back to where it was sent, past the redirect limit.
        row("to itself", TVRHTTPMethodGET, none, {}, {}, {}, 302, u"/api/a%20b"_s);
    }

    void request()
    {
        QFETCH(int, method);
        QFETCH(QString, query);
        QFETCH(QJsonValue, parameters);
        QFETCH(int, status);
        QFETCH(QString, location);
        QFETCH(QString, sent);
        QFETCH(QByteArray, body);

        // Every HEAD answer announces a body it does not send.
        m_server.setHandler([status, location](const TestRequest &request) {
            TestReply reply = TestReply::json(200, "{}");
            if (request.path != u"/moved"_s && !location.isEmpty()) {
                reply.status = status;
                reply.headers = {{"Location", location.toUtf8()}};
            }
            if (request.method == "HEAD") {
                reply.headers.append(qMakePair(QByteArray("Content-Length"), QByteArray("120")));
                reply.body.clear();
            }
            return reply;
        });
        // The path has a space, sent encoded.
        const auto outcome = sendRequest(m_manager, u"/api/a b"_s, query, TVRHTTPMethod(method), parameters);
        QVERIFY(settle(outcome));
        if (sent.isEmpty()) {
            QCOMPARE(outcome->failures, 1);
            QCOMPARE(outcome->error.code(),
                     int(location.startsWith(u'/') ? QNetworkReply::TooManyRedirectsError
                                                   : QNetworkReply::InsecureRedirectError));
            return;
        }
        QCOMPARE(outcome->successes, 1);
        // The answer is the last place's: its address is the one the request line is read from.
        const TestRequest &received = m_server.requests().constLast();
        QCOMPARE(
            QString::fromLatin1(received.method) + u' '
                + outcome->response.url().toString(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::FullyEncoded),
            sent);
        QCOMPARE(received.body, body);
        QCOMPARE(received.header("Content-Type"), QByteArray("application/json"));
        // The credentials the request was made with, also after a redirect.
        QCOMPARE(received.header("Authorization"), QByteArray("Basic YTpi"));
    }

    void everyAnswerGoesToSuccess_data()
    {
        QTest::addColumn<TestReply>("reply");
        QTest::addColumn<QJsonValue>("json");

        // A 200 with a document or an array, and a 502, are tst_tvrdocumentmanager's answers.
        QTest::newRow("204") << TestReply::json(204, "") << QJsonValue(QJsonValue::Undefined);
        // A status of every class, the ones Qt counts as errors among them: a 407 is one of Qt's
        // proxy errors, past its network-layer ones.
        QTest::newRow("407") << TestReply::json(407, "{}") << QJsonValue(QJsonObject());
        // A redirect that names no place to go is an answer like any other, body and all.
        QTest::newRow("301 without Location")
            << TestReply::json(301, R"({"moved":false})") << QJsonValue(QJsonObject{{u"moved"_s, false}});
        QTest::newRow("HEAD, 301 without Location") << TestReply::json(301, "") << QJsonValue(QJsonValue::Undefined);
    }

    void everyAnswerGoesToSuccess()
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
    }

    void failure_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("error");

        QTest::newRow("connection refused") << u"refused"_s << int(QNetworkReply::ConnectionRefusedError);
        QTest::newRow("certificate of an unknown authority")
            << u"untrusted"_s << int(QNetworkReply::SslHandshakeFailedError);
        QTest::newRow("silent past the time-out") << u"silent"_s << int(QNetworkReply::TimeoutError);
        QTest::newRow("cancelled before it") << u"cancelled"_s << int(QNetworkReply::OperationCanceledError);
        QTest::newRow("session destroyed under it") << u"session gone"_s << int(QNetworkReply::OperationCanceledError);
        // A method the kit does not know fails in the kit, and nothing is sent.
        QTest::newRow("method one past the end")
            << u"unknown method"_s << int(QNetworkReply::ProtocolInvalidOperationError);
    }

    void failure()
    {
        QFETCH(QString, fault);
        QFETCH(int, error);

        // The host's session keeps its own time-out, where it has one.
        auto session = std::make_unique<TestSession>();
        session->route(m_host, m_server.port());
        if (fault == u"silent"_s)
            session->setTransferTimeout(300);
        else if (fault == u"refused"_s)
            QVERIFY(session->routeToClosedPort(m_host));
        else if (fault == u"untrusted"_s)
            session->setAuthorities(QSslConfiguration::systemCaCertificates());
        // The last three get no answer until the test is over.
        TestReply reply = TestReply::json(200, "{}");
        reply.held = fault == u"silent"_s || fault == u"cancelled"_s || fault == u"session gone"_s;
        m_server.reply(reply);
        const bool unknownMethod = fault == u"unknown method"_s;
        TVRNetworkManager manager;
        manager.setSession(session.get());

        const int requestsBefore = m_server.requests().size();
        const auto method = unknownMethod ? TVRHTTPMethod(TVRHTTPMethodHEAD + 1) : TVRHTTPMethodGET;
        const auto outcome = sendRequest(manager, u"/api/terms-of-service"_s, QString(), method);
        if (reply.held)
            QTRY_COMPARE(m_server.requests().size(), requestsBefore + 1);
        if (fault == u"cancelled"_s)
            session->abortAll();
        if (fault == u"session gone"_s)
            session.reset();
        QVERIFY(QTest::qWaitFor([&] { return outcome->calls() > 0 && (!session || session->liveReplies() == 0); }));
        m_server.releaseHeld();
        QCOMPARE(outcome->failures, 1);
        QCOMPARE(outcome->successes, 0);
        QCOMPARE(outcome->error.domain(), unknownMethod ? TVRError::kitDomain() : TVRError::networkDomain());
        QCOMPARE(outcome->error.code(), error);
        QVERIFY(!outcome->error.message().isEmpty());
        QCOMPARE(outcome->response.statusCode(), 0);
        QVERIFY(!outcome->calledTooEarly);
        // Without a verified TLS connection the request, and its credentials, never reach the server.
        if (!reply.held)
            QCOMPARE(m_server.requests().size(), requestsBefore);
        if (!session) {
            // A session of the kit's own takes the place of the host's, with a minute's time-out.
            QCOMPARE(manager.session()->parent(), &manager);
            QCOMPARE(manager.session()->transferTimeout(), 60 * 1000);
        }
    }

    void nullHandlersAreSkipped()
    {
        // A request that fails without a failure handler, and one that succeeds without a success
        // handler: neither calls the handler it has.
        TestSession closed;
        QVERIFY(closed.routeToClosedPort(m_host));
        TVRNetworkManager failing;
        failing.setSession(&closed);
        int calls = 0;
        failing.requestForPath(
            u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET, QJsonValue(),
            [&](const TVRHTTPResponse &, const QJsonValue &) { ++calls; }, nullptr);
        m_manager.requestForPath(u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET, QJsonValue(), nullptr,
                                 [&](const TVRHTTPResponse &, const TVRError &) { ++calls; });
        QVERIFY(QTest::qWaitFor([&] { return closed.liveReplies() == 0 && m_session.liveReplies() == 0; }));
        QCOMPARE(calls, 0);
    }

    void errorsAreEqualInDomainCodeAndMessage()
    {
        const TVRError error(TVRError::networkDomain(), 1, u"refused"_s);
        QVERIFY(error == TVRError(TVRError::networkDomain(), 1, u"refused"_s));
        QVERIFY(error != TVRError(TVRError::kitDomain(), 1, u"refused"_s));
        QVERIFY(error != TVRError(TVRError::networkDomain(), 2, u"refused"_s));
        QVERIFY(error != TVRError(TVRError::networkDomain(), 1, u"reset"_s));
    }

private:
    // Waits until the request has been answered and its reply is gone, so that a second
    // handler call, had there been one, would have happened too.
    bool settle(const std::shared_ptr<RequestOutcome> &outcome)
    {
        return QTest::qWaitFor([&] { return outcome->calls() > 0 && m_session.liveReplies() == 0; });
    }

    TestHttpsServer m_server;
    TestSession m_session;
    TVRNetworkManager m_manager;
    QString m_host;
};

QTEST_MAIN(tst_TVRNetworkManager)
#include "tst_tvrnetworkmanager.moc"
