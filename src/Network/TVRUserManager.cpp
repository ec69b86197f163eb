// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRUserManager.h"

#include "TVRUserManagerDelegate.h"
#include "TVRWeakDelegate_p.h"

const QString kTVRCheckUserStatusPath = QStringLiteral("/api/user/status");

class TVRUserManagerPrivate
{
public:
    TVRWeakDelegate<TVRUserManagerDelegate> delegate;
};

TVRUserManager *TVRUserManager::sharedInstance()
{
    static TVRUserManager *const instance = new TVRUserManager;
    return instance;
}

TVRUserManager::TVRUserManager(QObject *parent)
    : TVRNetworkManager(parent)
    , d(std::make_unique<TVRUserManagerPrivate>())
{
}

TVRUserManager::~TVRUserManager() = default;

TVRUserManagerDelegate *TVRUserManager::delegate() const
{
    return d->delegate.get();
}

void TVRUserManager::setDelegate(TVRUserManagerDelegate *delegate)
{
    d->delegate.set(delegate);
}

void TVRUserManager::fetchUserStatusWithIdentifier(const QVariant &)
{
    // Left empty on purpose: the service's status request is not part of this release.
}
