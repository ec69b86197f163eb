// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRManager.h"
#include "TVRManager_p.h"

#include "RQKeychain.h"
#include "TVRDocument.h"
#include "TVRDocumentManager.h"
#include "TVRLogging_p.h"
#include "TVRSettings_p.h"
#include "TVRUserManager.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

#include <memory>

const QString kTVRUserIdentifier = QStringLiteral("tovrakit.userIdentifier");

namespace {

TVRSettings &settings()
{
    return TVRSettings::current();
}

// What the log lines show for a document and an error: the class and address with the
// document's _id, and the error's domain, code and message.
QString describe(const std::shared_ptr<TVRDocument> &document)
{
    if (!document)
        return QStringLiteral("(null)");
    return QStringLiteral("<TVRDocument: 0x%1; _id = %2>")
        .arg(quintptr(document.get()), 0, 16)
        .arg(document->identifier().isNull() ? QStringLiteral("(null)") : document->identifier());
}

QString describe(const TVRError &error)
{
    return QStringLiteral("Error Domain=%1 Code=%2 \"%3\"").arg(error.domain()).arg(error.code()).arg(error.message());
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
    return TVRSettings::effectiveAppName();
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

namespace {

// localhost, 127.0.0.0/8 (also as an IPv4-mapped IPv6 address) or ::1, as QUrl gives a host:
// IPv6 addresses in their shortest form, without brackets.
bool isLoopback(const QString &host)
{
    if (host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 || host == QLatin1String("::1"))
        return true;
    QString address = host;
    if (address.startsWith(QLatin1String("::ffff:"), Qt::CaseInsensitive))
        address = address.mid(7);
    const QStringList parts = address.split(QLatin1Char('.'));
    if (parts.size() != 4)
        return false;
    for (const QString &part : parts) {
        bool number = false;
        const int value = part.toInt(&number);
        if (!number || value < 0 || value > 255 || part.size() > 3)
            return false;
    }
    return parts.first().toInt() == 127;
}

// Why \a url cannot be the service's address; null when it can.
QString refusalOf(const QUrl &url)
{
    if (!url.isValid() || url.host().isEmpty())
        return QStringLiteral("it is not an absolute URL with a host");
    if (url.scheme() == QLatin1String("http")) {
        if (!isLoopback(url.host()))
            return QStringLiteral("plain http is taken only for a loopback host");
    } else if (url.scheme() != QLatin1String("https")) {
        return QStringLiteral("its scheme is neither https nor http");
    }
    if (!url.userInfo().isEmpty())
        return QStringLiteral("it carries user information; the credentials are the API key and secret");
    if (url.hasQuery() || url.hasFragment())
        return QStringLiteral("it carries a query or a fragment");
    return {};
}

} // namespace

bool TVRManager::setServiceURL(const QUrl &url)
{
    const QString refusal = refusalOf(url);
    if (!refusal.isNull()) {
        qCWarning(lcTovra, "SERVICE: refused %s: %s", qUtf8Printable(url.toDisplayString()), qUtf8Printable(refusal));
        return false;
    }
    QUrl address = url.adjusted(QUrl::StripTrailingSlash | QUrl::NormalizePathSegments);
    if (address.path() == QLatin1String("/"))
        address.setPath(QString());
    settings().serviceURL = address;
    return true;
}

QUrl TVRManager::serviceURL()
{
    return settings().serviceURL;
}

void TVRManager::setMaximumReplySize(qint64 bytes)
{
    settings().maximumReplySize = bytes > 0 ? bytes : TVRSettings::defaultMaximumReplySize;
}

qint64 TVRManager::maximumReplySize()
{
    return settings().maximumReplySize;
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

void TVRManager::activateApp()
{
    qCInfo(lcTovra, "ACTIVATE");
    if (!userIdentifier().isValid())
        return;
    qCInfo(lcTovra, "FETCH");
    TVRUserManager *users = TVRUserManager::sharedInstance();
    users->setDelegate(sharedInstance());
    users->fetchUserStatusWithIdentifier(userIdentifier());
}

// The catalogues are compiled into the library; a static library links them in only when
// something asks for them by name.
static void initTranslationResources()
{
    Q_INIT_RESOURCE(tovra_translations);
}

bool TVRManager::installTranslations(const QLocale &locale)
{
    static QPointer<QTranslator> installed;
    if (installed) {
        QCoreApplication::removeTranslator(installed);
        delete installed;
    }
    TVRSettings &settings = TVRSettings::current();
    settings.locale.reset();
    if (locale.language() == QLocale::English) {
        settings.locale = locale;
        return true;
    }
    if (!QCoreApplication::instance())
        return false;
    initTranslationResources();
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    if (!translator->load(locale, QStringLiteral("tovra"), QStringLiteral("_"), QStringLiteral(":/tovra/i18n")))
        return false;
    QCoreApplication::installTranslator(translator.get());
    installed = translator.release();
    settings.locale = locale;
    return true;
}

// termsOfServiceViewController() and privacyPolicyViewController() make widget screens: the
// widgets library defines them, in TVRManagerScreens.cpp.

namespace {
TVRManager::AgreementPresenter &agreementPresenterSlot()
{
    static TVRManager::AgreementPresenter presenter;
    return presenter;
}

TVRManager::AgreementPresenter &builtInAgreementPresenterSlot()
{
    static TVRManager::AgreementPresenter presenter;
    return presenter;
}
} // namespace

void tvrSetBuiltInAgreementPresenter(TVRManager::AgreementPresenter presenter)
{
    builtInAgreementPresenterSlot() = std::move(presenter);
}

void TVRManager::setAgreementPresenter(AgreementPresenter presenter)
{
    agreementPresenterSlot() = std::move(presenter);
}

TVRManager::AgreementPresenter TVRManager::agreementPresenter()
{
    return agreementPresenterSlot();
}

void TVRManager::userManagerDidRespondWithCompliance(TVRUserManager *, bool compliance,
                                                     std::shared_ptr<TVRDocument> document)
{
    qCInfo(lcTovra, "DOCUMENT: %s", qUtf8Printable(describe(document)));
    if (compliance)
        return;
    if (const AgreementPresenter &presenter = agreementPresenterSlot()) {
        TVRDocumentManager::sharedInstance()->setTermsOfService(document);
        if (presenter(document))
            return;
    }
    if (const AgreementPresenter &builtIn = builtInAgreementPresenterSlot(); builtIn && builtIn(document))
        return;
    // Nothing to show it with: the document is all there is to keep.
    TVRDocumentManager::sharedInstance()->setTermsOfService(std::move(document));
}

void TVRManager::userManagerDidFailWithError(TVRUserManager *, const TVRError &error)
{
    qCInfo(lcTovra, "ERROR: %s", qUtf8Printable(describe(error)));
}
