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
    //! No answer: status code 0, an empty address, no headers and no body.
    TVRHTTPResponse();
    //! The status code, address and headers of \a reply as they are now; the body stays empty.
    //! Defined by the kit's network library: a host that calls it links Tovra::Network.
    explicit TVRHTTPResponse(const QNetworkReply *reply);
    //! A copy of \a other; responses are implicitly shared, so copying is cheap.
    TVRHTTPResponse(const TVRHTTPResponse &other);
    //! Makes this response a copy of \a other.
    TVRHTTPResponse &operator=(const TVRHTTPResponse &other);
    ~TVRHTTPResponse();

    //! The HTTP status code, such as 200 or 404; 0 when the request got no answer.
    int statusCode() const;
    //! The address that answered: after a redirect within the service, the last one.
    QUrl url() const;
    //! The answer's headers as received, in order; empty when the request got no answer.
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
