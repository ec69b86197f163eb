// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSETTINGS_P_H
#define TVRSETTINGS_P_H

#include <QString>
#include <QVariant>

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

    static TVRSettings &current();

    // The name shown in place of "#####": the host's, else the application's display name,
    // else its name.
    static QString effectiveAppName();
};

#endif
