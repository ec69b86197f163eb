// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDATEFORMATTER_P_H
#define TVRDATEFORMATTER_P_H

#include <QDateTime>
#include <QString>

// Reads the service's timestamps: "yyyy-MM-dd'T'HH:mm:ss.SSSZ" in Unicode date-format
// terms, the Z being a numeric offset of four digits such as +0000 or -0800.
class TVRDateFormatter
{
public:
    // The instant \a text names, carrying its offset; invalid unless \a text has exactly
    // that form and names a real date and time.
    static QDateTime dateFromString(const QString &text);
};

#endif
