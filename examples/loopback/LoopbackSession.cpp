// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "LoopbackSession.h"

#include "LoopbackCertificates.h"

#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTcpServer>

LoopbackSession::LoopbackSession(QObject *parent)
    : QNetworkAccessManager(parent)
    , m_authorities{LoopbackCertificates::authority()}
{
}

bool LoopbackSession::routeToClosedPort(const QString &host)
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost))
        return false;
    route(host, probe.serverPort());
    return true; // the port closes with the probe
}

QNetworkReply *LoopbackSession::createRequest(Operation op, const QNetworkRequest &request, QIODevice *outgoingData)
{
    const QUrl url = request.url();
    const auto route = m_routes.constFind(url.host());
    if (route == m_routes.constEnd())
        return QNetworkAccessManager::createRequest(op, request, outgoingData);

    QNetworkRequest routed = request;
    QUrl target = url;
    target.setHost(QStringLiteral("127.0.0.1"));
    target.setPort(*route);
    routed.setUrl(target);
    routed.setRawHeader("Host", url.host().toUtf8());
    routed.setPeerVerifyName(m_peerVerifyName.isEmpty() ? url.host() : m_peerVerifyName);

    QSslConfiguration tls = routed.sslConfiguration();
    tls.setCaCertificates(m_authorities);
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    routed.setSslConfiguration(tls);
    return QNetworkAccessManager::createRequest(op, routed, outgoingData);
}
