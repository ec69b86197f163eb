// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef DOCUMENTJSON_H
#define DOCUMENTJSON_H

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

// A document as the service sends it, titled \a title and updated at \a updatedAt: \a sections
// sections whose bodies run from one to four sentences, each with the app name's placeholder;
// every third one is untitled, the others have a title long enough to wrap on a phone.
inline QJsonObject documentJson(const QString &title, int sections,
                                const QString &updatedAt = QStringLiteral("2016-03-01T12:30:00.000+0000"))
{
    QJsonArray list;
    for (int i = 0; i < sections; ++i) {
        QJsonObject section{{QStringLiteral("body"),
                             QStringLiteral("Section %1 of these terms explains how ##### handles your data, what you "
                                            "may expect from the service and what it expects from you. ")
                                 .arg(i + 1)
                                 .repeated(1 + i % 4)}};
        if (i % 3 != 2)
            section.insert(QStringLiteral("title"),
                           QStringLiteral("%1. A heading that is long enough to wrap onto a second line").arg(i + 1));
        list.append(section);
    }
    return QJsonObject{{QStringLiteral("_id"), title},
                       {QStringLiteral("title"), title},
                       {QStringLiteral("updatedAt"), updatedAt},
                       {QStringLiteral("sections"), list}};
}

#endif
