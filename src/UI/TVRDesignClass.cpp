// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDesignClass.h"

#include <QFontDatabase>

namespace {

struct Settings
{
    std::optional<QFont> documentDateFont;
    QColor documentDateColor;
    std::optional<QFont> sectionTitleFont;
    QColor sectionTitleColor;
    std::optional<QFont> sectionBodyFont;
    QColor sectionBodyColor;
};

Settings &settings()
{
    static Settings instance;
    return instance;
}

// Qt's general system font (QFontDatabase::GeneralFont) at \a pixels device-independent
// pixels, which are the points of the sizes given.
QFont systemFont(int pixels, bool bold)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

QColor orDefault(const QColor &color, const QColor &fallback)
{
    return color.isValid() ? color : fallback;
}

const QColor lightGray(0xAA, 0xAA, 0xAA); // grey level 2/3, not Qt::lightGray

} // namespace

QFont TVRDesignClass::documentDateFont()
{
    return settings().documentDateFont.value_or(systemFont(12, false));
}

void TVRDesignClass::setDocumentDateFont(std::optional<QFont> font)
{
    settings().documentDateFont = std::move(font);
}

QColor TVRDesignClass::documentDateColor()
{
    return orDefault(settings().documentDateColor, lightGray);
}

void TVRDesignClass::setDocumentDateColor(const QColor &color)
{
    settings().documentDateColor = color;
}

QFont TVRDesignClass::sectionTitleFont()
{
    return settings().sectionTitleFont.value_or(systemFont(24, true));
}

void TVRDesignClass::setSectionTitleFont(std::optional<QFont> font)
{
    settings().sectionTitleFont = std::move(font);
}

QColor TVRDesignClass::sectionTitleColor()
{
    return orDefault(settings().sectionTitleColor, Qt::black);
}

void TVRDesignClass::setSectionTitleColor(const QColor &color)
{
    settings().sectionTitleColor = color;
}

QFont TVRDesignClass::sectionBodyFont()
{
    return settings().sectionBodyFont.value_or(systemFont(16, false));
}

void TVRDesignClass::setSectionBodyFont(std::optional<QFont> font)
{
    settings().sectionBodyFont = std::move(font);
}

QColor TVRDesignClass::sectionBodyColor()
{
    return orDefault(settings().sectionBodyColor, Qt::black);
}

void TVRDesignClass::setSectionBodyColor(const QColor &color)
{
    settings().sectionBodyColor = color;
}
