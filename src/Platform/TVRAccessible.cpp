// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRAccessible_p.h"

#include "TVRNavigationController.h"
#include "TVRTableView.h"
#include "TVRTableViewCell.h"
#include "TVRViewController.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>
#include <mutex>

namespace {

// The table as a list: its header view, then one item per row on screen, top to bottom.
// The viewport and the scroll indicator stay out of the tree.
class AccessibleTable : public QAccessibleWidget
{
public:
    explicit AccessibleTable(TVRTableView *table)
        : QAccessibleWidget(table, QAccessible::List)
    {
    }

    int childCount() const override { return int(children().size()); }

    QAccessibleInterface *child(int index) const override
    {
        const QList<QWidget *> shown = children();
        return index >= 0 && index < shown.size() ? QAccessible::queryAccessibleInterface(shown.at(index)) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? int(children().indexOf(child->object())) : -1;
    }

    QAccessibleInterface *childAt(int x, int y) const override
    {
        for (QWidget *widget : children()) {
            QAccessibleInterface *candidate = QAccessible::queryAccessibleInterface(widget);
            if (candidate && candidate->rect().contains(x, y))
                return candidate;
        }
        return nullptr;
    }

private:
    TVRTableView *table() const { return static_cast<TVRTableView *>(widget()); }

    QList<QWidget *> children() const
    {
        QList<QWidget *> shown;
        if (QWidget *header = table()->tableHeaderView(); header && !header->isHidden())
            shown << header;
        for (TVRTableViewCell *cell : table()->visibleCells())
            shown << cell;
        return shown;
    }
};

// A row: an item of its table's list, named by the cell's accessible name. What the cell
// only shows (a label) is that name already and stays out of the tree; what can take focus
// (an editable text) is the item's child.
class AccessibleCell : public QAccessibleWidget
{
public:
    explicit AccessibleCell(TVRTableViewCell *cell)
        : QAccessibleWidget(cell, QAccessible::ListItem)
    {
    }

    int childCount() const override { return int(parts().size()); }

    QAccessibleInterface *child(int index) const override
    {
        const QList<QWidget *> focusable = parts();
        return index >= 0 && index < focusable.size() ? QAccessible::queryAccessibleInterface(focusable.at(index))
                                                      : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? int(parts().indexOf(child->object())) : -1;
    }

    QAccessibleInterface *parent() const override
    {
        // The cell lies in the table's viewport; the tree skips the viewport.
        QWidget *viewport = widget()->parentWidget();
        if (auto *table = viewport ? qobject_cast<TVRTableView *>(viewport->parentWidget()) : nullptr)
            return QAccessible::queryAccessibleInterface(table);
        return QAccessibleWidget::parent();
    }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name || t == QAccessible::Value)
            return widget()->accessibleName();
        return QAccessibleWidget::text(t);
    }

private:
    QList<QWidget *> parts() const
    {
        QList<QWidget *> focusable;
        for (QWidget *descendant : widget()->findChildren<QWidget *>()) {
            const bool inside = std::any_of(focusable.cbegin(), focusable.cend(),
                                            [descendant](QWidget *part) { return part->isAncestorOf(descendant); });
            if (descendant->focusPolicy() != Qt::NoFocus && !descendant->isHidden() && !inside)
                focusable << descendant;
        }
        return focusable;
    }
};

// A screen: presented in a window of its own, a dialog named by its title.
class AccessibleScreen : public QAccessibleWidget
{
public:
    explicit AccessibleScreen(TVRViewController *screen)
        : QAccessibleWidget(screen)
    {
    }

    QAccessible::Role role() const override { return presented() ? QAccessible::Dialog : QAccessibleWidget::role(); }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name && presented() && widget()->accessibleName().isEmpty())
            return title();
        return QAccessibleWidget::text(t);
    }

private:
    TVRViewController *screen() const { return static_cast<TVRViewController *>(widget()); }
    bool presented() const { return widget()->isWindow() && screen()->presentingViewController(); }
    QString title() const
    {
        // A navigation container reads as the screen on top of it.
        if (auto *navigation = qobject_cast<TVRNavigationController *>(screen());
            navigation && navigation->topViewController())
            return navigation->topViewController()->title();
        return screen()->title();
    }
};

QAccessibleInterface *factory(const QString &className, QObject *object)
{
    if (className == QLatin1String("TVRTableView"))
        return new AccessibleTable(static_cast<TVRTableView *>(object));
    if (className == QLatin1String("TVRTableViewCell"))
        return new AccessibleCell(static_cast<TVRTableViewCell *>(object));
    if (className == QLatin1String("TVRViewController"))
        return new AccessibleScreen(static_cast<TVRViewController *>(object));
    return nullptr;
}

} // namespace

void TVRAccessible::install()
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(factory); });
}

void TVRAccessible::rowsChanged(TVRTableView *table)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(table, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}
