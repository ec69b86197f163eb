// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include <Tovra.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <QApplication>
#include <QJsonObject>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    TVRManager::setAppName(QStringLiteral("Consumer"));
    const bool linked = TVRManager::appName() == QStringLiteral("Consumer")
        && TVRNetworkManager::stringForHTTPMethod(TVRHTTPMethodPATCH) == QStringLiteral("PATCH")
        && std::strstr(reinterpret_cast<const char *>(TovraVersionString), "PROJECT:Tovra-") != nullptr
        && TovraVersionNumber >= 1.0
        // The catalogues travel inside the library, a static one included.
        && TVRManager::installTranslations(QLocale(QLocale::German))
        && QCoreApplication::translate("TVRReadOnlyDocumentViewController", "Close") == QStringLiteral("Schließen");
    std::printf("%s", reinterpret_cast<const char *>(TovraVersionString));

    // The agreement check presents the kit's widget screen over the window in front, though
    // this host calls nothing of the widget screens itself.
    QWidget window;
    window.show();
    TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(nullptr, false,
                                                                      std::make_shared<TVRDocument>(QJsonObject()));
    const QWidgetList windows = QApplication::topLevelWidgets();
    const bool presented = std::any_of(windows.cbegin(), windows.cend(), [](const QWidget *shown) {
        return shown->isVisible() && std::strcmp(shown->metaObject()->className(), "TVRNavigationController") == 0;
    });
    std::fputs(presented ? " and the agreement screen" : ", no agreement screen", stdout);
    return linked && presented ? 0 : 1;
}
