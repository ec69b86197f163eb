// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "LoopbackCertificates.h"

#include <QFile>

// The certificates are compiled into the static loopback library, whose resources the
// linker would drop unless something refers to them.
static void initCertificateResources()
{
    Q_INIT_RESOURCE(loopback_certs);
}

namespace {
QByteArray resource(const QString &name)
{
    initCertificateResources();
    QFile file(QStringLiteral(":/certs/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("loopback certificate %s is missing", qPrintable(name));
    return file.readAll();
}
} // namespace

QSslCertificate LoopbackCertificates::authority()
{
    return QSslCertificate(resource(QStringLiteral("test-ca.pem")), QSsl::Pem);
}

QSslCertificate LoopbackCertificates::serviceCertificate()
{
    return QSslCertificate(resource(QStringLiteral("service.pem")), QSsl::Pem);
}

QSslKey LoopbackCertificates::serviceKey()
{
    return QSslKey(resource(QStringLiteral("service.key")), QSsl::Ec, QSsl::Pem);
}
