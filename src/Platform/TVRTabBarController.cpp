// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTabBarController.h"

#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

TVRTabBarController::TVRTabBarController(QWidget *parent)
    : TVRViewController(parent)
{
}

TVRTabBarController::~TVRTabBarController() = default;

void TVRTabBarController::setViewControllers(const QList<TVRViewController *> &controllers)
{
    for (TVRViewController *old : std::as_const(m_controllers)) {
        if (!controllers.contains(old)) {
            setParentViewController(old, nullptr);
            old->deleteLater();
        }
        disconnect(old, nullptr, this, nullptr);
    }
    m_controllers = controllers;
    for (TVRViewController *controller : controllers) {
        setParentViewController(controller, this);
        controller->setParent(this);
        controller->hide();
        connect(controller, &TVRViewController::titleChanged, this, [this, controller] {
            if (m_tabs)
                m_tabs->setTabText(m_controllers.indexOf(controller), controller->title());
        });
    }
    m_selected = controllers.isEmpty() ? -1 : 0;
    rebuild();
}

int TVRTabBarController::selectedIndex() const
{
    return m_selected;
}

void TVRTabBarController::setSelectedIndex(int index)
{
    if (index < 0 || index >= m_controllers.size())
        return;
    m_selected = index;
    if (m_stack) {
        m_stack->setCurrentWidget(m_controllers.at(index));
        m_tabs->setCurrentIndex(index);
    }
}

TVRViewController *TVRTabBarController::selectedViewController() const
{
    return m_selected >= 0 && m_selected < m_controllers.size() ? m_controllers.at(m_selected) : nullptr;
}

QTabBar *TVRTabBarController::tabBar()
{
    view();
    return m_tabs;
}

void TVRTabBarController::loadView()
{
    auto *root = new QWidget;
    auto *layout = new QVBoxLayout(root);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_stack = new QStackedWidget(root);
    m_tabs = new QTabBar(root);
    m_tabs->setExpanding(true);
    m_tabs->setShape(QTabBar::RoundedSouth);
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_tabs);
    connect(m_tabs, &QTabBar::currentChanged, this, &TVRTabBarController::setSelectedIndex);
    setView(root);
    rebuild();
}

void TVRTabBarController::rebuild()
{
    if (!m_stack)
        return;
    const QSignalBlocker blocker(m_tabs);
    while (m_tabs->count())
        m_tabs->removeTab(0);
    for (TVRViewController *controller : std::as_const(m_controllers)) {
        m_stack->addWidget(controller);
        controller->view();
        m_tabs->addTab(controller->title());
    }
    setSelectedIndex(m_selected);
}
