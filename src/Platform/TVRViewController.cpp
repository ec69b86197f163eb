// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRViewController.h"

#include "TVRAccessible_p.h"
#include "TVRNavigationController.h"
#include "TVRNavigationItem.h"
#include "TVRTabBarController.h"

#include <QApplication>
#include <QPointer>

#include <algorithm>
#include <QVBoxLayout>

class TVRViewControllerPrivate
{
public:
    QPointer<QWidget> view;
    bool loading = false;
    QString title;
    TVRNavigationItem *navigationItem = nullptr;
    QPointer<TVRViewController> parent;
    QPointer<TVRViewController> presenting;
    QPointer<TVRViewController> presented;
};

namespace {

// The outermost container of a screen: presentation belongs to it.
TVRViewController *outermost(const TVRViewController *controller)
{
    auto *current = const_cast<TVRViewController *>(controller);
    while (current->parentViewController())
        current = current->parentViewController();
    return current;
}

template <typename Container>
Container *nearest(const TVRViewController *controller)
{
    for (TVRViewController *up = controller->parentViewController(); up; up = up->parentViewController()) {
        if (auto *container = qobject_cast<Container *>(up))
            return container;
    }
    return nullptr;
}

} // namespace

TVRViewController::TVRViewController(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<TVRViewControllerPrivate>())
{
    TVRAccessible::install();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
}

TVRViewController::~TVRViewController() = default;

QWidget *TVRViewController::view()
{
    if (!d->view && !d->loading) {
        d->loading = true;
        loadView();
        if (!d->view)
            setView(new QWidget);
        d->loading = false;
        viewDidLoad();
    }
    return d->view;
}

bool TVRViewController::isViewLoaded() const
{
    return d->view;
}

void TVRViewController::loadView()
{
    setView(new QWidget);
}

void TVRViewController::viewDidLoad() { }

void TVRViewController::setView(QWidget *view)
{
    if (d->view == view)
        return;
    delete d->view;
    d->view = view;
    if (view) {
        layout()->addWidget(view);
        // Loaded while the screen is being shown: show the view now, not from the event loop.
        view->show();
    }
}

QString TVRViewController::title() const
{
    return d->title;
}

void TVRViewController::setTitle(const QString &title)
{
    d->title = title;
    Q_EMIT titleChanged();
}

TVRNavigationItem *TVRViewController::navigationItem()
{
    if (!d->navigationItem)
        d->navigationItem = new TVRNavigationItem(this);
    return d->navigationItem;
}

TVRViewController *TVRViewController::parentViewController() const
{
    return d->parent;
}

void TVRViewController::setParentViewController(TVRViewController *child, TVRViewController *container)
{
    child->d->parent = container;
}

TVRNavigationController *TVRViewController::navigationController() const
{
    return nearest<TVRNavigationController>(this);
}

TVRTabBarController *TVRViewController::tabBarController() const
{
    return nearest<TVRTabBarController>(this);
}

TVRViewController *TVRViewController::presentingViewController() const
{
    return outermost(this)->d->presenting;
}

TVRViewController *TVRViewController::presentedViewController() const
{
    return outermost(this)->d->presented;
}

void TVRViewController::presentViewController(TVRViewController *controller, bool animated,
                                              const std::function<void()> &completion)
{
    TVRViewController *presenter = outermost(this);
    // Something presented already: the new screen goes over that one.
    if (presenter->d->presented) {
        presenter->d->presented->presentViewController(controller, animated, completion);
        return;
    }
    QWidget *window = presenter->window();
    presenter->d->presented = controller;
    controller->d->presenting = presenter;

    controller->setParent(window, Qt::Window);
    controller->setWindowModality(Qt::WindowModal);
    controller->setGeometry(window->geometry());
    controller->show();
    if (completion)
        completion();
}

void TVRViewController::dismissViewControllerAnimated(bool animated, const std::function<void()> &completion)
{
    TVRViewController *self = outermost(this);
    TVRViewController *presenter = self->d->presented ? self : self->d->presenting.data();
    if (!presenter || !presenter->d->presented) {
        if (completion)
            completion();
        return;
    }
    TVRViewController *dismissed = presenter->d->presented;
    if (dismissed->d->presented)
        dismissed->dismissViewControllerAnimated(animated);
    presenter->d->presented = nullptr;
    dismissed->d->presenting = nullptr;
    dismissed->hide();
    dismissed->deleteLater();
    if (completion)
        completion();
}

QWidget *TVRViewController::keyWindow()
{
    if (QWidget *active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        const Qt::WindowType type = window->windowType();
        if (window->isVisible() && type != Qt::Popup && type != Qt::ToolTip && type != Qt::SplashScreen)
            return window;
    }
    return nullptr;
}

QWidget *TVRViewController::mainWindowOf(QWidget *window)
{
    // A dialog, a sheet or a tool window passes; the window it stands over stays.
    const auto passing = [](const QWidget *candidate) {
        const Qt::WindowType type = candidate->windowType();
        return type == Qt::Dialog || type == Qt::Sheet || type == Qt::Tool || type == Qt::Popup;
    };
    if (!window)
        return nullptr;
    window = window->window();
    while (passing(window) && window->parentWidget())
        window = window->parentWidget()->window();
    if (passing(window)) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto lasting = std::find_if(windows.cbegin(), windows.cend(), [&](const QWidget *candidate) {
            return candidate->isVisible() && !passing(candidate);
        });
        if (lasting != windows.cend())
            return *lasting;
    }
    return window;
}

TVRViewController *TVRViewController::rootViewControllerForWindow(QWidget *window)
{
    if (!window)
        return nullptr;
    window = window->window();
    if (auto *screen = qobject_cast<TVRViewController *>(window))
        return screen;
    static const QString standInName = QStringLiteral("TVRWindowRootViewController");
    auto *standIn = window->findChild<TVRViewController *>(standInName, Qt::FindDirectChildrenOnly);
    if (!standIn) {
        standIn = new TVRViewController(window);
        standIn->setObjectName(standInName);
        standIn->hide();
    }
    return standIn;
}

void TVRViewController::showEvent(QShowEvent *event)
{
    view();
    QWidget::showEvent(event);
}
