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
    //! A tab bar controller without screens.
    explicit TVRTabBarController(QWidget *parent = nullptr);
    ~TVRTabBarController() override;

    //! The screens, in the order of their tabs.
    QList<TVRViewController *> viewControllers() const;
    /*!
        Makes \a controllers the screens, one tab each, owned from now on; screens of the
        old list that are not in the new one are deleted later. The first screen is selected.
    */
    void setViewControllers(const QList<TVRViewController *> &controllers);

    //! The index of the selected screen; -1 after an empty list was set (0 before any list is).
    int selectedIndex() const;
    //! Selects and shows the screen at \a index; an index outside the list is ignored.
    void setSelectedIndex(int index);
    //! The selected screen; null when there is none.
    TVRViewController *selectedViewController() const;

    //! The bar of tabs at the bottom, one per screen with its title; loads the view.
    QTabBar *tabBar();

protected:
    //! Builds the screens' stack over the tab bar.
    void loadView() override;

private:
    void rebuild();

    std::unique_ptr<TVRTabBarControllerPrivate> const d;
};

#endif
