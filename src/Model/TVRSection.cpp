// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSection.h"

#include "TVRJSONText_p.h"
#include "TVRSettings_p.h"

class TVRSectionPrivate
{
public:
    QJsonObject dictionary;
    // Kept for the setters only; the getters answer from the dictionary.
    QString title;
    QString body;
};

TVRSection::TVRSection(const QJsonValue &dictionary)
    : d(std::make_unique<TVRSectionPrivate>())
{
    d->dictionary = dictionary.toObject();
}

TVRSection::~TVRSection() = default;

QString TVRSection::title() const
{
    return TVRJSONText::read(d->dictionary, QStringLiteral("title"));
}

void TVRSection::setTitle(const QString &title)
{
    d->title = title;
}

QString TVRSection::body() const
{
    QString body = TVRJSONText::read(d->dictionary, QStringLiteral("body"));
    if (!body.isNull())
        body.replace(QStringLiteral("#####"), TVRSettings::effectiveAppName());
    return body;
}

void TVRSection::setBody(const QString &body)
{
    d->body = body;
}
