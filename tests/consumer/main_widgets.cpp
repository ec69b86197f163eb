// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT
// A widget host that links the widget screens alone (Tovra::Widgets), as one that never hands
// the kit a network session of its own. Its request must reach the network, wherever the
// kit's network library lives; with CONSUMER_NETWORK_LIBRARY_REMOVED=1 in the environment
// that library has been taken away, and the request ends in an error that names it.
//   consumer_widgets

#include <Tovra.h>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Nothing listens there: a request that is sent fails to connect.
    TVRManager::setServiceURL(QUrl(QStringLiteral("http://127.0.0.1:9")));

    TVRNetworkManager manager;
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

    std::printf("a widget host linked with Tovra::Widgets: %s %d, %s", qUtf8Printable(error.domain()), error.code(),
                qUtf8Printable(error.message()));
    const bool failedAsExpected = qEnvironmentVariableIsSet("CONSUMER_NETWORK_LIBRARY_REMOVED")
        ? error.domain() == TVRError::kitDomain() && error.message().contains(QStringLiteral("libTovraNetwork"))
        : error.domain() == TVRError::networkDomain() && error.code() == 1; // ConnectionRefusedError
    return failedAsExpected ? 0 : 1;
}
