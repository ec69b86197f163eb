// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocument.h"

#include "TVRDateFormatter_p.h"
#include "TVRJSONText_p.h"
#include "TVRSettings_p.h"

#include <QJsonArray>
#include <QJsonObject>

class TVRDocumentPrivate
{
public:
    QJsonObject dictionary;
    std::optional<TVRSectionList> sections;
    // Kept for the setters only; the getters answer from the dictionary.
    QString identifier;
    QString title;
    QDateTime date;
};

TVRDocument::TVRDocument(const QJsonValue &dictionary)
    : d(std::make_unique<TVRDocumentPrivate>())
{
    d->dictionary = dictionary.toObject();
}

TVRDocument::~TVRDocument() = default;

QString TVRDocument::identifier() const
{
    return TVRJSONText::read(d->dictionary, QStringLiteral("_id"));
}

void TVRDocument::setIdentifier(const QString &identifier)
{
    d->identifier = identifier;
}

QString TVRDocument::title() const
{
    return TVRJSONText::read(d->dictionary, QStringLiteral("title"));
}

void TVRDocument::setTitle(const QString &title)
{
    d->title = title;
}

QDateTime TVRDocument::date() const
{
    const QJsonValue updatedAt = d->dictionary.value(QStringLiteral("updatedAt"));
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
        TVRSectionList sections;
        const QJsonArray elements = d->dictionary.value(QStringLiteral("sections")).toArray();
        sections.reserve(elements.size());
        for (const auto &element : elements)
            sections.append(std::make_shared<TVRSection>(element));
        d->sections = std::move(sections);
    }
    return *d->sections;
}

void TVRDocument::setSections(std::optional<TVRSectionList> sections)
{
    d->sections = std::move(sections);
}
