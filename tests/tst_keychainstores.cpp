// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The two secure item stores, the Secret Service one that Linux uses and the QtKeychain one
// of the other platforms, against the Secret Service of run-isolated.sh: what each answers,
// and that each reads what the other wrote.

#include "KeychainProbe.h"
#include "TVRQtKeychainStore_p.h"

#include <TVRSecureItemStore.h>

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace TVRSecItem;

class tst_KeychainStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(qEnvironmentVariable("HOME").contains(u"tovra-test"_s), "run this test through tests/run-isolated.sh");
        QVERIFY(KeychainProbe::writeRaw(u"probe"_s, u"probe"_s, "ready"));
    }

    void itemLifecycle_data()
    {
        QTest::addColumn<QString>("writer");
        QTest::addColumn<QString>("reader");
        QTest::addColumn<QVariant>("group");

        const QStringList stores{u"Secret Service"_s, u"QtKeychain"_s};
        for (const QString &writer : stores) {
            for (const QString &reader : stores) {
                QTest::addRow("%s, read by %s", qPrintable(writer), qPrintable(reader))
                    << writer << reader << QVariant();
                QTest::addRow("%s, read by %s, in a group", qPrintable(writer), qPrintable(reader))
                    << writer << reader << QVariant(u"TEAM.shared"_s);
            }
        }
    }

    // Written by one store, found, read and deleted by the other: the item is where each
    // looks, and each answers as the keychain does.
    void itemLifecycle()
    {
        QFETCH(QString, writer);
        QFETCH(QString, reader);
        QFETCH(QVariant, group);

        const QString account = u"lifecycle "_s + QString::fromLatin1(QTest::currentDataTag());
        QVariantMap query{
            {kSecClass, kSecClassGenericPassword}, {kSecAttrService, u"tovra.stores"_s}, {kSecAttrAccount, account}};
        if (group.isValid())
            query.insert(kSecAttrAccessGroup, group);
        QVariantMap identity = query; // what the store hands back: no group
        identity.remove(kSecAttrAccessGroup);
        const QByteArray bytes("a\0b\xff", 4);
        const QVariant untouched(u"untouched"_s);

        // Only generic passwords are kept; any other class is a bad query, not a missing item,
        // and adds nothing.
        QVariantMap otherClass = query;
        otherClass.insert(kSecClass, u"inet"_s);
        QCOMPARE(store(reader)->copyMatching(otherClass, nullptr), errSecParam);
        QCOMPARE(store(reader)->deleteMatching(otherClass), errSecParam);
        otherClass.insert(kSecValueData, bytes);
        QCOMPARE(store(reader)->add(otherClass, nullptr), errSecParam);

        // Nothing yet: not found, and the caller's result is left alone.
        QVariant result = untouched;
        QCOMPARE(store(reader)->copyMatching(query, &result), errSecItemNotFound);
        QCOMPARE(result, untouched);
        QCOMPARE(store(reader)->deleteMatching(query), errSecItemNotFound);

        // An add hands back the item's attributes only when asked, and only where there is room.
        QVariantMap item = query;
        item.insert(kSecValueData, bytes);
        QCOMPARE(store(writer)->add(item, &result), errSecSuccess);
        QCOMPARE(result, untouched);
        item.insert(kSecReturnAttributes, true);
        QCOMPARE(store(writer)->add(item, nullptr), errSecSuccess);
        QCOMPARE(store(writer)->add(item, &result), errSecSuccess);
        QCOMPARE(result.toMap(), identity);
        QCOMPARE(KeychainProbe::secretServiceItems(
                     group.isValid() ? group.toString() + u"/tovra.stores"_s : u"tovra.stores"_s, account),
                 1);

        QVariantMap asked = query;
        asked.insert(kSecReturnData, true);
        result = untouched;
        QCOMPARE(store(reader)->copyMatching(asked, &result), errSecSuccess);
        QCOMPARE(result.toByteArray(), bytes);
        asked.insert(kSecReturnAttributes, true);
        QCOMPARE(store(reader)->copyMatching(asked, &result), errSecSuccess);
        QVariantMap withData = identity;
        withData.insert(kSecValueData, bytes);
        QCOMPARE(result.toMap(), withData);
        QCOMPARE(store(reader)->copyMatching(query, nullptr), errSecSuccess);

        // The same name without the group, or the group without the name, is another item.
        QVariantMap elsewhere = query;
        if (group.isValid())
            elsewhere.remove(kSecAttrAccessGroup);
        else
            elsewhere.insert(kSecAttrAccessGroup, u"TEAM.shared"_s);
        QCOMPARE(store(reader)->copyMatching(elsewhere, nullptr), errSecItemNotFound);

        QCOMPARE(store(reader)->deleteMatching(query), errSecSuccess);
        QCOMPARE(store(writer)->copyMatching(asked, &result), errSecItemNotFound);
        QCOMPARE(store(writer)->deleteMatching(query), errSecItemNotFound);
    }

private:
    TVRSecureItemStore *store(const QString &name)
    {
        return name == u"QtKeychain"_s ? static_cast<TVRSecureItemStore *>(&m_qtKeychain)
                                       : TVRSecureItemStore::defaultStore();
    }

    TVRQtKeychainStore m_qtKeychain;
};

QTEST_GUILESS_MAIN(tst_KeychainStores)
#include "tst_keychainstores.moc"
