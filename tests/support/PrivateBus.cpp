// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"

#include <QFile>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

PrivateBus::~PrivateBus()
{
    for (QProcess *process : {&m_silentService, &m_bus}) {
        process->kill(); // SIGKILL ends a stopped process too
        process->waitForFinished();
    }
}

bool PrivateBus::start(const QString &silentSecretServiceHelper)
{
    // No service directories: nothing on this bus is started on demand.
    QFile config(m_dir.filePath(u"bus.conf"_s));
    if (!m_dir.isValid() || !config.open(QIODevice::WriteOnly))
        return false;
    config.write("<busconfig><listen>unix:tmpdir=" + m_dir.path().toUtf8()
                 + "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                   "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
    config.close();
    m_bus.start(u"dbus-daemon"_s, {u"--config-file="_s + config.fileName(), u"--nofork"_s, u"--print-address=1"_s});
    if (!m_bus.waitForStarted() || !QTest::qWaitFor([this] { return m_bus.canReadLine(); }, 10000))
        return false;
    m_address = QString::fromUtf8(m_bus.readLine()).trimmed();
    if (!m_address.startsWith(u"unix:"_s))
        return false;
    if (silentSecretServiceHelper.isEmpty())
        return true;
    m_silentService.setEnvironment(QProcess::systemEnvironment() + environment());
    m_silentService.start(silentSecretServiceHelper, {u"own-secrets-name"_s});
    return m_silentService.waitForStarted() && QTest::qWaitFor([this] { return m_silentService.canReadLine(); }, 10000)
        && m_silentService.readLine().trimmed() == "owned" && ::kill(pid_t(m_silentService.processId()), SIGSTOP) == 0;
}
