// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRQTKEYCHAINSTORE_P_H
#define TVRQTKEYCHAINSTORE_P_H

#include "TVRSecureItemStore.h"

/*
    The secure item store over QtKeychain. An item's service becomes the QtKeychain service
    and its account the QtKeychain key. QtKeychain knows neither access groups nor
    accessibility classes: a group is kept in front of the service name, so that items of
    different groups stay apart, and the accessibility class is left to the backend (Secret
    Service items, for one, are readable once the user's login keyring is unlocked). No
    backend reports an access group, so the attributes handed back never hold one.

    QtKeychain answers asynchronously; its jobs run on a private thread, and each operation
    blocks its caller until the job has answered, for 5 s at most, without running any event
    of the caller's thread. A failure other than a missing item makes the operations of the
    next 30 s fail at once.
*/
class TVRQtKeychainStore final : public TVRSecureItemStore
{
public:
    qint32 add(const QVariantMap &attributes, QVariant *result) override;
    qint32 copyMatching(const QVariantMap &query, QVariant *result) override;
    qint32 deleteMatching(const QVariantMap &query) override;
};

#endif
