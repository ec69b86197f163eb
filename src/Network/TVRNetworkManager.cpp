#include "TVRNetworkManager.h"

#include "TVRCallbackDispatcher_p.h"
#include "TVRManager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

namespace {

const QString serviceHost = QStringLiteral(TOVRA_SERVICE_HOST);

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

// Qt reports an HTTP error status as a reply error; here only a request that got no
// complete answer has failed, so those statuses do not count.
bool isTransportFailure(const QNetworkReply *reply)
{
    const QNetworkReply::NetworkError error = reply->error();
    if (error == QNetworkReply::NoError)
        return false;
    if (!reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
        return true;
    switch (error) {
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return false;
    default:
        return true;
    }
}

// The handlers of one request, called at most once between them.
struct PendingRequest
{
    TVRRequestSuccessHandler success;
    TVRRequestFailureHandler failure;
    bool completed = false;

    void succeed(const TVRHTTPResponse &response, const QJsonValue &json)
    {
        completed = true;
        TVRCallbackDispatcher::deliver([success = std::move(success), response, json] {
            if (success)
                success(response, json);
        });
    }

    void fail(const TVRHTTPResponse &response, const TVRError &error)
    {
        completed = true;
        TVRCallbackDispatcher::deliver([failure = std::move(failure), response, error] {
            if (failure)
                failure(response, error);
        });
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
    const QString credentials = TVRManager::apiKey() + QLatin1Char(':') + TVRManager::apiSecret();

    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("Authorization", "Basic " + credentials.toUtf8().toBase64());
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::SameOriginRedirectPolicy);
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
    if (!d->session)
        d->session = new QNetworkAccessManager(this);
    return d->session;
}

void TVRNetworkManager::setSession(QNetworkAccessManager *session)
{
    d->session = session;
}

void TVRNetworkManager::requestForPath(const QString &path, const QString &query,
                                       TVRHTTPMethod method, const QJsonValue &parameters,
                                       TVRRequestSuccessHandler success,
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
    QNetworkReply *reply = method == TVRHTTPMethodGET
        ? session()->get(request)
        : session()->sendCustomRequest(request, verb.toLatin1(), bodyFor(parameters));

    connect(reply, &QNetworkReply::finished, reply, [reply, pending] {
        reply->deleteLater();
        if (pending->completed)
            return;
        const TVRHTTPResponse response(reply);
        if (isTransportFailure(reply))
            pending->fail(response, TVRError(TVRError::networkDomain(), reply->error(), reply->errorString()));
        else
            pending->succeed(response, jsonFor(reply->readAll()));
    });
    if (method == TVRHTTPMethodHEAD) {
        // Sent as a custom verb, to carry its body, the request is no HEAD to Qt, which
        // would then wait for the body that the answer's Content-Length announces and a
        // HEAD answer never sends. The headers are the whole answer.
        connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, pending] {
            if (pending->completed
                || !reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()
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
            pending->fail(TVRHTTPResponse(), TVRError(TVRError::networkDomain(),
                                                      QNetworkReply::OperationCanceledError,
                                                      QStringLiteral("Request to %1 was cancelled").arg(url.toString())));
        }
    });
}
