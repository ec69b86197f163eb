// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef OFFSCREENTEST_H
#define OFFSCREENTEST_H

#include "OffscreenScreen.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

// A main() that runs the widget test \a TestClass on Qt's offscreen platform, with one
// screen of \a size (a QSize) made before the application starts.
#define TOVRA_OFFSCREEN_TEST_MAIN(TestClass, size)                                                                     \
    int main(int argc, char *argv[])                                                                                   \
    {                                                                                                                  \
        QTemporaryDir screenDir;                                                                                       \
        if (!useOffscreenScreen(screenDir.path(), size, qMax(1, qEnvironmentVariableIntValue("TOVRA_TEST_DPR"))))      \
            return 1;                                                                                                  \
        QApplication app(argc, argv);                                                                                  \
        TestClass test;                                                                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }

#endif
