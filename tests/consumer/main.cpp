// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include <Tovra.h>

#include <QApplication>
#include <QJsonObject>

#include <cstdio>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    TVRManager::setAppName(QStringLiteral("Consumer"));
    const char *version = reinterpret_cast<const char *>(TovraVersionString);
    const bool linked = TVRNetworkManager::stringForHTTPMethod(TVRHTTPMethodPATCH) == QStringLiteral("PATCH")
        && QByteArray(version).contains("PROJECT:Tovra-")
        && TovraVersionNumber >= 1.0
        // The catalogues travel inside the library, a static one included.
        && TVRManager::installTranslations(QLocale(QLocale::German))
        && QCoreApplication::translate("TVRReadOnlyDocumentViewController", "Close") == QStringLiteral("Schließen");
    std::printf("%s", version);

    // The agreement check presents the kit's widget screen over the window in front, though
    // this host calls nothing of the widget screens itself.
    QWidget window;
    window.show();
    TVRManager::sharedInstance()->userManagerDidRespondWithCompliance(nullptr, false,
                                                                      std::make_shared<TVRDocument>(QJsonObject()));
    bool presented = false;
    for (const QWidget *shown : QApplication::topLevelWidgets())
        presented = presented || (shown->isVisible() && shown->inherits("TVRNavigationController"));
    std::fputs(presented ? " and the agreement screen" : ", no agreement screen", stdout);
    return linked && presented ? 0 : 1;
}
