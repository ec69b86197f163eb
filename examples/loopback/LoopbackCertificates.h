// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef LOOPBACKCERTIFICATES_H
#define LOOPBACKCERTIFICATES_H

#include <QSslCertificate>
#include <QSslKey>

// The committed loopback authority and the service host's certificate it issued (certs/).
// Only a LoopbackSession trusts that authority.
namespace LoopbackCertificates {
QSslCertificate authority();
QSslCertificate serviceCertificate();
QSslKey serviceKey();
} // namespace LoopbackCertificates

#endif
