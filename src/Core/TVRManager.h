// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// TVRManager is the kit's facade, and the one class allowed to reach every folder of the
// kit: it writes the settings that the request layer and the model read, keeps the user's
// identifier through the keychain store, starts the agreement check and makes the
// document screens. Every other folder includes only the folders below it (see the
// README's layout, checked by cmake/check_layers.cmake).

#ifndef TVRMANAGER_H
#define TVRMANAGER_H

/*!
    \file
    \brief TVRManager, the kit's entry point, and the keychain key of the user's identifier.
*/

#include "tovra_export.h"
#include "TVRUserManagerDelegate.h"

#include <QLocale>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <functional>
#include <memory>

//! The keychain key under which the signed-in user's identifier is kept: "tovrakit.userIdentifier".
TOVRA_EXPORT extern const QString kTVRUserIdentifier;

class TVRPrivacyPolicyViewController;
class TVRTermsOfServiceViewController;

/*!
    \brief The host application's entry point: the kit's settings and the user's identity.

    All settings are held by the class for the life of the process and start empty or at
    their defaults; the host sets them again at each launch. Only the user identifier is
    also kept in the keychain (under kTVRUserIdentifier), so that userIdentifier() returns
    it at the next launch without the host setting it again.

    Apart from setServiceURL() and setMaximumReplySize(), nothing is checked: empty texts
    and null values are stored as given. Call these from the thread that runs the kit,
    normally the main thread; the class takes no lock.
*/
class TOVRA_EXPORT TVRManager : public QObject, public TVRUserManagerDelegate
{
    Q_OBJECT

public:
    //! The one instance, made on the first call and kept until the process ends.
    static TVRManager *sharedInstance();

    /*!
        Sets the credentials that every later request carries, of every manager, as HTTP
        Basic authorization; a null key or secret is sent as empty text.
    */
    static void setAPIKey(const QString &key, const QString &secret);
    //! The API key set with setAPIKey(); null until one is set.
    static QString apiKey();
    //! The API secret set with setAPIKey(); null until one is set.
    static QString apiSecret();

    /*!
        Sets the name that section bodies show in place of "#####". With a null name,
        appName() falls back to the application's display name, else its name.
    */
    static void setAppName(const QString &name);
    /*!
        The name set with setAppName() unless it is null, else the application's display
        name (QGuiApplication::applicationDisplayName()), else its name
        (QCoreApplication::applicationName()); an empty display name or name counts as
        absent. Null when there is none.
    */
    static QString appName();

    /*!
        Sets the signed-in user's identifier and saves it in the keychain, replacing the
        one kept there. A null identifier (an invalid QVariant) removes the keychain item
        instead, as logout() does, since an item holding nothing would only read back as
        null. The call blocks until the keychain answers, 5 s at most; a keychain failure is
        not reported, and the identifier is then set for this run only.
    */
    static void setUserIdentifier(const QVariant &identifier);
    /*!
        The identifier set, else the one the keychain keeps (asked again while it has none,
        which blocks as setUserIdentifier() does); an invalid QVariant when neither has one.
    */
    static QVariant userIdentifier();

    //! Keeps the user's name for the host, for this run only; no screen of the kit shows it.
    static void setUserName(const QVariant &name);
    //! The name set with setUserName(); an invalid QVariant until then and after logout().
    static QVariant userName();

    //! Keeps the address of the user's picture for the host, for this run only; no screen
    //! of the kit shows it.
    static void setUserImageUrl(const QVariant &imageUrl);
    //! The address set with setUserImageUrl(); an invalid QVariant until then and after logout().
    static QVariant userImageUrl();

    /*!
        Points every request, screen and QML DocumentModel at the service at \a url: an
        \c https address with an optional path prefix, for example
        "https://legal.example.com/app", which makes the documents
        "/app/api/terms-of-service" and "/app/api/privacy-policy". Plain \c http is taken
        only for a loopback host (localhost, 127.0.0.0/8, ::1), where developers run a
        local server. An address that is not such a URL, or that carries user
        information, a query or a fragment, is refused: the kit logs why and keeps the
        address it had. Returns whether \a url was taken. The credentials go to that
        origin only. Requests under way keep the address they were sent to.
    */
    static bool setServiceURL(const QUrl &url);
    //! The service's address; https://api.tovra.io (the build's service host) by default.
    static QUrl serviceURL();

    /*!
        The largest reply body, in bytes, that the kit reads: 5 MiB (5,242,880 bytes) unless
        set. A larger reply ends in the failure handler, and for a document in
        TVRDocumentManagerDelegate::managerFailedWithError() with an error that names the
        size and the limit; the copy kept from before stays. Reading stops as soon as the
        size is known to pass the limit, from Content-Length or from the bytes received. A
        limit of 0 or less brings back the default.
    */
    static void setMaximumReplySize(qint64 bytes);
    //! The reply size limit in force, in bytes: 5,242,880 unless set.
    static qint64 maximumReplySize();

    /*!
        Keeps a flag for the host; no screen of this release reads it. The agreement screens
        enable their buttons when the last section comes into view whatever it says.
    */
    static void setScrollToBottomEnabled(bool enabled);
    //! The flag set with setScrollToBottomEnabled(); false unless set.
    static bool scrollToBottomEnabled();

    //! Keeps a flag for the host; no screen of this release reads it, and "Agree" shows no alert.
    static void setAlertOnAgreeEnabled(bool enabled);
    //! The flag set with setAlertOnAgreeEnabled(); false unless set.
    static bool alertOnAgreeEnabled();

    /*!
        Forgets the user: removes the identifier from the keychain, then clears the
        identifier, picture address and name. Credentials, application name and flags stay.
    */
    static void logout();

    /*!
        Starts the agreement check: logs "ACTIVATE" and, when a user identifier is known,
        "FETCH", makes the shared instance the delegate of TVRUserManager and asks it for
        the user's status. That request is not part of this release, so the check stops
        there; a host that learns the status otherwise can hand it to the shared
        instance's userManagerDidRespondWithCompliance().
    */
    static void activateApp();

    //! Shows the agreement screen for a document; returns whether it did.
    using AgreementPresenter = std::function<bool(const std::shared_ptr<TVRDocument> &document)>;
    /*!
        Replaces how the agreement screen is shown when the user has not agreed. The kit
        first makes \a presenter's document the shared document manager's Terms of Service,
        then calls \a presenter; when there is none or it returns false, the kit presents its
        widget screen over the key window (in a QApplication, with Tovra::Widgets linked).
        The QML module sets one, unless the host set its own first, that shows AgreementPage
        over the Qt Quick window in front.
        An empty function restores the kit's own behaviour.
    */
    static void setAgreementPresenter(AgreementPresenter presenter);
    //! The presenter in place, the host's or the QML module's; an empty function when there is none.
    static AgreementPresenter agreementPresenter();

    /*!
        Shows the kit in \a locale's language: installs the kit's own translations for it
        in the application, in place of any installed before, and formats the screens' dates
        in \a locale. Returns whether the kit speaks that language: true for English, the
        kit's own, and for every language it has a catalogue for (German, French, Spanish,
        Italian, Brazilian Portuguese, Japanese, Simplified Chinese, Arabic and Hebrew);
        false otherwise, and the kit then stays in English with dates in the default locale.
        Call it before showing a screen; screens already made keep their texts. The
        application's layout direction stays the host's to set.
    */
    static bool installTranslations(const QLocale &locale = QLocale());

    /*!
        A new Terms of Service screen, owned by the caller; it fetches its document itself.
        Defined by the widgets library: a host that calls it links Tovra::Widgets.
    */
    static TVRTermsOfServiceViewController *termsOfServiceViewController();
    /*!
        A new Privacy Policy screen, owned by the caller; it fetches its document itself.
        Defined by the widgets library: a host that calls it links Tovra::Widgets.
    */
    static TVRPrivacyPolicyViewController *privacyPolicyViewController();

    /*!
        Logs "DOCUMENT: " and the document. When the user has not agreed, \a document
        becomes the shared document manager's Terms of Service and the agreement screen is
        shown for it: by the presenter of setAgreementPresenter(), if there is one and it
        returns true; else, in a QApplication with a window shown, as a
        TVRTermsViewController in a navigation controller presented, without a transition,
        over the main window under TVRViewController::keyWindow(). While that screen is up,
        another answer presents nothing more. Call it on the GUI thread.
    */
    void userManagerDidRespondWithCompliance(TVRUserManager *manager, bool compliance,
                                             std::shared_ptr<TVRDocument> document) override;
    //! Logs "ERROR: " and the error; nothing else.
    void userManagerDidFailWithError(TVRUserManager *manager, const TVRError &error) override;

private:
    TVRManager();
};

#endif
