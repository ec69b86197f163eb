// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSettings_p.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace {

// Qt has no "unset" for these names: an empty one is taken as absent.
QString nameOrNull(const QString &name)
{
    return name.isEmpty() ? QString() : name;
}

} // namespace

QUrl TVRSettings::defaultServiceURL()
{
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(QStringLiteral(TOVRA_SERVICE_HOST));
    return url;
}

TVRSettings &TVRSettings::current()
{
    static TVRSettings instance;
    return instance;
}

QLocale TVRSettings::effectiveLocale()
{
    return current().locale.value_or(QLocale());
}

QString TVRSettings::effectiveAppName()
{
    if (!current().appName.isNull())
        return current().appName;

    // Qt's application name is set by the host, else it is the executable's name. The
    // display name is the localised one; Qt falls back to the application name when the
    // host set none, so it is preferred whenever it is there.
    const QString bundleName = nameOrNull(QCoreApplication::applicationName());
    const QString displayName = nameOrNull(QGuiApplication::applicationDisplayName());
    return displayName.isNull() ? bundleName : displayName;
}
