// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef HELPERPROCESS_H
#define HELPERPROCESS_H

#include <QProcess>
#include <QStringList>
#include <QTest>

// Runs the helper program, a second launch of a host (helpers/tovra_test_helper.cpp), with
// \a arguments and extra NAME=value \a environment, and returns its output lines. This
// process goes on serving its events meanwhile: the helper may talk to its test server.
inline QStringList runHelper(const QStringList &arguments, const QStringList &environment = {})
{
    QProcess helper;
    helper.setEnvironment(QProcess::systemEnvironment() + environment); // the later of two NAME= wins
    helper.start(QStringLiteral(TOVRA_TEST_HELPER), arguments);
    const bool ended =
        helper.waitForStarted() && QTest::qWaitFor([&helper] { return helper.state() == QProcess::NotRunning; }, 60000);
    if (!ended || helper.exitStatus() != QProcess::NormalExit || helper.exitCode() != 0) {
        // The whole of what the helper said, since a comparison shows only its start.
        const QString errors = QString::fromLocal8Bit(helper.readAllStandardError());
        qWarning("helper %s failed:\n%s", qPrintable(arguments.join(QLatin1Char(' '))), qPrintable(errors));
        return {QStringLiteral("helper failed: ") + errors};
    }
    return QString::fromUtf8(helper.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

#endif
