// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef RQKEYCHAIN_H
#define RQKEYCHAIN_H

#include "tovra_export.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

/*!
    \brief Keeps small values in the platform keychain, one generic-password item per key.

    The key names the item twice, as its service and as its account. Values are archived
    with QDataStream: texts, byte arrays, numbers, booleans, addresses,
    UUIDs, dates and times. Saving any other kind of value gives false and leaves the
    stored item alone; stored bytes that name another kind are not decoded. An access group, where given, is completed with the application's team
    prefix by getFullAppleIdentifier(); a null group means the keychain's default group.

    Every call is synchronous and goes to TVRSecureItemStore::defaultStore(). While a call
    waits for the keychain, no other callback of the kit runs. Failures never throw: saving
    and deleting answer false, loading answers a null QVariant.
*/
class TOVRA_EXPORT RQKeychain
{
public:
    RQKeychain() = delete;

    /*!
        Replaces the item of \a key with \a value: the old item is deleted, a new one added.
        Returns whether the new item was added: false when \a value is not a kind that can be
        archived (the old item then stays) or when the keychain refused.
    */
    static bool saveValue(const QVariant &value, const QString &key);
    /*!
        As saveValue(const QVariant &, const QString &), for the item of \a key in
        \a accessGroup; a null group is the default group. The kit's own stores know no
        access groups: they keep the group in front of the item's service name.
    */
    static bool saveValue(const QVariant &value, const QString &key, const QString &accessGroup);

    //! The value kept under \a key, or null when there is none or it cannot be read back.
    static QVariant loadValueForKey(const QString &key);
    //! The value kept under \a key in \a accessGroup (null for the default group); null when
    //! there is none or it cannot be read back.
    static QVariant loadValueForKey(const QString &key, const QString &accessGroup);

    //! Removes the item of \a key; false when there was none or the keychain refused.
    static bool deleteValueForKey(const QString &key);
    //! Removes the item of \a key in \a accessGroup (null for the default group); false when
    //! there was none or the keychain refused.
    static bool deleteValueForKey(const QString &key, const QString &accessGroup);

    //! The query that names the item of \a key: class, service, account and accessibility.
    static QVariantMap getKeychainQuery(const QString &key, const QString &accessGroup);

    //! \a accessGroup with the team prefix in front, unless the prefix already occurs in it.
    static QString getFullAppleIdentifier(const QString &accessGroup);

    /*!
        The team prefix of the application's default access group, found once with a probe
        item "bundleSeedID" and then kept; null while it cannot be determined. The kit's own
        stores report no access group, so with them it is always null, and each call looks
        for the probe item again and adds it when it is missing.
    */
    static QString getBundleSeedIdentifier();
};

#endif
