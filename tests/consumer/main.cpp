// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include <Tovra.h>

#include <cstdio>
#include <cstring>
#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    TVRManager::setAppName(QStringLiteral("Consumer"));
    const bool linked = TVRManager::appName() == QStringLiteral("Consumer")
        && TVRNetworkManager::stringForHTTPMethod(TVRHTTPMethodPATCH) == QStringLiteral("PATCH")
        && std::strstr(reinterpret_cast<const char *>(TovraVersionString), "PROJECT:Tovra-") != nullptr
        && TovraVersionNumber >= 1.0
        // The catalogues travel inside the library, a static one included.
        && TVRManager::installTranslations(QLocale(QLocale::German))
        && QCoreApplication::translate("TVRReadOnlyDocumentViewController", "Close") == QStringLiteral("Schließen");
    std::printf("%s", reinterpret_cast<const char *>(TovraVersionString));
    return linked ? 0 : 1;
}
