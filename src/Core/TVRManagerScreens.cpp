// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// What TVRManager does with widgets, in the widgets library: the screen factories and the
// agreement screen that the agreement check presents when the user has not agreed.

#include "TVRManager.h"
#include "TVRManager_p.h"

#include "TVRDocumentManager.h"
#include "TVRNavigationController.h"
#include "TVRPrivacyPolicyViewController.h"
#include "TVRTermsOfServiceViewController.h"
#include "TVRTermsViewController.h"

#include <QApplication>
#include <QPointer>

#include <memory>

TVRTermsOfServiceViewController *TVRManager::termsOfServiceViewController()
{
    return new TVRTermsOfServiceViewController;
}

TVRPrivacyPolicyViewController *TVRManager::privacyPolicyViewController()
{
    return new TVRPrivacyPolicyViewController;
}

namespace {

// The agreement screen, in a navigation controller, over the main window under the window in
// front. False only without a QApplication, where no widget can be made.
bool presentAgreementScreen(const std::shared_ptr<TVRDocument> &document)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return false;
    // Made first: the screen hands the document to the shared document manager, shown or not.
    auto agreement = std::make_unique<TVRTermsViewController>(document);

    // One agreement screen at a time: a second answer while one is up presents nothing.
    static QPointer<TVRNavigationController> presented;
    if (presented && presented->isVisible())
        return true;
    TVRViewController *root =
        TVRViewController::rootViewControllerForWindow(TVRViewController::mainWindowOf(TVRViewController::keyWindow()));
    if (!root)
        return true;
    presented = new TVRNavigationController(agreement.release());
    root->presentViewController(presented, false);
    return true;
}

} // namespace

// Installs the agreement screen as the library loads, and again from TovraWidgetsEntry.cpp,
// which every program that links the library compiles: that call keeps this file in a static
// link, and the shared library in an --as-needed one, for a host that calls only the core.
extern "C" TOVRA_EXPORT void tovraWidgetsInstallAgreementScreen()
{
    tvrSetBuiltInAgreementPresenter(presentAgreementScreen);
}
Q_CONSTRUCTOR_FUNCTION(tovraWidgetsInstallAgreementScreen)
