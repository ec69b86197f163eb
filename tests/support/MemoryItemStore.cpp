// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "MemoryItemStore.h"

using namespace Qt::StringLiterals;
using namespace TVRSecItem;

qsizetype MemoryItemStore::find(const QVariantMap &query) const
{
    // An item is named by its class, service, account and group, each where the query has one.
    for (qsizetype i = 0; i < items.size(); ++i) {
        const auto differs = [&](const QString &key) { return query.contains(key) && query[key] != items[i][key]; };
        if (!differs(kSecClass) && !differs(kSecAttrService) && !differs(kSecAttrAccount)
            && !differs(kSecAttrAccessGroup))
            return i;
    }
    return -1;
}

qint32 MemoryItemStore::add(const QVariantMap &attributes, QVariant *result)
{
    calls.append({u"add"_s, attributes});
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
    calls.append({u"copyMatching"_s, query});
    if (!copyFailures.isEmpty())
        return copyFailures.takeFirst();
    const qsizetype index = find(query);
    if (index >= 0 && result)
        *result = query.value(kSecReturnData).toBool() ? items[index].value(kSecValueData) : QVariant(items[index]);
    return index < 0 ? errSecItemNotFound : errSecSuccess;
}

qint32 MemoryItemStore::deleteMatching(const QVariantMap &query)
{
    calls.append({u"deleteMatching"_s, query});
    const qsizetype index = find(query);
    if (index >= 0)
        items.removeAt(index);
    return index < 0 ? errSecItemNotFound : errSecSuccess;
}
