#include "TVRWrappingLabel_p.h"

#include "TVRTextLayout_p.h"

#include <QPainter>

#include <cmath>

TVRWrappingLabel::TVRWrappingLabel()
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

int TVRWrappingLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const qreal textHeight = TVRTextLayout::plainTextHeight(text(), font(), width - margins.left() - margins.right());
    return int(std::ceil(textHeight)) + margins.top() + margins.bottom();
}

QSize TVRWrappingLabel::sizeHint() const
{
    const int width = qMax(1, this->width());
    return QSize(width, heightForWidth(width));
}

QSize TVRWrappingLabel::minimumSizeHint() const
{
    return QSize(0, 0);
}

void TVRWrappingLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    TVRTextLayout::drawPlainText(&painter, contentsRect(), text(), font());
}
