#include "TVRQtKeychainStore_p.h"

#include "TVRCallbackDispatcher_p.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <qt6keychain/keychain.h>

using namespace TVRSecItem;

namespace {

QString backendService(const QVariantMap &query)
{
    const QString service = query.value(kSecAttrService).toString();
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

// Runs a prepared job to its end and returns its status.
qint32 run(QKeychain::Job &job, const QVariantMap &query)
{
    // Only generic passwords live here, and QtKeychain needs an application object to run.
    if (query.value(kSecClass).toString() != kSecClassGenericPassword)
        return errSecParam;
    if (!QCoreApplication::instance())
        return errSecNotAvailable;

    job.setKey(query.value(kSecAttrAccount).toString());
    job.setAutoDelete(false);

    const TVRCallbackDispatcher::SynchronousWait wait;
    QEventLoop loop;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, &QEventLoop::quit);
    job.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    return statusFor(job.error());
}

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
    QKeychain::WritePasswordJob job(backendService(attributes));
    job.setBinaryData(attributes.value(kSecValueData).toByteArray());
    const qint32 status = run(job, attributes);
    if (status == errSecSuccess && result && attributes.value(kSecReturnAttributes).toBool())
        *result = attributesOf(attributes);
    return status;
}

qint32 TVRQtKeychainStore::copyMatching(const QVariantMap &query, QVariant *result)
{
    QKeychain::ReadPasswordJob job(backendService(query));
    const qint32 status = run(job, query);
    if (status != errSecSuccess || !result)
        return status;

    const bool wantsData = query.value(kSecReturnData).toBool();
    if (query.value(kSecReturnAttributes).toBool()) {
        QVariantMap attributes = attributesOf(query);
        if (wantsData)
            attributes.insert(kSecValueData, job.binaryData());
        *result = attributes;
    } else if (wantsData) {
        *result = job.binaryData();
    }
    return status;
}

qint32 TVRQtKeychainStore::deleteMatching(const QVariantMap &query)
{
    // Deleting a missing entry succeeds in several QtKeychain backends, so ask first:
    // a delete that matched nothing must say so.
    const qint32 found = copyMatching(query, nullptr);
    if (found != errSecSuccess)
        return found;
    QKeychain::DeletePasswordJob job(backendService(query));
    return run(job, query);
}
