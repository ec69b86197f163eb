// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TestHttpsServer.h"

#include "LoopbackCertificates.h"

#include <QHttpServerRequest>
#include <QMetaEnum>

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
    return {status, {{"Content-Type", "application/json"}}, body};
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

bool TestHttpsServer::start()
{
    sslSetup(LoopbackCertificates::serviceCertificate(), LoopbackCertificates::serviceKey());
    m_port = listen(QHostAddress::LocalHost, 0);
    return m_port != 0;
}

bool TestHttpsServer::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    const QByteArray method = QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(int(request.method()));
    m_requests.append({method.toUpper(), request.url().path(), request.headers(), request.body()});

    const TestReply reply = m_handler(m_requests.constLast());
    if (reply.held) {
        m_held.append({QPointer<QTcpSocket>(socket), reply});
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
    // Written by hand rather than through QHttpServerResponder, so that any status, header
    // or body, however wrong, can be scripted.
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Scripted\r\n";
    bool hasLength = false;
    for (const auto &h : reply.headers) {
        head += h.first + ": " + h.second + "\r\n";
        hasLength |= h.first.compare("Content-Length", Qt::CaseInsensitive) == 0
            || h.first.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0;
    }
    if (!hasLength)
        head += "Content-Length: " + QByteArray::number(reply.body.size()) + "\r\n";
    // Cut short, the body ends with the connection.
    socket->write(head + "\r\n" + (reply.cutBodyAt >= 0 ? reply.body.left(reply.cutBodyAt) : reply.body));
    if (reply.cutBodyAt >= 0) {
        socket->flush();
        socket->disconnectFromHost();
    }
}
