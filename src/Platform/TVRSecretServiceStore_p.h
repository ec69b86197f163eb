// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECRETSERVICESTORE_P_H
#define TVRSECRETSERVICESTORE_P_H

#include "TVRSecureItemStore.h"

/*
    The secure item store over the freedesktop.org Secret Service (gnome-keyring, or any
    other service that owns org.freedesktop.secrets on the session bus), spoken to over
    D-Bus with blocking calls on the caller's own thread: no thread and no event loop of the
    kit's own, so no event of the caller's thread is delivered while a call waits. It uses a
    session-bus connection of its own, apart from the host's; a host may keep items of its
    own with QtKeychain or libsecret on any thread, at any time, without meeting the kit.

    Items are laid out as QtKeychain's libsecret backend lays them out, so that items written
    by either are read by the other: schema "org.qt.keychain", the account as attribute
    "user", the service as "server", the service as the label, and the bytes base64-encoded
    with "type" "base64" (QtKeychain's text items, "plaintext", are read as they are). An
    access group is kept in front of the service name. Items are added to the default
    collection; an item of the same attributes is replaced. No item reports an access group.

    A call waits for the service for 5 s at most, all its D-Bus calls together. A locked
    item or collection is unlocked only where the service can do it without asking the user:
    a prompt cannot be answered within a synchronous call, so it is dismissed unseen and the
    call fails with errSecInteractionNotAllowed. A failure other than a missing item makes
    the calls of the next 30 s fail at once.
*/
class TVRSecretServiceStore final : public TVRSecureItemStore
{
public:
    qint32 add(const QVariantMap &attributes, QVariant *result) override;
    qint32 copyMatching(const QVariantMap &query, QVariant *result) override;
    qint32 deleteMatching(const QVariantMap &query) override;
};

#endif
