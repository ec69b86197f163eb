// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRPalette_p.h"

#include <QWidget>

namespace {

void setEverywhere(QPalette &palette, QPalette::ColorRole role, const QColor &color)
{
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        palette.setColor(group, role, color);
}

} // namespace

QPalette TVRPalette::light()
{
    const QColor white(Qt::white);
    const QColor black(Qt::black);
    // A blue dark enough for 4.5:1 on the bars, as bar buttons are tinted on a phone.
    const QColor tint(0x00, 0x55, 0xCC);
    QPalette palette;
    setEverywhere(palette, QPalette::Window, white);
    setEverywhere(palette, QPalette::WindowText, black);
    setEverywhere(palette, QPalette::Base, white);
    setEverywhere(palette, QPalette::AlternateBase, QColor(0xF2, 0xF2, 0xF7));
    setEverywhere(palette, QPalette::Text, black);
    setEverywhere(palette, QPalette::PlaceholderText, QColor(0x6E, 0x6E, 0x73));
    setEverywhere(palette, QPalette::Button, QColor(0xF7, 0xF7, 0xF7));
    setEverywhere(palette, QPalette::ButtonText, tint);
    setEverywhere(palette, QPalette::BrightText, QColor(0xC0, 0x00, 0x00));
    setEverywhere(palette, QPalette::Light, white);
    setEverywhere(palette, QPalette::Midlight, QColor(0xE5, 0xE5, 0xEA));
    setEverywhere(palette, QPalette::Mid, QColor(0xC7, 0xC7, 0xCC));
    setEverywhere(palette, QPalette::Dark, QColor(0x8E, 0x8E, 0x93));
    setEverywhere(palette, QPalette::Shadow, QColor(0x3A, 0x3A, 0x3C));
    // Selected text and the style's focus frames take the tint, so that keyboard focus
    // stands out at more than 3:1 from the white page and the light bars.
    setEverywhere(palette, QPalette::Highlight, tint);
    setEverywhere(palette, QPalette::HighlightedText, white);
    setEverywhere(palette, QPalette::Link, tint);
    setEverywhere(palette, QPalette::LinkVisited, QColor(0x55, 0x1A, 0x8B));
    setEverywhere(palette, QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xE1));
    setEverywhere(palette, QPalette::ToolTipText, black);
    // Disabled controls are greyed, readable but no longer inviting.
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x6E, 0x6E, 0x73));
    return palette;
}

QColor TVRPalette::focus()
{
    return light().color(QPalette::Highlight);
}

QPalette TVRPalette::bar()
{
    QPalette palette = light();
    setEverywhere(palette, QPalette::Window, palette.color(QPalette::Button));
    return palette;
}

void TVRPalette::setTextColor(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    setEverywhere(palette, QPalette::WindowText, color);
    setEverywhere(palette, QPalette::Text, color);
    widget->setPalette(palette);
}

void TVRPalette::setBackground(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    setEverywhere(palette, QPalette::Window, color);
    setEverywhere(palette, QPalette::Base, color);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}
