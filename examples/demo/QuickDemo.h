// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef QUICKDEMO_H
#define QUICKDEMO_H

#include <QJsonObject>
#include <QString>
#include <QStringList>

// The demo in QML: the same tour as the widget demo, with the kit's QML pages. Runs the
// window until it is closed, or, given a folder, renders each page to it and returns the
// files written (empty, with \a error set, on a problem).
int runQuickDemo(const QJsonObject &currentTerms);
QStringList takeQuickScreenshots(const QString &directory, const QJsonObject &currentTerms, QString *error);
// The two document pages as the host's own service sends them.
QStringList takeQuickServiceScreenshots(const QString &directory, QString *error);

#endif
