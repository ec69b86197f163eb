// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "MemoryItemStore.h"

using namespace TVRSecItem;

namespace {
const QStringList identity{kSecClass, kSecAttrService, kSecAttrAccount, kSecAttrAccessGroup};
}

int MemoryItemStore::find(const QVariantMap &query) const
{
    for (int i = 0; i < items.size(); ++i) {
        bool matches = true;
        for (const QString &key : identity) {
            if (query.contains(key) && query.value(key) != items[i].value(key))
                matches = false;
        }
        if (matches)
            return i;
    }
    return -1;
}

qint32 MemoryItemStore::add(const QVariantMap &attributes, QVariant *result)
{
    calls.append({QStringLiteral("add"), attributes});
    if (!addFailures.isEmpty())
        return addFailures.takeFirst();
    QVariantMap item = attributes;
    item.remove(kSecReturnAttributes);
    if (!item.contains(kSecAttrAccessGroup) && !defaultAccessGroup.isNull())
        item.insert(kSecAttrAccessGroup, defaultAccessGroup);
    if (find(item) >= 0)
        return errSecDuplicateItem;
    items.append(item);
    if (result && attributes.value(kSecReturnAttributes).toBool())
        *result = item;
    return errSecSuccess;
}

qint32 MemoryItemStore::copyMatching(const QVariantMap &query, QVariant *result)
{
    calls.append({QStringLiteral("copyMatching"), query});
    if (!copyFailures.isEmpty())
        return copyFailures.takeFirst();
    const int index = find(query);
    if (index < 0)
        return errSecItemNotFound;
    if (result)
        *result =
            query.value(kSecReturnData).toBool() ? QVariant(items[index].value(kSecValueData)) : QVariant(items[index]);
    return errSecSuccess;
}

qint32 MemoryItemStore::deleteMatching(const QVariantMap &query)
{
    calls.append({QStringLiteral("deleteMatching"), query});
    const int index = find(query);
    if (index < 0)
        return errSecItemNotFound;
    items.removeAt(index);
    return errSecSuccess;
}

int MemoryItemStore::callCount(const QString &operation) const
{
    int count = 0;
    for (const auto &call : calls)
        count += call.first == operation;
    return count;
}
