// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECTION_P_H
#define TVRSECTION_P_H

#include "tovra_export.h"
#include "TVRJSONIndex_p.h"
#include "TVRSection.h"

#include <optional>

class TVRSectionPrivate
{
public:
    // A section over the place \a where of a kept copy's \a text: its title and body are
    // decoded from the text as they are read, or once now if \a decodeNow.
    static std::shared_ptr<TVRSection> make(const QByteArray &text, const TVRJSONIndex::Section &where,
                                            bool decodeNow = false);

    QJsonValue value(const QString &key, TVRJSONIndex::Value TVRJSONIndex::Section::*field) const;
    static const TVRSectionPrivate *get(const TVRSection &section) { return section.d.get(); }

    QJsonObject dictionary;
    QByteArray text;
    std::optional<TVRJSONIndex::Section> where;
    // The title and body decoded when the section was made, if they were.
    std::optional<std::pair<QJsonValue, QJsonValue>> decoded;
    // Kept for the setters only; the getters answer from the JSON.
    QString title;
    QString body;
};

// About as many characters as \a section's title(), or its body(), has; for a section read
// from a kept copy, found without decoding either.
TOVRA_EXPORT qsizetype tvrSectionLengthEstimate(const TVRSection &section, bool title);

#endif
