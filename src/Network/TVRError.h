// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRERROR_H
#define TVRERROR_H

#include "tovra_export.h"

#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>

class TVRErrorData;

/*!
    \brief What went wrong with a request: a domain, a code within it and a readable message.

    Transport failures have the domain networkDomain() and a QNetworkReply::NetworkError as
    code; failures the kit finds itself have kitDomain().
*/
class TOVRA_EXPORT TVRError
{
public:
    //! An empty error: null domain and message, code 0.
    TVRError();
    //! An error of \a domain with \a code and the readable \a message.
    TVRError(const QString &domain, int code, const QString &message);
    //! A copy of \a other; errors are implicitly shared, so copying is cheap.
    TVRError(const TVRError &other);
    //! Makes this error a copy of \a other.
    TVRError &operator=(const TVRError &other);
    ~TVRError();

    //! "QNetworkReply": the domain of transport failures, whose code is a
    //! QNetworkReply::NetworkError.
    static QString networkDomain();
    /*!
        "Tovra": the domain of failures the kit finds itself, such as a reply over
        TVRManager::maximumReplySize() or a method outside TVRHTTPMethod; the code is still a
        QNetworkReply::NetworkError that comes closest.
    */
    static QString kitDomain();

    //! networkDomain(), kitDomain(), or whatever domain the error was made with.
    QString domain() const;
    //! The code within the domain.
    int code() const;
    //! What went wrong, for the host's developers and logs rather than for users: the kit's
    //! own messages are in English, those of transport failures are Qt's.
    QString message() const;

    //! Whether both errors have the same domain, code and message.
    bool operator==(const TVRError &other) const;
    //! Whether the errors differ in domain, code or message.
    bool operator!=(const TVRError &other) const { return !(*this == other); }

private:
    QSharedDataPointer<TVRErrorData> d;
};

Q_DECLARE_METATYPE(TVRError)

#endif
