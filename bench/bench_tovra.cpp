// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "PrivateBus.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <RQKeychain.h>
#include <TVRDocumentManager.h>
#include <TVRManager.h>
#include <TVRNetworkManager.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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
    void identifierReadsWithoutKeychain_data();
    void identifierReadsWithoutKeychain();
    void buildRequest();
    void requestRoundTrip_data();
    void requestRoundTrip();
    void documentFromCache_data();
    void documentFromCache();

private:
    TestHttpsServer m_server;
    TestSession m_session;
    TVRNetworkManager m_manager;
};

void bench_Tovra::initTestCase()
{
    QVERIFY(startLoopbackService(u"bench_tovra"_s, m_server, m_session));
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

void bench_Tovra::identifierReadsWithoutKeychain_data()
{
    QTest::addColumn<bool>("silent");
    QTest::newRow("no Secret Service") << false;
    QTest::newRow("a Secret Service that never answers") << true;
}

// 50 reads of an identifier that is not there, in a launch whose keychain is out of reach:
// what the host's thread waits, timed inside that launch.
void bench_Tovra::identifierReadsWithoutKeychain()
{
    QFETCH(bool, silent);
    PrivateBus bus;
    QVERIFY(bus.start(silent ? QStringLiteral(TOVRA_TEST_HELPER) : QString()));
    const QStringList answer = runHelper({u"identifier-reads"_s, u"50"_s}, bus.environment());
    QCOMPARE(answer.size(), 1);
    const QStringList fields = answer.constFirst().split(u' ');
    QCOMPARE(fields.size(), 3);
    qInfo("first read %s ms, the next 49 reads %s ms in all", qPrintable(fields[1]), qPrintable(fields[2]));
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
            [&](const TVRHTTPResponse &, const QJsonValue &json) {
                answers += json.isObject();
                loop.quit();
            },
            [&](const TVRHTTPResponse &, const TVRError &) { loop.quit(); });
        loop.exec();
    }
    QVERIFY(answers > 0);
}

void bench_Tovra::documentFromCache_data()
{
    QTest::addColumn<int>("sections");
    QTest::newRow("20 sections, 20 KB") << 20;
    QTest::newRow("5000 sections, 5 MB") << 5000;
}

// What a screen waits for at launch: the cached copy read and every section laid out.
void bench_Tovra::documentFromCache()
{
    QFETCH(int, sections);
    QJsonArray list;
    for (int i = 0; i < sections; ++i)
        list.append(QJsonObject{{u"title"_s, QString::number(i)}, {u"body"_s, QString(1000, u'w') + u"#####"_s}});
    const QJsonObject document{
        {u"title"_s, u"Terms"_s}, {u"updatedAt"_s, u"2016-03-01T12:30:00.000+0000"_s}, {u"sections"_s, list}};
    keepCopy(kTVRTermsOfServiceDataPath, document);
    qsizetype characters = 0;
    QBENCHMARK {
        TVRDocumentManager launch;
        const auto terms = launch.termsOfService();
        characters += terms->title().size() + terms->date().toString().size();
        for (const auto &section : terms->sections())
            characters += section->title().size() + section->body().size();
    }
    QVERIFY(characters > 0);
}

QTEST_MAIN(bench_Tovra)
#include "bench_tovra.moc"
