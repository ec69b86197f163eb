// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTableViewCell.h"

#include "TVRPalette_p.h"

#include <QVBoxLayout>

class TVRTableViewCellPrivate
{
public:
    QString reuseIdentifier;
    QWidget *contentView = nullptr;
};

TVRTableViewCell::TVRTableViewCell(const QString &reuseIdentifier, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<TVRTableViewCellPrivate>())
{
    d->reuseIdentifier = reuseIdentifier;
    d->contentView = new QWidget(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(d->contentView);
    TVRPalette::setBackground(this, Qt::white);
    TVRPalette::setBackground(d->contentView, Qt::white);
}

TVRTableViewCell::~TVRTableViewCell() = default;

QString TVRTableViewCell::reuseIdentifier() const
{
    return d->reuseIdentifier;
}

QWidget *TVRTableViewCell::contentView() const
{
    return d->contentView;
}
