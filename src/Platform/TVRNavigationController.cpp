// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNavigationController.h"

#include "TVRNavigationBar_p.h"
#include "TVRNavigationItem.h"

#include <QAction>
#include <QStackedWidget>
#include <QVBoxLayout>

TVRNavigationController::TVRNavigationController(TVRViewController *rootViewController, QWidget *parent)
    : TVRViewController(parent)
{
    if (rootViewController)
        pushViewController(rootViewController, false);
}

TVRNavigationController::~TVRNavigationController() = default;

QList<TVRViewController *> TVRNavigationController::viewControllers() const
{
    return m_controllers;
}

TVRViewController *TVRNavigationController::topViewController() const
{
    return m_controllers.isEmpty() ? nullptr : m_controllers.constLast();
}

QWidget *TVRNavigationController::navigationBar()
{
    view();
    return m_bar;
}

void TVRNavigationController::loadView()
{
    auto *root = new QWidget;
    auto *layout = new QVBoxLayout(root);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_bar = new TVRNavigationBar(root);
    m_stack = new QStackedWidget(root);
    layout->addWidget(m_bar);
    layout->addWidget(m_stack, 1);
    m_back = new QAction(tr("Back"), this);
    connect(m_back, &QAction::triggered, this, [this] { popViewControllerAnimated(); });
    setView(root);

    for (TVRViewController *controller : std::as_const(m_controllers))
        m_stack->addWidget(controller);
    if (!m_controllers.isEmpty())
        m_stack->setCurrentWidget(m_controllers.constLast());
    updateBar();
}

void TVRNavigationController::pushViewController(TVRViewController *controller, bool animated)
{
    Q_UNUSED(animated) // no transitions
    if (!controller || m_controllers.contains(controller))
        return;
    if (TVRViewController *previous = topViewController()) {
        disconnect(previous, nullptr, this, nullptr);
        disconnect(previous->navigationItem(), nullptr, this, nullptr);
    }
    setParentViewController(controller, this);
    m_controllers.append(controller);
    connect(controller, &TVRViewController::titleChanged, this, &TVRNavigationController::updateBar);
    connect(controller->navigationItem(), &TVRNavigationItem::changed, this, &TVRNavigationController::updateBar);
    if (m_stack) {
        m_stack->addWidget(controller);
        m_stack->setCurrentWidget(controller);
        updateBar();
    } else {
        controller->setParent(this);
        controller->hide();
    }
}

void TVRNavigationController::popViewControllerAnimated(bool animated)
{
    Q_UNUSED(animated)
    if (m_controllers.size() < 2)
        return;
    TVRViewController *popped = m_controllers.takeLast();
    disconnect(popped, nullptr, this, nullptr);
    disconnect(popped->navigationItem(), nullptr, this, nullptr);
    setParentViewController(popped, nullptr);
    popped->hide();
    popped->deleteLater();

    TVRViewController *top = topViewController();
    connect(top, &TVRViewController::titleChanged, this, &TVRNavigationController::updateBar);
    connect(top->navigationItem(), &TVRNavigationItem::changed, this, &TVRNavigationController::updateBar);
    if (m_stack)
        m_stack->setCurrentWidget(top);
    updateBar();
}

void TVRNavigationController::updateBar()
{
    if (!m_bar)
        return;
    TVRViewController *top = topViewController();
    if (!top) {
        m_bar->setTitle(QString());
        m_bar->setItems(nullptr, nullptr);
        return;
    }
    // The top screen may not be shown yet; its title and items are set as it loads.
    top->view();
    QAction *left = top->navigationItem()->leftBarButtonItem();
    if (!left && m_controllers.size() > 1)
        left = m_back;
    m_bar->setTitle(top->title());
    m_bar->setItems(left, top->navigationItem()->rightBarButtonItem());
}
