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

//! Key of the item's class, kSecClassGenericPassword for the kit's items; a store refuses
//! any other class with errSecParam.
inline const QString kSecClass = QStringLiteral("class");
//! The class of a generic password item, the one class the kit's stores keep.
inline const QString kSecClassGenericPassword = QStringLiteral("genp");
//! Key of the item's service name, a text; RQKeychain puts its key there.
inline const QString kSecAttrService = QStringLiteral("svce");
//! Key of the item's account name, a text; RQKeychain puts its key there too.
inline const QString kSecAttrAccount = QStringLiteral("acct");
//! Key of when the item may be read, such as kSecAttrAccessibleAfterFirstUnlock. The kit's
//! own stores do not act on it.
inline const QString kSecAttrAccessible = QStringLiteral("pdmn");
//! Value of kSecAttrAccessible: readable once the device has been unlocked after it started.
inline const QString kSecAttrAccessibleAfterFirstUnlock = QStringLiteral("ck");
//! Key of the access group the item belongs to, a text. The kit's own stores know no
//! groups: they keep the group in front of the service name ("group/service").
inline const QString kSecAttrAccessGroup = QStringLiteral("agrp");
//! Key of the item's bytes, a QByteArray.
inline const QString kSecValueData = QStringLiteral("v_Data");
//! Query flag: when true, copyMatching() writes the item's bytes to its result.
inline const QString kSecReturnData = QStringLiteral("r_Data");
//! Query flag: when true, add() and copyMatching() write the item's attributes to their result.
inline const QString kSecReturnAttributes = QStringLiteral("r_Attributes");
//! Key of how many items a query may match, such as kSecMatchLimitOne. The kit's own
//! stores always answer for one item.
inline const QString kSecMatchLimit = QStringLiteral("m_Limit");
//! Value of kSecMatchLimit: the first item that matches.
inline const QString kSecMatchLimitOne = QStringLiteral("m_LimitOne");

//! What a call of TVRSecureItemStore answers: errSecSuccess, or a negative failure.
enum Status : qint32 {
    //! The call did what it was asked.
    errSecSuccess = 0,
    //! The platform's keychain does not offer the operation.
    errSecUnimplemented = -4,
    //! The keychain failed in a way not named here.
    errSecIO = -36,
    //! The query is not one the store serves: its class is not kSecClassGenericPassword.
    errSecParam = -50,
    //! No keychain to ask: no application object, no keychain service, no answer within
    //! 5 s, or a failure other than a missing item in the last 30 s.
    errSecNotAvailable = -25291,
    //! The user or the system refused access to the keychain.
    errSecAuthFailed = -25293,
    //! An item of that name exists already. The kit's own stores replace such an item
    //! instead, and never answer this.
    errSecDuplicateItem = -25299,
    //! No item matches the query.
    errSecItemNotFound = -25300,
    //! The keychain allows access only after asking the user, who cannot be asked within a
    //! synchronous call: a locked keyring, for one. The item stays as it was.
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
