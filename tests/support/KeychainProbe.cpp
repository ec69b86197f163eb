#include "KeychainProbe.h"

#include <QDBusArgument>
#include <QDBusInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QEventLoop>

#include <qt6keychain/keychain.h>

namespace {
bool runJob(QKeychain::Job &job, const QString &account)
{
    job.setAutoDelete(false);
    job.setKey(account);
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    job.start();
    loop.exec();
    return job.error() == QKeychain::NoError;
}
} // namespace

bool KeychainProbe::writeRaw(const QString &service, const QString &account, const QByteArray &data)
{
    QKeychain::WritePasswordJob job(service);
    job.setBinaryData(data);
    return runJob(job, account);
}

QByteArray KeychainProbe::readRaw(const QString &service, const QString &account, bool *found)
{
    QKeychain::ReadPasswordJob job(service);
    *found = runJob(job, account);
    return job.binaryData();
}

int KeychainProbe::secretServiceItems(const QString &service, const QString &account)
{
    using Attributes = QMap<QString, QString>;
    qDBusRegisterMetaType<Attributes>();
    QDBusInterface secrets(QStringLiteral("org.freedesktop.secrets"),
                           QStringLiteral("/org/freedesktop/secrets"),
                           QStringLiteral("org.freedesktop.Secret.Service"));
    const Attributes attributes{{QStringLiteral("server"), service}, {QStringLiteral("user"), account}};
    const QDBusMessage reply = secrets.call(QStringLiteral("SearchItems"), QVariant::fromValue(attributes));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2)
        return -1;
    int count = 0;
    for (const QVariant &paths : reply.arguments())
        count += qdbus_cast<QList<QDBusObjectPath>>(paths).size();
    return count;
}
