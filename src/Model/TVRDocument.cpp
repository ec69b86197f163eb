// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocument_p.h"

#include "TVRDateFormatter_p.h"
#include "TVRJSONText_p.h"
#include "TVRSection_p.h"
#include "TVRSettings_p.h"

#include <QJsonArray>
#include <QJsonObject>

std::shared_ptr<TVRDocument> TVRDocumentPrivate::fromKeptText(const QByteArray &text, qsizetype decodeFirst)
{
    std::optional<TVRJSONIndex::Document> where = TVRJSONIndex::indexKept(text);
    if (!where)
        return nullptr;
    auto d = std::make_unique<TVRDocumentPrivate>();
    d->text = text;
    d->where = std::move(where);
    if (decodeFirst > 0)
        d->sections = d->indexedSections(decodeFirst);
    return std::shared_ptr<TVRDocument>(new TVRDocument(std::move(d)));
}

TVRSectionList TVRDocumentPrivate::indexedSections(qsizetype decodeFirst) const
{
    TVRSectionList sections;
    sections.reserve(where->sections.size());
    qsizetype before = 0;
    for (const TVRJSONIndex::Section &section : std::as_const(where->sections)) {
        sections.append(TVRSectionPrivate::make(text, section, before < decodeFirst));
        before += section.title.end - section.title.begin + section.body.end - section.body.begin;
    }
    return sections;
}

QJsonValue TVRDocumentPrivate::value(const QString &key, TVRJSONIndex::Value TVRJSONIndex::Document::*field) const
{
    return where ? TVRJSONIndex::decode(text, (*where).*field) : dictionary.value(key);
}

TVRDocument::TVRDocument(const QJsonValue &dictionary)
    : d(std::make_unique<TVRDocumentPrivate>())
{
    d->dictionary = dictionary.toObject();
}

TVRDocument::TVRDocument(std::unique_ptr<TVRDocumentPrivate> d)
    : d(std::move(d))
{
}

TVRDocument::~TVRDocument() = default;

QString TVRDocument::identifier() const
{
    return TVRJSONText::text(d->value(QStringLiteral("_id"), &TVRJSONIndex::Document::identifier));
}

void TVRDocument::setIdentifier(const QString &identifier)
{
    d->identifier = identifier;
}

QString TVRDocument::title() const
{
    return TVRJSONText::text(d->value(QStringLiteral("title"), &TVRJSONIndex::Document::title));
}

void TVRDocument::setTitle(const QString &title)
{
    d->title = title;
}

QDateTime TVRDocument::date() const
{
    const QJsonValue updatedAt = d->value(QStringLiteral("updatedAt"), &TVRJSONIndex::Document::updatedAt);
    if (updatedAt.isUndefined())
        return QDateTime::currentDateTime();
    // Only a text can name a date; JSON null and other kinds read as no date.
    return TVRDateFormatter::dateFromString(updatedAt.toString());
}

QString TVRDocument::dateText() const
{
    const QDateTime when = date();
    if (!when.isValid())
        return {};
    return TVRSettings::effectiveLocale().toString(when.toLocalTime().date(), QLocale::LongFormat);
}

void TVRDocument::setDate(const QDateTime &date)
{
    d->date = date;
}

TVRSectionList TVRDocument::sections()
{
    if (!d->sections) {
        if (d->where) {
            d->sections = d->indexedSections(0);
        } else {
            TVRSectionList sections;
            const QJsonArray elements = d->dictionary.value(QStringLiteral("sections")).toArray();
            sections.reserve(elements.size());
            for (const auto &element : elements)
                sections.append(std::make_shared<TVRSection>(element));
            d->sections = std::move(sections);
        }
    }
    return *d->sections;
}

void TVRDocument::setSections(std::optional<TVRSectionList> sections)
{
    d->sections = std::move(sections);
}
