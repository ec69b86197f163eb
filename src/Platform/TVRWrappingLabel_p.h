// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRWRAPPINGLABEL_P_H
#define TVRWRAPPINGLABEL_P_H

#include <QLabel>

/*
    A plain-text label that wraps as the kit measures (TVRTextLayout): at word boundaries,
    a word too long for a line broken inside it, every script shaped, each paragraph aligned
    by its own direction. QLabel's own word wrap leaves a long word cut at the edge.
*/
class TVRWrappingLabel : public QLabel
{
public:
    TVRWrappingLabel();

    // The label is as tall as the row it is placed in; its text, laid out, is the costly
    // part of asking its size, which layouts do often. So it asks nothing of the layouts.
    bool hasHeightForWidth() const override { return false; }
    QSize sizeHint() const override { return {0, 0}; }
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    void paintEvent(QPaintEvent *event) override;
};

#endif
