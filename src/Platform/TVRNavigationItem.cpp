// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNavigationItem.h"

#include <QAction>
#include <QPointer>

class TVRNavigationItemPrivate
{
public:
    QPointer<QAction> left;
    QPointer<QAction> right;
};

TVRNavigationItem::TVRNavigationItem(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<TVRNavigationItemPrivate>())
{
}

TVRNavigationItem::~TVRNavigationItem() = default;

QAction *TVRNavigationItem::leftBarButtonItem() const
{
    return d->left;
}

void TVRNavigationItem::setLeftBarButtonItem(QAction *item)
{
    d->left = item;
    Q_EMIT changed();
}

QAction *TVRNavigationItem::rightBarButtonItem() const
{
    return d->right;
}

void TVRNavigationItem::setRightBarButtonItem(QAction *item)
{
    d->right = item;
    Q_EMIT changed();
}
