// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRHeaderView.h"

#include "TVRDesignClass.h"
#include "TVRPalette_p.h"
#include "TVRSubview_p.h"

#include <QLabel>
#include <QPointer>

class TVRHeaderViewPrivate
{
public:
    QPointer<QLabel> dateLabel;
    bool constrained = false;
};

TVRHeaderView::TVRHeaderView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<TVRHeaderViewPrivate>())
{
    setGeometry(frame);
    TVRPalette::setBackground(this, Qt::white);
    dateLabel()->setParent(this);
    setupConstraints();
}

TVRHeaderView::~TVRHeaderView() = default;

QLabel *TVRHeaderView::dateLabel()
{
    if (!d->dateLabel) {
        auto *label = new QLabel;
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
        label->setFont(TVRDesignClass::documentDateFont());
        TVRPalette::setTextColor(label, TVRDesignClass::documentDateColor());
        d->dateLabel = label;
    }
    return d->dateLabel;
}

void TVRHeaderView::setDateLabel(QLabel *label)
{
    if (label == d->dateLabel)
        return;
    if (label)
        label->setParent(this);
    TVRSubview::replace(d->dateLabel, label);
    d->dateLabel = label;
    placeDateLabel();
}

void TVRHeaderView::setupConstraints()
{
    d->constrained = true;
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
    if (!d->constrained || !d->dateLabel || d->dateLabel->parentWidget() != this)
        return;
    const int labelHeight = d->dateLabel->sizeHint().height();
    d->dateLabel->setGeometry(0, (height() - labelHeight) / 2, width(), labelHeight);
}
