// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// Reply bytes, as the service could send them, through the document model: every
// accessor is read, each section's title and body included.

#include <TVRDocument.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QJsonDocument json =
        QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size)));
    TVRDocument document(json.isArray() ? QJsonValue(json.array()) : QJsonValue(json.object()));
    qsizetype characters = document.identifier().size() + document.title().size() + document.date().isValid();
    for (const auto &section : document.sections())
        characters += section->title().size() + section->body().size();
    return characters < 0; // never: reads the result so that nothing is optimised away
}
