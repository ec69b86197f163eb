// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRNETWORKMANAGER_P_H
#define TVRNETWORKMANAGER_P_H

#include "TVRNetworkManager.h"

#include <QByteArray>
#include <QPointer>
#include <QUrl>

// The kit's requests are sent by its network library (Network/TVRTransport.cpp), the one
// part of the kit that uses Qt Network. Where the kit is a set of shared libraries on Linux,
// the core loads that library with the first request, so that a host that starts from the
// kept copies loads no Qt Network before its first frame; elsewhere it is part of the core.

// A request as the core hands it to the network library: the full URL, the method, its
// body, the Authorization header and the largest reply body taken, all as they were when
// the request was made, however long it waits for the library.
struct TVRTransportRequest
{
    QUrl url;
    QByteArray verb;
    QByteArray body;
    QByteArray authorization;
    qint64 maximumReplySize = 0;
    TVRRequestSuccessHandler success;
    TVRRequestFailureHandler failure;
};

class TVRNetworkManagerPrivate
{
public:
    // The QNetworkAccessManager that carries the requests, held as a QObject so that the
    // core needs nothing of Qt Network.
    QPointer<QObject> session;
};

// Sends \a request through \a manager's session; exactly one of its handlers is called, later,
// from the session's event loop. Looked up by this name when the library is loaded, with
// tovraTransportVersion, the release the library was built as, which must be the core's.
extern "C" TOVRA_EXPORT void tovraTransportSend(TVRNetworkManager *manager, TVRTransportRequest *request);
extern "C" TOVRA_EXPORT const char tovraTransportVersion[];

#endif
