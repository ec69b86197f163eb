// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "KeychainProbe.h"

#include <QDBusArgument>
#include <QDBusInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QProcess>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Attributes = QMap<QString, QString>;
const QString secrets = u"org.freedesktop.secrets"_s;
const QString servicePath = u"/org/freedesktop/secrets"_s;

// The items of (service, account), unlocked and locked alike; none when the service does not
// answer.
std::optional<QList<QDBusObjectPath>> searchItems(const QString &service, const QString &account)
{
    qDBusRegisterMetaType<Attributes>();
    QDBusInterface secretService(secrets, servicePath, u"org.freedesktop.Secret.Service"_s);
    const Attributes attributes{{u"server"_s, service}, {u"user"_s, account}};
    const QDBusMessage reply = secretService.call(u"SearchItems"_s, QVariant::fromValue(attributes));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2)
        return std::nullopt;
    return qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().at(0))
        + qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().at(1));
}

} // namespace

// Through libsecret's own command-line tool, which neither the kit nor QtKeychain is part of.
// QtKeychain keeps the bytes base64-encoded, under its "server" and "user" attributes.
bool KeychainProbe::writeRaw(const QString &service, const QString &account, const QByteArray &data)
{
    QProcess tool;
    tool.start(u"secret-tool"_s,
               {u"store"_s, u"--label="_s + service, u"server"_s, service, u"user"_s, account, u"type"_s, u"base64"_s});
    tool.write(data.toBase64());
    tool.closeWriteChannel();
    return tool.waitForFinished(30000) && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
}

int KeychainProbe::secretServiceItems(const QString &service, const QString &account)
{
    const auto items = searchItems(service, account);
    return items ? int(items->size()) : -1;
}

QMap<QString, QString> KeychainProbe::itemAttributes(const QString &service, const QString &account)
{
    const auto items = searchItems(service, account);
    if (!items || items->size() != 1)
        return {};
    QDBusInterface item(secrets, items->constFirst().path(), u"org.freedesktop.DBus.Properties"_s);
    const QDBusReply<QDBusVariant> reply = item.call(u"Get"_s, u"org.freedesktop.Secret.Item"_s, u"Attributes"_s);
    return qdbus_cast<Attributes>(reply.value().variant());
}

bool KeychainProbe::setKeyringLocked(bool locked)
{
    QDBusInterface service(secrets, servicePath, u"org.freedesktop.Secret.Service"_s);
    const QDBusObjectPath collection(u"/org/freedesktop/secrets/aliases/default"_s);
    if (locked)
        return service.call(u"Lock"_s, QVariant::fromValue(QList{collection})).type() == QDBusMessage::ReplyMessage;
    // Unlocking takes a prompt, or gnome-keyring's own interface and the password.
    const QDBusMessage session =
        service.call(u"OpenSession"_s, u"plain"_s, QVariant::fromValue(QDBusVariant(QString())));
    QDBusArgument password;
    password.beginStructure();
    password << qdbus_cast<QDBusObjectPath>(session.arguments().value(1)) << QByteArray()
             << QByteArray("tovra-test-keyring") << u"text/plain"_s;
    password.endStructure();
    QDBusInterface keyring(secrets, servicePath, u"org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface"_s);
    return keyring.call(u"UnlockWithMasterPassword"_s, QVariant::fromValue(collection), QVariant::fromValue(password))
               .type()
        == QDBusMessage::ReplyMessage;
}
