#include "TestSession.h"

#include "TestCertificates.h"

#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTcpServer>

TestSession::TestSession(QObject *parent)
    : QNetworkAccessManager(parent)
    , m_authorities{TestCertificates::authority()}
{
}

bool TestSession::routeToClosedPort(const QString &host)
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost))
        return false;
    route(host, probe.serverPort());
    return true; // the port closes with the probe
}

QNetworkReply *TestSession::createRequest(Operation op, const QNetworkRequest &request,
                                          QIODevice *outgoingData)
{
    const QUrl url = request.url();
    const auto route = m_routes.constFind(url.host());
    if (route == m_routes.constEnd())
        return track(QNetworkAccessManager::createRequest(op, request, outgoingData));

    QNetworkRequest routed = request;
    QUrl target = url;
    target.setHost(QStringLiteral("127.0.0.1"));
    target.setPort(*route);
    routed.setUrl(target);
    routed.setRawHeader("Host", url.host().toUtf8());
    routed.setPeerVerifyName(m_peerVerifyName.isEmpty() ? url.host() : m_peerVerifyName);

    QSslConfiguration tls = routed.sslConfiguration();
    tls.setCaCertificates(m_authorities);
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    routed.setSslConfiguration(tls);
    return track(QNetworkAccessManager::createRequest(op, routed, outgoingData));
}

void TestSession::abortAll()
{
    for (QNetworkReply *reply : findChildren<QNetworkReply *>())
        reply->abort();
}

QNetworkReply *TestSession::track(QNetworkReply *reply)
{
    ++m_liveReplies;
    connect(reply, &QObject::destroyed, this, [this] { --m_liveReplies; });
    return reply;
}
