// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRAgreementManager.h"

#include "TVRAgreementManagerDelegate.h"
#include "TVRWeakDelegate_p.h"

const QString kTVRDocumentAgreementPath = QStringLiteral("/api/terms-of-service/agree");

class TVRAgreementManagerPrivate
{
public:
    TVRWeakDelegate<TVRAgreementManagerDelegate> delegate;
};

TVRAgreementManager *TVRAgreementManager::sharedInstance()
{
    static TVRAgreementManager *const instance = new TVRAgreementManager;
    return instance;
}

TVRAgreementManager::TVRAgreementManager(QObject *parent)
    : TVRNetworkManager(parent)
    , d(std::make_unique<TVRAgreementManagerPrivate>())
{
}

TVRAgreementManager::~TVRAgreementManager() = default;

TVRAgreementManagerDelegate *TVRAgreementManager::delegate() const
{
    return d->delegate.get();
}

void TVRAgreementManager::setDelegate(TVRAgreementManagerDelegate *delegate)
{
    d->delegate.set(delegate);
}

void TVRAgreementManager::agreeToDocument(const std::shared_ptr<TVRDocument> &)
{
    // Left empty on purpose: the service's agreement request is not part of this release.
}
