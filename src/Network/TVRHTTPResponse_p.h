// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRHTTPRESPONSE_P_H
#define TVRHTTPRESPONSE_P_H

#include "TVRHTTPResponse.h"

#include <QSharedData>

class TVRHTTPResponseData : public QSharedData
{
public:
    int statusCode = 0;
    QUrl url;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;
};

#endif
