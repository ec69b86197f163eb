// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTableViewCell.h"

#include "TVRPalette_p.h"

#include <QVBoxLayout>

TVRTableViewCell::TVRTableViewCell(const QString &reuseIdentifier, QWidget *parent)
    : QWidget(parent)
    , m_reuseIdentifier(reuseIdentifier)
    , m_contentView(new QWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_contentView);
    TVRPalette::setBackground(this, Qt::white);
    TVRPalette::setBackground(m_contentView, Qt::white);
}

TVRTableViewCell::~TVRTableViewCell() = default;
