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
    copy the manager holds or keeps at once, and every later reply, whoever asked for it. Each
    row is a section, with the roles \c title (empty for a section without one) and \c body
    (with the application's name in place of "#####"); Qt::DisplayRole gives the title, else
    the body. In QML it is \c DocumentModel of the \c Tovra module.
*/
class TOVRAQUICK_EXPORT TVRDocumentModel : public QAbstractListModel
{
    Q_OBJECT
    QML_NAMED_ELEMENT(DocumentModel)
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged)
    Q_PROPERTY(QString title READ title NOTIFY documentChanged)
    Q_PROPERTY(QDateTime date READ date NOTIFY documentChanged)
    Q_PROPERTY(QString dateText READ dateText NOTIFY documentChanged)
    Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)

public:
    enum Kind { TermsOfService, PrivacyPolicy };
    Q_ENUM(Kind)

    enum Role { TitleRole = Qt::UserRole + 1, BodyRole };
    Q_ENUM(Role)

    explicit TVRDocumentModel(QObject *parent = nullptr);
    ~TVRDocumentModel() override;

    Kind kind() const;
    void setKind(Kind kind);

    //! The document's title; empty while there is no document.
    QString title() const;
    QDateTime date() const;
    //! The date as the widget screens' header shows it.
    QString dateText() const;
    //! Whether a fetch this model started has not ended yet.
    bool isLoading() const;
    //! The message of the last fetch that failed; empty once a reply arrived.
    QString error() const;

    //! Asks the service for the document; the rows change when the reply arrives.
    Q_INVOKABLE void fetch();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void kindChanged();
    void documentChanged();
    void loadingChanged();
    void errorChanged();

private:
    friend class TVRDocumentModelPrivate;
    std::unique_ptr<TVRDocumentModelPrivate> const d;
};

#endif
