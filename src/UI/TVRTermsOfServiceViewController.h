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
    explicit TVRTermsOfServiceViewController(QWidget *parent = nullptr);

protected:
    std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const override;
    void fetchDocument(TVRDocumentManager *manager) override;
};

#endif
