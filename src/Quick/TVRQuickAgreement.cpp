// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// The agreement check in a Qt Quick application: AgreementPage over the content of the Qt
// Quick window in front, made with that window's own QML engine.

#include "TVRQuickAgreement_p.h"

#include "TVRManager.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>

namespace {

Q_LOGGING_CATEGORY(lcQuickAgreement, "tovra")

QQuickWindow *quickWindowInFront()
{
    if (auto *focused = qobject_cast<QQuickWindow *>(QGuiApplication::focusWindow()))
        return focused;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        if (auto *quick = qobject_cast<QQuickWindow *>(window); quick && quick->isVisible())
            return quick;
    }
    return nullptr;
}

QQmlEngine *engineOf(QQuickWindow *window)
{
    if (auto *view = qobject_cast<QQuickView *>(window))
        return view->engine();
    if (QQmlEngine *engine = qmlEngine(window))
        return engine;
    const QList<QQuickItem *> items = window->contentItem()->childItems();
    for (QQuickItem *item : items) {
        if (QQmlEngine *engine = qmlEngine(item))
            return engine;
    }
    return nullptr;
}

bool presentAgreementPage(const std::shared_ptr<TVRDocument> &)
{
    // One agreement page at a time: a second answer while one is up shows nothing more.
    static QPointer<QQuickItem> shown;
    if (shown && shown->isVisible())
        return true;
    QQuickWindow *window = quickWindowInFront();
    QQmlEngine *engine = window ? engineOf(window) : nullptr;
    if (!engine)
        return false;
    QQmlComponent component(engine);
    component.setData("import Tovra\n"
                      "AgreementPage {\n"
                      "    objectName: \"TovraAgreementPage\"\n"
                      "    anchors.fill: parent\n"
                      "    z: 1000\n"
                      "    fetchOnLoad: false\n"
                      "}\n",
                      QUrl());
    auto *page = qobject_cast<QQuickItem *>(component.create());
    if (!page) {
        qCWarning(lcQuickAgreement, "ERROR: %s", qUtf8Printable(component.errorString()));
        return false;
    }
    page->setParent(window->contentItem());
    page->setParentItem(window->contentItem());
    page->forceActiveFocus();
    shown = page;
    return true;
}

} // namespace

void tvrInstallQuickAgreementPresenter()
{
    if (!TVRManager::agreementPresenter())
        TVRManager::setAgreementPresenter(presentAgreementPage);
}
