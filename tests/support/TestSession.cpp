// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TestSession.h"

#include <QNetworkReply>

TestSession::~TestSession()
{
    // Replies still here go now, while their counter still exists.
    qDeleteAll(findChildren<QNetworkReply *>());
}

QNetworkReply *TestSession::createRequest(Operation op, const QNetworkRequest &request, QIODevice *outgoingData)
{
    QNetworkReply *reply = LoopbackSession::createRequest(op, request, outgoingData);
    ++m_liveReplies;
    connect(reply, &QObject::destroyed, this, [this] { --m_liveReplies; });
    return reply;
}

void TestSession::abortAll()
{
    for (QNetworkReply *reply : findChildren<QNetworkReply *>())
        reply->abort();
}
