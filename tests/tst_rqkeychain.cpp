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
#include <TVRManager.h>

#include <QRegularExpression>
#include <QtTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace TVRSecItem;

namespace {
// A type QVariant can hold but not stream.
struct Unstreamable
{
    int value = 0;
};
} // namespace
Q_DECLARE_METATYPE(Unstreamable)

class tst_RQKeychain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void roundTrip_data();
    void roundTrip();
    void deleting();
    void undecodableBytes_data();
    void undecodableBytes();
    void unarchivableValueKeepsTheOldItem();
    void keychainOutOfReach_data();
    void keychainOutOfReach();

    // Over the in-memory store. In this order: the team prefix is found once per process
    // and then kept.
    void teamPrefix_data();
    void teamPrefix();
    void fullIdentifier_data();
    void fullIdentifier();
    void itemsLandInTheirGroup();
    void failedAddLeavesNoItem();

private:
    MemoryItemStore m_store;
};

void tst_RQKeychain::initTestCase()
{
    // Everything here must run against the private keyring of run-isolated.sh.
    QVERIFY(isolateTestHost(u"tst_rqkeychain"_s));
    QVERIFY(KeychainProbe::writeRaw(u"probe"_s, u"probe"_s, "ready"));
}

void tst_RQKeychain::cleanup()
{
    TVRSecureItemStore::setDefaultStore(nullptr);
}

void tst_RQKeychain::roundTrip_data()
{
    QTest::addColumn<QVariant>("value");

    QTest::newRow("text") << QVariant(u"user-42"_s);
    QTest::newRow("empty text") << QVariant(u""_s);
    QTest::newRow("non-ASCII text") << QVariant(u"Zoë 李 🙂"_s);
    QTest::newRow("long text") << QVariant(QString(100000, u'x'));
    QTest::newRow("number") << QVariant(42);
    QTest::newRow("floating point") << QVariant(2.5);
    QTest::newRow("boolean") << QVariant(true);
    QTest::newRow("address") << QVariant(QUrl(u"https://example.org/p.png"_s));
    QTest::newRow("bytes with zeros") << QVariant(QByteArray("a\0b\xff", 4));
    QTest::newRow("date and time") << QVariant(QDateTime(QDate(2026, 11, 22), QTime(1, 2, 3), Qt::UTC));
    QTest::newRow("null") << QVariant();
}

void tst_RQKeychain::roundTrip()
{
    QFETCH(QVariant, value);

    // Saved over an earlier value: one item, the new value.
    const QString key = u"roundtrip."_s + QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(RQKeychain::saveValue(u"earlier"_s, key));
    QVERIFY(RQKeychain::saveValue(value, key));
    QCOMPARE(KeychainProbe::secretServiceItems(key, key), 1);
    const QVariant loaded = RQKeychain::loadValueForKey(key);
    QCOMPARE(loaded.metaType(), value.metaType());
    QCOMPARE(loaded, value);
}

void tst_RQKeychain::deleting()
{
    // An item never saved loads as null without a word.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    const QString key = u"tovrakit.deleted"_s;
    QVERIFY(!RQKeychain::loadValueForKey(key).isValid());
    QVERIFY(!RQKeychain::deleteValueForKey(key));
    QVERIFY(RQKeychain::saveValue(u"v"_s, key));
    QVERIFY(RQKeychain::deleteValueForKey(key));
    QVERIFY(!RQKeychain::deleteValueForKey(key));
    QCOMPARE(KeychainProbe::secretServiceItems(key, key), 0);
}

void tst_RQKeychain::undecodableBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");

    const QByteArray header("TVRA\0\1", 6);
    QTest::newRow("plain text") << QByteArray("user-42") << u"data is not a Tovra archive"_s;
    QTest::newRow("empty") << QByteArray() << u"data is not a Tovra archive"_s;
    QTest::newRow("later format") << QByteArray("TVRA\0\2", 6) << u"archive format 2 is not supported"_s;
    QTest::newRow("header only") << header << u"archive is truncated or corrupt"_s;
    QTest::newRow("text cut short") << header + QByteArray("\0\0\0\x0a\0\0\0\0\x10\0a", 11)
                                    << u"archive is truncated or corrupt"_s;
    // A pixmap (type 4097) would need a GUI to be built, and builds one from the bytes.
    QTest::newRow("a pixmap") << header + QByteArray("\0\0\x10\x01\0", 5)
                              << u"archive holds a value of type 4097, which is not a plain value"_s;
    QTest::newRow("a type of the host's")
        << header + QByteArray("\0\1\0\0\0", 5) << u"archive holds a value of type 65536, which is not a plain value"_s;
    // A list of texts claiming four billion items would reserve room for all of them.
    QTest::newRow("a list claiming billions") << header + QByteArray("\0\0\0\x0b\0\xff\xff\xff\xff", 9)
                                              << u"archive holds a value of type 11, which is not a plain value"_s;
}

void tst_RQKeychain::undecodableBytes()
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

void tst_RQKeychain::unarchivableValueKeepsTheOldItem()
{
    const QString key = u"tovrakit.unarchivable"_s;
    QVERIFY(RQKeychain::saveValue(u"kept"_s, key));
    for (const QVariant &value :
         {QVariant::fromValue(Unstreamable{3}), QVariant(QVariantMap{{u"id"_s, 7}}), QVariant(QStringList{u"a"_s})})
        QVERIFY2(!RQKeychain::saveValue(value, key), value.typeName());
    QCOMPARE(RQKeychain::loadValueForKey(key), QVariant(u"kept"_s));
}

void tst_RQKeychain::keychainOutOfReach_data()
{
    QTest::addColumn<QString>("keychain");

    QTest::newRow("no session bus") << u"no bus"_s;
    QTest::newRow("no Secret Service") << u"no service"_s;
    QTest::newRow("a Secret Service that never answers") << u"silent"_s;
    QTest::newRow("locked keyring") << u"locked"_s;
}

void tst_RQKeychain::keychainOutOfReach()
{
    QFETCH(QString, keychain);

    const QString key = u"tovrakit.out-of-reach"_s;
    QVERIFY(RQKeychain::saveValue(u"kept"_s, key));
    PrivateBus bus;
    QStringList environment;
    KeychainProbe::SecretServiceCalls watch;
    if (keychain == u"no bus"_s) {
        environment = QStringList{u"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/tovra-bus"_s};
    } else if (keychain == u"locked"_s) {
        QVERIFY(watch.start());
        QVERIFY(KeychainProbe::setKeyringLocked(true));
    } else {
        QVERIFY(bus.start(keychain == u"silent"_s ? QStringLiteral(TOVRA_TEST_HELPER) : QString()));
        environment = bus.environment();
    }
    // Unlocked again whatever happens, so that a failure here fails no later test.
    const auto unlock = qScopeGuard([&] {
        if (keychain == u"locked"_s)
            KeychainProbe::setKeyringLocked(false);
    });

    // Every call fails quietly instead of crashing or waiting for ever; each in a launch of
    // its own, as a failure keeps a process's calls away from the keychain for a while.
    QCOMPARE(runHelper({u"load"_s, key}, environment), QStringList{u"<null>"_s});
    QCOMPARE(runHelper({u"save"_s, key, u"new"_s}, environment), QStringList{u"false"_s});
    QCOMPARE(runHelper({u"delete"_s, key}, environment), QStringList{u"false"_s});
    // Once the keychain has failed, further reads do not wait for it again: fifty reads in
    // one launch all end.
    QCOMPARE(runHelper({u"timed"_s, u"identifier-reads"_s, u"50"_s}, environment).value(0).section(u' ', 0, 0),
             u"<null>"_s);
    if (keychain == u"locked"_s) {
        // Unlocking would take the user's answer at a prompt, which a synchronous call
        // cannot wait for: none asks the user.
        const QStringList calls = watch.calls();
        QVERIFY2(calls.contains(u"Unlock"_s) && !calls.contains(u"Prompt"_s), qPrintable(calls.join(u' ')));
        QVERIFY(KeychainProbe::setKeyringLocked(false));
    }
    // Nothing was lost meanwhile.
    QCOMPARE(RQKeychain::loadValueForKey(key), QVariant(u"kept"_s));
}

void tst_RQKeychain::teamPrefix_data()
{
    QTest::addColumn<QList<qint32>>("copyFailures");
    QTest::addColumn<QList<qint32>>("addFailures");
    QTest::addColumn<QString>("defaultGroup");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QString>("prefix");

    const QStringList lookedForThenMade{u"copyMatching"_s, u"add"_s};
    QTest::newRow("keychain locked") << QList<qint32>{errSecInteractionNotAllowed} << QList<qint32>() << QString()
                                     << QStringList{u"copyMatching"_s} << QString();
    QTest::newRow("probe cannot be added")
        << QList<qint32>() << QList<qint32>{errSecNotAvailable} << QString() << lookedForThenMade << QString();
    QTest::newRow("probe has no group") << QList<qint32>() << QList<qint32>() << QString() << lookedForThenMade
                                        << QString();
    QTest::newRow("from the probe item's group")
        << QList<qint32>() << QList<qint32>() << u"ABCDE12345.com.example.app"_s << lookedForThenMade
        << u"ABCDE12345"_s;
    QTest::newRow("kept once found") << QList<qint32>() << QList<qint32>() << u"OTHER99999.com.example.app"_s
                                     << QStringList() << u"ABCDE12345"_s;
}

void tst_RQKeychain::teamPrefix()
{
    QFETCH(QList<qint32>, copyFailures);
    QFETCH(QList<qint32>, addFailures);
    QFETCH(QString, defaultGroup);
    QFETCH(QStringList, calls);
    QFETCH(QString, prefix);

    TVRSecureItemStore::setDefaultStore(&m_store);
    m_store.items.clear();
    m_store.calls.clear();
    m_store.copyFailures = copyFailures;
    m_store.addFailures = addFailures;
    m_store.defaultAccessGroup = defaultGroup;

    const QString found = RQKeychain::getBundleSeedIdentifier();
    QCOMPARE(found, prefix);
    QCOMPARE(found.isNull(), prefix.isNull());

    // Every call with the same four-entry probe query, its service empty but not null.
    const QVariantMap probe{
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrAccount, u"bundleSeedID"_s},
        {kSecAttrService, u""_s},
        {kSecReturnAttributes, true},
    };
    QStringList made;
    for (const auto &[operation, query] : std::as_const(m_store.calls)) {
        made << operation;
        QCOMPARE(query, probe);
        QVERIFY(!query.value(kSecAttrService).toString().isNull());
    }
    QCOMPARE(made, calls);
    QCOMPARE(RQKeychain::getFullAppleIdentifier(u"group.shared.items"_s),
             prefix.isNull() ? u"group.shared.items"_s : prefix + u".group.shared.items"_s);
}

void tst_RQKeychain::fullIdentifier_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("full");

    QTest::newRow("prefix added") << u"group.shared.items"_s << u"ABCDE12345.group.shared.items"_s;
    QTest::newRow("prefix already there") << u"ABCDE12345.group.shared.items"_s << u"ABCDE12345.group.shared.items"_s;
    QTest::newRow("prefix inside") << u"group.ABCDE12345.x"_s << u"group.ABCDE12345.x"_s;
    QTest::newRow("prefix in other case") << u"abcde12345.x"_s << u"ABCDE12345.abcde12345.x"_s;
    QTest::newRow("empty group") << u""_s << u"ABCDE12345."_s;
}

void tst_RQKeychain::fullIdentifier()
{
    QFETCH(QString, group);
    QFETCH(QString, full);
    QCOMPARE(RQKeychain::getFullAppleIdentifier(group), full);

    // The query of an item in the group: the full identifier added to the four attributes
    // of every item; without a group, no group at all.
    QVariantMap query{
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrService, u"tovrakit.userIdentifier"_s},
        {kSecAttrAccount, u"tovrakit.userIdentifier"_s},
        {kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlock},
    };
    QCOMPARE(RQKeychain::getKeychainQuery(u"tovrakit.userIdentifier"_s, QString()), query);
    query.insert(kSecAttrAccessGroup, full);
    QCOMPARE(RQKeychain::getKeychainQuery(u"tovrakit.userIdentifier"_s, group), query);
}

void tst_RQKeychain::itemsLandInTheirGroup()
{
    TVRSecureItemStore::setDefaultStore(&m_store);
    QVERIFY(RQKeychain::saveValue(u"shared value"_s, u"k"_s, u"shared"_s));
    QVERIFY(RQKeychain::saveValue(u"own value"_s, u"k"_s, u"ABCDE12345.other"_s));

    QCOMPARE(RQKeychain::loadValueForKey(u"k"_s, u"shared"_s), QVariant(u"shared value"_s));
    QCOMPARE(RQKeychain::loadValueForKey(u"k"_s, u"ABCDE12345.other"_s), QVariant(u"own value"_s));
    const QVariantMap &stored = m_store.items.constLast();
    QCOMPARE(stored.value(kSecAttrAccessGroup), QVariant(u"ABCDE12345.other"_s));
    QCOMPARE(stored.value(kSecAttrAccessible), QVariant(kSecAttrAccessibleAfterFirstUnlock));

    QVERIFY(RQKeychain::deleteValueForKey(u"k"_s, u"shared"_s));
    QVERIFY(!RQKeychain::loadValueForKey(u"k"_s, u"shared"_s).isValid());
    QCOMPARE(RQKeychain::loadValueForKey(u"k"_s, u"ABCDE12345.other"_s), QVariant(u"own value"_s));
}

void tst_RQKeychain::failedAddLeavesNoItem()
{
    // Saving deletes first: an add that then fails has lost the old value, and says so.
    TVRSecureItemStore::setDefaultStore(&m_store);
    QVERIFY(RQKeychain::saveValue(u"old"_s, u"failing"_s));
    m_store.addFailures = {errSecDuplicateItem};
    QVERIFY(!RQKeychain::saveValue(u"new"_s, u"failing"_s));
    QVERIFY(!RQKeychain::loadValueForKey(u"failing"_s).isValid());
}

QTEST_MAIN(tst_RQKeychain)
#include "tst_rqkeychain.moc"
