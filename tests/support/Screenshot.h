// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef SCREENSHOT_H
#define SCREENSHOT_H

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <QWidget>

// \a widget as painted once its window is exposed and its layouts have settled; when
// TOVRA_SCREENSHOT_DIR is set and \a name is not empty, also saved as
// <TOVRA_SCREENSHOT_DIR>/<name>-<screen size>.png (with @2x and so on before .png on a
// high-density screen). A null image when the window is never exposed or the file cannot be
// written.
inline QImage screenshot(QWidget *widget, const QString &name)
{
    if (!QTest::qWaitForWindowExposed(widget->window()))
        return {};
    for (int pass = 0; pass < 4; ++pass)
        QCoreApplication::processEvents();
    const QImage image = widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QString dir = qEnvironmentVariable("TOVRA_SCREENSHOT_DIR");
    const QSize size = QGuiApplication::primaryScreen()->size();
    const qreal ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    const QString density = ratio > 1 ? QStringLiteral("@%1x").arg(ratio) : QString();
    const QString file =
        QStringLiteral("%1/%2-%3x%4%5.png").arg(dir, name).arg(size.width()).arg(size.height()).arg(density);
    return dir.isEmpty() || name.isEmpty() || (QDir().mkpath(dir) && image.save(file)) ? image : QImage();
}

// Saves \a widget as screenshot() does; does nothing without TOVRA_SCREENSHOT_DIR.
inline bool saveScreenshot(QWidget *widget, const QString &name)
{
    return qEnvironmentVariableIsEmpty("TOVRA_SCREENSHOT_DIR") || !screenshot(widget, name).isNull();
}

#endif
