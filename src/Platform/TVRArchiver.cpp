#include "TVRArchiver_p.h"

#include <QDataStream>
#include <QIODevice>

namespace {
constexpr quint32 ArchiveMagic = 0x54565241; // "TVRA"
constexpr quint16 ArchiveFormat = 1;
constexpr QDataStream::Version StreamVersion = QDataStream::Qt_6_0;
} // namespace

QByteArray TVRArchiver::archivedData(const QVariant &object, bool *ok)
{
    // QVariant::save() warns and asserts on a type without stream operators; ask first.
    if (object.isValid() && !object.metaType().hasRegisteredDataStreamOperators()) {
        *ok = false;
        return {};
    }
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setVersion(StreamVersion);
    out << ArchiveMagic << ArchiveFormat << object;
    *ok = out.status() == QDataStream::Ok;
    return *ok ? data : QByteArray();
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
    QVariant object;
    in >> object;
    if (in.status() != QDataStream::Ok || !in.atEnd()) {
        *errorMessage = QStringLiteral("archive is truncated or corrupt");
        return {};
    }
    return object;
}
