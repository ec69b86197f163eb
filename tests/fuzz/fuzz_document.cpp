// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// Reply bytes, as the service could send them, through the document model: every
// accessor is read, each section's title and body included. The same bytes, kept as the kit
// keeps a copy, through the index that reads a copy without parsing it: whatever it indexes
// must read exactly as QJsonDocument reads it.

#include "TVRJSONIndex_p.h"

#include <TVRDocument.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition)
        abort();
}

// \a found, read from \a text, is \a expected.
void same(const QByteArray &text, const TVRJSONIndex::Value &found, const QJsonValue &expected)
{
    const QJsonValue decoded = TVRJSONIndex::decode(text, found);
    require(decoded.type() == expected.type() && decoded == expected);
    require(!decoded.isString() || decoded.toString().size() == found.length);
}

void compareIndex(const QByteArray &reply)
{
    const QByteArray kept = '[' + reply + ']';
    const std::optional<TVRJSONIndex::Document> index = TVRJSONIndex::indexKept(kept);
    if (!index)
        return; // parsed whole instead
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(kept, &error);
    require(error.error == QJsonParseError::NoError && parsed.isArray() && parsed.array().size() == 1);
    const QJsonObject document = parsed.array().first().toObject();
    same(kept, index->identifier, document.value(QLatin1String("_id")));
    same(kept, index->title, document.value(QLatin1String("title")));
    same(kept, index->updatedAt, document.value(QLatin1String("updatedAt")));
    const QJsonArray sections = document.value(QLatin1String("sections")).toArray();
    require(index->sections.size() == sections.size());
    for (qsizetype i = 0; i < sections.size(); ++i) {
        same(kept, index->sections[i].title, sections[i].toObject().value(QLatin1String("title")));
        same(kept, index->sections[i].body, sections[i].toObject().value(QLatin1String("body")));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray reply(reinterpret_cast<const char *>(data), qsizetype(size));
    compareIndex(reply);
    const QJsonDocument json = QJsonDocument::fromJson(reply);
    TVRDocument document(json.isArray() ? QJsonValue(json.array()) : QJsonValue(json.object()));
    qsizetype characters = document.identifier().size() + document.title().size() + document.date().isValid();
    for (const auto &section : document.sections())
        characters += section->title().size() + section->body().size();
    return characters < 0; // never: reads the result so that nothing is optimised away
}
