// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef DEMOSERVICE_H
#define DEMOSERVICE_H

#include <QHttpServer>
#include <QJsonObject>

/*
    The sample service, in process on 127.0.0.1 over HTTPS with the loopback certificate of
    the kit's service host: GET /api/terms-of-service and /api/privacy-policy, answered
    with the documents it was given, for requests with the right Basic credentials; 401
    otherwise.
*/
class DemoService : public QObject
{
    Q_OBJECT

public:
    DemoService(const QJsonObject &termsOfService, const QJsonObject &privacyPolicy, const QByteArray &key,
                const QByteArray &secret, QObject *parent = nullptr);

    bool start();
    quint16 port() const { return m_port; }
    int requestsServed() const { return m_served; }

Q_SIGNALS:
    void served(const QString &path, int status);

private:
    QHttpServerResponse answer(const QHttpServerRequest &request, const QJsonObject &document, const QString &path);

    QHttpServer m_server;
    QByteArray m_authorization;
    quint16 m_port = 0;
    int m_served = 0;
};

#endif
