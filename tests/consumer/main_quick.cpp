// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// A QML host: "import Tovra" from the installed module, and the three pages made.
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

#include <cstdio>
#include <memory>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral(CONSUMER_QML_IMPORT_PATH));
    for (const char *page : {"TermsOfServicePage", "PrivacyPolicyPage", "AgreementPage"}) {
        QQmlComponent component(&engine);
        component.setData(QByteArray("import Tovra\n") + page + " {}\n", QUrl());
        std::unique_ptr<QObject> made(component.create());
        if (!made) {
            std::fprintf(stderr, "%s\n", qPrintable(component.errorString()));
            return 1;
        }
        std::printf("%s ", page);
    }
    return 0;
}
