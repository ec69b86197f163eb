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
    //! An item with no buttons; TVRViewController::navigationItem() makes one per screen.
    explicit TVRNavigationItem(QObject *parent = nullptr);
    ~TVRNavigationItem() override;

    //! The button on the leading side of the bar; null when there is none or it was destroyed.
    QAction *leftBarButtonItem() const;
    //! Sets the leading button (null for none) and emits changed(). On a screen that is not
    //! the root of its stack, null lets the bar offer "Back" there.
    void setLeftBarButtonItem(QAction *item);

    //! The button on the trailing side of the bar; null when there is none or it was destroyed.
    QAction *rightBarButtonItem() const;
    //! Sets the trailing button (null for none) and emits changed().
    void setRightBarButtonItem(QAction *item);

Q_SIGNALS:
    //! A button was set; the navigation controller shows the bar anew.
    void changed();

private:
    std::unique_ptr<TVRNavigationItemPrivate> const d;
};

#endif
