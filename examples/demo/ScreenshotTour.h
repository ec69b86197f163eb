// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef SCREENSHOTTOUR_H
#define SCREENSHOTTOUR_H

#include <QJsonObject>
#include <QString>
#include <QStringList>

class DemoService;
class LoopbackSession;

/*
    Renders each screen to a PNG without a display: the Terms of Service from the cache and
    after the reply, the Privacy Policy presented, and the agreement screen. Returns the
    paths written, or an empty list and \a error.
*/
QStringList takeScreenshots(const QString &directory, DemoService &service, LoopbackSession &session,
                            const QJsonObject &currentTerms, QString *error);

/*
    Renders the Terms of Service and the Privacy Policy as the host's own service sends them
    (TVRManager::serviceURL()): "terms-of-service.png" and "privacy-policy.png". Returns the
    paths written, or an empty list and \a error.
*/
QStringList takeServiceScreenshots(const QString &directory, QString *error);

#endif
