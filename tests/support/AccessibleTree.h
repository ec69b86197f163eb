// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef ACCESSIBLETREE_H
#define ACCESSIBLETREE_H

#include <QAccessible>
#include <QList>
#include <QString>

// Every node a screen reader can reach under \a root, depth first; hidden ones and what is
// under them are left out.
inline QList<QAccessibleInterface *> descendants(QAccessibleInterface *root)
{
    QList<QAccessibleInterface *> found;
    for (int i = 0; root && i < root->childCount(); ++i) {
        QAccessibleInterface *child = root->child(i);
        if (!child || child->state().invisible)
            continue;
        found << child << descendants(child);
    }
    return found;
}

// The first node under \a root with \a role (and \a name, unless null), or null.
inline QAccessibleInterface *find(QAccessibleInterface *root, QAccessible::Role role, const QString &name = {})
{
    for (QAccessibleInterface *node : descendants(root)) {
        if (node->role() == role && (name.isNull() || node->text(QAccessible::Name) == name))
            return node;
    }
    return nullptr;
}

#endif
