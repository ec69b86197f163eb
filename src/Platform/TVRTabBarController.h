// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABBARCONTROLLER_H
#define TVRTABBARCONTROLLER_H

#include "tovra_export.h"
#include "TVRViewController.h"

#include <memory>
#include <QList>

class QStackedWidget;
class QTabBar;

class TVRTabBarControllerPrivate;

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

    QList<TVRViewController *> viewControllers() const;
    void setViewControllers(const QList<TVRViewController *> &controllers);

    int selectedIndex() const;
    void setSelectedIndex(int index);
    TVRViewController *selectedViewController() const;

    QTabBar *tabBar();

protected:
    void loadView() override;

private:
    void rebuild();

    std::unique_ptr<TVRTabBarControllerPrivate> const d;
};

#endif
