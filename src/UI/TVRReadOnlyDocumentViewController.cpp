// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRReadOnlyDocumentViewController.h"

#include "TVRDocumentManager.h"
#include "TVRNavigationController.h"
#include "TVRNavigationItem.h"
#include "TVRTabBarController.h"

#include <QAction>
#include <QPointer>
#include <QShortcut>

class TVRReadOnlyDocumentViewControllerPrivate
{
public:
    QPointer<QAction> closeBarButtonItem;
    QShortcut *escape = nullptr;
};

TVRReadOnlyDocumentViewController::TVRReadOnlyDocumentViewController(const QString &titleOnLoad, QWidget *parent)
    : TVRDocumentViewController(titleOnLoad, parent)
    , d(std::make_unique<TVRReadOnlyDocumentViewControllerPrivate>())
{
}

TVRReadOnlyDocumentViewController::~TVRReadOnlyDocumentViewController() = default;

QAction *TVRReadOnlyDocumentViewController::closeBarButtonItem()
{
    if (!d->closeBarButtonItem) {
        //: Closes a terms of service or privacy policy screen that was opened over the application.
        auto *item = new QAction(tr("Close"), this);
        QFont done = item->font();
        done.setBold(true);
        item->setFont(done);
        connect(item, &QAction::triggered, this, &TVRReadOnlyDocumentViewController::onCloseBarButtonItemPressed);
        d->closeBarButtonItem = item;
    }
    return d->closeBarButtonItem;
}

void TVRReadOnlyDocumentViewController::setCloseBarButtonItem(QAction *item)
{
    d->closeBarButtonItem = item;
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

void TVRReadOnlyDocumentViewController::showEvent(QShowEvent *event)
{
    TVRDocumentViewController::showEvent(event);
    if (!d->escape) {
        d->escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
        d->escape->setContext(Qt::WindowShortcut);
        connect(d->escape, &QShortcut::activated, this, [this] { closeBarButtonItem()->trigger(); });
    }
    // Only while presented, so that a host window's own Escape keeps working around a
    // screen that is pushed or embedded.
    d->escape->setEnabled(presentingViewController() != nullptr);
}
