// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "LoopbackCertificates.h"
#include "TestFixture.h"
#include "TestSession.h"

#include <TVRDocumentManager.h>
#include <TVRDocumentManagerDelegate.h>
#include <TVRManager.h>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

const QString apiKey = u"acme-notes"_s;
const QString apiSecret = u"s3cret/with:colon"_s;

QJsonObject document(const QString &title, int sections)
{
    QJsonArray list;
    for (int i = 0; i < sections; ++i) {
        list.append(QJsonObject{{u"title"_s, u"%1. Section"_s.arg(i + 1)},
                                {u"body"_s, u"We keep what you write for as long as you keep it. "_s.repeated(12)}});
    }
    return {{u"_id"_s, title},
            {u"title"_s, title},
            {u"updatedAt"_s, u"2024-05-01T09:00:00.000+0200"_s},
            {u"sections"_s, list}};
}

// One line of nginx's access log, as the log format below writes it.
struct Logged
{
    QString uri;
    int status = 0;
    qint64 bodyBytes = 0;
    QString gzipRatio;
    QString connection;
};

/*
    Debian's nginx on a free loopback port, with a configuration of its own in a throw-away
    folder: TLS with the test certificate of the kit's service host, HTTP Basic checked
    against an htpasswd file, gzip, and the two documents as JSON files under /app. It runs
    as a single process that the kernel kills when this process ends, however it ends.
*/
class Nginx
{
public:
    ~Nginx()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    bool start(const QByteArray &terms, const QByteArray &privacy)
    {
        const QString nginx = QStandardPaths::findExecutable(u"nginx"_s, {u"/usr/sbin"_s, u"/usr/local/sbin"_s});
        if (nginx.isEmpty() || !m_dir.isValid()) {
            qWarning("nginx is not installed; scripts/common.sh installs nginx-light");
            return false;
        }
        const QByteArray htpasswd = apiKey.toUtf8() + ":{SHA}"
            + QCryptographicHash::hash(apiSecret.toUtf8(), QCryptographicHash::Sha1).toBase64();
        if (!write(u"htpasswd"_s, htpasswd + '\n')
            || !write(u"service.pem"_s, LoopbackCertificates::serviceCertificate().toPem())
            || !write(u"service.key"_s, LoopbackCertificates::serviceKey().toPem())
            || !write(u"docs/terms-of-service.json"_s, terms) || !write(u"docs/privacy-policy.json"_s, privacy)) {
            return false;
        }
        // A port that was free a moment ago may be taken by the time nginx binds it.
        for (int attempt = 0; attempt < 5; ++attempt) {
            if (startOnFreePort(nginx))
                return true;
        }
        qWarning("nginx did not start:\n%s", read(u"error.log"_s).constData());
        return false;
    }

    quint16 port() const { return m_port; }

    QList<Logged> log() const
    {
        QList<Logged> lines;
        for (const QByteArray &line : read(u"access.log"_s).split('\n')) {
            const QList<QByteArray> fields = line.split(' ');
            if (fields.size() == 5) {
                lines.append({QString::fromUtf8(fields[0]), fields[1].toInt(), fields[2].toLongLong(),
                              QString::fromUtf8(fields[3]), QString::fromUtf8(fields[4])});
            }
        }
        return lines;
    }

private:
    bool write(const QString &name, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(m_dir.filePath(name)).absolutePath());
        QFile file(m_dir.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    QByteArray read(const QString &name) const
    {
        QFile file(m_dir.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool startOnFreePort(const QString &nginx)
    {
        {
            QTcpServer probe;
            if (!probe.listen(QHostAddress::LocalHost))
                return false;
            m_port = probe.serverPort();
        }
        const QString dir = m_dir.path();
        const QString config = uR"(daemon off;
master_process off;
pid %1/nginx.pid;
error_log %1/error.log warn;
events { worker_connections 64; }
http {
    log_format tovra '$request_uri $status $body_bytes_sent $gzip_ratio $connection';
    access_log %1/access.log tovra;
    client_body_temp_path %1/body;
    proxy_temp_path %1/proxy;
    fastcgi_temp_path %1/fastcgi;
    uwsgi_temp_path %1/uwsgi;
    scgi_temp_path %1/scgi;
    keepalive_timeout 60s;
    keepalive_requests 1000;
    gzip on;
    gzip_types application/json;
    server {
        listen 127.0.0.1:%2 ssl;
        server_name %3;
        ssl_certificate %1/service.pem;
        ssl_certificate_key %1/service.key;
        auth_basic "Legal documents";
        auth_basic_user_file %1/htpasswd;
        default_type application/json;
        location = /app/api/terms-of-service { alias %1/docs/terms-of-service.json; }
        location = /app/api/privacy-policy { alias %1/docs/privacy-policy.json; }
    }
}
)"_s.arg(dir)
                                   .arg(m_port)
                                   .arg(TVRManager::serviceURL().host());
        if (!write(u"nginx.conf"_s, config.toUtf8()))
            return false;

        m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start(nginx, {u"-p"_s, dir, u"-e"_s, dir + u"/error.log"_s, u"-c"_s, dir + u"/nginx.conf"_s});
        if (!m_process.waitForStarted())
            return false;
        // Listening once a connection is taken; gone when the port was in use after all.
        return QTest::qWaitFor(
                   [this] {
                       if (m_process.state() == QProcess::NotRunning)
                           return true;
                       QTcpSocket socket;
                       socket.connectToHost(QHostAddress::LocalHost, m_port);
                       return socket.waitForConnected(100);
                   },
                   10000)
            && m_process.state() == QProcess::Running;
    }

    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
};

class Recorder : public QObject, public TVRDocumentManagerDelegate
{
public:
    int finished = 0;
    QStringList failures;
    void managerDidFinishWithSuccess(TVRDocumentManager *, bool) override { ++finished; }
    void managerFailedWithError(TVRDocumentManager *, const TVRError &error) override { failures << error.message(); }
};

} // namespace

class tst_Nginx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void fetchesBothDocuments();
    void largeDocumentIsGzipped();
    void fetchesReuseTheConnection();
    void wrongSecretKeepsTheCopy();

private:
    bool fetch(TVRDocumentManager::Document document, int answers);

    const QJsonObject m_terms = document(u"Terms of Service"_s, 3);
    const QJsonObject m_privacy = document(u"Privacy Policy"_s, 400); // about 300 KB
    Nginx m_nginx;
    TestSession m_session;
    TVRDocumentManager m_manager;
    Recorder m_recorder;
};

void tst_Nginx::initTestCase()
{
    QVERIFY(isolateTestHost(u"tst_nginx"_s));
    const QUrl service(u"https://%1/app"_s.arg(TVRManager::serviceURL().host()));
    QVERIFY(m_nginx.start(QJsonDocument(m_terms).toJson(), QJsonDocument(m_privacy).toJson()));
    // The service is the host's own, under a path; the session only finds it on loopback.
    QVERIFY(TVRManager::setServiceURL(service));
    m_session.route(service.host(), m_nginx.port());
    m_manager.setSession(&m_session);
    m_manager.setDelegate(&m_recorder);
}

void tst_Nginx::init()
{
    TVRManager::setAPIKey(apiKey, apiSecret);
}

void tst_Nginx::cleanupTestCase()
{
    TVRManager::setServiceURL(QUrl(u"https://"_s + TVRManager::serviceURL().host()));
}

bool tst_Nginx::fetch(TVRDocumentManager::Document document, int answers)
{
    const int before = m_recorder.finished + int(m_recorder.failures.size());
    m_manager.fetch(document);
    return QTest::qWaitFor([&] { return m_recorder.finished + m_recorder.failures.size() >= before + answers; }, 60000)
        && QTest::qWaitFor([this] { return m_session.liveReplies() == 0; });
}

void tst_Nginx::fetchesBothDocuments()
{
    QVERIFY(fetch(TVRDocumentManager::Document::TermsOfService, 1));
    QVERIFY(fetch(TVRDocumentManager::Document::PrivacyPolicy, 1));
    QVERIFY2(m_recorder.failures.isEmpty(), qPrintable(m_recorder.failures.join(u'\n')));
    QCOMPARE(m_manager.termsOfService()->title(), u"Terms of Service"_s);
    QCOMPARE(m_manager.privacyPolicy()->sections().size(), 400);
    QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), QJsonValue(m_terms));

    const QList<Logged> log = m_nginx.log();
    QCOMPARE(log.size(), 2);
    QCOMPARE(log[0].uri, u"/app/api/terms-of-service"_s);
    QCOMPARE(log[1].uri, u"/app/api/privacy-policy"_s);
    QCOMPARE(log[0].status, 200);
    QCOMPARE(log[1].status, 200);
}

void tst_Nginx::largeDocumentIsGzipped()
{
    QVERIFY(fetch(TVRDocumentManager::Document::PrivacyPolicy, 1));
    QCOMPARE(m_manager.privacyPolicy()->sections().size(), 400);
    QCOMPARE(keptCopy(kTVRPrivacyPolicyDataPath), QJsonValue(m_privacy));

    const Logged last = m_nginx.log().constLast();
    const qint64 size = QJsonDocument(m_privacy).toJson().size();
    QVERIFY2(last.gzipRatio != u"-"_s, "nginx did not compress the reply");
    QVERIFY2(last.bodyBytes * 10 < size, qPrintable(u"%1 bytes on the wire for %2"_s.arg(last.bodyBytes).arg(size)));
}

void tst_Nginx::fetchesReuseTheConnection()
{
    const int answersBefore = m_recorder.finished;
    const qsizetype logged = m_nginx.log().size();
    for (int i = 0; i < 30; ++i)
        QVERIFY(fetch(
            i % 2 ? TVRDocumentManager::Document::PrivacyPolicy : TVRDocumentManager::Document::TermsOfService, 1));
    // Each fetch ended exactly once.
    QCOMPARE(m_recorder.finished - answersBefore, 30);
    QVERIFY(m_recorder.failures.isEmpty());

    const QList<Logged> log = m_nginx.log().mid(logged);
    QCOMPARE(log.size(), 30);
    QSet<QString> connections;
    for (const Logged &line : log)
        connections.insert(line.connection);
    // One after the other, the requests share the connection that the first one opened.
    QCOMPARE(connections.size(), 1);
}

void tst_Nginx::wrongSecretKeepsTheCopy()
{
    QVERIFY(fetch(TVRDocumentManager::Document::TermsOfService, 1));
    const QJsonValue kept = keptCopy(kTVRTermsOfServiceDataPath);
    QVERIFY(kept.isObject());

    TVRManager::setAPIKey(apiKey, u"wrong"_s);
    const int finished = m_recorder.finished;
    QVERIFY(fetch(TVRDocumentManager::Document::TermsOfService, 1));
    // nginx's own 401 page is an answer: not JSON, so nothing is kept from it.
    QCOMPARE(m_recorder.finished, finished + 1);
    QCOMPARE(m_nginx.log().constLast().status, 401);
    QCOMPARE(keptCopy(kTVRTermsOfServiceDataPath), kept);
    QCOMPARE(TVRDocumentManager().termsOfService()->title(), u"Terms of Service"_s);
}

QTEST_MAIN(tst_Nginx)
#include "tst_nginx.moc"
