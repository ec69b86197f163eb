// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABBARCONTROLLER_H
#define TVRTABBARCONTROLLER_H

#include "tovra_export.h"
#include "TVRViewController.h"

#include <QList>

class QStackedWidget;
class QTabBar;

/*!
    \brief Screens side by side, one shown at a time, chosen with a tab bar at the bottom
    that carries each screen's title. The controller owns its screens.
*/
class TOVRA_EXPORT TVRTabBarController : public TVRViewController
{
    Q_OBJECT

public:
    explicit TVRTabBarController(QWidget *parent = nullptr);
    ~TVRTabBarController() override;

    QList<TVRViewController *> viewControllers() const { return m_controllers; }
    void setViewControllers(const QList<TVRViewController *> &controllers);

    int selectedIndex() const;
    void setSelectedIndex(int index);
    TVRViewController *selectedViewController() const;

    QTabBar *tabBar();

protected:
    void loadView() override;

private:
    void rebuild();

    QList<TVRViewController *> m_controllers;
    QTabBar *m_tabs = nullptr;
    QStackedWidget *m_stack = nullptr;
    int m_selected = 0;
};

#endif
