// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRJSONINDEX_P_H
#define TVRJSONINDEX_P_H

#include <QByteArray>
#include <QByteArrayView>
#include <QJsonValue>
#include <QList>

#include <optional>

/*
    Where a document's texts lie in its JSON text, found in one pass that checks the whole
    text but decodes nothing: a large document is then read by decoding only the texts that
    are asked for.

    Only plain JSON is indexed: text that QJsonDocument reads with the same meaning. Anything
    else (control characters or lone surrogates in a string, escaped keys, numbers with an
    exponent or of more than 15 characters, a byte order mark, nesting deeper than 64) makes
    the index give up, and the caller parses the text with QJsonDocument instead.
*/
namespace TVRJSONIndex {

// One value of the text: where it is, and what it is.
struct Value
{
    QJsonValue::Type type = QJsonValue::Undefined; // undefined: there is no such key
    qsizetype begin = 0; // the value's text, quotes included for a string
    qsizetype end = 0;
    qsizetype length = 0; // a string's decoded length in UTF-16 code units
    bool escaped = false; // a string with an escape in it
};

struct Section
{
    Value title;
    Value body;
};

struct Document
{
    Value identifier;
    Value title;
    Value updatedAt;
    QList<Section> sections;
};

// The document in \a text, a JSON array of one value, as the kit keeps a copy; a value other
// than an object is a document without keys. Like QJsonDocument, the last of a repeated key
// counts. Nullopt when the text is anything else or is not plain JSON.
std::optional<Document> indexKept(QByteArrayView text);

// \a value, read from \a text.
QJsonValue decode(const QByteArray &text, const Value &value);

} // namespace TVRJSONIndex

#endif
