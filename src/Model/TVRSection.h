// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECTION_H
#define TVRSECTION_H

#include "tovra_export.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <memory>

class TVRSectionPrivate;

/*!
    \brief One section of a legal document: a read-only view over its JSON object.

    Every read looks into the JSON again. A text reads as null when its key is missing, as
    empty text when the key holds JSON null, and as its compact JSON text when it holds
    something other than text (42 reads "42"). A JSON value that is not an object gives a
    section without keys.

    The setters store their value and nothing reads it back: title() and body() always
    answer from the JSON. Sections are not copied; documents hand them out shared.
*/
class TOVRA_EXPORT TVRSection
{
public:
    //! A section over \a dictionary, an element of a document's "sections" array; any value
    //! other than an object gives a section without keys.
    explicit TVRSection(const QJsonValue &dictionary);
    ~TVRSection();
    TVRSection(const TVRSection &) = delete;
    TVRSection &operator=(const TVRSection &) = delete;

    //! The text under "title"; null when missing. The screens show no title row for an
    //! empty one.
    QString title() const;
    //! Stores \a title; title() goes on answering from the JSON.
    void setTitle(const QString &title);

    /*!
        The text under "body", each "#####" in it replaced by TVRManager::appName() as it
        is at this call (by empty text while there is no name).
    */
    QString body() const;
    //! Stores \a body; body() goes on answering from the JSON.
    void setBody(const QString &body);

private:
    friend class TVRSectionPrivate;
    explicit TVRSection(std::unique_ptr<TVRSectionPrivate> d);

    std::unique_ptr<TVRSectionPrivate> const d;
};

#endif
