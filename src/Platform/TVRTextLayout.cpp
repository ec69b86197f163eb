// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTextLayout_p.h"

#include <QPainter>
#include <QRectF>
#include <QTextLayout>

namespace {

// QTextDocument starts a paragraph at every line break of a plain text.
bool isParagraphBreak(QChar c)
{
    return c == QLatin1Char('\n') || c == QChar::ParagraphSeparator || c == QChar::LineSeparator;
}

/*
    Lays out each paragraph of \a text within \a width, as QTextDocumentLayout lays out the
    blocks of a plain text: lines stacked at the sum of their heights (ascent and descent,
    without leading), an empty paragraph one line of the font. Calls \a paragraph with each
    laid-out paragraph and its top; returns the total height.
*/
template <typename Paragraph>
qreal layOut(const QString &text, const QFont &font, qreal width, Paragraph paragraph)
{
    QTextOption option = TVRTextLayout::wrappingOption();
    qreal y = 0;
    qsizetype start = 0;
    while (start <= text.size()) {
        qsizetype end = start;
        while (end < text.size() && !isParagraphBreak(text.at(end)))
            ++end;
        const QString paragraphText = text.mid(start, end - start);
        // As QTextDocumentLayout does with a block: the direction of its first strong
        // character, left to right without one, and the start edge on that side.
        const bool rightToLeft = paragraphText.isRightToLeft();
        option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        option.setAlignment(rightToLeft ? Qt::AlignRight : Qt::AlignLeft);
        QTextLayout layout(paragraphText, font);
        layout.setTextOption(option);
        layout.setCacheEnabled(true);
        layout.beginLayout();
        const qreal top = y;
        qreal lineTop = 0;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            line.setPosition(QPointF(0, lineTop));
            lineTop += line.height();
        }
        layout.endLayout();
        y += lineTop;
        paragraph(layout, top);
        start = end + 1;
    }
    return y;
}

} // namespace

QTextOption TVRTextLayout::wrappingOption()
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setAlignment(Qt::AlignLeft);
    return option;
}

qreal TVRTextLayout::plainTextHeight(const QString &text, const QFont &font, qreal width)
{
    return layOut(text, font, width, [](const QTextLayout &, qreal) {});
}

void TVRTextLayout::drawPlainText(QPainter *painter, const QRectF &rect, const QString &text, const QFont &font)
{
    layOut(text, font, rect.width(),
           [&](const QTextLayout &layout, qreal top) { layout.draw(painter, rect.topLeft() + QPointF(0, top)); });
}
