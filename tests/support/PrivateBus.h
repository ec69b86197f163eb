// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef PRIVATEBUS_H
#define PRIVATEBUS_H

#include <QProcess>
#include <QTemporaryDir>

/*
    A D-Bus session bus of the test's own with nothing on it and no way to start a service:
    a machine without a Secret Service. A process started with environment() uses it.
*/
class PrivateBus
{
public:
    ~PrivateBus();

    /*
        Starts the bus. Given the test helper's path, it also puts a Secret Service on the
        bus that takes every call and answers none, as a hung service does: the helper takes
        the service's name and is then stopped (SIGSTOP).
    */
    bool start(const QString &silentSecretServiceHelper = {});
    QStringList environment() const { return {QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_address}; }

private:
    QTemporaryDir m_dir;
    QProcess m_bus;
    QProcess m_silentService;
    QString m_address;
};

#endif
