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
    //! A screen whose view is not loaded yet; it loads when the screen is first shown.
    explicit TVRViewController(QWidget *parent = nullptr);
    ~TVRViewController() override;

    //! The root view, loaded on first use.
    QWidget *view();
    //! Whether the root view has been loaded; asking does not load it.
    bool isViewLoaded() const;

    //! The title that navigation bars, tab bars and screen readers show; null unless set.
    virtual QString title() const;
    //! Sets the title and emits titleChanged().
    void setTitle(const QString &title);

    //! The buttons this screen puts in its navigation controller's bar, made on first use
    //! and owned by the screen.
    TVRNavigationItem *navigationItem();

    //! The container whose child screen this is; null for a screen in no container.
    TVRViewController *parentViewController() const;
    //! The nearest navigation controller above this screen; null when there is none.
    TVRNavigationController *navigationController() const;
    //! The nearest tab bar controller above this screen; null when there is none.
    TVRTabBarController *tabBarController() const;

    //! The screen that presents this screen's outermost container; null when it is not presented.
    TVRViewController *presentingViewController() const;
    //! The screen that this screen's outermost container presents; null when it presents none.
    TVRViewController *presentedViewController() const;

    /*!
        Shows \a controller over this screen's window and takes ownership of it. When a
        screen is presented already, \a controller goes over that one. The \a animated flag
        is accepted so that calls read as on a phone; there is no transition. \a completion
        runs once the screen is shown.
    */
    void presentViewController(TVRViewController *controller, bool animated = true,
                               const std::function<void()> &completion = {});
    /*!
        Dismisses the screen this one presents, or else, when this screen (or its outermost
        container) is presented, that presented screen itself, with everything that it
        presents in turn: hidden at once, deleted later. \a completion runs at the end,
        also when there was nothing to dismiss.
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
        over (else the first visible window that is none of these). Null for a null \a window.
    */
    static QWidget *mainWindowOf(QWidget *window);
    /*!
        The screen that \a window shows, to present other screens from: the window itself
        when it is a TVRViewController, else a hidden stand-in screen made once as its child.
        Null for a null \a window.
    */
    static TVRViewController *rootViewControllerForWindow(QWidget *window);

Q_SIGNALS:
    //! The title was set, whether or not it changed.
    void titleChanged();

protected:
    //! Builds the root view; the default is an empty plain widget. Call setView() here.
    virtual void loadView();
    //! Called once, after loadView().
    virtual void viewDidLoad();
    //! Makes \a view the root view, filling the screen, and deletes the one it replaces.
    void setView(QWidget *view);

    //! Makes \a child a child screen of \a container (null to release it).
    static void setParentViewController(TVRViewController *child, TVRViewController *container);

    //! Loads the view, if it is not loaded yet, before the screen shows.
    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<TVRViewControllerPrivate> const d;
};

#endif
