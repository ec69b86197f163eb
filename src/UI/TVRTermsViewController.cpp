// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTermsViewController.h"

#include "TVRDocumentManager.h"
#include "TVRFocusRing_p.h"
#include "TVRPalette_p.h"
#include "TVRSubview_p.h"
#include "TVRTableView.h"

#include <QAction>
#include <QPointer>
#include <QToolBar>
#include <QVBoxLayout>

class TVRTermsViewControllerPrivate
{
public:
    QPointer<QToolBar> toolbar;
    QPointer<QAction> disagree;
    QPointer<QAction> agree;
};

TVRTermsViewController::TVRTermsViewController(std::shared_ptr<TVRDocument> document, QWidget *parent)
    //: The title of the screen on which the user accepts or refuses the terms of service.
    : TVRDocumentViewController(tr("Terms of Service"), parent)
    , d(std::make_unique<TVRTermsViewControllerPrivate>())
{
    TVRDocumentManager *manager = TVRDocumentManager::sharedInstance();
    manager->setTermsOfService(std::move(document));
    manager->readAhead(TVRDocumentManager::Document::TermsOfService);
}

TVRTermsViewController::~TVRTermsViewController()
{
    // A toolbar made before the view was loaded belongs to no widget yet.
    if (d->toolbar && !d->toolbar->parent())
        delete d->toolbar;
}

QToolBar *TVRTermsViewController::toolbar()
{
    if (!d->toolbar) {
        auto *toolbar = new QToolBar;
        toolbar->setFixedHeight(52);
        toolbar->setPalette(TVRPalette::bar());
        toolbar->setAutoFillBackground(true);
        toolbar->setMovable(false);
        toolbar->setFloatable(false);
        toolbar->addAction(disagreeBarButtonItem());
        auto *flexibleSpace = new QWidget(toolbar);
        flexibleSpace->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        toolbar->addWidget(flexibleSpace);
        toolbar->addAction(agreeBarButtonItem());
        // A tool bar's buttons take no keyboard focus by default; these are the screen's answer.
        for (QAction *action : {disagreeBarButtonItem(), agreeBarButtonItem()}) {
            QWidget *button = toolbar->widgetForAction(action);
            button->setFocusPolicy(Qt::TabFocus);
            TVRFocusRing::attach(button);
        }
        d->toolbar = toolbar;
    }
    return d->toolbar;
}

void TVRTermsViewController::setToolbar(QToolBar *toolbar)
{
    TVRSubview::replace(d->toolbar, toolbar);
    d->toolbar = toolbar;
}

QAction *TVRTermsViewController::disagreeBarButtonItem()
{
    if (!d->disagree) {
        //: The button that refuses the terms of service shown above it.
        d->disagree = new QAction(tr("Disagree"), this);
        connect(d->disagree, &QAction::triggered, this, &TVRTermsViewController::onDisagreeBarButtonItemPressed);
    }
    return d->disagree;
}

void TVRTermsViewController::setDisagreeBarButtonItem(QAction *item)
{
    d->disagree = item;
}

QAction *TVRTermsViewController::agreeBarButtonItem()
{
    if (!d->agree) {
        //: The button that accepts the terms of service shown above it.
        d->agree = new QAction(tr("Agree"), this);
        connect(d->agree, &QAction::triggered, this, &TVRTermsViewController::onAgreeBarButtonItemPressed);
    }
    return d->agree;
}

void TVRTermsViewController::setAgreeBarButtonItem(QAction *item)
{
    d->agree = item;
}

void TVRTermsViewController::onAgreeBarButtonItemPressed()
{
    // Left empty on purpose: the agreement is not sent to the service in this release.
}

void TVRTermsViewController::onDisagreeBarButtonItemPressed()
{
    // Left empty on purpose, as Agree is.
}

void TVRTermsViewController::tableViewWillDisplayCell(TVRTableView *, TVRTableViewCell *, TVRIndexPath indexPath)
{
    // A row shown is in a section that exists, so with no sections none is the last.
    if (indexPath.section == sections().size() - 1) {
        agreeBarButtonItem()->setEnabled(true);
        disagreeBarButtonItem()->setEnabled(true);
    }
}

std::shared_ptr<TVRDocument> TVRTermsViewController::documentOf(TVRDocumentManager *manager) const
{
    return manager->termsOfService();
}

void TVRTermsViewController::setupConstraints()
{
    auto *layout = new QVBoxLayout(view());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tableView(), 1);
    layout->addWidget(toolbar());
}
