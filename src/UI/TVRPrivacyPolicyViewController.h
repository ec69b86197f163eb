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
    explicit TVRPrivacyPolicyViewController(QWidget *parent = nullptr);

    QString title() const override;

protected:
    std::shared_ptr<TVRDocument> documentOf(TVRDocumentManager *manager) const override;
    void fetchDocument(TVRDocumentManager *manager) override;
};

#endif
