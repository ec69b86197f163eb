// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TestHttpsServer.h"

#include "LoopbackCertificates.h"

#include <QHttpServerRequest>
#include <QMetaEnum>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

QByteArray TestRequest::header(const QByteArray &name) const
{
    for (const auto &h : headers) {
        if (h.first.compare(name, Qt::CaseInsensitive) == 0)
            return h.second;
    }
    return {};
}

TestReply TestReply::json(int status, const QByteArray &body)
{
    TestReply reply;
    reply.status = status;
    reply.headers = {{"Content-Type", "application/json"}};
    reply.body = body;
    return reply;
}

TestReply TestReply::chunked(int status, const QByteArray &body)
{
    TestReply reply = json(status, {});
    reply.headers.append({QByteArray("Transfer-Encoding"), QByteArray("chunked")});
    for (qsizetype at = 0; at < body.size(); at += 1000) {
        const QByteArray chunk = body.mid(at, 1000);
        reply.body += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    reply.body += "0\r\n\r\n";
    return reply;
}

TestReply TestReply::dropped()
{
    TestReply reply;
    reply.dropConnection = true;
    return reply;
}

TestHttpsServer::TestHttpsServer(QObject *parent)
    : QAbstractHttpServer(parent)
    , m_handler([](const TestRequest &) { return TestReply::json(404, "{}"); })
{
}

bool TestHttpsServer::start()
{
    sslSetup(LoopbackCertificates::serviceCertificate(), LoopbackCertificates::serviceKey());
    m_port = listen(QHostAddress::LocalHost, 0);
    return m_port != 0;
}

void TestHttpsServer::stop()
{
    for (QTcpServer *server : servers())
        server->close();
}

void TestHttpsServer::reply(const TestReply &reply)
{
    setHandler([reply](const TestRequest &) { return reply; });
}

bool TestHttpsServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    TestRequest received;
    const QByteArray methodName = QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(int(request.method()));
    received.method = methodName.toUpper();
    received.path = request.url().path();
    received.query = request.url().query(QUrl::FullyEncoded);
    received.headers = request.headers();
    received.body = request.body();
    m_requests.append(received);

    const TestReply reply = m_handler(received);
    if (reply.held) {
        m_held.append({QPointer<QTcpSocket>(socket), reply});
    } else if (reply.delayMs > 0) {
        QTimer::singleShot(reply.delayMs, this, [this, socket = QPointer<QTcpSocket>(socket), reply] {
            if (socket)
                send(socket, reply);
        });
    } else {
        send(socket, reply);
    }
    return true;
}

void TestHttpsServer::releaseHeld()
{
    const auto held = std::exchange(m_held, {});
    for (const auto &[socket, reply] : held) {
        if (socket)
            send(socket, reply);
    }
}

void TestHttpsServer::missingHandler(const QHttpServerRequest &, QTcpSocket *) { }

void TestHttpsServer::send(QTcpSocket *socket, const TestReply &reply)
{
    if (reply.dropConnection) {
        socket->abort();
    } else {
        // Written by hand rather than through QHttpServerResponder, so that any status,
        // header or body, however wrong, can be scripted.
        QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Scripted\r\n";
        bool hasLength = false;
        for (const auto &h : reply.headers) {
            head += h.first + ": " + h.second + "\r\n";
            hasLength |= h.first.compare("Content-Length", Qt::CaseInsensitive) == 0
                || h.first.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0;
        }
        if (!hasLength)
            head += "Content-Length: " + QByteArray::number(reply.body.size()) + "\r\n";
        if (reply.cutBodyAt >= 0) {
            socket->write(head + "\r\n" + reply.body.left(reply.cutBodyAt));
            socket->flush();
            socket->disconnectFromHost();
        } else {
            socket->write(head + "\r\n" + reply.body);
        }
    }
    ++m_repliesSent;
}
