// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRHTTPResponse.h"

#include <QNetworkReply>

class TVRHTTPResponseData : public QSharedData
{
public:
    int statusCode = 0;
    QUrl url;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
};

TVRHTTPResponse::TVRHTTPResponse()
    : d(new TVRHTTPResponseData)
{
}

TVRHTTPResponse::TVRHTTPResponse(const QNetworkReply *reply)
    : TVRHTTPResponse()
{
    d->statusCode = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    d->url = reply->url();
    d->headers = reply->rawHeaderPairs();
}

TVRHTTPResponse::TVRHTTPResponse(const TVRHTTPResponse &other) = default;
TVRHTTPResponse &TVRHTTPResponse::operator=(const TVRHTTPResponse &other) = default;
TVRHTTPResponse::~TVRHTTPResponse() = default;

int TVRHTTPResponse::statusCode() const
{
    return d->statusCode;
}

QUrl TVRHTTPResponse::url() const
{
    return d->url;
}

QList<QPair<QByteArray, QByteArray>> TVRHTTPResponse::headers() const
{
    return d->headers;
}

QByteArray TVRHTTPResponse::header(const QByteArray &name) const
{
    for (const auto &header : d->headers) {
        if (header.first.compare(name, Qt::CaseInsensitive) == 0)
            return header.second;
    }
    return {};
}

QByteArray TVRHTTPResponse::body() const
{
    return d->body;
}

void TVRHTTPResponse::setBody(const QByteArray &body)
{
    d->body = body;
}
