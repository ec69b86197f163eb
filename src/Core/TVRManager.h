#ifndef TVRMANAGER_H
#define TVRMANAGER_H

#include "tovra_export.h"

#include <QObject>
#include <QString>
#include <QVariant>

//! The keychain key under which the signed-in user's identifier is kept.
TOVRA_EXPORT extern const QString kTVRUserIdentifier;

/*!
    \brief The host application's entry point: the kit's settings and the user's identity.

    All settings are held by the class for the life of the process and start empty; the
    host sets them again at each launch. Only the user identifier is also kept in the
    keychain (under kTVRUserIdentifier), so that userIdentifier() returns it at the next
    launch without the host setting it again.

    Nothing is checked: empty texts and null values are stored as given. Call these from
    the thread that runs the kit, normally the main thread; the class takes no lock.
*/
class TOVRA_EXPORT TVRManager : public QObject
{
    Q_OBJECT

public:
    //! The one instance, made on the first call and kept until the process ends.
    static TVRManager *sharedInstance();

    //! Sets the credentials that every later request carries, of every manager.
    static void setAPIKey(const QString &key, const QString &secret);
    static QString apiKey();
    static QString apiSecret();

    /*!
        Sets the name that section bodies show in place of "#####". With a null name,
        appName() falls back to the application's display name, else its name.
    */
    static void setAppName(const QString &name);
    static QString appName();

    /*!
        Sets the signed-in user's identifier and saves it in the keychain, replacing the
        one kept there. A null identifier removes the keychain item instead, as logout()
        does, since an item holding nothing would only read back as null.
    */
    static void setUserIdentifier(const QVariant &identifier);
    //! The identifier set, else the one the keychain keeps (asked again while it has none).
    static QVariant userIdentifier();

    static void setUserName(const QVariant &name);
    static QVariant userName();

    static void setUserImageUrl(const QVariant &imageUrl);
    static QVariant userImageUrl();

    static void setScrollToBottomEnabled(bool enabled);
    static bool scrollToBottomEnabled();

    static void setAlertOnAgreeEnabled(bool enabled);
    static bool alertOnAgreeEnabled();

    /*!
        Forgets the user: removes the identifier from the keychain, then clears the
        identifier, picture address and name. Credentials, application name and flags stay.
    */
    static void logout();

private:
    TVRManager();
};

#endif
