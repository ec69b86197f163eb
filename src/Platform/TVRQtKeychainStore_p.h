// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRQTKEYCHAINSTORE_P_H
#define TVRQTKEYCHAINSTORE_P_H

#include "TVRSecureItemStore.h"

/*
    The secure item store over QtKeychain, on the platforms where the kit does not speak to
    the keychain itself: Apple's Keychain, Android's Keystore, Windows' Credential Store. An
    item's service becomes the QtKeychain service and its account the QtKeychain key.
    QtKeychain knows neither access groups nor accessibility classes: a group is kept in
    front of the service name, and the accessibility class is left to the backend. No
    backend reports an access group, so the attributes handed back never hold one.

    QtKeychain answers asynchronously; its jobs run on a private thread, and each operation
    blocks its caller until the job has answered, for 5 s at most, without running any event
    of the caller's thread. A failure other than a missing item makes the operations of the
    next 30 s fail at once. QtKeychain's one job queue of the process cannot be shared
    between threads, so the host may not run QtKeychain jobs of its own beside this store.
*/
class TVRQtKeychainStore final : public TVRSecureItemStore
{
public:
    qint32 add(const QVariantMap &attributes, QVariant *result) override;
    qint32 copyMatching(const QVariantMap &query, QVariant *result) override;
    qint32 deleteMatching(const QVariantMap &query) override;
};

#endif
