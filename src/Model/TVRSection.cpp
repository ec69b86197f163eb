// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSection_p.h"

#include "TVRJSONText_p.h"
#include "TVRSettings_p.h"

std::shared_ptr<TVRSection> TVRSectionPrivate::make(const QByteArray &text, const TVRJSONIndex::Section &where,
                                                    bool decodeNow)
{
    auto d = std::make_unique<TVRSectionPrivate>();
    d->text = text;
    d->where = where;
    if (decodeNow)
        d->decoded.emplace(TVRJSONIndex::decode(text, where.title), TVRJSONIndex::decode(text, where.body));
    return std::shared_ptr<TVRSection>(new TVRSection(std::move(d)));
}

QJsonValue TVRSectionPrivate::value(const QString &key, TVRJSONIndex::Value TVRJSONIndex::Section::*field) const
{
    if (decoded)
        return field == &TVRJSONIndex::Section::title ? decoded->first : decoded->second;
    return where ? TVRJSONIndex::decode(text, (*where).*field) : dictionary.value(key);
}

qsizetype tvrSectionLengthEstimate(const TVRSection &section, bool title)
{
    const TVRSectionPrivate *const d = TVRSectionPrivate::get(section);
    if (!d->where)
        return title ? section.title().size() : section.body().size();
    const TVRJSONIndex::Value &found = title ? d->where->title : d->where->body;
    switch (found.type) {
    case QJsonValue::Undefined:
    case QJsonValue::Null:
        return 0;
    case QJsonValue::String:
        return found.length;
    default:
        return found.end - found.begin; // its JSON text, as title() and body() give it
    }
}

TVRSection::TVRSection(const QJsonValue &dictionary)
    : d(std::make_unique<TVRSectionPrivate>())
{
    d->dictionary = dictionary.toObject();
}

TVRSection::TVRSection(std::unique_ptr<TVRSectionPrivate> d)
    : d(std::move(d))
{
}

TVRSection::~TVRSection() = default;

QString TVRSection::title() const
{
    return TVRJSONText::text(d->value(QStringLiteral("title"), &TVRJSONIndex::Section::title));
}

void TVRSection::setTitle(const QString &title)
{
    d->title = title;
}

QString TVRSection::body() const
{
    QString body = TVRJSONText::text(d->value(QStringLiteral("body"), &TVRJSONIndex::Section::body));
    if (!body.isNull())
        body.replace(QStringLiteral("#####"), TVRSettings::effectiveAppName());
    return body;
}

void TVRSection::setBody(const QString &body)
{
    d->body = body;
}
