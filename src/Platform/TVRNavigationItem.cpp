// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNavigationItem.h"

#include <QAction>

TVRNavigationItem::TVRNavigationItem(QObject *parent)
    : QObject(parent)
{
}

void TVRNavigationItem::setLeftBarButtonItem(QAction *item)
{
    m_left = item;
    Q_EMIT changed();
}

void TVRNavigationItem::setRightBarButtonItem(QAction *item)
{
    m_right = item;
    Q_EMIT changed();
}
