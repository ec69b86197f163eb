// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// A QML host: "import Tovra" from the installed module, or from the module linked in with a
// static kit, and the three pages made.
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
    }
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
