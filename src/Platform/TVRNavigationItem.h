// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRNAVIGATIONITEM_H
#define TVRNAVIGATIONITEM_H

#include "tovra_export.h"

#include <memory>
#include <QObject>

class QAction;

class TVRNavigationItemPrivate;

/*!
    \brief The buttons a screen shows in the navigation bar of its navigation controller.

    A bar button item is a QAction: its text, font (bold for a "done" item), enabled state
    and triggered() signal are what the bar shows and reports. The item does not own the
    actions.
*/
class TOVRA_EXPORT TVRNavigationItem : public QObject
{
    Q_OBJECT

public:
    explicit TVRNavigationItem(QObject *parent = nullptr);
    ~TVRNavigationItem() override;

    QAction *leftBarButtonItem() const;
    void setLeftBarButtonItem(QAction *item);

    QAction *rightBarButtonItem() const;
    void setRightBarButtonItem(QAction *item);

Q_SIGNALS:
    void changed();

private:
    std::unique_ptr<TVRNavigationItemPrivate> const d;
};

#endif
