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

// The contrast ratio of two colours, from 1:1 to 21:1, of their relative luminances as the web's
// contrast guidelines define them.
inline double contrast(const QColor &a, const QColor &b)
{
    const auto channel = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    const auto luminance = [&channel](const QColor &color) {
        return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

#endif
