// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDESIGNCLASS_H
#define TVRDESIGNCLASS_H

#include "tovra_export.h"

#include <QColor>
#include <QFont>

#include <optional>

/*!
    \brief How documents look: the font and colour of the date line, of section titles and
    of section bodies.

    Each setting starts empty and reads as its default until the host sets it: the system
    font at 12 px for the date in grey \#AAAAAA, bold at 24 px for titles in black, 16 px
    for bodies in black. Setting std::nullopt (a font) or an invalid QColor empties the
    setting again. Views take their font and colour when they are made; row heights are
    measured with the fonts of the moment. Use from the GUI thread; nothing is stored.
*/
class TOVRA_EXPORT TVRDesignClass
{
public:
    TVRDesignClass() = delete;

    static QFont documentDateFont();
    static void setDocumentDateFont(std::optional<QFont> font);
    static QColor documentDateColor();
    static void setDocumentDateColor(const QColor &color);

    static QFont sectionTitleFont();
    static void setSectionTitleFont(std::optional<QFont> font);
    static QColor sectionTitleColor();
    static void setSectionTitleColor(const QColor &color);

    static QFont sectionBodyFont();
    static void setSectionBodyFont(std::optional<QFont> font);
    static QColor sectionBodyColor();
    static void setSectionBodyColor(const QColor &color);
};

#endif
