// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRDOCUMENTMANAGER_H
#define TVRDOCUMENTMANAGER_H

/*!
    \file
    \brief TVRDocumentManager, which fetches and keeps the two documents, with their request
    paths and the names of their kept copies.
*/

#include "tovra_export.h"
#include "TVRDocument.h"
#include "TVRNetworkManager.h"

#include <memory>

class TVRDocumentManagerDelegate;
class TVRDocumentManagerPrivate;

//! Request path of the Terms of Service: "/api/terms-of-service".
TOVRA_EXPORT extern const QString kTVRTermsOfServiceURLPath;
//! Request path of the Privacy Policy: "/api/privacy-policy".
TOVRA_EXPORT extern const QString kTVRPrivacyPolicyURLPath;
//! Name of the kept Terms of Service, "kTVRTermsOfServiceDataPath": the file
//! "Tovra/kTVRTermsOfServiceDataPath.json", and the key release 1.0 used in QSettings.
TOVRA_EXPORT extern const QString kTVRTermsOfServiceDataPath;
//! Name of the kept Privacy Policy, "kTVRPrivacyPolicyDataPath": the file
//! "Tovra/kTVRPrivacyPolicyDataPath.json", and the key release 1.0 used in QSettings.
TOVRA_EXPORT extern const QString kTVRPrivacyPolicyDataPath;

/*!
    \brief Fetches the Terms of Service and the Privacy Policy and keeps the last of each.

    Each reply that arrives, whatever its HTTP status, becomes the document held and, unless
    it was empty or not JSON, is kept as a copy under kTVRTermsOfServiceDataPath or
    kTVRPrivacyPolicyDataPath: a file "Tovra/<key>.json" in the application's configuration
    folder (QStandardPaths::AppConfigLocation), replaced whole. The copy is in the file
    before the delegate and the listeners hear of the reply, so an application that ends,
    or is killed, at any moment after that finds it at its next launch. While no document
    is held, termsOfService() and privacyPolicy() read that copy, or the one that release
    1.0 kept in the host's default QSettings. The kit never removes the copies. A reply of
    the very text that the document held was made from, a reply or a kept copy, leaves that
    document held rather than an equal new one, so that what shows it can tell that nothing
    changed.

    The delegate hears of every reply and transport failure, for both documents. Call the
    manager from the thread of its session; the delegate is called on that thread too.
*/
class TOVRA_EXPORT TVRDocumentManager : public TVRNetworkManager
{
    Q_OBJECT

public:
    //! One of the two documents, for documentFor(), fetch() and the signals.
    enum class Document {
        //! The Terms of Service, fetched from kTVRTermsOfServiceURLPath.
        TermsOfService,
        //! The Privacy Policy, fetched from kTVRPrivacyPolicyURLPath.
        PrivacyPolicy
    };
    Q_ENUM(Document)

    //! The one manager the kit's screens use, made on the first call, kept until exit.
    static TVRDocumentManager *sharedInstance();

    /*!
        A manager of its own, with its own delegate and documents held, over the same kept
        copies as the shared one. The kit's screens and models use sharedInstance() only.
    */
    explicit TVRDocumentManager(QObject *parent = nullptr);
    ~TVRDocumentManager() override;

    //! The delegate set with setDelegate(); null when none is set or it was destroyed.
    TVRDocumentManagerDelegate *delegate() const;
    //! Held weakly: \a delegate must also be a QObject; any other is not kept.
    void setDelegate(TVRDocumentManagerDelegate *delegate);

    //! Starts a fetch of the Terms of Service and returns at once; the delegate and
    //! the listeners hear how it ended.
    void fetchTermsOfService();
    //! Starts a fetch of the Privacy Policy and returns at once; the delegate and
    //! the listeners hear how it ended.
    void fetchPrivacyPolicy();

    //! The Terms of Service held, else the one made from the kept copy; null if neither exists.
    std::shared_ptr<TVRDocument> termsOfService();
    //! Holds \a document and sends documentChanged(), unless \a document is the one held
    //! already; null lets the next read take the cached copy again.
    void setTermsOfService(std::shared_ptr<TVRDocument> document);

    //! The Privacy Policy held, else the one made from the kept copy; null if neither exists.
    std::shared_ptr<TVRDocument> privacyPolicy();
    //! As setTermsOfService(), for the Privacy Policy.
    void setPrivacyPolicy(std::shared_ptr<TVRDocument> document);

    //! The document held for \a document, as termsOfService() or privacyPolicy() gives it.
    std::shared_ptr<TVRDocument> documentFor(Document document);
    //! Fetches \a document, as fetchTermsOfService() or fetchPrivacyPolicy() does.
    void fetch(Document document);
    /*!
        Starts reading the kept copy of \a document on a thread of the kit's own, and returns
        at once. The next documentFor(), termsOfService() or privacyPolicy() takes what it
        read, and waits only for the rest of the read, so a large copy is read while the
        application goes on making its window; the kit's screens and pages call it as they
        are made. Does nothing while a document is held, for a copy small enough to read
        at once, or before the application object exists. A document held meanwhile,
        fetched or set, wins over the copy read.
    */
    void readAhead(Document document);

Q_SIGNALS:
    /*!
        \a document is held anew: a fetch brought a reply, or another was set. Sent after the
        delegate heard of the reply, to every connected listener: screens, models and host
        code alike, whichever of them is the delegate.
    */
    void documentChanged(TVRDocumentManager::Document document);
    //! A fetch of \a document failed with \a error; the document held is as it was.
    void fetchFailed(TVRDocumentManager::Document document, const TVRError &error);

private:
    friend class TVRDocumentManagerPrivate;
    std::unique_ptr<TVRDocumentManagerPrivate> const d;
};

#endif
