// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// A host that keeps items of its own with QtKeychain, beside the kit's keychain calls: in
// either order, with a host job under way, on another thread; and the items both write.

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

    // Each in a launch of its own, where the first QtKeychain job is the one the row says.
    void hostAndKitInOneLaunch_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("output");

        // The host writes its item before or after the kit's call; the launch reads both
        // items back once both sides are done. (How the kit's item is stored,
        // identifierItemAsRelease1 checks.)
        for (const QString &order : {u"host-first"_s, u"kit-first"_s}) {
            const auto row = [&order](const QString &call, const QStringList &kit) {
                const QString host = u"host secret, "_s + order + u", "_s + call;
                QTest::addRow("%s, %s", qPrintable(order), qPrintable(call))
                    << QStringList{u"host-and-kit"_s, order, call, host} << kit + QStringList{host};
            };
            row(u"set"_s, {u"user-0"_s});
            row(u"read"_s, {u"stored-id"_s, u"stored-id"_s}); // what the call read, and the item
            row(u"logout"_s, {u"<null>"_s});
        }
        // One side on a thread of the host's, the other on the main thread at the same time.
        const QStringList bothRight{u"kit 20/20"_s, u"host 20/20"_s};
        QTest::newRow("host jobs on a thread") << QStringList{u"threads"_s, u"host-on-thread"_s, u"20"_s} << bothRight;
        QTest::newRow("kit called from a thread")
            << QStringList{u"threads"_s, u"kit-on-thread"_s, u"20"_s} << bothRight;
    }

    void hostAndKitInOneLaunch()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, output);

        // The identifier as an earlier launch left it.
        QVERIFY(
            KeychainProbe::writeRaw(kTVRUserIdentifier, kTVRUserIdentifier, HostKeychain::archived(u"stored-id"_s)));
        QCOMPARE(runHelper(arguments), output);
    }

    // A host's QtKeychain write under way, that only the host's event loop will see through,
    // while the kit saves and reads the identifier: both end, each with its own item.
    void hostJobUnderWayDuringKitCall()
    {
        const QString service = u"tovra.test.pending"_s;
        QCOMPARE(HostKeychain::write(service, u"token"_s, "before"), QKeychain::NoError);
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
        QKeychain::Error error = QKeychain::NoError;
        QCOMPARE(HostKeychain::read(service, u"token"_s, &error), "after");
        QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(u"user-9"_s));
    }

    // The kit keeps the identifier as release 1.0 did with QtKeychain: binary data, the key as
    // both service and account, down to the item's attributes and bytes. (That each store
    // reads and removes what the other wrote, tst_keychainstores checks.)
    void identifierItemAsRelease1()
    {
        TVRManager::setUserIdentifier(u"user-8"_s);
        const QMap<QString, QString> attributes{{u"server"_s, kTVRUserIdentifier},
                                                {u"user"_s, kTVRUserIdentifier},
                                                {u"type"_s, u"base64"_s},
                                                {u"xdg:schema"_s, u"org.qt.keychain"_s}};
        QCOMPARE(KeychainProbe::itemAttributes(kTVRUserIdentifier, kTVRUserIdentifier), attributes);
        QKeychain::Error error = QKeychain::NoError;
        QCOMPARE(HostKeychain::read(kTVRUserIdentifier, kTVRUserIdentifier, &error),
                 HostKeychain::archived(u"user-8"_s));
    }
};

QTEST_MAIN(tst_HostKeychain)
#include "tst_hostkeychain.moc"
