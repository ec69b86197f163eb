// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef LOOPBACKSESSION_H
#define LOOPBACKSESSION_H

#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QSslCertificate>

/*
    A network session as a host can hand the kit with TVRNetworkManager::setSession():
    requests for a routed host go to a port on 127.0.0.1 instead of the host's own address.
    Everything else stays as Qt does it: the Host header and the name the certificate is
    checked against remain the routed host's, and TLS is verified, against the loopback
    authority only unless told otherwise. The demo reaches its embedded service this way,
    and the tests their test service.
*/
class LoopbackSession : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit LoopbackSession(QObject *parent = nullptr);

    void route(const QString &host, quint16 port) { m_routes.insert(host, port); }
    // Routes \a host to a loopback port that nothing listens on: connections are refused.
    bool routeToClosedPort(const QString &host);
    // Certificates trusted by this session; the loopback authority unless told otherwise.
    void setAuthorities(const QList<QSslCertificate> &authorities) { m_authorities = authorities; }
    // Checks the certificate against \a name instead of the routed host's name.
    void setPeerVerifyName(const QString &name) { m_peerVerifyName = name; }

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request, QIODevice *outgoingData) override;

private:
    QHash<QString, quint16> m_routes;
    QList<QSslCertificate> m_authorities;
    QString m_peerVerifyName;
};

#endif
