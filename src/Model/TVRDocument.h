// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDOCUMENT_H
#define TVRDOCUMENT_H

/*!
    \file
    \brief TVRDocument, a legal document, and TVRSectionList, its sections.
*/

#include "tovra_export.h"
#include "TVRSection.h"

#include <QDateTime>
#include <QJsonValue>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

class TVRDocumentPrivate;

//! A document's sections, in order, shared with the document that made them.
using TVRSectionList = QList<std::shared_ptr<TVRSection>>;

/*!
    \brief A legal document as the service sends it: a read-only view over its JSON object.

    The identifier ("_id"), title and date are looked up in the JSON at every read; texts
    read as TVRSection's do. The sections are made once, at the first read, and kept.
    A JSON value that is not an object gives a document without keys: no identifier, no
    title, the current time as date and no sections.

    setIdentifier(), setTitle() and setDate() store their value and nothing reads it back;
    setSections() replaces the kept sections. Documents are not copied; the kit hands them
    out as std::shared_ptr.
*/
class TOVRA_EXPORT TVRDocument
{
public:
    //! A document over \a dictionary, the JSON object of a reply; any other value gives a
    //! document without keys.
    explicit TVRDocument(const QJsonValue &dictionary);
    ~TVRDocument();
    TVRDocument(const TVRDocument &) = delete;
    TVRDocument &operator=(const TVRDocument &) = delete;

    //! The service's identifier of the document, the text under "_id"; null when missing.
    QString identifier() const;
    //! Stores \a identifier; identifier() goes on answering from the JSON.
    void setIdentifier(const QString &identifier);

    //! The text under "title"; null when missing.
    QString title() const;
    //! Stores \a title; title() goes on answering from the JSON.
    void setTitle(const QString &title);

    /*!
        When the document was last changed, from "updatedAt" in the form
        yyyy-MM-ddTHH:mm:ss.SSS followed by a numeric offset (+0000, -0800), with that
        offset. The current time while "updatedAt" is missing; an invalid QDateTime when
        it holds anything else that is not such a text, JSON null included.
    */
    QDateTime date() const;
    //! Stores \a date; date() goes on answering from the JSON.
    void setDate(const QDateTime &date);
    /*!
        The date as the screens show it over the document: its day in local time, in the long
        format of the language the kit was given with TVRManager::installTranslations(), else
        of the default locale. Empty for an invalid date.
    */
    QString dateText() const;

    /*!
        One section per element of the "sections" array, in order, none skipped; made at
        the first read and then kept. Anything but an array gives no sections.
    */
    TVRSectionList sections();
    //! Replaces the kept sections; std::nullopt makes the next read make them afresh.
    void setSections(std::optional<TVRSectionList> sections);

private:
    friend class TVRDocumentPrivate;
    explicit TVRDocument(std::unique_ptr<TVRDocumentPrivate> d);

    std::unique_ptr<TVRDocumentPrivate> const d;
};

#endif
