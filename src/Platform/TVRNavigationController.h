// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRNAVIGATIONCONTROLLER_H
#define TVRNAVIGATIONCONTROLLER_H

#include "tovra_export.h"
#include "TVRViewController.h"

#include <memory>
#include <QList>

class TVRNavigationBar;

class TVRNavigationControllerPrivate;

/*!
    \brief A stack of screens under a navigation bar that shows the top screen's title and
    its navigation item's buttons.

    The controller owns the screens on its stack. A popped screen is deleted later. When
    the top screen has no left button and is not the root, the bar offers "Back".
*/
class TOVRA_EXPORT TVRNavigationController : public TVRViewController
{
    Q_OBJECT

public:
    explicit TVRNavigationController(TVRViewController *rootViewController, QWidget *parent = nullptr);
    ~TVRNavigationController() override;

    QList<TVRViewController *> viewControllers() const;
    TVRViewController *topViewController() const;

    void pushViewController(TVRViewController *controller, bool animated = true);
    void popViewControllerAnimated(bool animated = true);

    //! The bar over the screens: a widget 44 px high.
    QWidget *navigationBar();

protected:
    void loadView() override;

private:
    void updateBar();

    std::unique_ptr<TVRNavigationControllerPrivate> const d;
};

#endif
