// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// A host that keeps items of its own with QtKeychain, beside the kit's keychain calls: in
// either order, at the same time on two threads, with a host job under way; and the item the
// kit writes, as release 1.0 wrote it.

#include "HelperProcess.h"
#include "HostKeychain.h"
#include "KeychainProbe.h"
#include "TestFixture.h"

#include <RQKeychain.h>
#include <TVRManager.h>

#include <QtTest>

using namespace Qt::StringLiterals;

class tst_HostKeychain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(isolateTestHost(u"tovra-host"_s)); }

    // In a launch of its own, the host's QtKeychain writes and reads of its own item beside
    // the kit's saves and reads of the identifier: one side first, where the first QtKeychain
    // job is the one the row says, or both at the same time, one on a thread of the host's.
    void hostAndKitInOneLaunch_data()
    {
        QTest::addColumn<QString>("order");

        for (const char *order : {"host-first", "kit-first", "host-on-thread", "kit-on-thread"})
            QTest::newRow(order) << QString::fromLatin1(order);
    }

    void hostAndKitInOneLaunch()
    {
        QFETCH(QString, order);
        QCOMPARE(runHelper({u"host-and-kit"_s, order, u"20"_s}), QStringList({u"kit 20/20"_s, u"host 20/20"_s}));
    }

    // A host's QtKeychain write under way, that only the host's event loop will see through,
    // while the kit saves and reads the identifier: both end, each with its own item.
    void hostJobUnderWayDuringKitCall()
    {
        const QString service = u"tovra.test.pending"_s;
        QKeychain::WritePasswordJob pending(service);
        pending.setKey(u"token"_s);
        pending.setTextData(u"after"_s);
        pending.setAutoDelete(false);
        QSignalSpy finished(&pending, &QKeychain::Job::finished);
        pending.start();
        // The job's start is a queued call: delivered, the job is on its way to the Secret
        // Service.
        QCoreApplication::sendPostedEvents(&pending, QEvent::MetaCall);
        QCOMPARE(finished.count(), 0);

        TVRManager::setUserIdentifier(u"user-9"_s);
        QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(u"user-9"_s));

        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(HostKeychain::read(service, u"token"_s), "after");
        QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(u"user-9"_s));
    }

    // The kit reads the identifier that release 1.0 kept with QtKeychain, and keeps it as that
    // did: binary data, the key as both service and account, down to the item's attributes
    // and bytes. (That each store reads and removes what the other wrote, tst_keychainstores
    // checks.)
    void identifierItemAsRelease1()
    {
        QVERIFY(KeychainProbe::writeRaw(kTVRUserIdentifier, kTVRUserIdentifier, HostKeychain::archived(u"user-7"_s)));
        QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(u"user-7"_s));
        TVRManager::setUserIdentifier(u"user-8"_s);
        const QMap<QString, QString> attributes{{u"server"_s, kTVRUserIdentifier},
                                                {u"user"_s, kTVRUserIdentifier},
                                                {u"type"_s, u"base64"_s},
                                                {u"xdg:schema"_s, u"org.qt.keychain"_s}};
        QCOMPARE(KeychainProbe::itemAttributes(kTVRUserIdentifier, kTVRUserIdentifier), attributes);
        QCOMPARE(HostKeychain::read(kTVRUserIdentifier, kTVRUserIdentifier), HostKeychain::archived(u"user-8"_s));
    }
};

QTEST_MAIN(tst_HostKeychain)
#include "tst_hostkeychain.moc"
