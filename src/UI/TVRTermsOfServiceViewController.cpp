// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTermsOfServiceViewController.h"

#include "TVRDocumentManager.h"

TVRTermsOfServiceViewController::TVRTermsOfServiceViewController(QWidget *parent)
    //: The title of the screen that shows the application's terms of service.
    : TVRReadOnlyDocumentViewController(tr("Terms of Service"), parent)
{
    // Read while the screen is made and shown, for it is first shown with it.
    TVRDocumentManager::sharedInstance()->readAhead(TVRDocumentManager::Document::TermsOfService);
}

std::shared_ptr<TVRDocument> TVRTermsOfServiceViewController::documentOf(TVRDocumentManager *manager) const
{
    return manager->termsOfService();
}

void TVRTermsOfServiceViewController::fetchDocument(TVRDocumentManager *manager)
{
    manager->fetchTermsOfService();
}
