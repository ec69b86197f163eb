// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// What must never leak: the user identifier into the settings or a log, the key or the
// secret into a log. (The credentials never leave without verified TLS: tst_tvrnetworkmanager
// refuses plain http off loopback, redirects to another origin, and sends nothing over an
// unverified connection.)

#include "KeychainProbe.h"
#include "TestFixture.h"
#include "TestHttpsServer.h"
#include "TestSession.h"

#include <Tovra.h>

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QStringList allLogLines;
QtMessageHandler testHandler = nullptr;

const QString identifier = u"user-7f3a9c41"_s;
const QString key = u"key-1b2c3d4e"_s;
const QString secret = u"secret-9d8e7f6a"_s;

} // namespace

class tst_Security : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secretsStayOutOfSettingsAndLogs()
    {
        TestHttpsServer server;
        TestSession session;
        QVERIFY(startLoopbackService(u"tst_security"_s, server, session));
        testHandler =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &message) {
                allLogLines << message;
                testHandler(type, context, message);
            });
        // Everything the kit can say, said.
        QLoggingCategory::setFilterRules(u"tovra.*=true"_s);
        server.reply(TestReply::json(200, R"({"_id":"d","sections":[{"title":"T","body":"B"}]})"));

        // A host's whole round: credentials, identity, both fetches, the agreement check, an
        // unreadable keychain item, and logging out.
        TVRManager::setAPIKey(key, secret);
        TVRManager::setUserIdentifier(identifier);
        TVRDocumentManager manager;
        manager.setSession(&session);
        QSignalSpy fetched(&manager, &TVRDocumentManager::documentChanged);
        manager.fetchTermsOfService();
        manager.fetchPrivacyPolicy();
        QTRY_COMPARE(fetched.size(), 2);
        QTest::ignoreMessage(QtInfoMsg, "ACTIVATE");
        QTest::ignoreMessage(QtInfoMsg, "FETCH");
        TVRManager::activateApp();
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"^DOCUMENT: "_s));
        TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(TVRUserManager::sharedInstance(), true,
                                                                          manager.termsOfService());
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"^ERROR: "_s));
        TVRManager::sharedInstance()->userManagerDidFailWithError(
            TVRUserManager::sharedInstance(), TVRError(TVRError::networkDomain(), 99, u"refused"_s));
        QVERIFY(KeychainProbe::writeRaw(kTVRUserIdentifier, kTVRUserIdentifier, "not an archive"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Unarchive of "_s));
        QVERIFY(!RQKeychain::loadValueForKey(kTVRUserIdentifier).isValid());
        TVRManager::logout();

        // (The five lines awaited above passed through this handler first.)
        for (const QString &line : std::as_const(allLogLines)) {
            for (const QString &needle : {identifier, key, secret})
                QVERIFY2(!line.contains(needle), qPrintable(line));
        }

        // Every file of the settings, the kit's document copies among them.
        QDirIterator files(qEnvironmentVariable("XDG_CONFIG_HOME"), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray content = file.readAll();
            for (const QString &needle : {identifier, secret})
                QVERIFY2(!content.contains(needle.toUtf8()), qPrintable(file.fileName()));
        }
        QVERIFY(keptCopy(kTVRTermsOfServiceDataPath).isObject());
    }
};

QTEST_MAIN(tst_Security)
#include "tst_security.moc"
