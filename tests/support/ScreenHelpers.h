// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef SCREENHELPERS_H
#define SCREENHELPERS_H

#include <Tovra.h>

#include <QColor>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

// A host application's own screen, to push, present and embed the kit's screens from.
class HostScreen : public TVRViewController
{
public:
    void embed(QWidget *child)
    {
        view()->layout()->addWidget(child);
        child->show();
    }

protected:
    void loadView() override
    {
        auto *root = new QWidget;
        new QVBoxLayout(root);
        setView(root);
    }
};

// The relative luminance of \a color, as the web's contrast guidelines define it.
inline double luminance(const QColor &color)
{
    const auto channel = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

// The contrast ratio of two colours, from 1:1 to 21:1.
inline double contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

#endif
