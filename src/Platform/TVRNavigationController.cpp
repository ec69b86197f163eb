// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNavigationController.h"

#include "TVRNavigationBar_p.h"
#include "TVRNavigationItem.h"

#include <QAction>
#include <QStackedWidget>
#include <QVBoxLayout>

class TVRNavigationControllerPrivate
{
public:
    TVRNavigationBar *bar = nullptr;
    QStackedWidget *stack = nullptr;
    QList<TVRViewController *> controllers;
    QAction *back = nullptr;
};

TVRNavigationController::TVRNavigationController(TVRViewController *rootViewController, QWidget *parent)
    : TVRViewController(parent)
    , d(std::make_unique<TVRNavigationControllerPrivate>())
{
    if (rootViewController)
        pushViewController(rootViewController, false);
}

TVRNavigationController::~TVRNavigationController() = default;

QList<TVRViewController *> TVRNavigationController::viewControllers() const
{
    return d->controllers;
}

TVRViewController *TVRNavigationController::topViewController() const
{
    return d->controllers.isEmpty() ? nullptr : d->controllers.constLast();
}

QWidget *TVRNavigationController::navigationBar()
{
    view();
    return d->bar;
}

void TVRNavigationController::loadView()
{
    auto *root = new QWidget;
    auto *layout = new QVBoxLayout(root);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    d->bar = new TVRNavigationBar(root);
    d->stack = new QStackedWidget(root);
    layout->addWidget(d->bar);
    layout->addWidget(d->stack, 1);
    //: Goes back to the previous screen.
    d->back = new QAction(tr("Back"), this);
    connect(d->back, &QAction::triggered, this, [this] { popViewControllerAnimated(); });
    setView(root);

    for (TVRViewController *controller : std::as_const(d->controllers))
        d->stack->addWidget(controller);
    if (!d->controllers.isEmpty())
        d->stack->setCurrentWidget(d->controllers.constLast());
    updateBar();
}

void TVRNavigationController::pushViewController(TVRViewController *controller, bool animated)
{
    Q_UNUSED(animated) // no transitions
    if (!controller || d->controllers.contains(controller))
        return;
    if (TVRViewController *previous = topViewController()) {
        disconnect(previous, nullptr, this, nullptr);
        disconnect(previous->navigationItem(), nullptr, this, nullptr);
    }
    setParentViewController(controller, this);
    d->controllers.append(controller);
    connect(controller, &TVRViewController::titleChanged, this, &TVRNavigationController::updateBar);
    connect(controller->navigationItem(), &TVRNavigationItem::changed, this, &TVRNavigationController::updateBar);
    if (d->stack) {
        d->stack->addWidget(controller);
        d->stack->setCurrentWidget(controller);
        updateBar();
    } else {
        controller->setParent(this);
        controller->hide();
    }
}

void TVRNavigationController::popViewControllerAnimated(bool animated)
{
    Q_UNUSED(animated)
    if (d->controllers.size() < 2)
        return;
    TVRViewController *popped = d->controllers.takeLast();
    disconnect(popped, nullptr, this, nullptr);
    disconnect(popped->navigationItem(), nullptr, this, nullptr);
    setParentViewController(popped, nullptr);
    popped->hide();
    popped->deleteLater();

    TVRViewController *top = topViewController();
    connect(top, &TVRViewController::titleChanged, this, &TVRNavigationController::updateBar);
    connect(top->navigationItem(), &TVRNavigationItem::changed, this, &TVRNavigationController::updateBar);
    if (d->stack)
        d->stack->setCurrentWidget(top);
    updateBar();
}

void TVRNavigationController::updateBar()
{
    if (!d->bar)
        return;
    TVRViewController *top = topViewController();
    if (!top) {
        d->bar->setTitle(QString());
        d->bar->setItems(nullptr, nullptr);
        return;
    }
    // The top screen may not be shown yet; its title and items are set as it loads.
    top->view();
    QAction *left = top->navigationItem()->leftBarButtonItem();
    if (!left && d->controllers.size() > 1)
        left = d->back;
    d->bar->setTitle(top->title());
    d->bar->setItems(left, top->navigationItem()->rightBarButtonItem());
}
