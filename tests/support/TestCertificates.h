#ifndef TESTCERTIFICATES_H
#define TESTCERTIFICATES_H

#include <QSslCertificate>
#include <QSslKey>

// The committed test CA and the service host's certificate it issued (tests/data/certs).
namespace TestCertificates {
QSslCertificate authority();
QSslCertificate serviceCertificate();
QSslKey serviceKey();
}

#endif
