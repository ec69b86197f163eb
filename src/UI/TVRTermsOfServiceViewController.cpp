// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTermsOfServiceViewController.h"

#include "TVRDocumentManager.h"

TVRTermsOfServiceViewController::TVRTermsOfServiceViewController(QWidget *parent)
    : TVRReadOnlyDocumentViewController(QStringLiteral("Terms of Service"), parent)
{
}

std::shared_ptr<TVRDocument> TVRTermsOfServiceViewController::documentOf(TVRDocumentManager *manager) const
{
    return manager->termsOfService();
}

void TVRTermsOfServiceViewController::fetchDocument(TVRDocumentManager *manager)
{
    manager->fetchTermsOfService();
}
