// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRAGREEMENTMANAGER_H
#define TVRAGREEMENTMANAGER_H

/*!
    \file
    \brief TVRAgreementManager, which tells the service of an agreement, and its request path.
*/

#include "tovra_export.h"
#include "TVRNetworkManager.h"

#include <memory>

class TVRAgreementManagerDelegate;
class TVRAgreementManagerPrivate;
class TVRDocument;

//! The service path for agreeing to the terms: "/api/terms-of-service/agree". Unused by the kit.
TOVRA_EXPORT extern const QString kTVRDocumentAgreementPath;

/*!
    \brief Tells the service that the user has agreed to a document.

    The agreement request is not part of this release: agreeToDocument() returns at once and
    sends nothing. Nothing in the kit calls this manager.
*/
class TOVRA_EXPORT TVRAgreementManager : public TVRNetworkManager
{
    Q_OBJECT

public:
    //! The one manager, made on the first call, kept until exit.
    static TVRAgreementManager *sharedInstance();

    //! A manager of its own, besides the shared one.
    explicit TVRAgreementManager(QObject *parent = nullptr);
    ~TVRAgreementManager() override;

    //! The delegate set with setDelegate(); null when none is set or it was destroyed.
    TVRAgreementManagerDelegate *delegate() const;
    //! Held weakly: \a delegate must also be a QObject; any other is not kept.
    void setDelegate(TVRAgreementManagerDelegate *delegate);

    //! Does nothing, on purpose: no request, no delegate call.
    void agreeToDocument(const std::shared_ptr<TVRDocument> &document);

private:
    std::unique_ptr<TVRAgreementManagerPrivate> const d;
};

#endif
