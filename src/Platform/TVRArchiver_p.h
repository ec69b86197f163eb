// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRARCHIVER_P_H
#define TVRARCHIVER_P_H

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

/*
    Turns a QVariant into bytes for the keychain and back: a magic number, a format
    version, then the QVariant in a QDataStream of a fixed version. Plain values only:
    texts, byte arrays, numbers, booleans, addresses, UUIDs, dates and
    times, and the null value. Bytes that name any other type are not decoded at all.
*/
class TVRArchiver
{
public:
    // The archive of \a object; none when it is not a plain value.
    static std::optional<QByteArray> archivedData(const QVariant &object);

    // The object in \a data. When \a data is not an archive of this format, the result is
    // null and \a errorMessage says why; otherwise \a errorMessage is left null.
    static QVariant unarchivedObject(const QByteArray &data, QString *errorMessage);
};

#endif
