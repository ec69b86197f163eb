// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef OFFSCREENSCREEN_H
#define OFFSCREENSCREEN_H

#include <QSize>
#include <QString>

// Makes the next QGuiApplication use Qt's offscreen platform with one screen of \a size
// (device-independent pixels, 96 dpi) at \a devicePixelRatio device pixels per pixel,
// described in a file written under \a directory. Call it before the application object
// exists. The demo's headless tour, the screen tests and the benchmarks all render this way.
bool useOffscreenScreen(const QString &directory, QSize size, int devicePixelRatio = 1);

#endif
