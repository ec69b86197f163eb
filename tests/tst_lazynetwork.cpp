// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// The kit's network library as a widget host that links only the widget screens meets it:
// no Qt Network at start, the library loaded with the first request once the host's window
// has shown its frame, and a request that waited for it sent as it was made. Built only
// where the kit loads that library itself; this program links no Qt Network, so the server
// below is a plain socket.

#include <Tovra.h>

#include <QFile>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

bool mapsQtNetwork()
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libQt6Network");
}

// Answers one HTTP request on a loopback port with an empty JSON object, from a thread of
// its own, and keeps the request's head.
class OneAnswerServer
{
public:
    OneAnswerServer()
    {
        m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        if (::bind(m_socket, reinterpret_cast<sockaddr *>(&address), length) != 0 || ::listen(m_socket, 1) != 0
            || ::getsockname(m_socket, reinterpret_cast<sockaddr *>(&address), &length) != 0)
            return;
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { answer(); });
    }

    ~OneAnswerServer()
    {
        ::shutdown(m_socket, SHUT_RDWR);
        ::close(m_socket);
        if (m_thread.joinable())
            m_thread.join();
    }

    int port() const { return m_port; }

    // The head of the request, once the answer has gone.
    QByteArray head()
    {
        if (m_thread.joinable())
            m_thread.join();
        return m_head;
    }

private:
    void answer()
    {
        const int connection = ::accept(m_socket, nullptr, nullptr);
        if (connection < 0)
            return;
        QByteArray received;
        char buffer[4096];
        while (!received.contains("\r\n\r\n")) {
            const ssize_t read = ::read(connection, buffer, sizeof(buffer));
            if (read <= 0)
                break;
            received.append(buffer, read);
        }
        m_head = received.left(received.indexOf("\r\n\r\n"));
        const QByteArray reply = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 2\r\n"
                                 "Connection: close\r\n\r\n{}";
        [[maybe_unused]] const ssize_t written = ::write(connection, reply.constData(), size_t(reply.size()));
        ::close(connection);
    }

    int m_socket = -1;
    int m_port = 0;
    std::thread m_thread;
    QByteArray m_head;
};

// A host's window that notes whether Qt Network was in the process when it first painted
// after painted was last cleared.
class HostWindow : public QWidget
{
public:
    bool painted = false;
    bool networkAtFirstPaint = false;

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (!painted)
            networkAtFirstPaint = mapsQtNetwork();
        painted = true;
        QPainter(this).fillRect(rect(), Qt::white);
    }
};

struct Outcome
{
    int ends = 0; // handler calls, which must be one
    int status = 0;
    TVRError error;
};

std::shared_ptr<Outcome> send(TVRNetworkManager &manager)
{
    auto outcome = std::make_shared<Outcome>();
    manager.requestForPath(
        u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET, QJsonValue(),
        [outcome](const TVRHTTPResponse &response, const QJsonValue &) {
            ++outcome->ends;
            outcome->status = response.statusCode();
        },
        [outcome](const TVRHTTPResponse &, const TVRError &error) {
            ++outcome->ends;
            outcome->error = error;
        });
    return outcome;
}

} // namespace

class tst_LazyNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void droppedBeforeItIsSentIsCancelled();
    void loadedAfterTheWindowsFrameWithTheRequestsCredentials();
};

void tst_LazyNetwork::droppedBeforeItIsSentIsCancelled()
{
    QVERIFY(!mapsQtNetwork());
    TVRManager::setServiceURL(QUrl(u"http://127.0.0.1:9"_s));
    std::shared_ptr<Outcome> outcome;
    {
        TVRNetworkManager manager;
        outcome = send(manager);
    }
    QCOMPARE(outcome->ends, 1);
    QCOMPARE(outcome->error.domain(), TVRError::networkDomain());
    QCOMPARE(outcome->error.code(), 5); // QNetworkReply::OperationCanceledError
    QCoreApplication::processEvents();
    QVERIFY(!mapsQtNetwork());
}

void tst_LazyNetwork::loadedAfterTheWindowsFrameWithTheRequestsCredentials()
{
    OneAnswerServer server;
    QVERIFY(server.port() > 0);
    QVERIFY(TVRManager::setServiceURL(QUrl(u"http://127.0.0.1:%1"_s.arg(server.port()))));
    TVRManager::setAPIKey(u"first-key"_s, u"first-secret"_s);

    HostWindow window;
    window.resize(200, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(window.painted);
    // A frame the host has yet to show when it asks: the request waits for it.
    window.painted = false;
    window.update();
    auto manager = std::make_unique<TVRNetworkManager>();
    const std::shared_ptr<Outcome> outcome = send(*manager);
    // Set while the request waits: it goes out with the credentials it was made with.
    TVRManager::setAPIKey(u"second-key"_s, u"second-secret"_s);

    QTRY_VERIFY(outcome->ends > 0);
    QVERIFY2(outcome->error.domain().isEmpty(), qPrintable(outcome->error.message()));
    QCOMPARE(outcome->status, 200);
    // Once, also after the manager is gone.
    manager.reset();
    QCOMPARE(outcome->ends, 1);
    QVERIFY(window.painted);
    QVERIFY(!window.networkAtFirstPaint);
    QVERIFY(mapsQtNetwork());
    QVERIFY(server.head().contains("\r\nAuthorization: Basic " + QByteArray("first-key:first-secret").toBase64()));
}

QTEST_MAIN(tst_LazyNetwork)
#include "tst_lazynetwork.moc"
