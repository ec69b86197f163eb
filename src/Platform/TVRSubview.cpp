// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSubview_p.h"

#include <QLayout>
#include <QWidget>

#include <memory>

void TVRSubview::replace(QWidget *current, QWidget *replacement)
{
    if (current == replacement)
        return;
    QWidget *parent = current ? current->parentWidget() : nullptr;
    if (parent && replacement) {
        QLayout *layout = parent->layout();
        const std::unique_ptr<QLayoutItem> item(
            layout ? layout->replaceWidget(current, replacement, Qt::FindDirectChildrenOnly) : nullptr);
        if (!item) {
            replacement->setParent(parent);
            replacement->setGeometry(current->geometry());
        }
        replacement->setVisible(!current->isHidden());
    }
    delete current;
}
