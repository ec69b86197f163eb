// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QTest>

#include <csignal>

PrivateBus::~PrivateBus()
{
    for (QProcess *process : {&m_silentService, &m_bus}) {
        if (process->state() != QProcess::NotRunning) {
            process->kill(); // SIGKILL ends a stopped process too
            process->waitForFinished();
        }
    }
}

bool PrivateBus::start(const QString &silentSecretServiceHelper)
{
    QFile config(m_dir.filePath(QStringLiteral("bus.conf")));
    if (!m_dir.isValid() || !config.open(QIODevice::WriteOnly))
        return false;
    config.write("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
                 "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                 "<busconfig><type>session</type><listen>unix:tmpdir="
                 + m_dir.path().toUtf8()
                 + "</listen>"
                   "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                   "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
    config.close();
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--config-file=") + config.fileName(), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address=1")});
    if (!m_bus.waitForStarted() || !QTest::qWaitFor([this] { return m_bus.canReadLine(); }, 10000))
        return false;
    m_address = QString::fromUtf8(m_bus.readLine()).trimmed();
    if (!m_address.startsWith(QLatin1String("unix:")))
        return false;
    return silentSecretServiceHelper.isEmpty() || addSilentSecretService(silentSecretServiceHelper);
}

QStringList PrivateBus::environment() const
{
    return {QStringLiteral("DBUS_SESSION_BUS_ADDRESS=") + m_address};
}

bool PrivateBus::addSilentSecretService(const QString &helper)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
    m_silentService.setProcessEnvironment(env);
    m_silentService.start(helper, {QStringLiteral("own-secrets-name")});
    if (!m_silentService.waitForStarted() || !QTest::qWaitFor([this] { return m_silentService.canReadLine(); }, 10000)
        || m_silentService.readLine().trimmed() != "owned") {
        return false;
    }
    return ::kill(pid_t(m_silentService.processId()), SIGSTOP) == 0;
}
