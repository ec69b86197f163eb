// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRQuickAppearance_p.h"

#include "TVRDesignClass.h"

QFont TVRQuickAppearance::dateFont()
{
    return TVRDesignClass::documentDateFont();
}

QColor TVRQuickAppearance::dateColor()
{
    return TVRDesignClass::documentDateColor();
}

QFont TVRQuickAppearance::titleFont()
{
    return TVRDesignClass::sectionTitleFont();
}

QColor TVRQuickAppearance::titleColor()
{
    return TVRDesignClass::sectionTitleColor();
}

QFont TVRQuickAppearance::bodyFont()
{
    return TVRDesignClass::sectionBodyFont();
}

QColor TVRQuickAppearance::bodyColor()
{
    return TVRDesignClass::sectionBodyColor();
}
