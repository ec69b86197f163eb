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
    void initTestCase() { QVERIFY(isolateTestHost(u"tovra-host"_s)); }

    // Each in a launch of its own, where the first QtKeychain job is the one the row says.
    void hostAndKitInOneLaunch_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("output");

        // The host writes its item before or after the kit's call; the launch reads both
        // items back once both sides are done. (How the kit's item is stored,
        // itemsReadAcrossQtKeychain checks.)
        for (const QString &order : {u"host-first"_s, u"kit-first"_s}) {
            const auto row = [&order](const QString &call, const QString &answer, const QString &kitItem) {
                const QString host = u"host secret, "_s + order + u", "_s + call;
                QTest::addRow("%s, %s", qPrintable(order), qPrintable(call))
                    << QStringList{u"host-and-kit"_s, order, call, host} << QStringList{answer, kitItem, host};
            };
            row(u"set"_s, u"set"_s, u"user-0"_s);
            row(u"read"_s, u"stored-id"_s, u"stored-id"_s);
            row(u"logout"_s, u"logged out"_s, u"<null>"_s);
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

    void hostJobUnderWayDuringKitCall_data()
    {
        QTest::addColumn<QString>("job");
        QTest::addColumn<QByteArray>("after"); // the host's item afterwards; null for none

        QTest::newRow("host writes") << u"write"_s << QByteArray("after");
        QTest::newRow("host reads") << u"read"_s << QByteArray("before");
        QTest::newRow("host deletes") << u"delete"_s << QByteArray();
    }

    void hostJobUnderWayDuringKitCall()
    {
        QFETCH(QString, job);
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
        QCOMPARE(readError, after.isNull() ? QKeychain::EntryNotFound : QKeychain::NoError);
        QCOMPARE(RQKeychain::loadValueForKey(kTVRUserIdentifier), QVariant(identifier));
    }

    void itemsReadAcrossQtKeychain_data()
    {
        QTest::addColumn<bool>("writtenByKit");

        QTest::newRow("written as release 1.0 did, read by the kit") << false;
        QTest::newRow("written by the kit, read by QtKeychain") << true;
    }

    void itemsReadAcrossQtKeychain()
    {
        QFETCH(bool, writtenByKit);

        TVRManager::logout();
        const QString identifier = writtenByKit ? u"user-8"_s : u"user-7"_s;
        const QByteArray archive = HostKeychain::archived(identifier);
        if (writtenByKit) {
            TVRManager::setUserIdentifier(identifier);
        } else {
            // Release 1.0 kept the identifier with QtKeychain: binary data, the key as both
            // service and account.
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
            QCOMPARE(HostKeychain::read(kTVRUserIdentifier, kTVRUserIdentifier, &error), archive);
            QCOMPARE(error, QKeychain::NoError);
            QCOMPARE(HostKeychain::remove(kTVRUserIdentifier, kTVRUserIdentifier), QKeychain::NoError);
        } else {
            QCOMPARE(TVRManager::userIdentifier(), QVariant(identifier));
            TVRManager::logout();
        }
        // Either side removes what the other wrote.
        QCOMPARE(KeychainProbe::secretServiceItems(kTVRUserIdentifier, kTVRUserIdentifier), 0);
    }
};

QTEST_MAIN(tst_HostKeychain)
#include "tst_hostkeychain.moc"
