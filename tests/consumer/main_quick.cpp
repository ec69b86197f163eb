// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// A QML host: "import Tovra" from the installed module, or from the module linked in with a
// static kit, and the three pages made, with no Qt Widgets in the process, and the two
// document pages without Qt Quick Controls.
#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

#include <cstdio>
#include <memory>

#if defined(CONSUMER_STATIC_QML)
#include <TovraCore.h>

#include <QtQml/qqmlextensionplugin.h>
Q_IMPORT_QML_PLUGIN(TovraPlugin)
#endif

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QQmlEngine engine;
#if !defined(CONSUMER_STATIC_QML)
    engine.addImportPath(QStringLiteral(CONSUMER_QML_IMPORT_PATH));
#endif
    for (const char *page : {"TermsOfServicePage", "PrivacyPolicyPage", "AgreementPage"}) {
        QQmlComponent component(&engine);
        component.setData(QByteArray("import Tovra\n") + page + " {}\n", QUrl());
        std::unique_ptr<QObject> made(component.create());
        if (!made) {
            std::fprintf(stderr, "%s\nimport paths: %s\n", qPrintable(component.errorString()),
                         qPrintable(engine.importPathList().join(u' ')));
            return 1;
        }
        std::printf("%s ", page);
#if defined(Q_OS_LINUX) && !defined(CONSUMER_STATIC_QML)
        // The Terms of Service and Privacy Policy open without Qt Quick Controls, which
        // would take longer to load than the page to open.
        QFile maps(QStringLiteral("/proc/self/maps"));
        if (qstrcmp(page, "AgreementPage") != 0 && maps.open(QIODevice::ReadOnly)
            && maps.readAll().contains("libQt6QuickControls2")) {
            std::fprintf(stderr, "%s loaded Qt Quick Controls\n", page);
            return 1;
        }
#endif
    }
#if defined(Q_OS_LINUX)
    // A QML host carries no Qt Widgets: the kit's QML module, shared or linked in, neither
    // links nor loads it.
    QFile maps(QStringLiteral("/proc/self/maps"));
    const QByteArray mapped = maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
    if (!mapped.contains("libQt6Quick") || mapped.contains("libQt6Widgets")) {
        std::fprintf(stderr, "Qt Widgets is loaded, or Qt Quick is not:\n%s", mapped.constData());
        return 1;
    }
    std::printf("without Qt Widgets ");
#endif
#if defined(CONSUMER_STATIC_QML)
    // Linked in, the module still shows the agreement page over a Qt Quick window.
    if (!TVRManager::agreementPresenter()) {
        std::fprintf(stderr, "no agreement presenter\n");
        return 1;
    }
    std::printf("and the agreement presenter");
#endif
    return 0;
}
