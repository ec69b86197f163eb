// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRQtKeychainStore_p.h"

#include "TVRKeychainLimits_p.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <qt6keychain/keychain.h>

#include <functional>
#include <memory>

using namespace TVRSecItem;
using namespace TVRKeychainLimits;

namespace {

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
    that started the first job and is not safe to use from two threads. The kit's jobs start
    here, so a host that started QtKeychain jobs of its own, on any thread and at any time,
    would share that queue with this thread: its values or the kit's would be lost, or the
    process would crash. Where this store is in use, a host keeps its own secrets through
    TVRSecureItemStore::defaultStore() instead.
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
    }

    QThread m_thread;
    QObject m_context;
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
    if (status == errSecSuccess && result)
        copyResult(query, data, result);
    return status;
}

qint32 TVRQtKeychainStore::deleteMatching(const QVariantMap &query)
{
    // Deleting a missing entry succeeds in some of QtKeychain's backends, so a delete
    // first finds out, by reading the item, whether there is one.
    const qint32 found = copyMatching(query, nullptr);
    if (found != errSecSuccess)
        return found;
    return runFor(query, jobFor<QKeychain::DeletePasswordJob>(query));
}
