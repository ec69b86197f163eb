// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRJSONSTORE_P_H
#define TVRJSONSTORE_P_H

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonValue>
#include <QString>

#include <optional>

/*
    Keeps JSON values across restarts, one file per key, in the application's configuration
    folder (QStandardPaths::AppConfigLocation, named from the host's organisation and
    application like its QSettings), under "Tovra/<key>.json".

    A write replaces the file whole through QSaveFile: once write() returns, the value is
    in the file, and a process killed during the write leaves the old value or the new one,
    never neither. Every JSON type keeps its type, null included.
*/
namespace TVRJSONStore {

// A kept value as it was read: the text of a one-element array holding it, and the
// textHash() of the text it was written from (0 when it was not).
struct Read
{
    QByteArray text;
    size_t textHash = 0;
};
// The value kept under \a key; an empty text when there is none. A key never written here is
// looked up in the host's default QSettings, where release 1.0 kept it as JSON text.
Read read(const QString &key);
// The value kept in the file \a path; nullopt when the file cannot be opened. Touches nothing
// but the file, so it may run on any thread.
std::optional<Read> readFile(const QString &path);
// The value a Read's text holds; undefined when it holds none.
QJsonValue valueOf(const QByteArray &text);
// What tells a text from another within this process; 0 is for no text.
size_t textHash(QByteArrayView text);
// Keeps \a value under \a key; false when the file could not be written. \a text, when
// given, is the JSON text that \a value was parsed from, which is then written as it is.
bool write(const QString &key, const QJsonValue &value, const QByteArray &text = {});
// The file that keeps \a key.
QString fileFor(const QString &key);

} // namespace TVRJSONStore

#endif
