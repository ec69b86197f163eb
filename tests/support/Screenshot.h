// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef SCREENSHOT_H
#define SCREENSHOT_H

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWidget>

// Saves \a widget as <TOVRA_SCREENSHOT_DIR>/<name>-<screen size>.png (with @2x and so on
// before .png on a high-density screen), once its window is exposed and its layouts have
// settled; does nothing without TOVRA_SCREENSHOT_DIR.
inline bool saveScreenshot(QWidget *widget, const QString &name)
{
    const QString dir = qEnvironmentVariable("TOVRA_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return true;
    if (!QDir().mkpath(dir) || !QTest::qWaitForWindowExposed(widget->window()))
        return false;
    for (int pass = 0; pass < 4; ++pass)
        QCoreApplication::processEvents();
    const QSize size = QGuiApplication::primaryScreen()->size();
    const qreal ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    const QString density = ratio > 1 ? QStringLiteral("@%1x").arg(ratio) : QString();
    return widget->grab().save(
        QStringLiteral("%1/%2-%3x%4%5.png").arg(dir, name).arg(size.width()).arg(size.height()).arg(density));
}

#endif
