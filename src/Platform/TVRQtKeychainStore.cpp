// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRQtKeychainStore_p.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <qt6keychain/keychain.h>

#if defined(Q_OS_LINUX) && !defined(Q_OS_ANDROID)
#define TOVRA_SECRET_SERVICE_SEARCH
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#endif

#include <functional>
#include <memory>

using namespace TVRSecItem;

namespace {

// The longest a keychain call waits for the backend. A backend that has not answered by
// then, a hung service or a locked keyring waiting on its unlock prompt, counts as
// unavailable: the call gives false or null. The job itself goes on and its late result is
// dropped.
constexpr int waitLimitMs = 5000;

// After a failure other than "no such item", calls fail at once for this long instead of
// waiting for the backend again: without a keychain, every read would otherwise cost a
// round trip, or the whole wait limit, on the caller's thread.
constexpr int unavailableForMs = 30 * 1000;

QString backendService(const QVariantMap &query)
{
    QString service = query.value(kSecAttrService).toString();
    const QVariant group = query.value(kSecAttrAccessGroup);
    if (!group.isValid())
        return service;
    return group.toString() + QLatin1Char('/') + service;
}

qint32 statusFor(QKeychain::Error error)
{
    switch (error) {
    case QKeychain::NoError:
        return errSecSuccess;
    case QKeychain::EntryNotFound:
        return errSecItemNotFound;
    case QKeychain::AccessDeniedByUser:
        return errSecAuthFailed;
    case QKeychain::AccessDenied:
        return errSecInteractionNotAllowed;
    case QKeychain::NoBackendAvailable:
        return errSecNotAvailable;
    case QKeychain::NotImplemented:
        return errSecUnimplemented;
    case QKeychain::CouldNotDeleteEntry:
    case QKeychain::OtherError:
        break;
    }
    return errSecIO;
}

// What one keychain job answered, shared by the caller that waits for it and the worker
// thread that fills it in, possibly after the caller has stopped waiting.
struct Outcome
{
    QMutex lock;
    QWaitCondition finished;
    bool done = false;
    qint32 status = errSecIO;
    QByteArray data;

    void finish(qint32 answer, const QByteArray &bytes = {})
    {
        const QMutexLocker locker(&lock);
        status = answer;
        data = bytes;
        done = true;
        finished.wakeAll();
    }
};

/*
    The thread that talks to the keychain. QtKeychain finishes its jobs from an event loop,
    but a keychain call of the kit is synchronous, and an event loop on the caller's thread
    would run the host's timers, socket events and queued calls inside a getter. So every
    job runs here, on a private thread with an event loop of its own, and the caller blocks
    until the job has finished or the wait limit has passed: the call is as synchronous as a
    platform keychain call, and no event of the caller's thread is delivered meanwhile.

    This is the kit's only thread of its own, and it exists only to make a platform call
    synchronous. It is made by the first keychain call and lives until the process ends.

    QtKeychain runs every job of the process through one queue, which belongs to the thread
    that started the first job and is not safe to use from two threads: a host that keeps
    secrets of its own should use TVRSecureItemStore::defaultStore() rather than start
    QtKeychain jobs on another thread.
*/
class KeychainThread
{
public:
    static KeychainThread &instance()
    {
        static KeychainThread *const thread = new KeychainThread;
        return *thread;
    }

    // Runs \a job on the keychain thread; it must call Outcome::finish() once, then or
    // later. Returns the status, and the bytes in \a data, or errSecNotAvailable when no
    // answer came within the wait limit.
    qint32 run(std::function<void(const std::shared_ptr<Outcome> &)> job, QByteArray *data)
    {
        auto outcome = std::make_shared<Outcome>();
        QMetaObject::invokeMethod(
            &m_context, [outcome, job = std::move(job)] { job(outcome); }, Qt::QueuedConnection);
        const QDeadlineTimer deadline(waitLimitMs, Qt::PreciseTimer);
        const QMutexLocker locker(&outcome->lock);
        while (!outcome->done) {
            if (!outcome->finished.wait(&outcome->lock, deadline))
                return errSecNotAvailable;
        }
        if (data)
            *data = outcome->data;
        return outcome->status;
    }

private:
    KeychainThread()
    {
        m_thread.setObjectName(QStringLiteral("Tovra keychain"));
        m_context.moveToThread(&m_thread);
        m_thread.start();
#ifdef TOVRA_SECRET_SERVICE_SEARCH
        qDBusRegisterMetaType<QMap<QString, QString>>();
#endif
    }

    QThread m_thread;
    QObject m_context;
};

class Unavailability
{
public:
    bool remembered()
    {
        const QMutexLocker locker(&m_lock);
        return !m_until.hasExpired();
    }

    // Notes \a status; a failure other than a missing item makes the next calls fail at once.
    qint32 note(qint32 status)
    {
        if (status != errSecSuccess && status != errSecItemNotFound) {
            const QMutexLocker locker(&m_lock);
            m_until.setRemainingTime(unavailableForMs);
        }
        return status;
    }

private:
    QMutex m_lock;
    QDeadlineTimer m_until;
};

Unavailability unavailability;

using KeychainWork = std::function<void(const std::shared_ptr<Outcome> &)>;

// Runs \a work for \a query on the keychain thread, unless the query is not for this store,
// there is no application to run it, or a recent failure says not to try; and notes how it
// ended.
qint32 runFor(const QVariantMap &query, KeychainWork work, QByteArray *data = nullptr)
{
    // Only generic passwords live here, and QtKeychain needs an application object to run.
    if (query.value(kSecClass).toString() != kSecClassGenericPassword)
        return errSecParam;
    if (!QCoreApplication::instance() || unavailability.remembered())
        return errSecNotAvailable;
    return unavailability.note(KeychainThread::instance().run(std::move(work), data));
}

// A QtKeychain job for \a query, made on the keychain thread and readied by \a prepare.
template <typename Job>
KeychainWork jobFor(const QVariantMap &query, std::function<void(Job &)> prepare = {})
{
    const QString service = backendService(query);
    const QString key = query.value(kSecAttrAccount).toString();
    return [service, key, prepare](const std::shared_ptr<Outcome> &outcome) {
        auto *job = new Job(service);
        job->setKey(key);
        if (prepare)
            prepare(*job);
        QObject::connect(job, &QKeychain::Job::finished, job, [outcome](QKeychain::Job *finished) {
            const auto *read = qobject_cast<QKeychain::ReadPasswordJob *>(finished);
            outcome->finish(statusFor(finished->error()), read ? read->binaryData() : QByteArray());
        });
        job->start();
    };
}

#ifdef TOVRA_SECRET_SERVICE_SEARCH
// QtKeychain uses KWallet on a KDE desktop and the Secret Service everywhere else.
bool onKdeDesktop()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP") == QLatin1String("KDE")
        || qEnvironmentVariable("DESKTOP_SESSION").startsWith(QLatin1String("kde"))
        || qEnvironmentVariableIsSet("KDE_FULL_SESSION");
}

// Whether the Secret Service holds an item that QtKeychain wrote for \a query, under its
// attributes "server" and "user". A search names items without unlocking or reading them.
// errSecNotAvailable when the service does not answer.
KeychainWork secretServiceSearch(const QVariantMap &query)
{
    const QString service = backendService(query);
    const QString key = query.value(kSecAttrAccount).toString();
    return [service, key](const std::shared_ptr<Outcome> &outcome) {
        QDBusMessage search = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
            QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("SearchItems"));
        search << QVariant::fromValue(
            QMap<QString, QString>{{QStringLiteral("server"), service}, {QStringLiteral("user"), key}});
        // Blocks this thread only; the caller's wait limit bounds it.
        const QDBusMessage reply = QDBusConnection::sessionBus().call(search, QDBus::Block, waitLimitMs);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2) {
            outcome->finish(errSecNotAvailable);
            return;
        }
        qsizetype items = 0;
        for (const QVariant &paths : reply.arguments())
            items += qdbus_cast<QList<QDBusObjectPath>>(paths).size();
        outcome->finish(items > 0 ? errSecSuccess : errSecItemNotFound);
    };
}
#endif

QVariantMap attributesOf(const QVariantMap &query)
{
    return {
        {kSecClass, query.value(kSecClass)},
        {kSecAttrService, query.value(kSecAttrService)},
        {kSecAttrAccount, query.value(kSecAttrAccount)},
    };
}

} // namespace

qint32 TVRQtKeychainStore::add(const QVariantMap &attributes, QVariant *result)
{
    // Secret stores replace an item of the same name instead of refusing it; callers that
    // must not overwrite look first, as the kit does.
    const QByteArray bytes = attributes.value(kSecValueData).toByteArray();
    const auto write = jobFor<QKeychain::WritePasswordJob>(
        attributes, [bytes](QKeychain::WritePasswordJob &job) { job.setBinaryData(bytes); });
    const qint32 status = runFor(attributes, write);
    if (status == errSecSuccess && result && attributes.value(kSecReturnAttributes).toBool())
        *result = attributesOf(attributes);
    return status;
}

qint32 TVRQtKeychainStore::copyMatching(const QVariantMap &query, QVariant *result)
{
    QByteArray data;
    const qint32 status = runFor(query, jobFor<QKeychain::ReadPasswordJob>(query), &data);
    if (status != errSecSuccess || !result)
        return status;

    const bool wantsData = query.value(kSecReturnData).toBool();
    if (query.value(kSecReturnAttributes).toBool()) {
        QVariantMap attributes = attributesOf(query);
        if (wantsData)
            attributes.insert(kSecValueData, data);
        *result = attributes;
    } else if (wantsData) {
        *result = data;
    }
    return status;
}

qint32 TVRQtKeychainStore::deleteMatching(const QVariantMap &query)
{
    // Deleting a missing entry succeeds in QtKeychain's Secret Service and KWallet
    // backends, so a delete must first find out whether there is an item: with a search
    // where the backend has one, which neither reads the secret nor asks to unlock it,
    // else by reading the item.
#ifdef TOVRA_SECRET_SERVICE_SEARCH
    const qint32 found = onKdeDesktop() ? copyMatching(query, nullptr) : runFor(query, secretServiceSearch(query));
#else
    const qint32 found = copyMatching(query, nullptr);
#endif
    if (found != errSecSuccess)
        return found;
    return runFor(query, jobFor<QKeychain::DeletePasswordJob>(query));
}
