// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECUREITEMSTORE_H
#define TVRSECUREITEMSTORE_H

#include "tovra_export.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

/*!
    Keys, values and statuses of the secure item store, named after the keychain attributes
    they stand for. A query is a QVariantMap from these keys to texts, booleans or bytes.
*/
namespace TVRSecItem {

inline const QString kSecClass = QStringLiteral("class");
inline const QString kSecClassGenericPassword = QStringLiteral("genp");
inline const QString kSecAttrService = QStringLiteral("svce");
inline const QString kSecAttrAccount = QStringLiteral("acct");
inline const QString kSecAttrAccessible = QStringLiteral("pdmn");
inline const QString kSecAttrAccessibleAfterFirstUnlock = QStringLiteral("ck");
inline const QString kSecAttrAccessGroup = QStringLiteral("agrp");
inline const QString kSecValueData = QStringLiteral("v_Data");
inline const QString kSecReturnData = QStringLiteral("r_Data");
inline const QString kSecReturnAttributes = QStringLiteral("r_Attributes");
inline const QString kSecMatchLimit = QStringLiteral("m_Limit");
inline const QString kSecMatchLimitOne = QStringLiteral("m_LimitOne");

enum Status : qint32 {
    errSecSuccess = 0,
    errSecUnimplemented = -4,
    errSecIO = -36,
    errSecParam = -50,
    errSecNotAvailable = -25291,
    errSecAuthFailed = -25293,
    errSecDuplicateItem = -25299,
    errSecItemNotFound = -25300,
    errSecInteractionNotAllowed = -25308,
};

} // namespace TVRSecItem

/*!
    \brief A per-application store of small secret items, keyed by class, service, account
    and access group.

    The three operations mirror the platform keychain: \c add writes a new item,
    \c copyMatching finds one, \c deleteMatching removes what a query matches. Each returns
    a status from TVRSecItem::Status: errSecSuccess, errSecItemNotFound when nothing matched,
    another negative value for any other failure. All three are synchronous.

    The kit talks to the store returned by defaultStore(). On Linux that store speaks to the
    Secret Service over D-Bus itself, on the caller's thread and over a connection of its
    own; a host may keep items of its own with QtKeychain or libsecret, on any thread, at
    any time. Its items are those QtKeychain writes to the Secret Service, so each reads
    what the other wrote (on a KDE Plasma desktop QtKeychain keeps its items in KWallet,
    which this store does not read). On Apple platforms, Android and Windows it goes
    through QtKeychain (Keychain, Keystore, Credential Store) on a thread of the kit's own;
    QtKeychain's one job queue of a process cannot be shared between threads, so a host
    there keeps its own secrets through this store rather than through QtKeychain. Either way, calls block the caller for 5 s at
    most and run none of the caller's events while they wait; after a failure other than a
    missing item, the calls of the next 30 s fail at once. A host may also put its own store
    in place, for example one that injects failures in its tests.
*/
class TOVRA_EXPORT TVRSecureItemStore
{
public:
    virtual ~TVRSecureItemStore();

    /*!
        Adds the item that \a attributes describe, its bytes under kSecValueData. When
        \a attributes asks for kSecReturnAttributes and \a result is not null, the new
        item's attributes are written to \a result as a QVariantMap.
    */
    virtual qint32 add(const QVariantMap &attributes, QVariant *result) = 0;

    /*!
        Finds the item that \a query matches. With kSecReturnData the item's bytes are
        written to \a result as a QByteArray; with kSecReturnAttributes its attributes, as a
        QVariantMap (holding the bytes under kSecValueData when both are asked for).
    */
    virtual qint32 copyMatching(const QVariantMap &query, QVariant *result) = 0;

    //! Removes the items that \a query matches; errSecItemNotFound when there was none.
    virtual qint32 deleteMatching(const QVariantMap &query) = 0;

    /*!
        The store the kit uses. Unless setDefaultStore() says otherwise, this is the
        platform's store, created on first use and kept until the process ends.
    */
    static TVRSecureItemStore *defaultStore();

    /*!
        Makes \a store the one the kit uses; \c nullptr brings back the platform's store.
        The kit does not take ownership. Call it before the kit touches the keychain, from
        the thread that uses the kit.
    */
    static void setDefaultStore(TVRSecureItemStore *store);
};

#endif
