// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// Access groups and the team prefix. A test keychain cannot be given a team prefix, nor be
// made to fail an add, so these run over the in-memory store.

#include "MemoryItemStore.h"

#include <RQKeychain.h>

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace TVRSecItem;

class tst_RQKeychainAccessGroups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    // In this order: the team prefix is found once per process and then kept.
    void noPrefixWhileItCannotBeDetermined_data();
    void noPrefixWhileItCannotBeDetermined();
    void prefixComesFromTheProbeItem();
    void prefixIsKept();

    void fullIdentifier_data();
    void fullIdentifier();
    void keychainQuery_data();
    void keychainQuery();
    void itemsLandInTheirGroup();
    void failedAddLeavesNoItem();

private:
    MemoryItemStore m_store;
};

void tst_RQKeychainAccessGroups::initTestCase()
{
    TVRSecureItemStore::setDefaultStore(&m_store);
}

void tst_RQKeychainAccessGroups::cleanupTestCase()
{
    TVRSecureItemStore::setDefaultStore(nullptr);
}

void tst_RQKeychainAccessGroups::noPrefixWhileItCannotBeDetermined_data()
{
    QTest::addColumn<QList<qint32>>("copyFailures");
    QTest::addColumn<QList<qint32>>("addFailures");
    QTest::addColumn<QString>("defaultGroup");
    QTest::addColumn<int>("adds");

    QTest::newRow("keychain locked") << QList<qint32>{errSecInteractionNotAllowed} << QList<qint32>() << QString() << 0;
    QTest::newRow("probe cannot be added") << QList<qint32>() << QList<qint32>{errSecNotAvailable} << QString() << 1;
    QTest::newRow("probe has no group") << QList<qint32>() << QList<qint32>() << QString() << 1;
}

void tst_RQKeychainAccessGroups::noPrefixWhileItCannotBeDetermined()
{
    QFETCH(QList<qint32>, copyFailures);
    QFETCH(QList<qint32>, addFailures);
    QFETCH(QString, defaultGroup);
    QFETCH(int, adds);

    m_store.items.clear();
    m_store.calls.clear();
    m_store.copyFailures = copyFailures;
    m_store.addFailures = addFailures;
    m_store.defaultAccessGroup = defaultGroup;

    QVERIFY(RQKeychain::getBundleSeedIdentifier().isNull());
    QCOMPARE(m_store.callCount(u"add"_s), adds);
    QCOMPARE(RQKeychain::getFullAppleIdentifier(u"group.shared.items"_s), u"group.shared.items"_s);
}

void tst_RQKeychainAccessGroups::prefixComesFromTheProbeItem()
{
    m_store.items.clear();
    m_store.calls.clear();
    m_store.defaultAccessGroup = u"ABCDE12345.com.example.app"_s;

    QCOMPARE(RQKeychain::getBundleSeedIdentifier(), u"ABCDE12345"_s);

    // Looked for, not found, then made; the same four-entry query both times.
    QCOMPARE(m_store.calls.size(), 2);
    const QVariantMap probe{
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrAccount, u"bundleSeedID"_s},
        {kSecAttrService, u""_s},
        {kSecReturnAttributes, true},
    };
    QCOMPARE(m_store.calls[0].first, u"copyMatching"_s);
    QCOMPARE(m_store.calls[0].second, probe);
    QVERIFY(!m_store.calls[0].second.value(kSecAttrService).toString().isNull());
    QCOMPARE(m_store.calls[1].first, u"add"_s);
    QCOMPARE(m_store.calls[1].second, probe);
    QCOMPARE(m_store.items.size(), 1);
}

void tst_RQKeychainAccessGroups::prefixIsKept()
{
    m_store.calls.clear();
    m_store.defaultAccessGroup = u"OTHER99999.com.example.app"_s;
    QCOMPARE(RQKeychain::getBundleSeedIdentifier(), u"ABCDE12345"_s);
    QCOMPARE(RQKeychain::getBundleSeedIdentifier(), u"ABCDE12345"_s);
    QVERIFY(m_store.calls.isEmpty());
}

void tst_RQKeychainAccessGroups::fullIdentifier_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("full");

    QTest::newRow("prefix added") << u"group.shared.items"_s << u"ABCDE12345.group.shared.items"_s;
    QTest::newRow("prefix already there") << u"ABCDE12345.group.shared.items"_s << u"ABCDE12345.group.shared.items"_s;
    QTest::newRow("prefix inside") << u"group.ABCDE12345.x"_s << u"group.ABCDE12345.x"_s;
    QTest::newRow("prefix in other case") << u"abcde12345.x"_s << u"ABCDE12345.abcde12345.x"_s;
    QTest::newRow("empty group") << u""_s << u"ABCDE12345."_s;
}

void tst_RQKeychainAccessGroups::fullIdentifier()
{
    QFETCH(QString, group);
    QFETCH(QString, full);
    QCOMPARE(RQKeychain::getFullAppleIdentifier(group), full);
}

void tst_RQKeychainAccessGroups::keychainQuery_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QVariantMap>("query");

    const QVariantMap base{
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrService, u"tovrakit.userIdentifier"_s},
        {kSecAttrAccount, u"tovrakit.userIdentifier"_s},
        {kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlock},
    };
    QVariantMap grouped = base;
    grouped.insert(kSecAttrAccessGroup, u"ABCDE12345.shared"_s);

    QTest::newRow("no group") << QString() << base;
    QTest::newRow("group") << u"shared"_s << grouped;
}

void tst_RQKeychainAccessGroups::keychainQuery()
{
    QFETCH(QString, group);
    QFETCH(QVariantMap, query);
    QCOMPARE(RQKeychain::getKeychainQuery(u"tovrakit.userIdentifier"_s, group), query);
}

void tst_RQKeychainAccessGroups::itemsLandInTheirGroup()
{
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

void tst_RQKeychainAccessGroups::failedAddLeavesNoItem()
{
    // Saving deletes first: an add that then fails has lost the old value, and says so.
    QVERIFY(RQKeychain::saveValue(u"old"_s, u"failing"_s));
    m_store.addFailures = {errSecDuplicateItem};
    QVERIFY(!RQKeychain::saveValue(u"new"_s, u"failing"_s));
    QVERIFY(!RQKeychain::loadValueForKey(u"failing"_s).isValid());
}

QTEST_GUILESS_MAIN(tst_RQKeychainAccessGroups)
#include "tst_rqkeychain_accessgroups.moc"
