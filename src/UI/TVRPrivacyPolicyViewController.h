// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRPRIVACYPOLICYVIEWCONTROLLER_H
#define TVRPRIVACYPOLICYVIEWCONTROLLER_H

#include "tovra_export.h"
#include "TVRReadOnlyDocumentViewController.h"

/*!
    \brief The Privacy Policy screen. Its title is always "Privacy Policy", whatever is set.
    See TVRReadOnlyDocumentViewController.
*/
class TOVRA_EXPORT TVRPrivacyPolicyViewController : public TVRReadOnlyDocumentViewController
{
    Q_OBJECT

public:
    //! A Privacy Policy screen; TVRManager::privacyPolicyViewController() makes one too.
    explicit TVRPrivacyPolicyViewController(QWidget *parent = nullptr);

    //! "Privacy Policy", in the kit's language, whatever setTitle() was given.
    QString title() const override;

protected:
    //! TVRDocumentManager::privacyPolicy() of \a manager.
    std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const override;
    //! Calls TVRDocumentManager::fetchPrivacyPolicy() of \a manager.
    void fetchDocument(TVRDocumentManager *manager) override;
};

#endif
