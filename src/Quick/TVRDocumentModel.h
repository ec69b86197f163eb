// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDOCUMENTMODEL_H
#define TVRDOCUMENTMODEL_H

#include "tovraquick_export.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QtQml/qqmlregistration.h>

#include <memory>

class TVRDocumentModelPrivate;

/*!
    \brief One document's sections as a list model, for QML views and C++ item views alike.

    The model follows the shared TVRDocumentManager's document of its kind(): it shows the
    copy the manager holds or keeps at once, and every later reply, whoever asked for it. The
    copy is read when the model is first asked about it, so that a model set to the other
    kind as it is made never reads the first kind's copy. Each
    row is a section, with the roles \c title (empty for a section without one) and \c body
    (with the application's name in place of "#####"); Qt::DisplayRole, named \c display,
    gives the title, else the body. A reply changes, adds and removes rows rather than
    resetting the model, so rows that stay the same keep their items. In QML it is
    \c DocumentModel of the \c Tovra module (see \ref qml). Use it on the thread of the
    shared manager, the GUI thread.
*/
class TOVRAQUICK_EXPORT TVRDocumentModel : public QAbstractListModel
{
    Q_OBJECT
    QML_NAMED_ELEMENT(DocumentModel)
    //! Which document the model shows; setting another shows that one at once.
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged)
    //! The document's title; empty while there is no document.
    Q_PROPERTY(QString title READ title NOTIFY documentChanged)
    //! When the document was last changed, TVRDocument::date(); invalid while there is none.
    Q_PROPERTY(QDateTime date READ date NOTIFY documentChanged)
    //! The date as the screens show it over the document; empty while there is none.
    Q_PROPERTY(QString dateText READ dateText NOTIFY documentChanged)
    //! Whether a fetch this model started waits for the next reply or failure of its document.
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    //! The message of the last failed fetch of the document; empty once a reply arrived.
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)

public:
    //! The document a model shows.
    enum Kind {
        //! The Terms of Service, the default.
        TermsOfService,
        //! The Privacy Policy.
        PrivacyPolicy
    };
    Q_ENUM(Kind)

    //! The roles of a row besides Qt::DisplayRole.
    enum Role {
        //! The section's title, named \c title; empty when it has none.
        TitleRole = Qt::UserRole + 1,
        //! The section's body, named \c body, with the application's name in place of "#####".
        BodyRole
    };
    Q_ENUM(Role)

    //! A model of the Terms of Service, showing at once what the shared manager holds or
    //! keeps. It fetches nothing until fetch() is called.
    explicit TVRDocumentModel(QObject *parent = nullptr);
    ~TVRDocumentModel() override;

    //! Which document the model shows; TermsOfService unless set.
    Kind kind() const;
    //! Shows the document of \a kind; emits kindChanged() and documentChanged() when it differs.
    void setKind(Kind kind);

    //! The document's title; empty while there is no document.
    QString title() const;
    //! When the document was last changed, TVRDocument::date(); invalid while there is none.
    QDateTime date() const;
    //! The date as the widget screens' header shows it; empty while there is no document.
    QString dateText() const;
    //! Whether a fetch this model started waits for the next reply or failure of its document.
    bool isLoading() const;
    //! The message of the last fetch that failed; empty once a reply arrived.
    QString error() const;

    //! Asks the service for the document and sets loading; the rows change when the reply arrives.
    Q_INVOKABLE void fetch();

    //! The number of sections; 0 under a valid \a parent, as in any list model.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    //! The row's title or body for \a role; an invalid QVariant for another role or index.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    //! \c title, \c body and \c display: the names QML delegates read the roles by.
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    //! The model's kind changed.
    void kindChanged();
    //! The document shown was read anew, after the rows were updated: when kind changed
    //! and whenever the shared manager holds a new document of this kind.
    void documentChanged();
    //! Whether the model is loading changed.
    void loadingChanged();
    //! The model's error was set or cleared; sent for every failed fetch, even with the same message.
    void errorChanged();

private:
    friend class TVRDocumentModelPrivate;
    std::unique_ptr<TVRDocumentModelPrivate> const d;
};

#endif
