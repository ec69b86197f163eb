// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRKEYCHAINLIMITS_P_H
#define TVRKEYCHAINLIMITS_P_H

#include "TVRSecureItemStore.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QString>
#include <QVariantMap>

// What the platform keychain stores share: how long a call may wait, how long a failure is
// remembered, and how an access group shows in an item's service name.
namespace TVRKeychainLimits {

// The longest a keychain call waits for the backend. A backend that has not answered by
// then, a hung service for one, counts as unavailable: the call gives false or null.
constexpr int waitLimitMs = 5000;

// After a failure other than "no such item", calls fail at once for this long instead of
// waiting for the backend again: without a keychain, every read would otherwise cost a
// round trip, or the whole wait limit, on the caller's thread.
constexpr int unavailableForMs = 30 * 1000;

// The service name the backend knows the item of \a query by. Backends know no access
// groups; a group is kept in front of the service name, so that items of different groups
// stay apart.
inline QString backendService(const QVariantMap &query)
{
    QString service = query.value(TVRSecItem::kSecAttrService).toString();
    const QVariant group = query.value(TVRSecItem::kSecAttrAccessGroup);
    if (!group.isValid())
        return service;
    return group.toString() + QLatin1Char('/') + service;
}

// The attributes a store hands back for the item of \a query.
inline QVariantMap attributesOf(const QVariantMap &query)
{
    return {
        {TVRSecItem::kSecClass, query.value(TVRSecItem::kSecClass)},
        {TVRSecItem::kSecAttrService, query.value(TVRSecItem::kSecAttrService)},
        {TVRSecItem::kSecAttrAccount, query.value(TVRSecItem::kSecAttrAccount)},
    };
}

// What a copy-matching call of \a query that found \a data hands back in \a result: the
// item's attributes, its bytes, or both, as the query asks.
inline void copyResult(const QVariantMap &query, const QByteArray &data, QVariant *result)
{
    const bool wantsData = query.value(TVRSecItem::kSecReturnData).toBool();
    if (query.value(TVRSecItem::kSecReturnAttributes).toBool()) {
        QVariantMap attributes = attributesOf(query);
        if (wantsData)
            attributes.insert(TVRSecItem::kSecValueData, data);
        *result = attributes;
    } else if (wantsData) {
        *result = data;
    }
}

// Remembers a recent failure, for every thread of the process.
class Unavailability
{
public:
    bool remembered()
    {
        const QMutexLocker locker(&m_lock);
        return !m_until.hasExpired();
    }

    // Notes \a status; a failure other than a missing item makes the next calls fail at once.
    qint32 note(qint32 status)
    {
        if (status != TVRSecItem::errSecSuccess && status != TVRSecItem::errSecItemNotFound) {
            const QMutexLocker locker(&m_lock);
            m_until.setRemainingTime(unavailableForMs);
        }
        return status;
    }

private:
    QMutex m_lock;
    QDeadlineTimer m_until;
};

} // namespace TVRKeychainLimits

#endif
