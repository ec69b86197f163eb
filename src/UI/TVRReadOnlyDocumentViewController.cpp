// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRReadOnlyDocumentViewController.h"

#include "TVRDocumentManager.h"
#include "TVRNavigationController.h"
#include "TVRNavigationItem.h"
#include "TVRTabBarController.h"

#include <QAction>

TVRReadOnlyDocumentViewController::~TVRReadOnlyDocumentViewController() = default;

QAction *TVRReadOnlyDocumentViewController::closeBarButtonItem()
{
    if (!m_closeBarButtonItem) {
        auto *item = new QAction(QStringLiteral("Close"), this);
        QFont done = item->font();
        done.setBold(true);
        item->setFont(done);
        connect(item, &QAction::triggered, this, &TVRReadOnlyDocumentViewController::onCloseBarButtonItemPressed);
        m_closeBarButtonItem = item;
    }
    return m_closeBarButtonItem;
}

void TVRReadOnlyDocumentViewController::setCloseBarButtonItem(QAction *item)
{
    m_closeBarButtonItem = item;
}

bool TVRReadOnlyDocumentViewController::isModal() const
{
    if (presentingViewController())
        return true;
    // Without a presenter both sides are null: a screen in no navigation controller and
    // presented by nobody counts as modal, as intended.
    TVRNavigationController *navigation = navigationController();
    TVRViewController *navigationPresenting = navigation ? navigation->presentingViewController() : nullptr;
    TVRViewController *presentedByThat =
        navigationPresenting ? navigationPresenting->presentedViewController() : nullptr;
    if (presentedByThat == navigation)
        return true;
    TVRTabBarController *tabs = tabBarController();
    return tabs && qobject_cast<TVRTabBarController *>(tabs->presentingViewController());
}

void TVRReadOnlyDocumentViewController::onCloseBarButtonItemPressed()
{
    dismissViewControllerAnimated(true);
}

void TVRReadOnlyDocumentViewController::viewDidLoad()
{
    TVRDocumentViewController::viewDidLoad();
    if (isModal())
        navigationItem()->setLeftBarButtonItem(closeBarButtonItem());
    TVRDocumentManager *manager = TVRDocumentManager::sharedInstance();
    manager->setDelegate(this);
    fetchDocument(manager);
}
