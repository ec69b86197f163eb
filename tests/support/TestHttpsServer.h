// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TESTHTTPSSERVER_H
#define TESTHTTPSSERVER_H

#include <QAbstractHttpServer>
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QPointer>
#include <QString>
#include <QTcpSocket>

#include <functional>

using TestHeaders = QList<QPair<QByteArray, QByteArray>>;

// What the server received, as the kit sent it.
struct TestRequest
{
    QByteArray method;
    QString path;
    QString query; // as sent, percent-encoding included
    TestHeaders headers;
    QByteArray body;

    QByteArray header(const QByteArray &name) const;
};

// What the server answers: a status line, headers and a body, after an optional delay;
// or no answer at all, the connection dropped. Content-Length follows the body unless
// the headers give one, or a Transfer-Encoding.
struct TestReply
{
    int status = 200;
    TestHeaders headers;
    QByteArray body;
    int delayMs = 0;
    bool dropConnection = false;
    int cutBodyAt = -1; // when set: the connection drops after this many bytes of the body
    bool held = false; // sent only when the test calls releaseHeld()

    static TestReply json(int status, const QByteArray &body);
    // \a body sent in chunks of 1,000 bytes, with no length announced.
    static TestReply chunked(int status, const QByteArray &body);
    static TestReply dropped();
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

    explicit TestHttpsServer(QObject *parent = nullptr);

    // Starts listening on a free loopback port; false when that fails.
    bool start();
    // Stops listening: later connections are refused.
    void stop();
    quint16 port() const { return m_port; }

    void setHandler(Handler handler) { m_handler = std::move(handler); }
    // Shorthand for a handler that answers every request with \a reply.
    void reply(const TestReply &reply);

    // Sends the replies held so far, in the order their requests came.
    void releaseHeld();

    const QList<TestRequest> &requests() const { return m_requests; }
    int repliesSent() const { return m_repliesSent; }

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
    void send(QTcpSocket *socket, const TestReply &reply);

    Handler m_handler;
    QList<QPair<QPointer<QTcpSocket>, TestReply>> m_held;
    QList<TestRequest> m_requests;
    int m_repliesSent = 0;
    quint16 m_port = 0;
};

#endif
