// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "KeychainProbe.h"
#include "MemoryItemStore.h"
#include "TestFixture.h"

#include <TovraCore.h>

#include <QGuiApplication>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace Qt::StringLiterals;

class tst_TVRManager : public QObject
{
    Q_OBJECT

    // Makes three of the host's own events due, a timer, a queued call and a connection waiting
    // to be accepted, then runs \a call: true when none of them ran inside it, and each ran
    // once after, held by the host's own event loop and not lost.
    bool runsNoHostEvent(const std::function<void()> &call)
    {
        QStringList events;
        QTimer::singleShot(0, this, [&] { events << u"timer"_s; });
        QMetaObject::invokeMethod(
            this, [&] { events << u"queued call"_s; }, Qt::QueuedConnection);
        QTcpServer server;
        connect(&server, &QTcpServer::newConnection, this, [&] { events << u"connection"_s; });
        QTcpSocket client;
        if (server.listen(QHostAddress::LocalHost))
            client.connectToHost(QHostAddress::LocalHost, server.serverPort());
        call();
        const bool noneInside = events.isEmpty();
        return QTest::qWaitFor([&] { return events.size() == 3; }) && noneInside;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(isolateTestHost(u"tst_tvrmanager"_s)); }

    // First: it starts from the state of a fresh process. After logging out, the identifier
    // is read from the keychain again: it is gone only if the item is.
    void logoutForgetsTheUserOnly()
    {
        // Three invalid values where no user is held.
        const auto user = [] {
            return QVariantList{TVRManager::userIdentifier(), TVRManager::userName(), TVRManager::userImageUrl()};
        };
        // A fresh process holds nothing.
        QCOMPARE(user(), QVariantList(3));
        QVERIFY(TVRManager::apiKey().isNull() && TVRManager::apiSecret().isNull());
        QVERIFY(!TVRManager::scrollToBottomEnabled() && !TVRManager::alertOnAgreeEnabled());

        TVRManager::setAPIKey(u"key"_s, u"secret"_s);
        TVRManager::setAppName(u"App"_s);
        TVRManager::setScrollToBottomEnabled(true);
        TVRManager::setAlertOnAgreeEnabled(true);
        TVRManager::setUserIdentifier(u"user-4"_s);
        TVRManager::setUserName(u"Ann"_s);
        TVRManager::setUserImageUrl(QUrl(u"https://example.org/a.png"_s));
        QVERIFY(runsNoHostEvent(&TVRManager::logout));

        QCOMPARE(user(), QVariantList(3));
        QCOMPARE((QStringList{TVRManager::apiKey(), TVRManager::apiSecret(), TVRManager::appName()}),
                 (QStringList{u"key"_s, u"secret"_s, u"App"_s}));
        QVERIFY(TVRManager::scrollToBottomEnabled() && TVRManager::alertOnAgreeEnabled());
    }

    void versionSymbols()
    {
        // Compared up to the terminating zero.
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(TovraVersionString)),
                 QByteArray("@(#)PROGRAM:Tovra  PROJECT:Tovra-1\n"));
        QCOMPARE(TovraVersionNumber, 1.0);
    }

    void appName_data()
    {
        QTest::addColumn<QString>("setName");
        QTest::addColumn<QString>("displayName");
        QTest::addColumn<QString>("expected"); // the application name is "bundle"

        QTest::newRow("set name wins") << u"Mine"_s << u"Display"_s << u"Mine"_s;
        QTest::newRow("empty set name is kept") << u""_s << u"Display"_s << u""_s;
        QTest::newRow("display name") << QString() << u"Display"_s << u"Display"_s;
        QTest::newRow("application name, empty display name") << QString() << u""_s << u"bundle"_s;
    }

    void appName()
    {
        QFETCH(QString, setName);
        QFETCH(QString, displayName);
        QFETCH(QString, expected);

        QCoreApplication::setApplicationName(u"bundle"_s);
        QGuiApplication::setApplicationDisplayName(displayName);
        // A name set earlier must not linger: null brings the fallback back.
        TVRManager::setAppName(u"earlier"_s);
        TVRManager::setAppName(setName);

        QCOMPARE(TVRManager::appName(), expected);
        QCOMPARE(TVRManager::appName().isNull(), expected.isNull());

        // Read afresh at each call.
        if (setName.isNull()) {
            QCoreApplication::setApplicationName(u"renamed"_s);
            QGuiApplication::setApplicationDisplayName(QString());
            QCOMPARE(TVRManager::appName(), u"renamed"_s);
        }
    }

    void userIdentifierIsKeptInTheKeychain()
    {
        // The key release 1.0 kept the item under. Saved on every call, also when nothing
        // changed: a lost item comes back.
        QCOMPARE(kTVRUserIdentifier, u"tovrakit.userIdentifier"_s);
        TVRManager::setUserIdentifier(u"user-1"_s);
        QVERIFY(RQKeychain::deleteValueForKey(kTVRUserIdentifier));
        QVERIFY(runsNoHostEvent([] { TVRManager::setUserIdentifier(u"user-1"_s); }));
        QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(u"user-1"_s));

        // A null identifier removes the item and is not held: another launch saves one
        // meanwhile, and the next read finds it. (That one held is not read again, the new
        // launches show.)
        TVRManager::setUserIdentifier(QVariant());
        QCOMPARE(KeychainProbe::secretServiceItems(kTVRUserIdentifier, kTVRUserIdentifier), 0);
        QVERIFY(!TVRManager::userIdentifier().isValid());
        QVERIFY(RQKeychain::saveValue(u"saved elsewhere"_s, kTVRUserIdentifier));
        QVariant read;
        QVERIFY(runsNoHostEvent([&read] { read = TVRManager::userIdentifier(); }));
        QCOMPARE(read, QVariant(u"saved elsewhere"_s));

        // A keychain that fails is silent: the slot holds what the host gave, whatever the keychain did.
        MemoryItemStore failing;
        failing.addFailures = {TVRSecItem::errSecNotAvailable};
        TVRSecureItemStore::setDefaultStore(&failing);
        TVRManager::setUserIdentifier(u"user-3"_s);
        TVRSecureItemStore::setDefaultStore(nullptr);
        QCOMPARE(TVRManager::userIdentifier(), QVariant(u"user-3"_s));
        // The delete that a save begins with, then the one add, which failed.
        QCOMPARE(failing.calls.size(), 2);
    }

    void newLaunches()
    {
        QCOMPARE(runHelper({u"appname-without-application"_s}), QStringList{u"<null>"_s});
        QCOMPARE(runHelper({u"set-identifier"_s, u"u-42"_s}), QStringList{u"u-42"_s});
        // The new launch reads it without setting it, then holds it even once the item is gone.
        QCOMPARE(runHelper({u"identifier"_s}), QStringList({u"u-42"_s, u"u-42"_s}));
        QCOMPARE(runHelper({u"identifier"_s}), QStringList({u"<null>"_s, u"<null>"_s}));
    }
};

QTEST_MAIN(tst_TVRManager)
#include "tst_tvrmanager.moc"
