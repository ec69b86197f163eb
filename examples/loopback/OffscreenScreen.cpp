// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "OffscreenScreen.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

bool useOffscreenScreen(const QString &directory, QSize size, int devicePixelRatio)
{
    QFile config(QDir(directory).filePath(QStringLiteral("screens.json")));
    if (!config.open(QIODevice::WriteOnly))
        return false;
    const QJsonObject screen{{QStringLiteral("name"), QStringLiteral("screen")},
                             {QStringLiteral("x"), 0},
                             {QStringLiteral("y"), 0},
                             {QStringLiteral("width"), size.width()},
                             {QStringLiteral("height"), size.height()},
                             {QStringLiteral("logicalDpi"), 96},
                             {QStringLiteral("dpr"), devicePixelRatio}};
    config.write(QJsonDocument(QJsonObject{{QStringLiteral("screens"), QJsonArray{screen}}}).toJson());
    config.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toLocal8Bit());
    return true;
}
