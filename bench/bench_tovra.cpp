#include "TestHttpsServer.h"
#include "TestSession.h"

#include <RQKeychain.h>
#include <TVRManager.h>
#include <TVRNetworkManager.h>

#include <QtTest>

using namespace Qt::StringLiterals;

class bench_Tovra : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void keychainSave();
    void keychainLoad();
    void userIdentifierHeld();
    void buildRequest();
    void requestRoundTrip_data();
    void requestRoundTrip();

private:
    TestHttpsServer m_server;
    TestSession m_session;
    TVRNetworkManager m_manager;
};

void bench_Tovra::initTestCase()
{
    QVERIFY2(qEnvironmentVariable("HOME").contains(u"tovra-test"_s),
             "run this through tests/run-isolated.sh");
    QVERIFY(m_server.start());
    m_session.route(TVRNetworkManager::baseURLComponents().host(), m_server.port());
    m_manager.setSession(&m_session);
    TVRManager::setAPIKey(u"key"_s, u"secret"_s);
}

void bench_Tovra::keychainSave()
{
    QBENCHMARK {
        RQKeychain::saveValue(u"user-42"_s, u"bench.identifier"_s);
    }
}

void bench_Tovra::keychainLoad()
{
    QVERIFY(RQKeychain::saveValue(u"user-42"_s, u"bench.identifier"_s));
    QBENCHMARK {
        RQKeychain::loadValueForKey(u"bench.identifier"_s);
    }
}

void bench_Tovra::userIdentifierHeld()
{
    TVRManager::setUserIdentifier(u"user-42"_s);
    QBENCHMARK {
        TVRManager::userIdentifier();
    }
}

void bench_Tovra::buildRequest()
{
    const QUrl url(u"https://api.tovra.io/api/terms-of-service"_s);
    QBENCHMARK {
        TVRNetworkManager::requestWithURL(url);
    }
}

void bench_Tovra::requestRoundTrip_data()
{
    QTest::addColumn<int>("bodyBytes");
    QTest::newRow("empty object") << 0;
    QTest::newRow("100 KB document") << 100 * 1024;
}

void bench_Tovra::requestRoundTrip()
{
    QFETCH(int, bodyBytes);
    m_server.reply(TestReply::json(200, "{\"body\":\"" + QByteArray(bodyBytes, 'x') + "\"}"));
    int answers = 0;
    QBENCHMARK {
        // An event loop rather than QTest::qWaitFor(), which sleeps in 10 ms steps.
        QEventLoop loop;
        m_manager.requestForPath(
            u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET, QJsonValue(),
            [&](const TVRHTTPResponse &, const QJsonValue &json) { answers += json.isObject(); loop.quit(); },
            [&](const TVRHTTPResponse &, const TVRError &) { loop.quit(); });
        loop.exec();
    }
    QVERIFY(answers > 0);
}

QTEST_MAIN(bench_Tovra)
#include "bench_tovra.moc"
