// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRWrappingLabel_p.h"

#include "TVRTextLayout_p.h"

#include <QPainter>

TVRWrappingLabel::TVRWrappingLabel()
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

void TVRWrappingLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    TVRTextLayout::drawPlainText(&painter, contentsRect(), text(), font());
}
