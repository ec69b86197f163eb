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
    //! A stack with \a rootViewController at its bottom, owned from now on; null starts it empty.
    explicit TVRNavigationController(TVRViewController *rootViewController, QWidget *parent = nullptr);
    ~TVRNavigationController() override;

    //! The screens on the stack, the root first and the one shown last.
    QList<TVRViewController *> viewControllers() const;
    //! The screen shown, at the top of the stack; null while the stack is empty.
    TVRViewController *topViewController() const;

    /*!
        Puts \a controller on top of the stack, takes ownership of it and shows it (once
        this controller shows). A null screen, or one on the stack already, is ignored.
        \a animated is accepted for symmetry; there is no transition.
    */
    void pushViewController(TVRViewController *controller, bool animated = true);
    /*!
        Takes the top screen off the stack, hides it and deletes it later; the root screen
        stays. \a animated is accepted for symmetry; there is no transition.
    */
    void popViewControllerAnimated(bool animated = true);

    //! The bar over the screens: a widget 44 px high.
    QWidget *navigationBar();

protected:
    //! Builds the bar over a stack of the screens, the top one shown.
    void loadView() override;

private:
    void updateBar();

    std::unique_ptr<TVRNavigationControllerPrivate> const d;
};

#endif
