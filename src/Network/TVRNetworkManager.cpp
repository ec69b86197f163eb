// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNetworkManager_p.h"

#include "TVRLogging_p.h"
#include "TVRSettings_p.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QWindow>

#include <mutex>
#include <optional>
#include <utility>

#ifdef TOVRA_LAZY_NETWORK
#include "tovra_version.h"

#include <dlfcn.h>
#include <unistd.h>
#endif

namespace {

// QNetworkReply::NetworkError values of the core's own failures, which it cannot include.
constexpr int operationCanceledError = 5; // OperationCanceledError
constexpr int unknownNetworkError = 99; // UnknownNetworkError
constexpr int protocolInvalidOperationError = 302; // ProtocolInvalidOperationError

// The longest a process's first request waits for the windows' next frame.
constexpr int firstRequestWaitMs = 500;

using SendFunction = void (*)(TVRNetworkManager *, TVRTransportRequest *);

QByteArray bodyFor(const QJsonValue &parameters)
{
    if (parameters.isObject())
        return QJsonDocument(parameters.toObject()).toJson(QJsonDocument::Compact);
    if (parameters.isArray())
        return QJsonDocument(parameters.toArray()).toJson(QJsonDocument::Compact);
    return {};
}

#ifdef TOVRA_LAZY_NETWORK
std::mutex transportMutex;
SendFunction loadedSend = nullptr;

// The network library in the core's own folder, where the kit installs them side by side.
QByteArray libraryBesideCore()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void *>(&bodyFor), &info) == 0 || !info.dli_fname)
        return {};
    const QByteArray core(info.dli_fname);
    const qsizetype slash = core.lastIndexOf('/');
    return slash < 0 ? QByteArray() : core.left(slash + 1) + TOVRA_NETWORK_LIBRARY;
}

// Whether the process has Qt Network already, linked by the host or another library: then
// loading the kit's network library costs next to nothing, and a request need not wait.
bool qtNetworkLoaded()
{
    void *qtNetwork = dlopen("libQt6Network.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (qtNetwork)
        dlclose(qtNetwork);
    return qtNetwork != nullptr;
}

// The network library's send function, or null. Without \a load, only if the process has
// loaded the library already; with it, loads it first, and says in \a error why it could not.
// The library beside the core is the one built with it; only where there is none is it
// looked for by its name. One of another release is refused.
SendFunction transport(bool load, QString *error)
{
    const std::lock_guard<std::mutex> lock(transportMutex);
    if (loadedSend)
        return loadedSend;
    const int mode = RTLD_NOW | RTLD_LOCAL | (load ? 0 : RTLD_NOLOAD);
    const QByteArray beside = libraryBesideCore();
    const bool hasBeside = !beside.isEmpty() && access(beside.constData(), F_OK) == 0;
    void *library = dlopen(hasBeside ? beside.constData() : TOVRA_NETWORK_LIBRARY, mode);
    QString reason;
    if (!library) {
        const char *dlError = dlerror();
        reason = QString::fromLocal8Bit(dlError ? dlError : "not found");
    } else {
        const auto *version = static_cast<const char *>(dlsym(library, "tovraTransportVersion"));
        const auto send = reinterpret_cast<SendFunction>(dlsym(library, "tovraTransportSend"));
        if (!version || !send || qstrcmp(version, TOVRA_VERSION_STRING) != 0) {
            reason = QStringLiteral("%1 is not the network library of release %2")
                         .arg(QLatin1String(hasBeside ? beside.constData() : TOVRA_NETWORK_LIBRARY),
                              QLatin1String(TOVRA_VERSION_STRING));
            dlclose(library);
        } else {
            loadedSend = send;
        }
    }
    if (!loadedSend && error)
        *error = reason;
    return loadedSend;
}
#else
bool qtNetworkLoaded()
{
    return true;
}

SendFunction transport(bool, QString *)
{
    return &tovraTransportSend;
}
#endif

// Calls \a failure with \a error from the event loop, as a request's handlers are called.
void failLater(TVRRequestFailureHandler failure, const TVRError &error)
{
    if (!failure)
        return;
    QTimer::singleShot(0, [failure = std::move(failure), error] { failure(TVRHTTPResponse(), error); });
}

// Loads the network library if need be and sends \a request through \a manager's session.
void dispatch(TVRNetworkManager *manager, TVRTransportRequest request)
{
    QString reason;
    if (const SendFunction send = transport(true, &reason)) {
        send(manager, &request);
        return;
    }
    qCWarning(lcTovra, "NETWORK: cannot load %s: %s", TOVRA_NETWORK_LIBRARY, qUtf8Printable(reason));
    failLater(std::move(request.failure),
              TVRError(TVRError::kitDomain(), unknownNetworkError,
                       QStringLiteral("The kit's network library %1 could not be loaded: %2")
                           .arg(QLatin1String(TOVRA_NETWORK_LIBRARY), reason)));
}

// A request made before the network library is loaded. Loading it loads Qt Network, which
// takes longer than a small screen takes to show, so the request waits until every visible
// window has shown its next frame (at most firstRequestWaitMs), then loads it and is sent.
// Destroyed with its manager before that, it fails as cancelled, as a reply destroyed with
// its session does.
class DeferredRequest : public QObject
{
public:
    DeferredRequest(TVRNetworkManager *manager, TVRTransportRequest request)
        : QObject(manager)
        , m_manager(manager)
        , m_request(std::move(request))
    {
        // Both go with the request if its manager moves to another thread.
        QMetaObject::invokeMethod(this, &DeferredRequest::watchWindows, Qt::QueuedConnection);
        auto *fallback = new QTimer(this);
        fallback->setSingleShot(true);
        connect(fallback, &QTimer::timeout, this, &DeferredRequest::send);
        fallback->start(firstRequestWaitMs);
    }

    ~DeferredRequest() override
    {
        if (!m_request || !m_request->failure)
            return;
        const TVRRequestFailureHandler failure = std::exchange(m_request->failure, nullptr);
        failure(TVRHTTPResponse(),
                TVRError(TVRError::networkDomain(), operationCanceledError,
                         QStringLiteral("Request to %1 was cancelled").arg(m_request->url.toString())));
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A widget window paints while it handles these, a Qt Quick window renders: the
        // frame is on screen a loop turn after the filter, and a second turn lets a host
        // that waits for it hear of it first.
        if ((event->type() == QEvent::Expose || event->type() == QEvent::UpdateRequest)
            && m_windows.removeAll(watched) > 0) {
            watched->removeEventFilter(this);
            frameShown();
        }
        return false;
    }

private:
    void watchWindows()
    {
        // Windows belong to the application's thread: a manager of another thread has none
        // to wait for, and without a QGuiApplication there are none.
        const QCoreApplication *application = QCoreApplication::instance();
        if (QThread::currentThread() == (application ? application->thread() : nullptr)) {
            const QList<QWindow *> windows = QGuiApplication::topLevelWindows();
            for (QWindow *window : windows) {
                if (!window->isVisible())
                    continue;
                m_windows.append(window);
                window->installEventFilter(this);
                // A window closed for good before it shows a frame has no frame to wait for.
                connect(window, &QObject::destroyed, this, [this] {
                    m_windows.removeIf([](const QPointer<QObject> &watched) { return watched.isNull(); });
                    frameShown();
                });
                if (window->isExposed())
                    window->requestUpdate();
            }
        }
        if (m_windows.isEmpty())
            send();
    }

    // Once no watched window is left to show its frame, the request goes two loop turns later.
    void frameShown()
    {
        if (m_windows.isEmpty() && m_request)
            QTimer::singleShot(0, this, [this] { QTimer::singleShot(0, this, &DeferredRequest::send); });
    }

    void send()
    {
        if (!m_request)
            return;
        for (const QPointer<QObject> &window : std::as_const(m_windows)) {
            if (window)
                window->removeEventFilter(this);
        }
        m_windows.clear();
        TVRTransportRequest request = std::move(*m_request);
        m_request.reset();
        dispatch(m_manager, std::move(request));
        deleteLater();
    }

    TVRNetworkManager *const m_manager;
    std::optional<TVRTransportRequest> m_request; // until it is sent
    QList<QPointer<QObject>> m_windows;
};

} // namespace

TVRNetworkManager::TVRNetworkManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<TVRNetworkManagerPrivate>())
{
}

TVRNetworkManager::~TVRNetworkManager() = default;

QUrl TVRNetworkManager::baseURLComponents()
{
    return TVRSettings::current().serviceURL;
}

QByteArray TVRNetworkManager::authorization()
{
    // A missing key or secret is written as empty text: no key and no secret give ":".
    const QString credentials = TVRSettings::current().apiKey + QLatin1Char(':') + TVRSettings::current().apiSecret;
    return "Basic " + credentials.toUtf8().toBase64();
}

QString TVRNetworkManager::stringForHTTPMethod(TVRHTTPMethod method)
{
    switch (method) {
    case TVRHTTPMethodGET:
        return QStringLiteral("GET");
    case TVRHTTPMethodPOST:
        return QStringLiteral("POST");
    case TVRHTTPMethodPUT:
        return QStringLiteral("PUT");
    case TVRHTTPMethodDELETE:
        return QStringLiteral("DELETE");
    case TVRHTTPMethodPATCH:
        return QStringLiteral("PATCH");
    case TVRHTTPMethodHEAD:
        return QStringLiteral("HEAD");
    }
    return {};
}

void TVRNetworkManager::requestForPath(const QString &path, const QString &query, TVRHTTPMethod method,
                                       const QJsonValue &parameters, TVRRequestSuccessHandler success,
                                       TVRRequestFailureHandler failure)
{
    // The service's path prefix, if it has one, comes before every path, each encoded as
    // it is: a "%2F" in the prefix stays one.
    QUrl url = baseURLComponents();
    QUrl tail;
    tail.setPath(path, QUrl::DecodedMode);
    url.setPath(url.path(QUrl::FullyEncoded) + tail.path(QUrl::FullyEncoded), QUrl::TolerantMode);
    if (!query.isNull())
        url.setQuery(query, QUrl::DecodedMode);

    const QString verb = stringForHTTPMethod(method);
    if (verb.isNull()) {
        failLater(std::move(failure),
                  TVRError(TVRError::kitDomain(), protocolInvalidOperationError,
                           QStringLiteral("%1 is not an HTTP method of the kit").arg(method)));
        return;
    }

    TVRTransportRequest request;
    request.url = url;
    request.verb = verb.toLatin1();
    request.body = method == TVRHTTPMethodGET ? QByteArray() : bodyFor(parameters);
    request.maximumReplySize = TVRSettings::current().maximumReplySize;
    request.authorization = authorization();
    request.success = std::move(success);
    request.failure = std::move(failure);
    // Once the library is in, nothing more is asked of the loader; before, a process that
    // has Qt Network already loads it at once.
    SendFunction sendNow = transport(false, nullptr);
    if (!sendNow && qtNetworkLoaded())
        sendNow = transport(true, nullptr);
    if (sendNow)
        sendNow(this, &request);
    else
        new DeferredRequest(this, std::move(request));
}
