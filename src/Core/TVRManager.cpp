#include "TVRManager.h"

#include "RQKeychain.h"

#include <QCoreApplication>
#include <QGuiApplication>

const QString kTVRUserIdentifier = QStringLiteral("tovrakit.userIdentifier");

namespace {

struct Settings
{
    QString apiKey;
    QString apiSecret;
    QString appName;
    QVariant userIdentifier;
    QVariant userName;
    QVariant userImageUrl;
    bool scrollToBottomEnabled = false;
    bool alertOnAgreeEnabled = false;
};

Settings &settings()
{
    static Settings instance;
    return instance;
}

// Qt has no "unset" for these names: an empty one is taken as absent.
QString nameOrNull(const QString &name)
{
    return name.isEmpty() ? QString() : name;
}

} // namespace

TVRManager::TVRManager() = default;

TVRManager *TVRManager::sharedInstance()
{
    static TVRManager *const instance = new TVRManager;
    return instance;
}

void TVRManager::setAPIKey(const QString &key, const QString &secret)
{
    settings().apiKey = key;
    settings().apiSecret = secret;
}

QString TVRManager::apiKey()
{
    return settings().apiKey;
}

QString TVRManager::apiSecret()
{
    return settings().apiSecret;
}

void TVRManager::setAppName(const QString &name)
{
    settings().appName = name;
}

QString TVRManager::appName()
{
    if (!settings().appName.isNull())
        return settings().appName;

    // The application name is Qt's bundle name: set by the host, else the executable's
    // name. The display name is the localised one; Qt falls back to the application name
    // when the host set none, so it is preferred whenever it is there.
    const QString bundleName = nameOrNull(QCoreApplication::applicationName());
    const QString displayName = nameOrNull(QGuiApplication::applicationDisplayName());
    return displayName.isNull() ? bundleName : displayName;
}

void TVRManager::setUserIdentifier(const QVariant &identifier)
{
    settings().userIdentifier = identifier;
    if (identifier.isValid())
        RQKeychain::saveValue(identifier, kTVRUserIdentifier);
    else
        RQKeychain::deleteValueForKey(kTVRUserIdentifier);
}

QVariant TVRManager::userIdentifier()
{
    if (!settings().userIdentifier.isValid())
        settings().userIdentifier = RQKeychain::loadValueForKey(kTVRUserIdentifier);
    return settings().userIdentifier;
}

void TVRManager::setUserName(const QVariant &name)
{
    settings().userName = name;
}

QVariant TVRManager::userName()
{
    return settings().userName;
}

void TVRManager::setUserImageUrl(const QVariant &imageUrl)
{
    settings().userImageUrl = imageUrl;
}

QVariant TVRManager::userImageUrl()
{
    return settings().userImageUrl;
}

void TVRManager::setScrollToBottomEnabled(bool enabled)
{
    settings().scrollToBottomEnabled = enabled;
}

bool TVRManager::scrollToBottomEnabled()
{
    return settings().scrollToBottomEnabled;
}

void TVRManager::setAlertOnAgreeEnabled(bool enabled)
{
    settings().alertOnAgreeEnabled = enabled;
}

bool TVRManager::alertOnAgreeEnabled()
{
    return settings().alertOnAgreeEnabled;
}

void TVRManager::logout()
{
    RQKeychain::deleteValueForKey(kTVRUserIdentifier);
    settings().userIdentifier.clear();
    settings().userImageUrl.clear();
    settings().userName.clear();
}
