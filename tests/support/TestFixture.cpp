// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TestFixture.h"

#include "TestHttpsServer.h"
#include "TestSession.h"

#include <TVRNetworkManager.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QStandardPaths>

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

QString keptCopyPath(const QString &key)
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + QStringLiteral("/Tovra/") + key
        + QStringLiteral(".json");
}

QJsonValue keptCopy(const QString &key)
{
    QFile file(keptCopyPath(key));
    if (!file.open(QIODevice::ReadOnly))
        return QJsonValue(QJsonValue::Undefined);
    // The file holds a JSON array with the value as its one element.
    const QJsonArray wrapper = QJsonDocument::fromJson(file.readAll()).array();
    return wrapper.size() == 1 ? wrapper.first() : QJsonValue(QJsonValue::Undefined);
}

void keepCopy(const QString &key, const QJsonValue &value)
{
    QFile file(keptCopyPath(key));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(QJsonDocument(QJsonArray{value}).toJson()) <= 0)
        qFatal("could not keep a copy under %s", qPrintable(key));
}

void removeKeptCopies()
{
    // The folder of the copies: that of the copy of any key.
    QDir(QFileInfo(keptCopyPath(QString())).path()).removeRecursively();
    QSettings().clear();
}

long processStatusKiB(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed().split(' ').first().toLong();
    return -1;
}
