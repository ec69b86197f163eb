#ifndef TESTSESSION_H
#define TESTSESSION_H

#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QSslCertificate>

/*
    A network session as a host could hand the kit: requests for a routed host go to a
    port on 127.0.0.1 instead of the host's own address. Everything else stays as Qt does
    it: the Host header and the name that the certificate is checked against remain the
    routed host's, and TLS is verified against the given authorities only.
*/
class TestSession : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit TestSession(QObject *parent = nullptr);

    void route(const QString &host, quint16 port) { m_routes.insert(host, port); }
    // Routes \a host to a loopback port that nothing listens on: connections are refused.
    bool routeToClosedPort(const QString &host);
    // Certificates trusted by this session; the test CA unless told otherwise.
    void setAuthorities(const QList<QSslCertificate> &authorities) { m_authorities = authorities; }
    // Checks the certificate against \a name instead of the routed host's name.
    void setPeerVerifyName(const QString &name) { m_peerVerifyName = name; }

    // Replies made by this session and not yet destroyed.
    int liveReplies() const { return m_liveReplies; }
    // Ends every request under way, as a lost connection would.
    void abortAll();

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    QNetworkReply *track(QNetworkReply *reply);

    QHash<QString, quint16> m_routes;
    QList<QSslCertificate> m_authorities;
    QString m_peerVerifyName;
    int m_liveReplies = 0;
};

#endif
