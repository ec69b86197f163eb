// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRUSERMANAGERDELEGATE_H
#define TVRUSERMANAGERDELEGATE_H

#include "tovra_export.h"
#include "TVRError.h"

#include <memory>

class TVRDocument;
class TVRUserManager;

/*!
    \brief Receives the service's answer on whether the user has agreed to the current
    terms. Both methods are required. The delegate object must also be a QObject, so that
    the manager can hold it weakly.

    In this release TVRUserManager sends no status request and calls neither method; a host
    that learns the status another way calls TVRManager's implementation itself.
*/
class TOVRA_EXPORT TVRUserManagerDelegate
{
public:
    virtual ~TVRUserManagerDelegate();

    //! \a compliance is true when the user has agreed to \a document, the current terms.
    virtual void userManagerDidRespondWithCompliance(TVRUserManager *manager, bool compliance,
                                                     std::shared_ptr<TVRDocument> document) = 0;
    //! The status request of \a manager failed with \a error.
    virtual void userManagerDidFailWithError(TVRUserManager *manager, const TVRError &error) = 0;
};

#endif
