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

#include <memory>

using namespace Qt::StringLiterals;

class tst_HostKeychain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    // Each in a launch of its own, where the first QtKeychain job is the one the row says.
    void hostAndKitInSequence_data();
    void hostAndKitInSequence();
    void hostAndKitOnTwoThreads_data();
    void hostAndKitOnTwoThreads();

    void hostJobUnderWayDuringKitCall_data();
    void hostJobUnderWayDuringKitCall();
    void itemsReadAcrossQtKeychain_data();
    void itemsReadAcrossQtKeychain();
};

void tst_HostKeychain::initTestCase()
{
    QVERIFY(isolateTestHost(u"tovra-host"_s));
}

void tst_HostKeychain::hostAndKitInSequence_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("kitItem");

    for (const QString &order : {u"host-first"_s, u"kit-first"_s}) {
        const QByteArray first = order == u"host-first"_s ? "host first, " : "kit first, ";
        QTest::newRow(first + "setUserIdentifier") << order << u"set"_s << u"set"_s << u"user-0"_s;
        QTest::newRow(first + "userIdentifier") << order << u"read"_s << u"stored-id"_s << u"stored-id"_s;
        QTest::newRow(first + "logout") << order << u"logout"_s << u"logged out"_s << u"<null>"_s;
    }
}

void tst_HostKeychain::hostAndKitInSequence()
{
    QFETCH(QString, order);
    QFETCH(QString, call);
    QFETCH(QString, answer);
    QFETCH(QString, kitItem);

    // The identifier as an earlier launch left it.
    QVERIFY(KeychainProbe::writeRaw(kTVRUserIdentifier, kTVRUserIdentifier, HostKeychain::archived(u"stored-id"_s)));
    const QString hostValue = u"host secret, "_s + QLatin1String(QTest::currentDataTag());

    // The launch reads both items back once both sides are done. (How the kit's item is
    // stored, itemsReadAcrossQtKeychain checks.)
    QCOMPARE(runHelper({u"host-and-kit"_s, order, call, hostValue}), (QStringList{answer, kitItem, hostValue}));
}

void tst_HostKeychain::hostAndKitOnTwoThreads_data()
{
    QTest::addColumn<QString>("threads");

    QTest::newRow("host jobs on a thread of the host's") << u"host-on-thread"_s;
    QTest::newRow("kit called from a thread of the host's") << u"kit-on-thread"_s;
}

void tst_HostKeychain::hostAndKitOnTwoThreads()
{
    QFETCH(QString, threads);
    QCOMPARE(runHelper({u"threads"_s, threads, u"20"_s}), (QStringList{u"kit 20/20"_s, u"host 20/20"_s}));
}

void tst_HostKeychain::hostJobUnderWayDuringKitCall_data()
{
    QTest::addColumn<QString>("job");
    QTest::addColumn<int>("error"); // the host's read of its item afterwards
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("host writes") << u"write"_s << int(QKeychain::NoError) << QByteArray("after");
    QTest::newRow("host reads") << u"read"_s << int(QKeychain::NoError) << QByteArray("before");
    QTest::newRow("host deletes") << u"delete"_s << int(QKeychain::EntryNotFound) << QByteArray();
}

void tst_HostKeychain::hostJobUnderWayDuringKitCall()
{
    QFETCH(QString, job);
    QFETCH(int, error);
    QFETCH(QByteArray, after);

    const QString service = u"tovra.test.pending"_s;
    const QString key = u"token"_s;
    QCOMPARE(HostKeychain::write(service, key, "before"), QKeychain::NoError);

    std::unique_ptr<QKeychain::Job> pending;
    if (job == u"write"_s) {
        auto *write = new QKeychain::WritePasswordJob(service);
        write->setTextData(u"after"_s);
        pending.reset(write);
    } else if (job == u"read"_s) {
        pending.reset(new QKeychain::ReadPasswordJob(service));
    } else {
        pending.reset(new QKeychain::DeletePasswordJob(service));
    }
    pending->setKey(key);
    pending->setAutoDelete(false);
    QSignalSpy finished(pending.get(), &QKeychain::Job::finished);
    pending->start();
    // The job's start is a queued call: delivered, the job is on its way to the Secret
    // Service, and only the host's event loop will see it through.
    QCoreApplication::sendPostedEvents(pending.get(), QEvent::MetaCall);
    QCOMPARE(finished.count(), 0);

    const QString identifier = u"user, "_s + QLatin1String(QTest::currentDataTag());
    TVRManager::setUserIdentifier(identifier);
    QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(identifier));

    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(pending->error(), QKeychain::NoError);
    if (job == u"read"_s)
        QCOMPARE(static_cast<QKeychain::ReadPasswordJob &>(*pending).textData(), u"before"_s);
    QKeychain::Error readError = QKeychain::NoError;
    QCOMPARE(HostKeychain::read(service, key, &readError), after);
    QCOMPARE(int(readError), error);
    QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(identifier));
}

void tst_HostKeychain::itemsReadAcrossQtKeychain_data()
{
    QTest::addColumn<bool>("writtenByKit");

    QTest::newRow("written as release 1.0 did, read by the kit") << false;
    QTest::newRow("written by the kit, read by QtKeychain") << true;
}

void tst_HostKeychain::itemsReadAcrossQtKeychain()
{
    QFETCH(bool, writtenByKit);

    TVRManager::logout();
    const QString identifier = writtenByKit ? u"user-8"_s : u"user-7"_s;
    if (writtenByKit) {
        TVRManager::setUserIdentifier(identifier);
    } else {
        // Release 1.0 kept the identifier with QtKeychain: binary data, the key as both
        // service and account.
        const QByteArray archive = HostKeychain::archived(identifier);
        QCOMPARE(HostKeychain::write(kTVRUserIdentifier, kTVRUserIdentifier, archive, false), QKeychain::NoError);
    }

    // The same item either way, down to its attributes.
    const QMap<QString, QString> attributes{{u"server"_s, kTVRUserIdentifier},
                                            {u"user"_s, kTVRUserIdentifier},
                                            {u"type"_s, u"base64"_s},
                                            {u"xdg:schema"_s, u"org.qt.keychain"_s}};
    QCOMPARE(KeychainProbe::itemAttributes(kTVRUserIdentifier, kTVRUserIdentifier), attributes);

    if (writtenByKit) {
        QKeychain::Error error = QKeychain::NoError;
        QCOMPARE(HostKeychain::read(kTVRUserIdentifier, kTVRUserIdentifier, &error),
                 HostKeychain::archived(identifier));
        QCOMPARE(error, QKeychain::NoError);
        QCOMPARE(HostKeychain::remove(kTVRUserIdentifier, kTVRUserIdentifier), QKeychain::NoError);
    } else {
        QCOMPARE(TVRManager::userIdentifier(), QVariant(identifier));
        TVRManager::logout();
    }
    // Either side removes what the other wrote.
    QCOMPARE(KeychainProbe::secretServiceItems(kTVRUserIdentifier, kTVRUserIdentifier), 0);
}

QTEST_MAIN(tst_HostKeychain)
#include "tst_hostkeychain.moc"
