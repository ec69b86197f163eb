// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRVIEWCONTROLLER_H
#define TVRVIEWCONTROLLER_H

#include "tovra_export.h"

#include <QWidget>

#include <functional>
#include <memory>

class TVRNavigationController;
class TVRNavigationItem;
class TVRTabBarController;
class TVRViewControllerPrivate;

/*!
    \brief A screen: a widget whose content view is built the first time it is needed.

    The first call of view(), which showing the screen makes, calls loadView() to build
    the root view and then viewDidLoad(), once. The root view fills the screen.

    Containers (TVRNavigationController, TVRTabBarController) make a screen their child;
    navigationController() and tabBarController() find the nearest such ancestor.

    presentViewController() shows another screen modally over this screen's window:
    window-modal, at the window's full size, with no transition. The presenting screen owns
    what it presents; dismissViewControllerAnimated() hides the presented screen and
    deletes it later. Presentation belongs to the outermost container of a screen, so
    asking any screen inside a presented container answers for that container.
*/
class TOVRA_EXPORT TVRViewController : public QWidget
{
    Q_OBJECT

public:
    explicit TVRViewController(QWidget *parent = nullptr);
    ~TVRViewController() override;

    //! The root view, loaded on first use.
    QWidget *view();
    bool isViewLoaded() const;

    virtual QString title() const;
    void setTitle(const QString &title);

    TVRNavigationItem *navigationItem();

    TVRViewController *parentViewController() const;
    TVRNavigationController *navigationController() const;
    TVRTabBarController *tabBarController() const;

    TVRViewController *presentingViewController() const;
    TVRViewController *presentedViewController() const;

    /*!
        Shows \a controller over this screen's window and takes ownership of it. The
        \a animated flag is accepted so that calls read as on a phone; there is no transition.
        \a completion runs once the screen is shown.
    */
    void presentViewController(TVRViewController *controller, bool animated = true,
                               const std::function<void()> &completion = {});
    /*!
        Dismisses the screen this one presents, or else the one that presents this screen
        (or its outermost container), with everything that it presents in turn.
    */
    void dismissViewControllerAnimated(bool animated = true, const std::function<void()> &completion = {});

    /*!
        The window in front: the application's active window, else the first visible
        top-level window; null when none is shown.
    */
    static QWidget *keyWindow();
    /*!
        The window that \a window belongs to and that lasts: \a window's own top-level
        window, or, while that is a dialog, a sheet or a tool window, the window it stands
        over (else the first visible window that is none of these).
    */
    static QWidget *mainWindowOf(QWidget *window);
    /*!
        The screen that \a window shows, to present other screens from: the window itself
        when it is a TVRViewController, else a hidden stand-in screen made once as its child.
    */
    static TVRViewController *rootViewControllerForWindow(QWidget *window);

Q_SIGNALS:
    void titleChanged();

protected:
    //! Builds the root view; the default is an empty plain widget. Call setView() here.
    virtual void loadView();
    //! Called once, after loadView().
    virtual void viewDidLoad();
    void setView(QWidget *view);

    //! Makes \a child a child screen of \a container (null to release it).
    static void setParentViewController(TVRViewController *child, TVRViewController *container);

    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<TVRViewControllerPrivate> const d;
};

#endif
