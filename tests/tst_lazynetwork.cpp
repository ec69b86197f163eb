// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// The kit's network library as a widget host that links only the widget screens meets it:
// no Qt Network at start, the library loaded with the first request once the host's window
// has shown its frame, and a request that waited for it sent as it was made. Built only
// where the kit loads that library itself; this program links no Qt Network, so the server
// below is a plain socket.

#include "support/RequestOutcome.h"

#include <Tovra.h>

#include <QFile>
#include <QPainter>
#include <QRasterWindow>
#include <QTest>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <future>

using namespace Qt::StringLiterals;

namespace {

bool mapsQtNetwork()
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libQt6Network");
}

// Answers one HTTP request on a loopback port with an empty JSON object, from a thread of
// its own; head is the request's head, once the answer has gone.
class OneAnswerServer
{
public:
    OneAnswerServer()
    {
        sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}}; // a port the system picks
        socklen_t length = sizeof(address);
        if (::bind(m_socket, reinterpret_cast<sockaddr *>(&address), length) == 0 && ::listen(m_socket, 1) == 0
            && ::getsockname(m_socket, reinterpret_cast<sockaddr *>(&address), &length) == 0) {
            port = ntohs(address.sin_port);
            head = std::async(std::launch::async, [this] { return answer(); });
        }
    }

    // Also ends a wait for a request that never came; the answering thread is joined after.
    ~OneAnswerServer()
    {
        ::shutdown(m_socket, SHUT_RDWR);
        ::close(m_socket);
    }

    int port = 0;
    std::future<QByteArray> head;

private:
    QByteArray answer() const
    {
        const int connection = ::accept(m_socket, nullptr, nullptr);
        QByteArray received;
        char buffer[4096];
        ssize_t read = 1;
        while (connection >= 0 && read > 0 && !received.contains("\r\n\r\n")) {
            read = ::read(connection, buffer, sizeof(buffer));
            received.append(buffer, qMax<ssize_t>(read, 0));
        }
        const QByteArray reply = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 2\r\n"
                                 "Connection: close\r\n\r\n{}";
        [[maybe_unused]] const ssize_t written = ::write(connection, reply.constData(), size_t(reply.size()));
        ::close(connection);
        return received.left(received.indexOf("\r\n\r\n"));
    }

    const int m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
};

// A host's window that notes whether Qt Network was in the process when it first painted
// after painted was last cleared. A widget paints at the next loop turn after an update; a
// raster window, as a Qt Quick one, when the platform next asks it for a frame.
template <typename Window>
struct HostWindow : Window
{
    bool painted = false;
    bool networkAtFirstPaint = false;

    void paintEvent(QPaintEvent *) override
    {
        if (!painted)
            networkAtFirstPaint = mapsQtNetwork();
        painted = true;
        QPainter(this).fillRect(QRect(QPoint(), this->size()), Qt::white);
    }
};

} // namespace

class tst_LazyNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadedAfterTheWindowsFrameWithTheRequestsCredentials()
    {
        OneAnswerServer server;
        QVERIFY(server.port > 0);
        QVERIFY(TVRManager::setServiceURL(QUrl(u"http://127.0.0.1:%1"_s.arg(server.port))));
        TVRManager::setAPIKey(u"first-key"_s, u"first-secret"_s);

        // A request whose manager is gone at the end of the statement that sends it is cancelled,
        // and loads nothing.
        const std::shared_ptr<RequestOutcome> dropped = sendRequest(
            *std::make_unique<TVRNetworkManager>(), u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET);
        QCOMPARE(dropped->calls(), 1);
        QCOMPARE(dropped->error.domain(), TVRError::networkDomain());
        QCOMPARE(dropped->error.code(), 5); // QNetworkReply::OperationCanceledError
        QCoreApplication::processEvents();
        QVERIFY(!mapsQtNetwork());

        // A raster window's frame comes this long after it is asked for (Qt's default is 5 ms), so
        // that a request that did not wait for it is seen to go first on a busy machine too.
        qputenv("QT_QPA_UPDATE_IDLE_TIME", "50");
        HostWindow<QWidget> window;
        HostWindow<QRasterWindow> raster;
        window.show();
        raster.show();
        QTRY_VERIFY(window.painted && raster.painted);
        // Frames the host has yet to show when it asks: the request waits for them.
        window.painted = raster.painted = false;
        window.update();
        raster.update();
        auto manager = std::make_unique<TVRNetworkManager>();
        const std::shared_ptr<RequestOutcome> outcome =
            sendRequest(*manager, u"/api/terms-of-service"_s, QString(), TVRHTTPMethodGET);
        // Set while the request waits: it goes out with the credentials it was made with.
        TVRManager::setAPIKey(u"second-key"_s, u"second-secret"_s);
        // The request watches the windows from the next loop turn. An event of another kind, which
        // a window gets all the time, is not its frame.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        QEvent other(QEvent::User);
        QCoreApplication::sendEvent(window.windowHandle(), &other);
        QCoreApplication::sendEvent(&raster, &other);

        QTRY_VERIFY(outcome->calls() > 0);
        QVERIFY2(outcome->error.domain().isEmpty(), qPrintable(outcome->error.message()));
        QCOMPARE(outcome->response.statusCode(), 200);
        // Once, also after the manager is gone.
        manager.reset();
        QCOMPARE(outcome->calls(), 1);
        QVERIFY(window.painted && raster.painted);
        QVERIFY(!window.networkAtFirstPaint && !raster.networkAtFirstPaint);
        QVERIFY(mapsQtNetwork());
        QVERIFY(
            server.head.get().contains("\r\nAuthorization: Basic " + QByteArray("first-key:first-secret").toBase64()));
    }
};

QTEST_MAIN(tst_LazyNetwork)
#include "tst_lazynetwork.moc"
