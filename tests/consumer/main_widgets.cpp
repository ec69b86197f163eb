// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// A widget host that links the widget screens alone (Tovra::Widgets), as one that never hands
// the kit a network session of its own. Where the kit's network library is loaded with the
// first request (CONSUMER_LAZY_NETWORK), Qt Network is not in the process before that; a
// request dropped with its manager before it was sent still ends, cancelled; and the first
// one that is sent loads it. With CONSUMER_NETWORK_LIBRARY_REMOVED=1 in the environment the
// library has been taken away, and a request ends in an error that names it.
//   consumer_widgets

#include <Tovra.h>

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

bool mapsQtNetwork()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("libQt6Network");
}

// Sends a GET to the service on \a manager and waits for its one answer or error.
TVRError fetch(TVRNetworkManager &manager)
{
    TVRError error;
    QEventLoop loop;
    manager.requestForPath(
        QStringLiteral("/api/terms-of-service"), QString(), TVRHTTPMethodGET, QJsonValue(),
        [&loop](const TVRHTTPResponse &, const QJsonValue &) { loop.quit(); },
        [&loop, &error](const TVRHTTPResponse &, const TVRError &failure) {
            error = failure;
            loop.quit();
        });
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    loop.exec();
    return error;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Nothing listens there: a request that is sent fails to connect.
    TVRManager::setServiceURL(QUrl(QStringLiteral("http://127.0.0.1:9")));
    QWidget window;
    window.resize(200, 100);
    window.show();

#ifdef CONSUMER_LAZY_NETWORK
    const bool lazy = true;
#else
    const bool lazy = false;
#endif
    if (lazy && mapsQtNetwork()) {
        std::puts("Qt Network was loaded at start");
        return 1;
    }

    // Dropped before it is sent: the request still ends, as a cancellation.
    TVRError dropped;
    {
        auto manager = std::make_unique<TVRNetworkManager>();
        manager->requestForPath(QStringLiteral("/api/privacy-policy"), QString(), TVRHTTPMethodGET, QJsonValue(),
                                nullptr,
                                [&dropped](const TVRHTTPResponse &, const TVRError &error) { dropped = error; });
    }
    if (dropped.code() != 5) { // QNetworkReply::OperationCanceledError
        std::printf("a request dropped with its manager ended with %s %d: %s\n", qUtf8Printable(dropped.domain()),
                    dropped.code(), qUtf8Printable(dropped.message()));
        return 1;
    }

    TVRNetworkManager manager;
    const TVRError error = fetch(manager);
    if (qEnvironmentVariableIsSet("CONSUMER_NETWORK_LIBRARY_REMOVED")) {
        const bool named =
            error.domain() == TVRError::kitDomain() && error.message().contains(QStringLiteral("libTovraNetwork"));
        std::printf("without the network library: %s\n", qUtf8Printable(error.message()));
        return named ? 0 : 1;
    }
    if (error.domain() != TVRError::networkDomain() || error.code() == 5) {
        std::printf("the request ended with %s %d: %s\n", qUtf8Printable(error.domain()), error.code(),
                    qUtf8Printable(error.message()));
        return 1;
    }
    if (lazy && !mapsQtNetwork()) {
        std::puts("a request was sent without Qt Network");
        return 1;
    }
    std::printf("a widget host%s: %s", lazy ? ", Qt Network loaded with the first request" : "",
                qUtf8Printable(error.message()));
    return 0;
}
