// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRPrivacyPolicyViewController.h"

#include "TVRDocumentManager.h"

TVRPrivacyPolicyViewController::TVRPrivacyPolicyViewController(QWidget *parent)
    : TVRReadOnlyDocumentViewController(QString(), parent)
{
    TVRDocumentManager::sharedInstance()->readAhead(TVRDocumentManager::Document::PrivacyPolicy);
}

QString TVRPrivacyPolicyViewController::title() const
{
    //: The title of the screen that shows the application's privacy policy.
    return tr("Privacy Policy");
}

std::shared_ptr<TVRDocument> TVRPrivacyPolicyViewController::documentOf(TVRDocumentManager *manager) const
{
    return manager->privacyPolicy();
}

void TVRPrivacyPolicyViewController::fetchDocument(TVRDocumentManager *manager)
{
    manager->fetchPrivacyPolicy();
}
