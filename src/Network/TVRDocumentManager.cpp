// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocumentManager.h"

#include "TVRDocumentManagerDelegate.h"
#include "TVRJSONStore_p.h"
#include "TVRLogging_p.h"
#include "TVRWeakDelegate_p.h"

#include <QPointer>

const QString kTVRTermsOfServiceURLPath = QStringLiteral("/api/terms-of-service");
const QString kTVRPrivacyPolicyURLPath = QStringLiteral("/api/privacy-policy");
const QString kTVRTermsOfServiceDataPath = QStringLiteral("kTVRTermsOfServiceDataPath");
const QString kTVRPrivacyPolicyDataPath = QStringLiteral("kTVRPrivacyPolicyDataPath");

namespace {

// One of the two documents: where it is fetched, where its copy is kept, what is held.
struct DocumentSlot
{
    const QString &path;
    const QString &cacheKey;
    std::shared_ptr<TVRDocument> held;
};

} // namespace

using Kind = TVRDocumentManager::Document;

class TVRDocumentManagerPrivate
{
public:
    TVRWeakDelegate<TVRDocumentManagerDelegate> delegate;
    DocumentSlot termsOfService{kTVRTermsOfServiceURLPath, kTVRTermsOfServiceDataPath, nullptr};
    DocumentSlot privacyPolicy{kTVRPrivacyPolicyURLPath, kTVRPrivacyPolicyDataPath, nullptr};

    DocumentSlot &slot(Kind kind) { return kind == Kind::TermsOfService ? termsOfService : privacyPolicy; }

    static void fetch(TVRDocumentManager *manager, Kind kind);
    std::shared_ptr<TVRDocument> document(Kind kind);
};

void TVRDocumentManagerPrivate::fetch(TVRDocumentManager *manager, Kind kind)
{
    const QString cacheKey = manager->d->slot(kind).cacheKey;
    const QPointer<TVRDocumentManager> guard(manager);
    manager->requestForPath(
        manager->d->slot(kind).path, QString(), TVRHTTPMethodGET, QJsonValue(QJsonValue::Undefined),
        [guard, kind, cacheKey](const TVRHTTPResponse &response, const QJsonValue &reply) {
            // The copy is in its file before anyone hears of the reply, and is kept even if
            // the manager went away meanwhile.
            if (!reply.isUndefined() && !TVRJSONStore::write(cacheKey, reply, response.body())) {
                qCWarning(lcTovra, "Keeping %s failed: %s could not be written", qUtf8Printable(cacheKey),
                          qUtf8Printable(TVRJSONStore::fileFor(cacheKey)));
            }
            if (!guard)
                return;
            guard->d->slot(kind).held = std::make_shared<TVRDocument>(reply);
            if (TVRDocumentManagerDelegate *delegate = guard->d->delegate.get())
                delegate->managerDidFinishWithSuccess(guard, true);
            if (guard)
                Q_EMIT guard->documentChanged(kind);
        },
        [guard, kind](const TVRHTTPResponse &, const TVRError &error) {
            if (!guard)
                return;
            if (TVRDocumentManagerDelegate *delegate = guard->d->delegate.get())
                delegate->managerFailedWithError(guard, error);
            if (guard)
                Q_EMIT guard->fetchFailed(kind, error);
        });
}

std::shared_ptr<TVRDocument> TVRDocumentManagerPrivate::document(Kind kind)
{
    DocumentSlot &documentSlot = slot(kind);
    if (!documentSlot.held) {
        const QJsonValue cached = TVRJSONStore::read(documentSlot.cacheKey);
        if (!cached.isUndefined())
            documentSlot.held = std::make_shared<TVRDocument>(cached);
    }
    return documentSlot.held;
}

TVRDocumentManager *TVRDocumentManager::sharedInstance()
{
    static TVRDocumentManager *const instance = new TVRDocumentManager;
    return instance;
}

TVRDocumentManager::TVRDocumentManager(QObject *parent)
    : TVRNetworkManager(parent)
    , d(std::make_unique<TVRDocumentManagerPrivate>())
{
}

TVRDocumentManager::~TVRDocumentManager() = default;

TVRDocumentManagerDelegate *TVRDocumentManager::delegate() const
{
    return d->delegate.get();
}

void TVRDocumentManager::setDelegate(TVRDocumentManagerDelegate *delegate)
{
    d->delegate.set(delegate);
}

void TVRDocumentManager::fetchTermsOfService()
{
    TVRDocumentManagerPrivate::fetch(this, Kind::TermsOfService);
}

void TVRDocumentManager::fetchPrivacyPolicy()
{
    TVRDocumentManagerPrivate::fetch(this, Kind::PrivacyPolicy);
}

std::shared_ptr<TVRDocument> TVRDocumentManager::termsOfService()
{
    return d->document(Kind::TermsOfService);
}

void TVRDocumentManager::setTermsOfService(std::shared_ptr<TVRDocument> document)
{
    // The document already held, handed over again, changes nothing to tell.
    if (document && document == d->termsOfService.held)
        return;
    d->termsOfService.held = std::move(document);
    Q_EMIT documentChanged(Document::TermsOfService);
}

std::shared_ptr<TVRDocument> TVRDocumentManager::privacyPolicy()
{
    return d->document(Kind::PrivacyPolicy);
}

void TVRDocumentManager::setPrivacyPolicy(std::shared_ptr<TVRDocument> document)
{
    if (document && document == d->privacyPolicy.held)
        return;
    d->privacyPolicy.held = std::move(document);
    Q_EMIT documentChanged(Document::PrivacyPolicy);
}

std::shared_ptr<TVRDocument> TVRDocumentManager::documentFor(Document document)
{
    return d->document(document);
}

void TVRDocumentManager::fetch(Document document)
{
    TVRDocumentManagerPrivate::fetch(this, document);
}
