// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "DocumentJson.h"
#include "LoopbackCertificates.h"
#include "TestFixture.h"
#include "TestSession.h"

#include <TVRDocumentManager.h>
#include <TVRManager.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

const QString apiKey = u"acme-notes"_s;
const QString apiSecret = u"s3cret/with:colon"_s;

// The fields of a line of nginx's access log, as the log format below writes them.
enum LogField { Uri, Status, BodyBytes, Connection };

const QString config = uR"(daemon off;
master_process off;
pid %1/nginx.pid;
events { worker_connections 64; }
http {
    log_format tovra '$request_uri $status $body_bytes_sent $connection';
    access_log %1/access.log tovra;
    client_body_temp_path %1/body;
    proxy_temp_path %1/proxy;
    fastcgi_temp_path %1/fastcgi;
    uwsgi_temp_path %1/uwsgi;
    scgi_temp_path %1/scgi;
    gzip on;
    gzip_types application/json;
    server {
        listen 127.0.0.1:%2 ssl;
        ssl_certificate %1/service.pem;
        ssl_certificate_key %1/service.key;
        auth_basic "Legal documents";
        auth_basic_user_file %1/htpasswd;
        default_type application/json;
        location = /app/api/terms-of-service { alias %1/terms-of-service.json; }
        location = /app/api/privacy-policy { alias %1/privacy-policy.json; }
    }

}
)"_s;

// The content of \a name in \a dir; empty when there is none.
QByteArray read(const QTemporaryDir &dir, const QString &name)
{
    QFile file(dir.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/*
    The kit's fetches against Debian's nginx on a free loopback port, with the configuration above
    in a throw-away folder: TLS with the test certificate of the kit's service host, HTTP Basic
    checked against an htpasswd file, gzip, and the two documents as JSON files under /app. nginx
    runs as a single process that the kernel kills when this process ends, however it ends.
*/
class tst_Nginx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(isolateTestHost(u"tst_nginx"_s));
        const QString nginx = QStandardPaths::findExecutable(u"nginx"_s, {u"/usr/sbin"_s, u"/usr/local/sbin"_s});
        QVERIFY2(!nginx.isEmpty(), "nginx is not installed; scripts/common.sh installs nginx-light");
        const auto write = [this](const QString &name, const QByteArray &content) {
            QFile file(m_dir.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        };
        const QByteArray htpasswd = apiKey.toUtf8() + ":{SHA}"
            + QCryptographicHash::hash(apiSecret.toUtf8(), QCryptographicHash::Sha1).toBase64();
        QVERIFY(write(u"htpasswd"_s, htpasswd + '\n')
                && write(u"service.pem"_s, LoopbackCertificates::serviceCertificate().toPem())
                && write(u"service.key"_s, LoopbackCertificates::serviceKey().toPem())
                && write(u"terms-of-service.json"_s, QJsonDocument(m_terms).toJson())
                && write(u"privacy-policy.json"_s, QJsonDocument(m_privacy).toJson()));
        m_nginx.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        // A port that was free a moment ago may be taken by the time nginx binds it: then nginx
        // ends, and another port is tried. It listens once a connection is taken.
        quint16 port = 0;
        const auto listening = [&] {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, port);
            return m_nginx.state() == QProcess::NotRunning || socket.waitForConnected(100);
        };
        for (int attempt = 0; attempt < 5 && m_nginx.state() != QProcess::Running; ++attempt) {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            port = probe.serverPort();
            probe.close();
            QVERIFY(write(u"nginx.conf"_s, config.arg(m_dir.path()).arg(port).toUtf8()));
            m_nginx.start(nginx,
                          {u"-p"_s, m_dir.path(), u"-e"_s, m_dir.filePath(u"error.log"_s), u"-c"_s,
                           m_dir.filePath(u"nginx.conf"_s)});
            QVERIFY(m_nginx.waitForStarted() && QTest::qWaitFor(listening, 10000));
        }
        QVERIFY2(m_nginx.state() == QProcess::Running, read(m_dir, u"error.log"_s).constData());

        // The service is the host's own, under a path; the session only finds it on loopback.
        const QUrl service(u"https://%1/app"_s.arg(TVRManager::serviceURL().host()));
        QVERIFY(TVRManager::setServiceURL(service));
        m_session.route(service.host(), port);
        m_manager.setSession(&m_session);
        TVRManager::setAPIKey(apiKey, apiSecret);
    }

    void fetchesOverOneCompressedConnectionAndKeepsTheCopy()
    {
        using Document = TVRDocumentManager::Document;
        for (int i = 0; i < 10; ++i)
            QVERIFY(fetch(i % 2 ? Document::PrivacyPolicy : Document::TermsOfService));
        // Each fetch ended exactly once, and each document came whole (the terms' copy is
        // compared at the end, where it must still be the same).
        QCOMPARE(m_changed.size(), 10);
        QVERIFY2(m_failed.isEmpty(), qPrintable(m_failed.value(0).value(1).value<TVRError>().message()));
        QCOMPARE(keptCopy(kTVRPrivacyPolicyDataPath), QJsonValue(m_privacy));

        const QList<QList<QByteArray>> log = accessLog();
        QCOMPARE(log.size(), 10);
        const qint64 privacySize = QJsonDocument(m_privacy).toJson().size();
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(log[i].size(), 4);
            QCOMPARE(log[i][Uri], i % 2 ? "/app/api/privacy-policy" : "/app/api/terms-of-service");
            QCOMPARE(log[i][Status], "200");
            // One after the other, the requests share the connection that the first one opened.
            QCOMPARE(log[i][Connection], log[0][Connection]);
            // The large document travels compressed.
            if (i % 2)
                QVERIFY2(log[i][BodyBytes].toLongLong() * 10 < privacySize, log[i][BodyBytes] + " bytes on the wire");
        }

        // With a wrong secret, nginx's own 401 page is the answer: nginx checks the credentials
        // that it took above. The page is not JSON, so nothing is kept from it, and the copy of
        // the terms stays.
        TVRManager::setAPIKey(apiKey, u"wrong"_s);
        QVERIFY(fetch(Document::TermsOfService));
        QCOMPARE(accessLog().constLast().value(Status), "401");
        QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), QJsonValue(m_terms));
    }

private:
    // Fetches \a document and waits until the fetch has ended and its reply is gone.
    bool fetch(TVRDocumentManager::Document document)
    {
        const qsizetype before = m_changed.size() + m_failed.size();
        m_manager.fetch(document);
        return QTest::qWaitFor([&] { return m_changed.size() + m_failed.size() > before; }, 60000)
            && QTest::qWaitFor([this] { return m_session.liveReplies() == 0; });
    }

    // The access log, a list of fields for each request.
    QList<QList<QByteArray>> accessLog() const
    {
        QList<QList<QByteArray>> lines;
        for (const QByteArray &line : read(m_dir, u"access.log"_s).trimmed().split('\n'))
            lines.append(line.split(' '));
        return lines;
    }

    const QJsonObject m_terms = documentJson(u"Terms of Service"_s, 3);
    const QJsonObject m_privacy = documentJson(u"Privacy Policy"_s, 800); // about 340 KB
    QTemporaryDir m_dir;
    QProcess m_nginx; // killed when it goes, before its folder
    TestSession m_session;
    TVRDocumentManager m_manager;
    QSignalSpy m_changed{&m_manager, &TVRDocumentManager::documentChanged};
    QSignalSpy m_failed{&m_manager, &TVRDocumentManager::fetchFailed};
};

QTEST_MAIN(tst_Nginx)
#include "tst_nginx.moc"
