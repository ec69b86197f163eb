// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TestFixture.h"

#include "TestHttpsServer.h"
#include "TestSession.h"

#include <TVRNetworkManager.h>

#include <QCoreApplication>
#include <QFile>

bool isolateTestHost(const QString &applicationName)
{
    if (!qEnvironmentVariable("HOME").contains(QStringLiteral("tovra-test"))) {
        qWarning("run this through tests/run-isolated.sh");
        return false;
    }
    QCoreApplication::setOrganizationName(QStringLiteral("Tovra Tests"));
    QCoreApplication::setApplicationName(applicationName);
    return true;
}

bool startLoopbackService(const QString &applicationName, TestHttpsServer &server, TestSession &session)
{
    if (!isolateTestHost(applicationName))
        return false;
    if (!server.start()) {
        qWarning("the loopback HTTPS server did not start");
        return false;
    }
    session.route(TVRNetworkManager::baseURLComponents().host(), server.port());
    return true;
}

long processStatusKiB(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed().split(' ').first().toLong();
    }
    return -1;
}
