// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// Any text under "updatedAt", through the strict timestamp parser.

#include <TVRDocument.h>

#include <QJsonObject>
#include <QString>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const TVRDocument document(QJsonObject{{QStringLiteral("updatedAt"), text}});
    const QDateTime date = document.date();
    // A date that parsed must be the text it came from, written back the same way.
    if (date.isValid()) {
        const QString written = date.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz"));
        if (!text.startsWith(written))
            __builtin_trap();
    }
    return 0;
}
