// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTERMSOFSERVICEVIEWCONTROLLER_H
#define TVRTERMSOFSERVICEVIEWCONTROLLER_H

#include "tovra_export.h"
#include "TVRReadOnlyDocumentViewController.h"

/*!
    \brief The Terms of Service screen. Its title becomes "Terms of Service" when its view
    loads. See TVRReadOnlyDocumentViewController.
*/
class TOVRA_EXPORT TVRTermsOfServiceViewController : public TVRReadOnlyDocumentViewController
{
    Q_OBJECT

public:
    //! A Terms of Service screen; TVRManager::termsOfServiceViewController() makes one too.
    explicit TVRTermsOfServiceViewController(QWidget *parent = nullptr);

protected:
    //! TVRDocumentManager::termsOfService() of \a manager.
    std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const override;
    //! Calls TVRDocumentManager::fetchTermsOfService() of \a manager.
    void fetchDocument(TVRDocumentManager *manager) override;
};

#endif
