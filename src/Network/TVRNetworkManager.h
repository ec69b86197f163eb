// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRNETWORKMANAGER_H
#define TVRNETWORKMANAGER_H

/*!
    \file
    \brief TVRNetworkManager, the request layer under the kit's managers, with the HTTP methods
    and the completion handlers of its requests.
*/

#include "tovra_export.h"
#include "TVRError.h"
#include "TVRHTTPResponse.h"

#include <QJsonValue>
#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

class QNetworkAccessManager;
class QNetworkRequest;
class TVRNetworkManagerPrivate;

//! The HTTP method of a request of TVRNetworkManager::requestForPath().
enum TVRHTTPMethod : qint32 {
    //! GET, the one method sent without a body.
    TVRHTTPMethodGET = 0,
    //! POST, with the parameters as its JSON body.
    TVRHTTPMethodPOST = 1,
    //! PUT, with the parameters as its JSON body.
    TVRHTTPMethodPUT = 2,
    //! DELETE, with the parameters as its JSON body.
    TVRHTTPMethodDELETE = 3,
    //! PATCH, with the parameters as its JSON body.
    TVRHTTPMethodPATCH = 4,
    //! HEAD, with the parameters as its JSON body; it completes on the answer's headers, with
    //! an undefined JSON value.
    TVRHTTPMethodHEAD = 5,
};

/*!
    Receives the answer to a request that reached the service, whatever its HTTP status:
    the response and the reply body parsed as JSON (an object or an array), or an undefined
    QJsonValue when the body is empty or is not JSON.
*/
using TVRRequestSuccessHandler = std::function<void(const TVRHTTPResponse &response, const QJsonValue &json)>;

/*!
    Receives the transport failure of a request: no connection, failed TLS, a connection
    lost in the body, a refused redirect, or a time-out (QNetworkReply::TimeoutError when
    the session's transfer time-out ran out).
*/
using TVRRequestFailureHandler = std::function<void(const TVRHTTPResponse &response, const TVRError &error)>;

/*!
    \brief Base class of the kit's service managers: sends authenticated JSON requests to
    the service and hands each answer to a completion handler.

    Every request goes to the service's address (TVRManager::serviceURL(), by default
    https://\<service host\>) with the path appended to the address's own path, and carries
    "Content-Type: application/json" and "Authorization: Basic ..." made from TVRManager's
    API key and secret as they are when the request is built. A redirect is followed only
    within the service's origin (scheme, host and port); any other ends in the failure
    handler with QNetworkReply::InsecureRedirectError, so the credentials never leave the
    service, and TLS is always verified by the session. A reply body larger than
    TVRManager::maximumReplySize() ends in the failure handler with a kitDomain() error
    that names the size and the limit; the transfer stops as soon as it is known.

    The handlers run on the thread of the manager's session, from its event loop, and never
    before requestForPath() has returned. Exactly one of them is called, once, per request.

    The requests go through the kit's network library, which alone uses Qt Network. Where
    the kit is built as shared libraries on Linux, that library (libTovraNetwork) is loaded
    with the first request, so that a host that shows the kept copies at launch loads no
    Qt Network before its first frame: unless the process has Qt Network already, a request
    made before the library is loaded waits until every visible window has shown its next
    frame (at most half a second), with the address, credentials and size limit of when it
    was made. If the library cannot be loaded, each request ends in the failure handler
    with a kitDomain() error that says why. requestWithURL(), session() and setSession() are
    defined by that library: a host that calls them links Tovra::Network (Tovra::Tovra
    brings it) and includes \<QNetworkRequest\> or \<QNetworkAccessManager\> itself.
*/
class TOVRA_EXPORT TVRNetworkManager : public QObject
{
    Q_OBJECT

public:
    //! A manager with no session yet; session() makes one on the first request.
    explicit TVRNetworkManager(QObject *parent = nullptr);
    ~TVRNetworkManager() override;

    //! The service's address: TVRManager::serviceURL(), the scheme, host, port and path
    //! prefix that every request starts with.
    static QUrl baseURLComponents();
    /*!
        A request for \a url with the JSON content type and the Basic credentials; Qt follows
        its redirects only within the origin of \a url.
    */
    static QNetworkRequest requestWithURL(const QUrl &url);
    //! "GET", "POST", "PUT", "DELETE", "PATCH" or "HEAD"; null for any other value.
    static QString stringForHTTPMethod(TVRHTTPMethod method);

    /*!
        The network access manager that carries this manager's requests, made on first use
        as a child of this manager, with a transfer time-out of 60 s: a request that sends
        and receives nothing for that long ends in the failure handler.
    */
    QNetworkAccessManager *session();
    /*!
        Makes \a session carry the requests that follow; requests under way go on in the
        old one. The session keeps its own transfer time-out (Qt's default is none). The
        manager does not take ownership; if \a session is destroyed, the next
        request makes a fresh default session.
    */
    void setSession(QNetworkAccessManager *session);

    /*!
        Sends \a method to \a path with the plain-text \a query (null for none, encoded
        where needed). Every method but GET carries \a parameters as compact JSON; a value
        that is not a JSON object or array cannot be a JSON body, so none is sent. A method
        value outside TVRHTTPMethod is not sent: the failure handler gets a kitDomain()
        error instead. Either handler may be null.
    */
    void requestForPath(const QString &path, const QString &query, TVRHTTPMethod method, const QJsonValue &parameters,
                        TVRRequestSuccessHandler success, TVRRequestFailureHandler failure);

private:
    // "Basic " and the Base64 of the API key and secret, as they are now.
    static QByteArray authorization();

    std::unique_ptr<TVRNetworkManagerPrivate> const d;
};

#endif
