// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRPALETTE_P_H
#define TVRPALETTE_P_H

#include <QColor>
#include <QPalette>

class QWidget;

/*
    The kit's screens keep their white page under any system palette, a dark
    one included: they set every colour they paint with, on the role that paints it.
*/
namespace TVRPalette {

// White pages and light bars with dark text, every role and colour group set.
QPalette light();

// light() on a bar: the navigation bar's and the toolbar's light grey under dark text.
QPalette bar();

//! The colour that marks keyboard focus: the bars' blue, 6:1 on white.
QColor focus();

// Makes \a color the colour \a widget draws its text with, whatever role paints it: a
// label in a scroll area's viewport paints with Text, elsewhere with WindowText.
void setTextColor(QWidget *widget, const QColor &color);

// Makes \a color the background \a widget fills itself with.
void setBackground(QWidget *widget, const QColor &color);

} // namespace TVRPalette

#endif
