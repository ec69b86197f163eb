// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRUSERMANAGER_H
#define TVRUSERMANAGER_H

/*!
    \file
    \brief TVRUserManager, which asks about the user's agreement, and its request path.
*/

#include "tovra_export.h"
#include "TVRNetworkManager.h"

#include <QVariant>

#include <memory>

class TVRUserManagerDelegate;
class TVRUserManagerPrivate;

//! The service path of the user-status check: "/api/user/status". The kit does not use it.
TOVRA_EXPORT extern const QString kTVRCheckUserStatusPath;

/*!
    \brief Asks the service whether a user has agreed to the current terms.

    The status request is not part of this release: fetchUserStatusWithIdentifier() returns
    at once, sends nothing and never calls the delegate. TVRManager::activateApp() calls it,
    and TVRManager implements the delegate, so the check is complete up to the request.
*/
class TOVRA_EXPORT TVRUserManager : public TVRNetworkManager
{
    Q_OBJECT

public:
    //! The one manager, made on the first call, kept until exit.
    static TVRUserManager *sharedInstance();

    //! A manager of its own, besides the shared one that TVRManager::activateApp() uses.
    explicit TVRUserManager(QObject *parent = nullptr);
    ~TVRUserManager() override;

    //! The delegate set with setDelegate(); null when none is set or it was destroyed.
    TVRUserManagerDelegate *delegate() const;
    //! Held weakly: \a delegate must also be a QObject; any other is not kept.
    void setDelegate(TVRUserManagerDelegate *delegate);

    //! Does nothing, on purpose: no request, no delegate call.
    void fetchUserStatusWithIdentifier(const QVariant &identifier);

private:
    std::unique_ptr<TVRUserManagerPrivate> const d;
};

#endif
