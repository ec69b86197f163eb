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

    //! The font of the date over a document; the system font at 12 px unless set.
    static QFont documentDateFont();
    //! Sets the date's font; std::nullopt brings back the default.
    static void setDocumentDateFont(std::optional<QFont> font);
    //! The colour of the date; grey \#AAAAAA unless set.
    static QColor documentDateColor();
    //! Sets the date's colour; an invalid QColor brings back the default.
    static void setDocumentDateColor(const QColor &color);

    //! The font of section titles; the system font, bold, at 24 px unless set.
    static QFont sectionTitleFont();
    //! Sets the titles' font; std::nullopt brings back the default.
    static void setSectionTitleFont(std::optional<QFont> font);
    //! The colour of section titles; black unless set.
    static QColor sectionTitleColor();
    //! Sets the titles' colour; an invalid QColor brings back the default.
    static void setSectionTitleColor(const QColor &color);

    //! The font of section bodies; the system font at 16 px unless set.
    static QFont sectionBodyFont();
    //! Sets the bodies' font; std::nullopt brings back the default.
    static void setSectionBodyFont(std::optional<QFont> font);
    //! The colour of section bodies; black unless set.
    static QColor sectionBodyColor();
    //! Sets the bodies' colour; an invalid QColor brings back the default.
    static void setSectionBodyColor(const QColor &color);
};

#endif
