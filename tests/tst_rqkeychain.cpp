// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The kit's keychain calls against the Secret Service of run-isolated.sh, against keychains
// out of reach, and, for access groups and the team prefix, against the in-memory store: a
// test keychain cannot be given a team prefix, nor be made to fail an add.

#include "HelperProcess.h"
#include "KeychainProbe.h"
#include "MemoryItemStore.h"
#include "PrivateBus.h"
#include "TestFixture.h"

#include <RQKeychain.h>

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace TVRSecItem;

class tst_RQKeychain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Everything here must run against the private keyring of run-isolated.sh.
        QVERIFY(isolateTestHost(u"tst_rqkeychain"_s));
        QVERIFY(KeychainProbe::writeRaw(u"probe"_s, u"probe"_s, "ready"));
    }

    void cleanup() { TVRSecureItemStore::setDefaultStore(nullptr); }

    void roundTrip_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("archivable");

        QTest::newRow("text") << QVariant(u"user-42"_s) << true;
        QTest::newRow("number") << QVariant(42) << true;
        QTest::newRow("floating point") << QVariant(2.5) << true;
        QTest::newRow("boolean") << QVariant(true) << true;
        QTest::newRow("address") << QVariant(QUrl(u"https://example.org/p.png"_s)) << true;
        QTest::newRow("bytes with zeros") << QVariant(QByteArray("a\0b\xff", 4)) << true;
        QTest::newRow("date and time") << QVariant(QDateTime(QDate(2026, 11, 22), QTime(1, 2, 3), Qt::UTC)) << true;
        QTest::newRow("null") << QVariant() << true;
        QTest::newRow("a map") << QVariant(QVariantMap{{u"id"_s, 7}}) << false;
    }

    void roundTrip()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, archivable);

        // An item never saved loads as null, and deletes as nothing, without a word.
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        const QString key = u"roundtrip."_s + QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(!RQKeychain::loadValueForKey(key).isValid());
        QVERIFY(!RQKeychain::deleteValueForKey(key));

        // Saved over an earlier value: one item, the new value. A value that cannot be
        // archived is refused and leaves the earlier one as it was.
        QVERIFY(RQKeychain::saveValue(u"earlier"_s, key));
        QCOMPARE(RQKeychain::saveValue(value, key), archivable);
        QCOMPARE(KeychainProbe::secretServiceItems(key, key), 1);
        const QVariant expected = archivable ? value : QVariant(u"earlier"_s);
        const QVariant loaded = RQKeychain::loadValueForKey(key);
        QCOMPARE(loaded.metaType(), expected.metaType());
        QCOMPARE(loaded, expected);

        QVERIFY(RQKeychain::deleteValueForKey(key));
    }

    void undecodableBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");

        const QByteArray header("TVRA\0\1", 6);
        const QString notArchive = u"data is not a Tovra archive"_s;
        const QString corrupt = u"archive is truncated or corrupt"_s;
        const QString notPlain = u"archive holds a value of type %1, which is not a plain value"_s;
        QTest::newRow("plain text") << QByteArray("user-42") << notArchive;
        QTest::newRow("later format") << QByteArray("TVRA\0\2", 6) << u"archive format 2 is not supported"_s;
        QTest::newRow("header only") << header << corrupt;
        QTest::newRow("text cut short") << header + QByteArray("\0\0\0\x0a\0\0\0\0\x10\0a", 11) << corrupt;
        // A pixmap (type 4097) would need a GUI to be built, and builds one from the bytes.
        QTest::newRow("a pixmap") << header + QByteArray("\0\0\x10\x01\0", 5) << notPlain.arg(4097);
        // A list of texts claiming four billion items would reserve room for all of them.
        QTest::newRow("a list claiming billions")
            << header + QByteArray("\0\0\0\x0b\0\xff\xff\xff\xff", 9) << notPlain.arg(11);
    }

    void undecodableBytes()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);

        const QString key = u"tovrakit.corrupt."_s + QString::fromLatin1(QTest::currentDataTag());
        QVERIFY(KeychainProbe::writeRaw(key, key, bytes));

        QTest::ignoreMessage(QtWarningMsg, qPrintable(u"Unarchive of %1 failed: %2"_s.arg(key, reason)));
        QVERIFY(!RQKeychain::loadValueForKey(key).isValid());
        // The unreadable item is reported, not removed.
        QCOMPARE(KeychainProbe::secretServiceItems(key, key), 1);
    }

    void keychainOutOfReach_data()
    {
        QTest::addColumn<QString>("keychain");

        QTest::newRow("no session bus") << u"no bus"_s;
        QTest::newRow("no Secret Service") << u"no service"_s;
        QTest::newRow("a Secret Service that never answers") << u"silent"_s;
        QTest::newRow("locked keyring") << u"locked"_s;
    }

    void keychainOutOfReach()
    {
        QFETCH(QString, keychain);

        const QString key = u"tovrakit.out-of-reach"_s;
        QVERIFY(RQKeychain::saveValue(u"kept"_s, key));
        const bool locked = keychain == u"locked"_s;
        PrivateBus bus;
        QStringList environment{u"QDBUS_DEBUG=1"_s}; // each launch then lists the Secret Service calls it made
        if (locked) {
            QVERIFY(KeychainProbe::setKeyringLocked(true));
        } else if (keychain == u"no bus"_s) {
            environment << u"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/tovra-bus"_s;
        } else {
            QVERIFY(bus.start(keychain == u"silent"_s ? QStringLiteral(TOVRA_TEST_HELPER) : QString()));
            environment += bus.environment();
        }
        // Unlocked again whatever happens, so that a failure here fails no later test.
        const auto unlock = qScopeGuard([] { KeychainProbe::setKeyringLocked(false); });
        QStringList calls;
        const auto run = [&](const QStringList &arguments) {
            QStringList output = runHelper(arguments, environment);
            calls += output.isEmpty() ? QStringList() : output.takeLast().split(u' ');
            return output;
        };

        // Every call fails quietly instead of crashing or waiting for ever; each in a launch of
        // its own, as a failure keeps a process's calls away from the keychain for a while.
        QCOMPARE(run({u"load"_s, key}), QStringList{u"<null>"_s});
        QCOMPARE(run({u"save"_s, key, u"new"_s}), QStringList{u"false"_s});
        QCOMPARE(run({u"delete"_s, key}), QStringList{u"false"_s});
        // Once the keychain has failed, further reads do not wait for it again: fifty reads in
        // one launch all end.
        QCOMPARE(run({u"identifier-reads"_s, u"50"_s}).value(0).section(u' ', 0, 0), u"<null>"_s);
        if (locked) {
            // Unlocking would take the user's answer at a prompt, which a synchronous call
            // cannot wait for: the kit asks to unlock, and dismisses the prompt that the keyring
            // hands back for it instead of showing it.
            QVERIFY2(calls.contains(u"Dismiss"_s) && !calls.contains(u"Prompt"_s), qPrintable(calls.join(u' ')));
            QVERIFY(KeychainProbe::setKeyringLocked(false));
        }
        // Nothing was lost meanwhile.
        QCOMPARE(RQKeychain::loadValueForKey(key), QVariant(u"kept"_s));
    }

    // Over the in-memory store. In this order: the team prefix is found once per process
    // and then kept.
    void teamPrefix_data()
    {
        // What the store does: "locked" fails the first search, "add fails" the first add;
        // otherwise the group its items land in, null for none.
        QTest::addColumn<QString>("store");
        QTest::addColumn<QString>("calls");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("group"); // an access group, and its full identifier
        QTest::addColumn<QString>("full");

        // Without a prefix, the group is its own full identifier.
        const QString group = u"group.shared.items"_s;
        QTest::newRow("keychain locked") << u"locked"_s << u"copyMatching"_s << QString() << group << group;
        QTest::newRow("probe not added") << u"add fails"_s << u"copyMatching add"_s << QString() << group << group;
        QTest::newRow("probe has no group") << QString() << u"copyMatching add"_s << QString() << group << group;
        QTest::newRow("probe's group") << u"ABCDE12345.app"_s << u"copyMatching add"_s << u"ABCDE12345"_s << group
                                       << u"ABCDE12345.group.shared.items"_s;
        // Once found, the prefix is kept without a call, whatever group the store would give.
        const auto kept = [](const char *tag, const QString &group, const QString &full) {
            QTest::newRow(tag) << u"OTHER99999.app"_s << QString() << u"ABCDE12345"_s << group << full;
        };
        kept("kept, prefix inside", u"group.ABCDE12345.x"_s, u"group.ABCDE12345.x"_s);
        kept("kept, prefix in other case", u"abcde12345.x"_s, u"ABCDE12345.abcde12345.x"_s);
    }

    void teamPrefix()
    {
        QFETCH(QString, store);
        QFETCH(QString, calls);
        QFETCH(QString, prefix);
        QFETCH(QString, group);
        QFETCH(QString, full);

        TVRSecureItemStore::setDefaultStore(&m_store);
        m_store.items.clear();
        m_store.calls.clear();
        m_store.copyFailures = QList<qint32>(store == u"locked"_s, errSecInteractionNotAllowed);
        m_store.addFailures = QList<qint32>(store == u"add fails"_s, errSecNotAvailable);
        m_store.defaultAccessGroup = store.contains(u'.') ? store : QString();

        const QString found = RQKeychain::getBundleSeedIdentifier();
        QCOMPARE(found, prefix);
        QCOMPARE(found.isNull(), prefix.isNull());

        // Every call with the same four-entry probe query, its service empty but not null.
        const QVariantMap probe{{kSecClass, kSecClassGenericPassword},
                                {kSecAttrAccount, u"bundleSeedID"_s},
                                {kSecAttrService, u""_s},
                                {kSecReturnAttributes, true}};
        QStringList made;
        for (const auto &[operation, query] : std::as_const(m_store.calls)) {
            made << operation;
            QCOMPARE(query, probe);
            QVERIFY(!query.value(kSecAttrService).toString().isNull());
        }
        QCOMPARE(made.join(u' '), calls);

        // The query of an item in the group: its full identifier, as getFullAppleIdentifier()
        // gives it, added to the four attributes of every item. (That an item of no group has
        // none, roundTrip's item count shows.)
        const QString key = u"tovrakit.userIdentifier"_s;
        const QVariantMap query{{kSecClass, kSecClassGenericPassword},
                                {kSecAttrService, key},
                                {kSecAttrAccount, key},
                                {kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlock},
                                {kSecAttrAccessGroup, full}};
        QCOMPARE(RQKeychain::getKeychainQuery(key, group), query);
    }

    void itemsLandInTheirGroup()
    {
        TVRSecureItemStore::setDefaultStore(&m_store);
        const QString own = u"ABCDE12345.other"_s;
        QVERIFY(RQKeychain::saveValue(u"shared value"_s, u"k"_s, u"shared"_s));
        QVERIFY(RQKeychain::saveValue(u"own value"_s, u"k"_s, own));

        // (Under which attributes and group each lands, teamPrefix checks of their query.)
        QCOMPARE(RQKeychain::loadValueForKey(u"k"_s, u"shared"_s), QVariant(u"shared value"_s));
        QVERIFY(RQKeychain::deleteValueForKey(u"k"_s, u"shared"_s));
        QCOMPARE(RQKeychain::loadValueForKey(u"k"_s, own), QVariant(u"own value"_s));

        // Saving deletes first: an add that then fails has lost the old value, and says so.
        m_store.addFailures = {errSecDuplicateItem};
        QVERIFY(!RQKeychain::saveValue(u"new"_s, u"k"_s, own));
        QVERIFY(!RQKeychain::loadValueForKey(u"k"_s, own).isValid());
    }

private:
    MemoryItemStore m_store;
};

QTEST_MAIN(tst_RQKeychain)
#include "tst_rqkeychain.moc"
