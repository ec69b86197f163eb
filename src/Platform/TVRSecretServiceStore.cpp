// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSecretServiceStore_p.h"

#include "TVRKeychainLimits_p.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QList>
#include <QMap>
#include <QMutex>

#include <mutex>

using namespace TVRSecItem;
using namespace TVRKeychainLimits;

namespace {

const QString secretsName = QStringLiteral("org.freedesktop.secrets");
const QString servicePath = QStringLiteral("/org/freedesktop/secrets");
const QString defaultCollectionPath = QStringLiteral("/org/freedesktop/secrets/aliases/default");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
const QString collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");
const QString itemInterface = QStringLiteral("org.freedesktop.Secret.Item");
const QString sessionInterface = QStringLiteral("org.freedesktop.Secret.Session");
const QString promptInterface = QStringLiteral("org.freedesktop.Secret.Prompt");
const QString connectionName = QStringLiteral("tovra-keychain");

// Where a method hands back a prompt, "/" says that it needed none.
const QString noPrompt = QStringLiteral("/");

// QtKeychain's schema and the encodings its "type" attribute names.
const QString schemaName = QStringLiteral("org.qt.keychain");
const QString binaryType = QStringLiteral("base64");
const QString textType = QStringLiteral("plaintext");

using Attributes = QMap<QString, QString>;

// A secret as the Secret Service passes it, (oayays): the session it is encoded for, the
// encoding's parameters (none for "plain"), the bytes and their content type.
struct Secret
{
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Secret &secret)
{
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Secret &secret)
{
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

} // namespace

Q_DECLARE_METATYPE(Secret)

namespace {

/*
    The kit's own connection to the session bus, made by the first call and made again when
    it was lost. Its own, so that the kit's sessions and calls neither wait behind the
    host's nor depend on what the host does with its connections. Qt serves every
    connection from a thread of its D-Bus module, so a blocking call on it waits without
    running any event of the calling thread, whichever thread that is.
*/
QDBusConnection connection()
{
    static QMutex lock;
    const QMutexLocker locker(&lock);
    static std::once_flag typesRegistered;
    std::call_once(typesRegistered, [] {
        qDBusRegisterMetaType<Attributes>();
        qDBusRegisterMetaType<Secret>();
    });
    QDBusConnection bus(connectionName);
    if (bus.isConnected())
        return bus;
    QDBusConnection::disconnectFromBus(connectionName);
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
}

// The status a failed D-Bus call stands for. \a missing is the status for an object that is
// not there: a missing item is simply not found, a missing collection leaves nowhere to store.
qint32 statusOfError(const QDBusMessage &reply, qint32 missing)
{
    const QString name = reply.errorName();
    if (name == QLatin1String("org.freedesktop.Secret.Error.IsLocked"))
        return errSecInteractionNotAllowed;
    if (name == QLatin1String("org.freedesktop.Secret.Error.NoSuchObject")
        || name == QLatin1String("org.freedesktop.DBus.Error.UnknownObject"))
        return missing;
    if (name == QLatin1String("org.freedesktop.DBus.Error.AccessDenied"))
        return errSecAuthFailed;
    // A reply that is no error message has no error type, and reads as an input or output error.
    switch (QDBusError(reply).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::ServiceUnknown:
    case QDBusError::NoServer:
    case QDBusError::Disconnected:
        return errSecNotAvailable;
    default:
        return errSecIO;
    }
}

/*
    One operation of the store: its D-Bus calls share one deadline, so that all of them
    together wait for the wait limit at most.
*/
class Exchange
{
public:
    explicit Exchange(QDBusConnection bus)
        : m_bus(std::move(bus))
        , m_deadline(waitLimitMs, Qt::PreciseTimer)
    {
    }

    bool connected() const { return m_bus.isConnected(); }

    // Calls \a method and waits for its answer, on this thread; an error message when the
    // service did not answer in the time left, or when the answer does not carry
    // \a answers arguments.
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments, qsizetype answers)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(secretsName, path, interface, method);
        message.setArguments(arguments);
        const qint64 left = m_deadline.remainingTime();
        if (left <= 0)
            return message.createErrorReply(QDBusError::Timeout, QStringLiteral("keychain wait limit reached"));
        const QDBusMessage reply = m_bus.call(message, QDBus::Block, int(left));
        if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().size() != answers)
            return message.createErrorReply(QDBusError::InvalidSignature, QStringLiteral("unexpected answer"));
        return reply;
    }

    // Sends \a method without waiting for an answer: for tidying up, which may not block.
    void send(const QString &path, const QString &interface, const QString &method)
    {
        m_bus.send(QDBusMessage::createMethodCall(secretsName, path, interface, method));
    }

    /*
        What a method that may need a prompt answered. Prompts ask the user, typically to
        unlock a keyring, and no one can answer one within a synchronous call: a prompt is
        dismissed unseen and the operation is not allowed.
    */
    qint32 withoutPrompt(const QDBusObjectPath &prompt)
    {
        if (prompt.path() == noPrompt)
            return errSecSuccess;
        send(prompt.path(), promptInterface, QStringLiteral("Dismiss"));
        return errSecInteractionNotAllowed;
    }

    // The items whose attributes include \a attributes, in every collection, unlocked and
    // locked alike; a search neither reads a secret nor asks to unlock anything.
    qint32 search(const Attributes &attributes, QList<QDBusObjectPath> *unlocked, QList<QDBusObjectPath> *locked)
    {
        const QDBusMessage reply =
            call(servicePath, serviceInterface, QStringLiteral("SearchItems"), {QVariant::fromValue(attributes)}, 2);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return statusOfError(reply, errSecItemNotFound);
        *unlocked = qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().at(0));
        *locked = qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().at(1));
        return errSecSuccess;
    }

    // Unlocks \a item where that takes no prompt.
    qint32 unlock(const QDBusObjectPath &item)
    {
        const QDBusMessage reply = call(servicePath, serviceInterface, QStringLiteral("Unlock"),
                                        {QVariant::fromValue(QList<QDBusObjectPath>{item})}, 2);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return statusOfError(reply, errSecItemNotFound);
        const qint32 status = withoutPrompt(qdbus_cast<QDBusObjectPath>(reply.arguments().at(1)));
        if (status != errSecSuccess)
            return status;
        const auto unlocked = qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().at(0));
        return unlocked.contains(item) ? errSecSuccess : errSecInteractionNotAllowed;
    }

    /*
        Opens a session that passes secrets as they are ("plain"). The bytes cross the
        session bus unencrypted, which carries only the user's own processes: the
        Diffie-Hellman session that the Secret Service also offers would hide them from
        none of those.
    */
    qint32 openSession()
    {
        const QDBusMessage reply = call(servicePath, serviceInterface, QStringLiteral("OpenSession"),
                                        {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))}, 2);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return statusOfError(reply, errSecNotAvailable);
        m_session = qdbus_cast<QDBusObjectPath>(reply.arguments().at(1));
        return errSecSuccess;
    }

    QDBusObjectPath session() const { return m_session; }

    ~Exchange()
    {
        if (!m_session.path().isEmpty())
            send(m_session.path(), sessionInterface, QStringLiteral("Close"));
    }

    Exchange(const Exchange &) = delete;
    Exchange &operator=(const Exchange &) = delete;

private:
    QDBusConnection m_bus;
    QDeadlineTimer m_deadline;
    QDBusObjectPath m_session;
};

Attributes attributesFor(const QVariantMap &query)
{
    return {{QStringLiteral("server"), backendService(query)},
            {QStringLiteral("user"), query.value(kSecAttrAccount).toString()}};
}

// Reads the secret of the item of \a query into \a data: the kit's own encoding first,
// then QtKeychain's text items.
qint32 readSecret(Exchange &exchange, const QVariantMap &query, QByteArray *data)
{
    for (const QString &type : {binaryType, textType}) {
        Attributes attributes = attributesFor(query);
        attributes.insert(QStringLiteral("type"), type);
        QList<QDBusObjectPath> unlocked;
        QList<QDBusObjectPath> locked;
        qint32 status = exchange.search(attributes, &unlocked, &locked);
        if (status != errSecSuccess)
            return status;
        if (unlocked.isEmpty() && locked.isEmpty())
            continue;
        const QDBusObjectPath item = unlocked.isEmpty() ? locked.constFirst() : unlocked.constFirst();
        if (unlocked.isEmpty() && (status = exchange.unlock(item)) != errSecSuccess)
            return status;
        if ((status = exchange.openSession()) != errSecSuccess)
            return status;
        const QDBusMessage reply = exchange.call(item.path(), itemInterface, QStringLiteral("GetSecret"),
                                                 {QVariant::fromValue(exchange.session())}, 1);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return statusOfError(reply, errSecItemNotFound);
        const Secret secret = qdbus_cast<Secret>(reply.arguments().at(0));
        *data = type == binaryType ? QByteArray::fromBase64(secret.value) : secret.value;
        return errSecSuccess;
    }
    return errSecItemNotFound;
}

// Whether there is an item of \a query, found by a search alone.
qint32 findItem(Exchange &exchange, const QVariantMap &query)
{
    QList<QDBusObjectPath> unlocked;
    QList<QDBusObjectPath> locked;
    const qint32 status = exchange.search(attributesFor(query), &unlocked, &locked);
    if (status != errSecSuccess)
        return status;
    return unlocked.isEmpty() && locked.isEmpty() ? errSecItemNotFound : errSecSuccess;
}

// Adds the item of \a attributes to the default collection, replacing one of the same
// attributes.
qint32 createItem(Exchange &exchange, const QVariantMap &attributes)
{
    qint32 status = exchange.openSession();
    if (status != errSecSuccess)
        return status;
    Attributes itemAttributes = attributesFor(attributes);
    itemAttributes.insert(QStringLiteral("type"), binaryType);
    itemAttributes.insert(QStringLiteral("xdg:schema"), schemaName);
    const QVariantMap properties{
        {itemInterface + QStringLiteral(".Label"), backendService(attributes)},
        {itemInterface + QStringLiteral(".Attributes"), QVariant::fromValue(itemAttributes)},
    };
    const Secret secret{
        exchange.session(), {}, attributes.value(kSecValueData).toByteArray().toBase64(), QStringLiteral("text/plain")};
    const QDBusMessage reply = exchange.call(defaultCollectionPath, collectionInterface, QStringLiteral("CreateItem"),
                                             {properties, QVariant::fromValue(secret), true}, 2);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return statusOfError(reply, errSecNotAvailable);
    return exchange.withoutPrompt(qdbus_cast<QDBusObjectPath>(reply.arguments().at(1)));
}

// Removes every item of \a query, of either encoding.
qint32 deleteItems(Exchange &exchange, const QVariantMap &query)
{
    QList<QDBusObjectPath> unlocked;
    QList<QDBusObjectPath> locked;
    qint32 status = exchange.search(attributesFor(query), &unlocked, &locked);
    if (status != errSecSuccess)
        return status;
    const QList<QDBusObjectPath> items = unlocked + locked;
    if (items.isEmpty())
        return errSecItemNotFound;
    for (const QDBusObjectPath &item : items) {
        const QDBusMessage reply = exchange.call(item.path(), itemInterface, QStringLiteral("Delete"), {}, 1);
        if (reply.type() != QDBusMessage::ReplyMessage)
            status = statusOfError(reply, errSecSuccess); // one gone meanwhile is gone
        else
            status = exchange.withoutPrompt(qdbus_cast<QDBusObjectPath>(reply.arguments().at(0)));
        if (status != errSecSuccess)
            return status;
    }
    return errSecSuccess;
}

Unavailability unavailability;

// Runs \a work for \a query unless the query is not for this store, there is no
// application (Qt's D-Bus module needs one), or a recent failure says not to try; and notes
// how it ended.
template <typename Work>
qint32 runFor(const QVariantMap &query, Work work)
{
    if (query.value(kSecClass).toString() != kSecClassGenericPassword)
        return errSecParam;
    if (!QCoreApplication::instance() || unavailability.remembered())
        return errSecNotAvailable;
    Exchange exchange(connection());
    if (!exchange.connected())
        return unavailability.note(errSecNotAvailable);
    return unavailability.note(work(exchange));
}

} // namespace

qint32 TVRSecretServiceStore::add(const QVariantMap &attributes, QVariant *result)
{
    const qint32 status =
        runFor(attributes, [&attributes](Exchange &exchange) { return createItem(exchange, attributes); });
    if (status == errSecSuccess && result && attributes.value(kSecReturnAttributes).toBool())
        *result = attributesOf(attributes);
    return status;
}

qint32 TVRSecretServiceStore::copyMatching(const QVariantMap &query, QVariant *result)
{
    // Only the bytes need the secret; whether there is an item, and its attributes, take a
    // search, which asks nobody to unlock anything.
    const bool wantsData = result && query.value(kSecReturnData).toBool();
    QByteArray data;
    const qint32 status = runFor(query, [&](Exchange &exchange) {
        return wantsData ? readSecret(exchange, query, &data) : findItem(exchange, query);
    });
    if (status == errSecSuccess && result)
        copyResult(query, data, result);
    return status;
}

qint32 TVRSecretServiceStore::deleteMatching(const QVariantMap &query)
{
    return runFor(query, [&query](Exchange &exchange) { return deleteItems(exchange, query); });
}
