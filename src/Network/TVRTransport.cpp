// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// The kit's requests over Qt Network: sending, redirects within the service's origin, the
// reply size limit and the time-out. The one file of the kit that uses Qt Network; the core
// reaches it through tovraTransportSend().

#include "tovra_version.h"
#include "TVRHTTPResponse_p.h"
#include "TVRNetworkManager_p.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

#include <utility>

namespace {

// Redirects followed for one request, as many as Qt follows by default.
constexpr int maximumRedirects = 50;

// The most of a body that may wait in a reply before the kit takes it out.
constexpr qint64 readAhead = qint64(512) * 1024;

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

// The handlers of one request, called at most once between them, and the redirects it
// may still follow. Once it has answered, no reply owes the answer any more.
struct PendingRequest
{
    TVRRequestSuccessHandler success;
    TVRRequestFailureHandler failure;
    int redirectsLeft = maximumRedirects;
    qint64 maximumReplySize = 0;
    QByteArray authorization;
    const QNetworkReply *current = nullptr; // the reply that owes the answer
    QByteArray received; // the body that reply has brought so far

    void succeed(const TVRHTTPResponse &response, const QJsonValue &json)
    {
        current = nullptr;
        const TVRRequestSuccessHandler handler = std::exchange(success, nullptr);
        failure = nullptr;
        if (handler)
            handler(response, json);
    }

    void fail(const TVRHTTPResponse &response, const TVRError &error)
    {
        current = nullptr;
        const TVRRequestFailureHandler handler = std::exchange(failure, nullptr);
        success = nullptr;
        if (handler)
            handler(response, error);
    }
};

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) { return url.port(url.scheme() == QLatin1String("https") ? 443 : 80); };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Ends \a reply before its transfer is over: it owes the caller nothing any more, so its
// abort goes unheard. Done before the handler runs, which may delete the session and the
// reply with it.
void release(QNetworkReply *reply, PendingRequest &pending)
{
    pending.current = nullptr;
    reply->abort();
}

// Refuses a reply larger than the limit: the handler hears of it at once and the transfer
// stops, so that no more than about the limit is ever held.
void refuseTooLarge(QNetworkReply *reply, PendingRequest &pending, qint64 size, bool announced, qint64 limit)
{
    const QString message = announced
        ? QStringLiteral("The reply of %1 bytes is larger than the limit of %2 bytes").arg(size).arg(limit)
        : QStringLiteral("The reply passed %1 bytes, more than the limit of %2 bytes").arg(size).arg(limit);
    const TVRHTTPResponse response(reply);
    release(reply, pending);
    pending.fail(response, TVRError(TVRError::kitDomain(), QNetworkReply::UnknownContentError, message));
}

void send(QNetworkAccessManager *carrier, const std::shared_ptr<PendingRequest> &pending, const QUrl &url,
          const QByteArray &verb, const QByteArray &body);

// Follows the redirect that \a response of a request for \a url names, to \a target, if it
// stays within the service's origin; else the request fails.
void redirect(const QPointer<QNetworkAccessManager> &session, const std::shared_ptr<PendingRequest> &pending,
              const TVRHTTPResponse &response, const QUrl &target, const QUrl &url, const QByteArray &verb,
              const QByteArray &body)
{
    // Relative to the kit's own address, not to the one a session may route it to.
    const QUrl next = url.resolved(target);
    if (!sameOrigin(next, url)) {
        pending->fail(response,
                      TVRError(TVRError::networkDomain(), QNetworkReply::InsecureRedirectError,
                               QStringLiteral("Refused the redirect from %1 to %2, which leaves the service")
                                   .arg(url.toString(), next.toString())));
        return;
    }
    if (--pending->redirectsLeft < 0 || !session) {
        pending->fail(response,
                      TVRError(TVRError::networkDomain(), QNetworkReply::TooManyRedirectsError,
                               QStringLiteral("Too many redirects from %1").arg(url.toString())));
        return;
    }
    // As browsers and Qt go on: a 303 asks for its target with GET (a HEAD stays a HEAD),
    // and a POST that was moved (301, 302) goes on as a GET.
    const int status = response.statusCode();
    if ((status == 303 && verb != "HEAD") || ((status == 301 || status == 302) && verb == "POST"))
        send(session, pending, next, "GET", {});
    else
        send(session, pending, next, verb, body);
}

// Sends one request of \a pending to \a url; a redirect within the service's origin sends
// the next one from here.
void send(QNetworkAccessManager *carrier, const std::shared_ptr<PendingRequest> &pending, const QUrl &url,
          const QByteArray &verb, const QByteArray &body)
{
    QNetworkRequest request = TVRNetworkManager::requestWithURL(url);
    // The credentials of when the request was made, though the host may have set others since.
    request.setRawHeader("Authorization", pending->authorization);
    // The kit follows redirects itself: Qt drops the body of a redirect it cannot follow.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    const bool isGet = verb == "GET";
    const bool isHead = verb == "HEAD";
    QNetworkReply *reply = isGet ? carrier->get(request) : carrier->sendCustomRequest(request, verb, body);
    pending->current = reply;
    pending->received.clear();

    // Qt ends a transfer that stays silent for the session's time-out by aborting it, which
    // it reports as a cancellation. Its timer restarts on the same progress as this one,
    // and later, so a cancellation after that long a silence is the time-out (less the 5 %
    // by which a coarse timer may fire early). The silence is read when the error comes,
    // before the progress signals of the abort itself.
    const int transferTimeout = carrier->transferTimeout();
    auto silence = std::make_shared<Silence>();
    silence->sinceActivity.start();
    const auto restartSilence = [silence] { silence->sinceActivity.restart(); };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, restartSilence);
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, restartSilence);
    QObject::connect(reply, &QNetworkReply::uploadProgress, reply, restartSilence);
    QObject::connect(reply, &QNetworkReply::errorOccurred, reply,
                     [silence] { silence->atError = silence->sinceActivity.elapsed(); });

    const qint64 limit = pending->maximumReplySize;
    if (!isHead) {
        // The body is taken out of the reply as it comes, and Qt stops reading from the
        // connection while this much waits in the reply: a thread that is busy elsewhere
        // lets no more than that pile up beyond the limit.
        reply->setReadBufferSize(readAhead);
        QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, pending, limit] {
            const qint64 announced = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
            if (pending->current == reply && announced > limit)
                refuseTooLarge(reply, *pending, announced, true, limit);
        });
        QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, pending, limit] {
            if (pending->current != reply)
                return;
            pending->received += reply->readAll();
            if (pending->received.size() > limit)
                refuseTooLarge(reply, *pending, pending->received.size(), false, limit);
        });
    }

    const QPointer<QNetworkAccessManager> session(carrier);
    QObject::connect(
        reply, &QNetworkReply::finished, reply, [reply, pending, silence, transferTimeout, url, verb, body, session] {
            reply->deleteLater();
            if (pending->current != reply)
                return;
            const TVRHTTPResponse response(reply);
            const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
            if (isRedirect(response.statusCode()) && !target.isEmpty() && reply->error() == QNetworkReply::NoError) {
                redirect(session, pending, response, target, url, verb, body);
                return;
            }
            if (isAnswer(reply)) {
                TVRHTTPResponse answer = response;
                answer.setBody(std::exchange(pending->received, {}) + reply->readAll());
                pending->succeed(answer, jsonFor(answer.body()));
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
    if (isHead) {
        // Sent as a custom verb, to carry its body, the request is no HEAD to Qt, which
        // would then wait for the body that the answer's Content-Length announces and a
        // HEAD answer never sends. The headers are the whole answer.
        QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, pending, url, verb, body, session] {
            if (pending->current != reply || !reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
                return;
            const TVRHTTPResponse response(reply);
            const QUrl target = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
            release(reply, *pending);
            if (isRedirect(response.statusCode()) && !target.isEmpty())
                redirect(session, pending, response, target, url, verb, body);
            else
                pending->succeed(response, QJsonValue(QJsonValue::Undefined));
        });
    }
    // A reply destroyed unfinished, with its session, still owes the caller an answer.
    QObject::connect(reply, &QObject::destroyed, [pending, url, reply] {
        if (pending->current == reply) {
            pending->fail(TVRHTTPResponse(),
                          TVRError(TVRError::networkDomain(), QNetworkReply::OperationCanceledError,
                                   QStringLiteral("Request to %1 was cancelled").arg(url.toString())));
        }
    });
}

} // namespace

// How long a request may go without sending or receiving anything before it fails with a
// time-out, in the session the kit makes itself (the default of a platform URL session).
constexpr int defaultTransferTimeoutMs = 60 * 1000;

TVRHTTPResponse::TVRHTTPResponse(const QNetworkReply *reply)
    : TVRHTTPResponse()
{
    d->statusCode = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    d->url = reply->url();
    d->headers = reply->rawHeaderPairs();
}

QNetworkRequest TVRNetworkManager::requestWithURL(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("Authorization", authorization());
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    return request;
}

QNetworkAccessManager *TVRNetworkManager::session()
{
    auto *session = qobject_cast<QNetworkAccessManager *>(d->session.data());
    if (!session) {
        session = new QNetworkAccessManager(this);
        session->setTransferTimeout(defaultTransferTimeoutMs);
        d->session = session;
    }
    return session;
}

void TVRNetworkManager::setSession(QNetworkAccessManager *session)
{
    d->session = session;
}

const char tovraTransportVersion[] = TOVRA_VERSION_STRING;

void tovraTransportSend(TVRNetworkManager *manager, TVRTransportRequest *request)
{
    auto pending = std::make_shared<PendingRequest>();
    pending->success = std::move(request->success);
    pending->failure = std::move(request->failure);
    pending->maximumReplySize = request->maximumReplySize;
    pending->authorization = request->authorization;
    send(manager->session(), pending, request->url, request->verb, request->body);
}
