// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTabBarController.h"

#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

class TVRTabBarControllerPrivate
{
public:
    QList<TVRViewController *> controllers;
    QTabBar *tabs = nullptr;
    QStackedWidget *stack = nullptr;
    int selected = 0;
};

TVRTabBarController::TVRTabBarController(QWidget *parent)
    : TVRViewController(parent)
    , d(std::make_unique<TVRTabBarControllerPrivate>())
{
}

TVRTabBarController::~TVRTabBarController() = default;

QList<TVRViewController *> TVRTabBarController::viewControllers() const
{
    return d->controllers;
}

void TVRTabBarController::setViewControllers(const QList<TVRViewController *> &controllers)
{
    for (TVRViewController *old : std::as_const(d->controllers)) {
        if (!controllers.contains(old)) {
            setParentViewController(old, nullptr);
            old->deleteLater();
        }
        disconnect(old, nullptr, this, nullptr);
    }
    d->controllers = controllers;
    for (TVRViewController *controller : controllers) {
        setParentViewController(controller, this);
        controller->setParent(this);
        controller->hide();
        connect(controller, &TVRViewController::titleChanged, this, [this, controller] {
            if (d->tabs)
                d->tabs->setTabText(d->controllers.indexOf(controller), controller->title());
        });
    }
    d->selected = controllers.isEmpty() ? -1 : 0;
    rebuild();
}

int TVRTabBarController::selectedIndex() const
{
    return d->selected;
}

void TVRTabBarController::setSelectedIndex(int index)
{
    if (index < 0 || index >= d->controllers.size())
        return;
    d->selected = index;
    if (d->stack) {
        d->stack->setCurrentWidget(d->controllers.at(index));
        d->tabs->setCurrentIndex(index);
    }
}

TVRViewController *TVRTabBarController::selectedViewController() const
{
    return d->selected >= 0 && d->selected < d->controllers.size() ? d->controllers.at(d->selected) : nullptr;
}

QTabBar *TVRTabBarController::tabBar()
{
    view();
    return d->tabs;
}

void TVRTabBarController::loadView()
{
    auto *root = new QWidget;
    auto *layout = new QVBoxLayout(root);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    d->stack = new QStackedWidget(root);
    d->tabs = new QTabBar(root);
    d->tabs->setExpanding(true);
    d->tabs->setShape(QTabBar::RoundedSouth);
    layout->addWidget(d->stack, 1);
    layout->addWidget(d->tabs);
    connect(d->tabs, &QTabBar::currentChanged, this, &TVRTabBarController::setSelectedIndex);
    setView(root);
    rebuild();
}

void TVRTabBarController::rebuild()
{
    if (!d->stack)
        return;
    const QSignalBlocker blocker(d->tabs);
    while (d->tabs->count())
        d->tabs->removeTab(0);
    for (TVRViewController *controller : std::as_const(d->controllers)) {
        d->stack->addWidget(controller);
        controller->view();
        d->tabs->addTab(controller->title());
    }
    setSelectedIndex(d->selected);
}
