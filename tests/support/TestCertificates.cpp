#include "TestCertificates.h"

#include <QFile>

// The certificates are compiled into the static support library, whose resources the
// linker would drop unless something refers to them.
static void initCertificateResources()
{
    Q_INIT_RESOURCE(certs);
}

namespace {
QByteArray resource(const QString &name)
{
    initCertificateResources();
    QFile file(QStringLiteral(":/certs/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("test certificate %s is missing", qPrintable(name));
    return file.readAll();
}
} // namespace

QSslCertificate TestCertificates::authority()
{
    return QSslCertificate(resource(QStringLiteral("test-ca.pem")), QSsl::Pem);
}

QSslCertificate TestCertificates::serviceCertificate()
{
    return QSslCertificate(resource(QStringLiteral("service.pem")), QSsl::Pem);
}

QSslKey TestCertificates::serviceKey()
{
    return QSslKey(resource(QStringLiteral("service.key")), QSsl::Ec, QSsl::Pem);
}
