// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSecureItemStore.h"

#include "TVRQtKeychainStore_p.h"

#include <atomic>

namespace {
std::atomic<TVRSecureItemStore *> hostStore{nullptr};
}

TVRSecureItemStore::~TVRSecureItemStore() = default;

TVRSecureItemStore *TVRSecureItemStore::defaultStore()
{
    if (TVRSecureItemStore *store = hostStore.load())
        return store;
    static TVRQtKeychainStore *const keychain = new TVRQtKeychainStore;
    return keychain;
}

void TVRSecureItemStore::setDefaultStore(TVRSecureItemStore *store)
{
    hostStore.store(store);
}
