// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRJSONStore_p.h"

#include <QDir>
#include <QFile>
#include <QHashFunctions>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

#if defined(Q_OS_LINUX)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

// A file holds a one-element array, so that a value of any JSON type is a JSON document.
QJsonValue unwrap(const QJsonDocument &document)
{
    if (!document.isArray() || document.array().size() != 1)
        return QJsonValue(QJsonValue::Undefined);
    return document.array().first();
}

// Release 1.0 kept a copy as compact JSON text in the default QSettings. Only an object or
// an array was kept there.
QByteArray readFromSettings(const QString &key)
{
    const QVariant entry = QSettings().value(key);
    if (!entry.isValid())
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(entry.toString().toUtf8());
    if (!document.isArray() && !document.isObject())
        return {};
    const QJsonValue value = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    return QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
}

// The whole of \a file. Each page of memory new to the process costs a fault when it is
// first written, which for a large copy takes longer than the read itself: its buffer's pages
// are asked for at once instead, where the system can (Linux 5.14 on).
QByteArray readWhole(QFile &file)
{
#if defined(MADV_POPULATE_WRITE)
    const qint64 size = file.size();
    const qint64 page = sysconf(_SC_PAGESIZE);
    if (size >= 16 * page) {
        QByteArray bytes(size, Qt::Uninitialized);
        // The whole pages within the buffer.
        char *const first = bytes.data() + (page - qint64(quintptr(bytes.data()) % page)) % page;
        char *const end = bytes.data() + size - qint64((quintptr(bytes.data()) + size) % page);
        // Without it, the read faults the pages in one by one, as it would anyway.
        madvise(first, size_t(end - first), MADV_POPULATE_WRITE);
        const qint64 read = file.read(bytes.data(), size);
        bytes.resize(std::max<qint64>(read, 0));
        bytes.append(file.readAll()); // what was added since its size was read
        return bytes;
    }
#endif
    return file.readAll();
}

} // namespace

QString TVRJSONStore::fileFor(const QString &key)
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + QStringLiteral("/Tovra/") + key
        + QStringLiteral(".json");
}

std::optional<TVRJSONStore::Read> TVRJSONStore::readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    Read read{readWhole(file)};
    // A value written from its text is that text in brackets.
    if (read.text.startsWith('[') && read.text.endsWith(']'))
        read.textHash = textHash(QByteArrayView(read.text).sliced(1, read.text.size() - 2));
    return read;
}

QJsonValue TVRJSONStore::valueOf(const QByteArray &text)
{
    return unwrap(QJsonDocument::fromJson(text));
}

size_t TVRJSONStore::textHash(QByteArrayView text)
{
    return std::max<size_t>(1, qHash(text, QHashSeed::globalSeed()));
}

TVRJSONStore::Read TVRJSONStore::read(const QString &key)
{
    const QString path = fileFor(key);
    if (std::optional<Read> read = readFile(path))
        return *read;
    return {QFile::exists(path) ? QByteArray() : readFromSettings(key)};
}

bool TVRJSONStore::write(const QString &key, const QJsonValue &value, const QByteArray &text)
{
    const QString path = fileFor(key);
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // Writing the text the value came from spares serialising it again, a third of the
    // cost of a large document. Only an object's or an array's text is taken as it is, and
    // it is written in place, not copied.
    const auto start = std::find_if(text.cbegin(), text.cend(), [](char c) { return !QChar::isSpace(uchar(c)); });
    const char opening = start == text.cend() ? '\0' : *start;
    if ((value.isObject() && opening == '{') || (value.isArray() && opening == '[')) {
        return file.write("[", 1) == 1 && file.write(text) == text.size() && file.write("]", 1) == 1 && file.commit();
    }
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return file.write(json) == json.size() && file.commit();
}
