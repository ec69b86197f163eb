// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef HOSTKEYCHAIN_H
#define HOSTKEYCHAIN_H

#include <QDataStream>
#include <QEventLoop>
#include <QIODevice>
#include <QVariant>

#include <qt6keychain/keychain.h>

/*
    What a host application does with QtKeychain on its own: one job at a time, waited for
    on a QEventLoop of the calling thread, as QtKeychain's documentation shows.
*/
namespace HostKeychain {

// Runs \a job for \a key to its end on this thread; the job's error.
inline QKeychain::Error run(QKeychain::Job &job, const QString &key)
{
    job.setKey(key);
    job.setAutoDelete(false);
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    job.start();
    loop.exec();
    return job.error();
}

// Writes \a data as text.
inline QKeychain::Error write(const QString &service, const QString &key, const QByteArray &data)
{
    QKeychain::WritePasswordJob job(service);
    job.setTextData(QString::fromUtf8(data));
    return run(job, key);
}

// The item's bytes; none where there is no item.
inline QByteArray read(const QString &service, const QString &key)
{
    QKeychain::ReadPasswordJob job(service);
    run(job, key);
    return job.binaryData();
}

// \a value in the kit's archive format 1, as release 1.0 stored it: "TVRA", the format
// number, then the value, in Qt 6.0's QDataStream encoding.
inline QByteArray archived(const QVariant &value)
{
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << quint32(0x54565241) << quint16(1) << value;
    return data;
}

} // namespace HostKeychain

#endif
