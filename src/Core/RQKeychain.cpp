// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "RQKeychain.h"

#include "TVRArchiver_p.h"
#include "TVRLogging_p.h"
#include "TVRSecureItemStore.h"

#include <QMutex>

#include <atomic>

using namespace TVRSecItem;

namespace {

// The seed is written once, under the lock, before seedKnown is set; readers that see
// seedKnown may then read it without the lock.
QRecursiveMutex seedLock;
std::atomic<bool> seedKnown{false};
QString bundleSeedIdentifier;

} // namespace

bool RQKeychain::saveValue(const QVariant &value, const QString &key)
{
    return saveValue(value, key, QString());
}

bool RQKeychain::saveValue(const QVariant &value, const QString &key, const QString &accessGroup)
{
    QVariantMap query = getKeychainQuery(key, accessGroup);

    // Archiving cannot touch the keychain, so a value that cannot be archived leaves the
    // stored item as it was.
    const std::optional<QByteArray> data = TVRArchiver::archivedData(value);
    if (!data)
        return false;

    deleteValueForKey(key, accessGroup);
    query.insert(kSecValueData, *data);
    return TVRSecureItemStore::defaultStore()->add(query, nullptr) == errSecSuccess;
}

QVariant RQKeychain::loadValueForKey(const QString &key)
{
    return loadValueForKey(key, QString());
}

QVariant RQKeychain::loadValueForKey(const QString &key, const QString &accessGroup)
{
    QVariantMap query = getKeychainQuery(key, accessGroup);
    query.insert(kSecReturnData, true);
    query.insert(kSecMatchLimit, kSecMatchLimitOne);

    QVariant data;
    if (TVRSecureItemStore::defaultStore()->copyMatching(query, &data) != errSecSuccess)
        return {};

    QString error;
    QVariant value = TVRArchiver::unarchivedObject(data.toByteArray(), &error);
    if (!error.isNull()) {
        qCWarning(lcTovra, "Unarchive of %s failed: %s", qUtf8Printable(key), qUtf8Printable(error));
        return {};
    }
    return value;
}

bool RQKeychain::deleteValueForKey(const QString &key)
{
    return deleteValueForKey(key, QString());
}

bool RQKeychain::deleteValueForKey(const QString &key, const QString &accessGroup)
{
    const QVariantMap query = getKeychainQuery(key, accessGroup);
    return TVRSecureItemStore::defaultStore()->deleteMatching(query) == errSecSuccess;
}

QVariantMap RQKeychain::getKeychainQuery(const QString &key, const QString &accessGroup)
{
    QVariantMap query{
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrService, key},
        {kSecAttrAccount, key},
        {kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlock},
    };
    if (!accessGroup.isNull())
        query.insert(kSecAttrAccessGroup, getFullAppleIdentifier(accessGroup));
    return query;
}

QString RQKeychain::getFullAppleIdentifier(const QString &accessGroup)
{
    const QString seed = getBundleSeedIdentifier();
    if (!seed.isNull() && !accessGroup.contains(seed))
        return seed + QLatin1Char('.') + accessGroup;
    return accessGroup;
}

QString RQKeychain::getBundleSeedIdentifier()
{
    if (seedKnown.load(std::memory_order_acquire))
        return bundleSeedIdentifier;

    QMutexLocker locker(&seedLock);
    if (seedKnown.load(std::memory_order_relaxed))
        return bundleSeedIdentifier;

    // A probe item in the default access group reports that group's name, whose first
    // dot-separated piece is the team prefix.
    const QVariantMap probe{
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrAccount, QStringLiteral("bundleSeedID")},
        {kSecAttrService, QString(QLatin1String(""))},
        {kSecReturnAttributes, true},
    };
    TVRSecureItemStore *store = TVRSecureItemStore::defaultStore();
    QVariant attributes;
    qint32 status = store->copyMatching(probe, &attributes);
    if (status == errSecItemNotFound)
        status = store->add(probe, &attributes);
    if (status != errSecSuccess)
        return {};

    const QVariant group = attributes.toMap().value(kSecAttrAccessGroup);
    if (group.isNull())
        return {};
    bundleSeedIdentifier = group.toString().section(QLatin1Char('.'), 0, 0);
    seedKnown.store(true, std::memory_order_release);
    return bundleSeedIdentifier;
}
