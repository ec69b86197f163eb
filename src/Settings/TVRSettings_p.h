// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSETTINGS_P_H
#define TVRSETTINGS_P_H

#include <QLocale>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <optional>

// The kit's process-wide settings. TVRManager writes them for the host; the request layer
// reads the credentials and the model reads the application name, without either of them
// depending on the facade.
struct TVRSettings
{
    QString apiKey;
    QString apiSecret;
    QString appName; // as set by the host; null when it set none
    QVariant userIdentifier;
    QVariant userName;
    QVariant userImageUrl;
    bool scrollToBottomEnabled = false;
    bool alertOnAgreeEnabled = false;
    std::optional<QLocale> locale; // the language the host chose for the kit, if any
    QUrl serviceURL = defaultServiceURL(); // scheme, host, port and path prefix of every request
    qint64 maximumReplySize = defaultMaximumReplySize; // bytes of a reply body, at most

    static constexpr qint64 defaultMaximumReplySize = qint64(5) * 1024 * 1024;
    static QUrl defaultServiceURL();

    static TVRSettings &current();

    // The name shown in place of "#####": the host's, else the application's display name,
    // else its name.
    static QString effectiveAppName();
    // The locale the screens format dates in: the one the host chose, else the default.
    static QLocale effectiveLocale();
};

#endif
