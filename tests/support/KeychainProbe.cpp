// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "KeychainProbe.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

namespace {

// QtKeychain keeps the kit's bytes base64-encoded, under its "server" and "user" attributes.
QStringList attributes(const QString &service, const QString &account)
{
    return {QStringLiteral("server"), service, QStringLiteral("user"), account, QStringLiteral("type"),
            QStringLiteral("base64")};
}

// Runs libsecret's own command-line tool, which neither the kit nor QtKeychain is part of.
QByteArray secretTool(const QStringList &arguments, const QByteArray &input, bool *ok)
{
    QProcess tool;
    tool.start(QStringLiteral("secret-tool"), arguments);
    tool.write(input);
    tool.closeWriteChannel();
    *ok = tool.waitForFinished(30000) && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
    return tool.readAllStandardOutput();
}

} // namespace

bool KeychainProbe::writeRaw(const QString &service, const QString &account, const QByteArray &data)
{
    bool ok = false;
    secretTool(QStringList{QStringLiteral("store"), QStringLiteral("--label=") + service}
                   + attributes(service, account),
               data.toBase64(), &ok);
    return ok;
}

QByteArray KeychainProbe::readRaw(const QString &service, const QString &account, bool *found)
{
    const QByteArray stored =
        secretTool(QStringList{QStringLiteral("lookup")} + attributes(service, account), {}, found);
    return QByteArray::fromBase64(stored.trimmed());
}

namespace {

using Attributes = QMap<QString, QString>;

// The items of (service, account), unlocked and locked alike; \a ok says whether the
// service answered.
QList<QDBusObjectPath> searchItems(const QString &service, const QString &account, bool *ok)
{
    qDBusRegisterMetaType<Attributes>();
    QDBusInterface secrets(QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
                           QStringLiteral("org.freedesktop.Secret.Service"));
    const Attributes attributes{{QStringLiteral("server"), service}, {QStringLiteral("user"), account}};
    const QDBusMessage reply = secrets.call(QStringLiteral("SearchItems"), QVariant::fromValue(attributes));
    *ok = reply.type() == QDBusMessage::ReplyMessage && reply.arguments().size() == 2;
    QList<QDBusObjectPath> items;
    if (*ok) {
        for (const QVariant &paths : reply.arguments())
            items += qdbus_cast<QList<QDBusObjectPath>>(paths);
    }
    return items;
}

} // namespace

int KeychainProbe::secretServiceItems(const QString &service, const QString &account)
{
    bool ok = false;
    const qsizetype count = searchItems(service, account, &ok).size();
    return ok ? int(count) : -1;
}

QMap<QString, QString> KeychainProbe::itemAttributes(const QString &service, const QString &account)
{
    bool ok = false;
    const QList<QDBusObjectPath> items = searchItems(service, account, &ok);
    if (items.size() != 1)
        return {};
    QDBusInterface item(QStringLiteral("org.freedesktop.secrets"), items.constFirst().path(),
                        QStringLiteral("org.freedesktop.DBus.Properties"));
    const QDBusMessage reply =
        item.call(QStringLiteral("Get"), QStringLiteral("org.freedesktop.Secret.Item"), QStringLiteral("Attributes"));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 1)
        return {};
    return qdbus_cast<Attributes>(qvariant_cast<QDBusVariant>(reply.arguments().constFirst()).variant());
}

bool KeychainProbe::setKeyringLocked(bool locked)
{
    const QString secrets = QStringLiteral("org.freedesktop.secrets");
    QDBusInterface service(secrets, QStringLiteral("/org/freedesktop/secrets"),
                           QStringLiteral("org.freedesktop.Secret.Service"));
    const QDBusReply<QDBusObjectPath> collection = service.call(QStringLiteral("ReadAlias"), QStringLiteral("default"));
    if (!collection.isValid() || collection.value().path() == QLatin1String("/"))
        return false;
    if (locked) {
        const QDBusMessage reply =
            service.call(QStringLiteral("Lock"), QVariant::fromValue(QList<QDBusObjectPath>{collection.value()}));
        return reply.type() == QDBusMessage::ReplyMessage;
    }
    // Unlocking takes a prompt, or gnome-keyring's own interface and the password.
    const QDBusMessage session = service.call(QStringLiteral("OpenSession"), QStringLiteral("plain"),
                                              QVariant::fromValue(QDBusVariant(QString())));
    if (session.type() != QDBusMessage::ReplyMessage || session.arguments().size() != 2)
        return false;
    QDBusArgument password;
    password.beginStructure();
    password << qdbus_cast<QDBusObjectPath>(session.arguments().at(1)) << QByteArray()
             << QByteArray("tovra-test-keyring") << QStringLiteral("text/plain");
    password.endStructure();
    QDBusInterface keyring(secrets, QStringLiteral("/org/freedesktop/secrets"),
                           QStringLiteral("org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface"));
    const QDBusMessage reply = keyring.call(QStringLiteral("UnlockWithMasterPassword"),
                                            QVariant::fromValue(collection.value()), QVariant::fromValue(password));
    return reply.type() == QDBusMessage::ReplyMessage;
}

KeychainProbe::SecretServiceCalls::~SecretServiceCalls()
{
    m_monitor.kill();
    m_monitor.waitForFinished();
}

bool KeychainProbe::SecretServiceCalls::start()
{
    m_monitor.start(QStringLiteral("dbus-monitor"),
                    {QStringLiteral("--session"),
                     QStringLiteral("type='method_call',interface='org.freedesktop.Secret.Service'"),
                     QStringLiteral("type='method_call',interface='org.freedesktop.Secret.Item'"),
                     QStringLiteral("type='method_call',interface='org.freedesktop.Secret.Collection'"),
                     QStringLiteral("type='method_call',interface='org.freedesktop.Secret.Prompt'"),
                     QStringLiteral("type='method_call',member='NameHasOwner'")});
    // The monitor may miss the first marks while it sets itself up.
    if (!m_monitor.waitForStarted())
        return false;
    for (int attempt = 0; attempt < 50; ++attempt) {
        if (mark())
            return true;
    }
    return false;
}

bool KeychainProbe::SecretServiceCalls::mark()
{
    const QString name = QStringLiteral("tovra.test.mark%1").arg(++m_marks);
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    call << name;
    QDBusConnection::sessionBus().call(call);
    return QTest::qWaitFor(
        [&] {
            m_seen += m_monitor.readAllStandardOutput();
            return m_seen.contains(name.toUtf8());
        },
        200);
}

QStringList KeychainProbe::SecretServiceCalls::calls()
{
    if (!mark())
        return {QStringLiteral("<the monitor lost the bus>")};
    // Everything after the mark of start(), which is the first the monitor showed.
    const QString seen = QString::fromUtf8(m_seen);
    QStringList methods;
    static const QRegularExpression method(
        QStringLiteral("method call .*interface=org\\.freedesktop\\.Secret\\.\\w+; member=(\\w+)"));
    for (auto match = method.globalMatch(seen); match.hasNext();)
        methods << match.next().captured(1);
    return methods;
}
