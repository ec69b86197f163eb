// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "DemoService.h"

#include "LoopbackCertificates.h"

#include <QHttpServerRequest>
#include <QHttpServerResponse>
#include <QJsonDocument>

DemoService::DemoService(const QJsonObject &termsOfService, const QJsonObject &privacyPolicy, const QByteArray &key,
                         const QByteArray &secret, QObject *parent)
    : QObject(parent)
    , m_authorization("Basic " + (key + ':' + secret).toBase64())
{
    m_server.route(QStringLiteral("/api/terms-of-service"), [this, termsOfService](const QHttpServerRequest &request) {
        return answer(request, termsOfService, QStringLiteral("/api/terms-of-service"));
    });
    m_server.route(QStringLiteral("/api/privacy-policy"), [this, privacyPolicy](const QHttpServerRequest &request) {
        return answer(request, privacyPolicy, QStringLiteral("/api/privacy-policy"));
    });
}

bool DemoService::start()
{
    m_server.sslSetup(LoopbackCertificates::serviceCertificate(), LoopbackCertificates::serviceKey());
    m_port = m_server.listen(QHostAddress::LocalHost, 0);
    return m_port != 0;
}

QHttpServerResponse DemoService::answer(const QHttpServerRequest &request, const QJsonObject &document,
                                        const QString &path)
{
    ++m_served;
    if (request.value("Authorization") != m_authorization) {
        Q_EMIT served(path, 401);
        return QHttpServerResponse(QJsonObject{{QStringLiteral("error"), QStringLiteral("unauthorized")}},
                                   QHttpServerResponder::StatusCode::Unauthorized);
    }
    Q_EMIT served(path, 200);
    return QHttpServerResponse("application/json", QJsonDocument(document).toJson(QJsonDocument::Compact));
}
