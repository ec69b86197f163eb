// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNetworkManager.h"

#include "TVRSettings_p.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

#include <utility>

namespace {

const QString serviceHost = QStringLiteral(TOVRA_SERVICE_HOST);

// How long a request may go without sending or receiving anything before it fails with a
// time-out, in the session the kit makes itself (the default of a platform URL session).
constexpr int defaultTransferTimeoutMs = 60 * 1000;

QByteArray bodyFor(const QJsonValue &parameters)
{
    if (parameters.isObject())
        return QJsonDocument(parameters.toObject()).toJson(QJsonDocument::Compact);
    if (parameters.isArray())
        return QJsonDocument(parameters.toArray()).toJson(QJsonDocument::Compact);
    return {};
}

QJsonValue jsonFor(const QByteArray &body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (document.isObject())
        return document.object();
    if (document.isArray())
        return document.array();
    return QJsonValue(QJsonValue::Undefined);
}

// Any reply that carries an HTTP status is the server's answer, whatever the status and
// whatever Qt's error for it (Qt reports 4xx, 5xx, a 407 or a redirect without a usable
// Location as errors). Only the transfer itself can still fail after the status line: the
// connection broke off or went silent in the body, the kit refused a redirect that leaves
// the service's origin, or a redirect loop. Those are Qt's network-layer errors (1-99),
// and a body Qt could not decode.
bool isAnswer(const QNetworkReply *reply)
{
    if (!reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
        return false;
    const QNetworkReply::NetworkError error = reply->error();
    const bool transferFailed = (error > QNetworkReply::NoError && error < QNetworkReply::ProxyConnectionRefusedError)
        || error == QNetworkReply::ProtocolFailure;
    return !transferFailed;
}

// How long a transfer had gone without progress when it failed.
struct Silence
{
    QElapsedTimer sinceActivity;
    qint64 atError = -1;
};

// The handlers of one request, called at most once between them.
struct PendingRequest
{
    TVRRequestSuccessHandler success;
    TVRRequestFailureHandler failure;
    bool completed = false;

    void succeed(const TVRHTTPResponse &response, const QJsonValue &json)
    {
        completed = true;
        const TVRRequestSuccessHandler handler = std::exchange(success, nullptr);
        failure = nullptr;
        if (handler)
            handler(response, json);
    }

    void fail(const TVRHTTPResponse &response, const TVRError &error)
    {
        completed = true;
        const TVRRequestFailureHandler handler = std::exchange(failure, nullptr);
        success = nullptr;
        if (handler)
            handler(response, error);
    }
};

} // namespace

class TVRNetworkManagerPrivate
{
public:
    QPointer<QNetworkAccessManager> session;
};

TVRNetworkManager::TVRNetworkManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<TVRNetworkManagerPrivate>())
{
}

TVRNetworkManager::~TVRNetworkManager() = default;

QUrl TVRNetworkManager::baseURLComponents()
{
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(serviceHost);
    return url;
}

QNetworkRequest TVRNetworkManager::requestWithURL(const QUrl &url)
{
    // A missing key or secret is written as empty text: no key and no secret give ":".
    const QString credentials = TVRSettings::current().apiKey + QLatin1Char(':') + TVRSettings::current().apiSecret;

    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("Authorization", "Basic " + credentials.toUtf8().toBase64());
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    return request;
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

QNetworkAccessManager *TVRNetworkManager::session()
{
    if (!d->session) {
        d->session = new QNetworkAccessManager(this);
        d->session->setTransferTimeout(defaultTransferTimeoutMs);
    }
    return d->session;
}

void TVRNetworkManager::setSession(QNetworkAccessManager *session)
{
    d->session = session;
}

void TVRNetworkManager::requestForPath(const QString &path, const QString &query, TVRHTTPMethod method,
                                       const QJsonValue &parameters, TVRRequestSuccessHandler success,
                                       TVRRequestFailureHandler failure)
{
    auto pending = std::make_shared<PendingRequest>();
    pending->success = std::move(success);
    pending->failure = std::move(failure);

    QUrl url = baseURLComponents();
    url.setPath(path, QUrl::DecodedMode);
    if (!query.isNull())
        url.setQuery(query, QUrl::DecodedMode);

    const QString verb = stringForHTTPMethod(method);
    if (verb.isNull()) {
        TVRHTTPResponse response;
        const TVRError error(TVRError::kitDomain(), QNetworkReply::ProtocolInvalidOperationError,
                             QStringLiteral("%1 is not an HTTP method of the kit").arg(method));
        QTimer::singleShot(0, [pending, response, error] { pending->fail(response, error); });
        return;
    }

    const QNetworkRequest request = requestWithURL(url);
    QNetworkAccessManager *const carrier = session();
    QNetworkReply *reply = method == TVRHTTPMethodGET
        ? carrier->get(request)
        : carrier->sendCustomRequest(request, verb.toLatin1(), bodyFor(parameters));

    // Qt ends a transfer that stays silent for the session's time-out by aborting it, which
    // it reports as a cancellation. Its timer restarts on the same progress as this one,
    // and later, so a cancellation after that long a silence is the time-out (less the 5 %
    // by which a coarse timer may fire early). The silence is read when the error comes,
    // before the progress signals of the abort itself.
    const int transferTimeout = carrier->transferTimeout();
    auto silence = std::make_shared<Silence>();
    silence->sinceActivity.start();
    const auto restartSilence = [silence] { silence->sinceActivity.restart(); };
    connect(reply, &QNetworkReply::metaDataChanged, reply, restartSilence);
    connect(reply, &QNetworkReply::downloadProgress, reply, restartSilence);
    connect(reply, &QNetworkReply::uploadProgress, reply, restartSilence);
    connect(reply, &QNetworkReply::errorOccurred, reply,
            [silence] { silence->atError = silence->sinceActivity.elapsed(); });

    connect(reply, &QNetworkReply::finished, reply, [reply, pending, silence, transferTimeout] {
        reply->deleteLater();
        if (pending->completed)
            return;
        const TVRHTTPResponse response(reply);
        if (isAnswer(reply)) {
            pending->succeed(response, jsonFor(reply->readAll()));
        } else if (reply->error() == QNetworkReply::OperationCanceledError && transferTimeout > 0
                   && silence->atError >= transferTimeout - transferTimeout / 20) {
            pending->fail(
                response,
                TVRError(TVRError::networkDomain(), QNetworkReply::TimeoutError,
                         QStringLiteral("The request timed out after %1 ms without data").arg(transferTimeout)));
        } else {
            pending->fail(response, TVRError(TVRError::networkDomain(), reply->error(), reply->errorString()));
        }
    });
    if (method == TVRHTTPMethodHEAD) {
        // Sent as a custom verb, to carry its body, the request is no HEAD to Qt, which
        // would then wait for the body that the answer's Content-Length announces and a
        // HEAD answer never sends. The headers are the whole answer.
        connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, pending] {
            if (pending->completed || !reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()
                || reply->attribute(QNetworkRequest::RedirectionTargetAttribute).isValid()) {
                return;
            }
            pending->succeed(TVRHTTPResponse(reply), QJsonValue(QJsonValue::Undefined));
            reply->abort();
        });
    }
    // A reply destroyed unfinished, with its session, still owes the caller an answer.
    connect(reply, &QObject::destroyed, [pending, url] {
        if (!pending->completed) {
            pending->fail(TVRHTTPResponse(),
                          TVRError(TVRError::networkDomain(), QNetworkReply::OperationCanceledError,
                                   QStringLiteral("Request to %1 was cancelled").arg(url.toString())));
        }
    });
}
