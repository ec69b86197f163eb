// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRArchiver_p.h"

#include <QDataStream>
#include <QIODevice>

namespace {
constexpr quint32 ArchiveMagic = 0x54565241; // "TVRA"
constexpr quint16 ArchiveFormat = 1;
constexpr QDataStream::Version StreamVersion = QDataStream::Qt_6_0;

// The kinds of value an archive may hold: plain values whose decoding makes nothing but
// the value. Decoding a QVariant of any registered type would let stored bytes build a
// pixmap, an image or a type of the host's; and a list reserves room for as many items as
// the bytes claim, billions if they say so. Stored bytes must do neither.
bool isArchivable(int typeId)
{
    switch (typeId) {
    case QMetaType::UnknownType:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
    case QMetaType::QUuid:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return true;
    default:
        return false;
    }
}
} // namespace

std::optional<QByteArray> TVRArchiver::archivedData(const QVariant &object)
{
    if (!isArchivable(object.metaType().id()))
        return std::nullopt;
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setVersion(StreamVersion);
    out << ArchiveMagic << ArchiveFormat << object;
    if (out.status() != QDataStream::Ok)
        return std::nullopt;
    return data;
}

QVariant TVRArchiver::unarchivedObject(const QByteArray &data, QString *errorMessage)
{
    QDataStream in(data);
    in.setVersion(StreamVersion);
    quint32 magic = 0;
    quint16 format = 0;
    in >> magic >> format;
    if (in.status() != QDataStream::Ok || magic != ArchiveMagic) {
        *errorMessage = QStringLiteral("data is not a Tovra archive");
        return {};
    }
    if (format != ArchiveFormat) {
        *errorMessage = QStringLiteral("archive format %1 is not supported").arg(format);
        return {};
    }
    // The value's type comes first; only a plain value is decoded at all.
    const qsizetype typeAt = in.device()->pos();
    quint32 typeId = 0;
    in >> typeId;
    if (in.status() != QDataStream::Ok) {
        *errorMessage = QStringLiteral("archive is truncated or corrupt");
        return {};
    }
    if (!isArchivable(int(typeId))) {
        *errorMessage = QStringLiteral("archive holds a value of type %1, which is not a plain value").arg(typeId);
        return {};
    }
    in.device()->seek(typeAt);
    QVariant object;
    in >> object;
    if (in.status() != QDataStream::Ok || !in.atEnd()) {
        *errorMessage = QStringLiteral("archive is truncated or corrupt");
        return {};
    }
    return object;
}
