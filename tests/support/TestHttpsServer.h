// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TESTHTTPSSERVER_H
#define TESTHTTPSSERVER_H

#include <QAbstractHttpServer>
#include <QPointer>
#include <QTcpSocket>

#include <functional>

using TestHeaders = QList<QPair<QByteArray, QByteArray>>;

// What the server received, as the kit sent it.
struct TestRequest
{
    QByteArray method;
    QString path;
    TestHeaders headers;
    QByteArray body;

    QByteArray header(const QByteArray &name) const;
};

// What the server answers: a status line, headers and a body. Content-Length follows the
// body unless the headers give one, or a Transfer-Encoding.
struct TestReply
{
    int status = 200;
    TestHeaders headers;
    QByteArray body;
    int cutBodyAt = -1; // when set: the connection drops after this many bytes of the body
    bool held = false; // sent only when the test calls releaseHeld()

    static TestReply json(int status, const QByteArray &body);
    // \a body sent in chunks of 1,000 bytes, with no length announced.
    static TestReply chunked(int status, const QByteArray &body);
};

/*
    An HTTPS server on 127.0.0.1 presenting the test certificate of the kit's service host.
    Each test sets a handler that scripts the replies; every request is recorded.
*/
class TestHttpsServer : public QAbstractHttpServer
{
    Q_OBJECT

public:
    using Handler = std::function<TestReply(const TestRequest &request)>;

    using QAbstractHttpServer::QAbstractHttpServer;

    // Starts listening on a free loopback port; false when that fails.
    bool start();
    quint16 port() const { return m_port; }

    void setHandler(Handler handler) { m_handler = std::move(handler); }
    // Shorthand for a handler that answers every request with \a reply.
    void reply(const TestReply &reply)
    {
        setHandler([reply](const TestRequest &) { return reply; });
    }

    // Sends the replies held so far, in the order their requests came.
    void releaseHeld();

    const QList<TestRequest> &requests() const { return m_requests; }

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
    void send(QTcpSocket *socket, const TestReply &reply);

    Handler m_handler = [](const TestRequest &) { return TestReply::json(404, "{}"); };
    QList<QPair<QPointer<QTcpSocket>, TestReply>> m_held;
    QList<TestRequest> m_requests;
    quint16 m_port = 0;
};

#endif
