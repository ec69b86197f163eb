// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDateFormatter_p.h"

#include <QRegularExpression>

QDateTime TVRDateFormatter::dateFromString(const QString &text)
{
    // [0-9] rather than \d, which would also take digits of other scripts.
    static const QRegularExpression pattern(
        QStringLiteral("^([0-9]{4})-([0-9]{2})-([0-9]{2})T([0-9]{2}):([0-9]{2}):([0-9]{2})\\.([0-9]{3})"
                       "([+-])([0-9]{2})([0-9]{2})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return {};

    auto number = [&match](int group) { return match.capturedView(group).toInt(); };
    const QDate date(number(1), number(2), number(3));
    const QTime time(number(4), number(5), number(6), number(7));
    const int offsetMinutes = number(9) * 60 + number(10);
    if (!date.isValid() || !time.isValid() || number(10) > 59 || offsetMinutes > 14 * 60)
        return {};

    const int sign = match.capturedView(8) == QLatin1String("-") ? -1 : 1;
    return QDateTime(date, time, Qt::OffsetFromUTC, sign * offsetMinutes * 60);
}
