// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRHTTPRESPONSE_H
#define TVRHTTPRESPONSE_H

#include "tovra_export.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QSharedDataPointer>
#include <QUrl>

class QNetworkReply;
class TVRHTTPResponseData;

/*!
    \brief The HTTP answer to a request: status code, headers and the final address.

    A value copied out of the QNetworkReply when the request completes, so that no handler
    depends on the reply's lifetime. A request that got no answer (a refused connection, a
    failed TLS handshake) has status code 0 and no headers.
*/
class TOVRA_EXPORT TVRHTTPResponse
{
public:
    TVRHTTPResponse();
    explicit TVRHTTPResponse(const QNetworkReply *reply);
    TVRHTTPResponse(const TVRHTTPResponse &other);
    TVRHTTPResponse &operator=(const TVRHTTPResponse &other);
    ~TVRHTTPResponse();

    int statusCode() const;
    QUrl url() const;
    QList<QPair<QByteArray, QByteArray>> headers() const;
    //! The value of header \a name, compared without regard to case; empty when absent.
    QByteArray header(const QByteArray &name) const;
    /*!
        The body of the answer as it was received, after any content encoding was undone:
        the bytes that the JSON handed to the success handler was parsed from. Empty for a
        failure and for an answer without a body.
    */
    QByteArray body() const;
    //! Sets the body; the kit does so for every answer it hands on.
    void setBody(const QByteArray &body);

private:
    QSharedDataPointer<TVRHTTPResponseData> d;
};

Q_DECLARE_METATYPE(TVRHTTPResponse)

#endif
