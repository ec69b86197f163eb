// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDOCUMENT_P_H
#define TVRDOCUMENT_P_H

#include "TVRDocument.h"
#include "TVRJSONIndex_p.h"

#include <QJsonObject>

class TVRDocumentPrivate
{
public:
    // The document kept in \a text, a kept copy's whole text, indexed and decoded only as it
    // is read; null when the text is not plain JSON, to be parsed whole instead. The sections
    // that begin within its first \a decodeFirst characters are decoded now, once: they are
    // the ones a screen shows first.
    static std::shared_ptr<TVRDocument> fromKeptText(const QByteArray &text, qsizetype decodeFirst = 0);

    QJsonValue value(const QString &key, TVRJSONIndex::Value TVRJSONIndex::Document::*field) const;
    // The sections of an indexed document, those that begin within its first \a decodeFirst
    // characters decoded now.
    TVRSectionList indexedSections(qsizetype decodeFirst) const;

    QJsonObject dictionary;
    QByteArray text;
    std::optional<TVRJSONIndex::Document> where;
    std::optional<TVRSectionList> sections;
    // Kept for the setters only; the getters answer from the JSON.
    QString identifier;
    QString title;
    QDateTime date;
};

#endif
