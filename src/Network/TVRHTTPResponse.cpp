// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRHTTPResponse_p.h"

TVRHTTPResponse::TVRHTTPResponse()
    : d(new TVRHTTPResponseData)
{
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
