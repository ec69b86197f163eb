// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSecureItemStore.h"

// On Linux the kit speaks to the Secret Service itself; elsewhere it goes through QtKeychain.
// The build says which of the two it compiled.
#if defined(TOVRA_SECRET_SERVICE_STORE)
#include "TVRSecretServiceStore_p.h"
using PlatformStore = TVRSecretServiceStore;
#else
#include "TVRQtKeychainStore_p.h"
using PlatformStore = TVRQtKeychainStore;
#endif

#include <atomic>

namespace {
std::atomic<TVRSecureItemStore *> hostStore{nullptr};
}

TVRSecureItemStore::~TVRSecureItemStore() = default;

TVRSecureItemStore *TVRSecureItemStore::defaultStore()
{
    if (TVRSecureItemStore *store = hostStore.load())
        return store;
    static PlatformStore *const platform = new PlatformStore;
    return platform;
}

void TVRSecureItemStore::setDefaultStore(TVRSecureItemStore *store)
{
    hostStore.store(store);
}
