// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRHeaderView.h"

#include "TVRDesignClass.h"
#include "TVRPalette_p.h"
#include "TVRSubview_p.h"

#include <QLabel>

TVRHeaderView::TVRHeaderView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
{
    setGeometry(frame);
    TVRPalette::setBackground(this, Qt::white);
    dateLabel()->setParent(this);
    setupConstraints();
}

TVRHeaderView::~TVRHeaderView() = default;

QLabel *TVRHeaderView::dateLabel()
{
    if (!m_dateLabel) {
        auto *label = new QLabel;
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
        label->setFont(TVRDesignClass::documentDateFont());
        TVRPalette::setTextColor(label, TVRDesignClass::documentDateColor());
        m_dateLabel = label;
    }
    return m_dateLabel;
}

void TVRHeaderView::setDateLabel(QLabel *label)
{
    if (label == m_dateLabel)
        return;
    if (label)
        label->setParent(this);
    TVRSubview::replace(m_dateLabel, label);
    m_dateLabel = label;
    placeDateLabel();
}

void TVRHeaderView::setupConstraints()
{
    m_constrained = true;
    placeDateLabel();
}

void TVRHeaderView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeDateLabel();
}

// Leading and trailing edges on the header's, centre on the header's centre, the label's
// own height.
void TVRHeaderView::placeDateLabel()
{
    if (!m_constrained || !m_dateLabel || m_dateLabel->parentWidget() != this)
        return;
    const int labelHeight = m_dateLabel->sizeHint().height();
    m_dateLabel->setGeometry(0, (height() - labelHeight) / 2, width(), labelHeight);
}
