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
        QTest::addColumn<QString>("group"); // null for none

        for (const QString &writer : {u"Secret Service"_s, u"QtKeychain"_s}) {
            for (const QString &reader : {u"Secret Service"_s, u"QtKeychain"_s}) {
                for (const QString &group : {QString(), u"TEAM.shared"_s})
                    QTest::addRow("%s, read by %s%s", qPrintable(writer), qPrintable(reader),
                                  group.isNull() ? "" : ", in a group")
                        << writer << reader << group;
            }
        }
    }

    // Written by one store, found, read and deleted by the other: the item is where each
    // looks, and each answers as the keychain does.
    void itemLifecycle()
    {
        QFETCH(QString, writer);
        QFETCH(QString, reader);
        QFETCH(QString, group);

        TVRSecureItemStore &write = writer == u"QtKeychain"_s ? m_qtKeychain : *TVRSecureItemStore::defaultStore();
        TVRSecureItemStore &read = reader == u"QtKeychain"_s ? m_qtKeychain : *TVRSecureItemStore::defaultStore();
        const auto with = [](QVariantMap map, const QString &key, const QVariant &value) {
            map.insert(key, value);
            return map;
        };
        const QString account = u"lifecycle "_s + QString::fromLatin1(QTest::currentDataTag());
        // What the store hands back: no group.
        const QVariantMap identity{
            {kSecClass, kSecClassGenericPassword}, {kSecAttrService, u"tovra.stores"_s}, {kSecAttrAccount, account}};
        const QVariantMap query = group.isNull() ? identity : with(identity, kSecAttrAccessGroup, group);
        const QByteArray bytes("a\0b\xff", 4);
        const QVariant untouched(u"untouched"_s);

        // Only generic passwords are kept; any other class is a bad query, not a missing item,
        // and adds nothing. (Each store turns it away in the one place that all three calls go
        // through, before it is asked.)
        QCOMPARE(read.add(with(with(query, kSecClass, u"inet"_s), kSecValueData, bytes), nullptr), errSecParam);

        // Nothing yet: not found, and the caller's result is left alone.
        QVariant result = untouched;
        QCOMPARE(read.copyMatching(query, &result), errSecItemNotFound);
        QCOMPARE(result, untouched);
        QCOMPARE(read.deleteMatching(query), errSecItemNotFound);

        // An add hands back the item's attributes only when asked, and only where there is room.
        QVariantMap item = with(query, kSecValueData, bytes);
        QCOMPARE(write.add(item, &result), errSecSuccess);
        QCOMPARE(result, untouched);
        item.insert(kSecReturnAttributes, true);
        QCOMPARE(write.add(item, nullptr), errSecSuccess);
        QCOMPARE(write.add(item, &result), errSecSuccess);
        QCOMPARE(result.toMap(), identity);
        const QString service = group.isNull() ? u"tovra.stores"_s : group + u"/tovra.stores"_s;
        QCOMPARE(KeychainProbe::secretServiceItems(service, account), 1);

        QVariantMap asked = with(query, kSecReturnData, true);
        QCOMPARE(read.copyMatching(asked, &result), errSecSuccess);
        QCOMPARE(result.toByteArray(), bytes);
        asked.insert(kSecReturnAttributes, true);
        QCOMPARE(read.copyMatching(asked, &result), errSecSuccess);
        QCOMPARE(result.toMap(), with(identity, kSecValueData, bytes));
        QCOMPARE(read.copyMatching(query, nullptr), errSecSuccess);

        // The same name without the group, or the group without the name, is another item.
        const QVariantMap elsewhere = group.isNull() ? with(query, kSecAttrAccessGroup, u"TEAM.shared"_s) : identity;
        QCOMPARE(read.copyMatching(elsewhere, nullptr), errSecItemNotFound);

        QCOMPARE(read.deleteMatching(query), errSecSuccess);
        QCOMPARE(write.copyMatching(asked, &result), errSecItemNotFound);
    }

private:
    TVRQtKeychainStore m_qtKeychain;
};

QTEST_GUILESS_MAIN(tst_KeychainStores)
#include "tst_keychainstores.moc"
