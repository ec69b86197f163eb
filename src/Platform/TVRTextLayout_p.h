// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTEXTLAYOUT_P_H
#define TVRTEXTLAYOUT_P_H

#include <QFont>
#include <QString>
#include <QTextOption>

class QPainter;
class QRectF;

/*
    How the kit wraps a text: at word boundaries, a word longer than the line broken inside
    it, every script shaped, each paragraph in the direction of its own text and aligned by
    it. A text is measured with the very layout that paints it, so a row is exactly as tall
    as its lines.
*/
namespace TVRTextLayout {

// The option both the labels and the text views of the kit lay their text out with.
QTextOption wrappingOption();

/*
    The height of \a text in \a font wrapped within \a width, as a QTextDocument with the
    wrapping option, no document margin and a paragraph per line break lays it out (the
    body's text view), and as drawPlainText() paints it (the title's label).
*/
qreal plainTextHeight(const QString &text, const QFont &font, qreal width);

// Paints \a text as plainTextHeight() lays it out, its first line at the top of \a rect.
void drawPlainText(QPainter *painter, const QRectF &rect, const QString &text, const QFont &font);

} // namespace TVRTextLayout

#endif
