// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocumentManager.h"

#include "TVRDocument_p.h"
#include "TVRDocumentManagerDelegate.h"
#include "TVRJSONStore_p.h"
#include "TVRLogging_p.h"
#include "TVRWeakDelegate_p.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>

#include <condition_variable>
#include <mutex>

const QString kTVRTermsOfServiceURLPath = QStringLiteral("/api/terms-of-service");
const QString kTVRPrivacyPolicyURLPath = QStringLiteral("/api/privacy-policy");
const QString kTVRTermsOfServiceDataPath = QStringLiteral("kTVRTermsOfServiceDataPath");
const QString kTVRPrivacyPolicyDataPath = QStringLiteral("kTVRPrivacyPolicyDataPath");

namespace {

// A kept copy's document, and the hash of the text it was made from.
struct Kept
{
    std::shared_ptr<TVRDocument> document;
    size_t textHash = 0;
};

// About as much text as the tallest screen shows at once.
constexpr qsizetype firstScreenCharacters = qsizetype(16) * 1024;

// The document in a kept copy, null when it keeps none. Plain JSON text is only indexed, and
// its texts are decoded as they are read, but for those shown first; anything else is parsed
// whole.
Kept keptDocument(const TVRJSONStore::Read &read)
{
    std::shared_ptr<TVRDocument> document = TVRDocumentPrivate::fromKeptText(read.text, firstScreenCharacters);
    if (!document && !read.text.isEmpty()) {
        qCDebug(lcTovra, "A kept copy that is not plain JSON is parsed whole");
        const QJsonValue value = TVRJSONStore::valueOf(read.text);
        if (!value.isUndefined())
            document = std::make_shared<TVRDocument>(value);
    }
    return {document, document ? read.textHash : 0};
}

// A kept copy read on a thread of the pool below, shared by that thread and the manager.
class KeptCopyRead
{
public:
    explicit KeptCopyRead(QString path)
        : path(std::move(path))
    {
    }

    const QString path;

    void finish(std::optional<Kept> read)
    {
        const std::lock_guard lock(mutex);
        value = std::move(read);
        done = true;
        finished.notify_all();
    }
    std::optional<Kept> wait()
    {
        std::unique_lock lock(mutex);
        finished.wait(lock, [this] { return done; });
        return value;
    }

private:
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    std::optional<Kept> value;
};

// Below this size a copy is read in less time than it takes a thread to pick the read up.
constexpr qint64 readAheadSize = qint64(256) * 1024;

// The kit's own readers, so that a host's busy global pool never holds a read back. The
// application owns them and, as it ends, waits for a read in flight.
QThreadPool *readers()
{
    static QPointer<QThreadPool> pool;
    if (!pool)
        pool = new QThreadPool(QCoreApplication::instance());
    return pool;
}

// One of the two documents: where it is fetched, where its copy is kept, what is held and
// the hash of the text it was made from (0 for a document set), and the copy being read
// ahead while nothing is held.
struct DocumentSlot
{
    const QString &path;
    const QString &cacheKey;
    std::shared_ptr<TVRDocument> held;
    size_t heldTextHash;
    std::shared_ptr<KeptCopyRead> reading;

    // A document held from now on makes any copy read before it out of date.
    void hold(std::shared_ptr<TVRDocument> document, size_t textHash = 0)
    {
        held = std::move(document);
        heldTextHash = textHash;
        reading.reset();
    }
};

} // namespace

using Kind = TVRDocumentManager::Document;

class TVRDocumentManagerPrivate
{
public:
    TVRWeakDelegate<TVRDocumentManagerDelegate> delegate;
    DocumentSlot termsOfService{kTVRTermsOfServiceURLPath, kTVRTermsOfServiceDataPath, nullptr, 0, nullptr};
    DocumentSlot privacyPolicy{kTVRPrivacyPolicyURLPath, kTVRPrivacyPolicyDataPath, nullptr, 0, nullptr};

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
            // A reply of the very text the held document was made from leaves that document
            // held, so that what shows it has nothing to change.
            DocumentSlot &documentSlot = guard->d->slot(kind);
            const size_t textHash = TVRJSONStore::textHash(response.body());
            if (!documentSlot.held || textHash != documentSlot.heldTextHash)
                documentSlot.hold(std::make_shared<TVRDocument>(reply), textHash);
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
        // A copy read ahead is taken if it was read from the file that keeps it now.
        std::optional<Kept> cached;
        if (documentSlot.reading && documentSlot.reading->path == TVRJSONStore::fileFor(documentSlot.cacheKey))
            cached = documentSlot.reading->wait();
        if (!cached)
            cached = keptDocument(TVRJSONStore::read(documentSlot.cacheKey));
        if (cached->document)
            documentSlot.hold(cached->document, cached->textHash);
        documentSlot.reading.reset();
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
    d->termsOfService.hold(std::move(document));
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
    d->privacyPolicy.hold(std::move(document));
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

void TVRDocumentManager::readAhead(Document document)
{
    DocumentSlot &documentSlot = d->slot(document);
    if (documentSlot.held || documentSlot.reading || !QCoreApplication::instance())
        return;
    const QString file = TVRJSONStore::fileFor(documentSlot.cacheKey);
    if (QFileInfo(file).size() < readAheadSize)
        return;
    documentSlot.reading = std::make_shared<KeptCopyRead>(file);
    readers()->start([read = documentSlot.reading] {
        const std::optional<TVRJSONStore::Read> text = TVRJSONStore::readFile(read->path);
        read->finish(text ? std::optional<Kept>(keptDocument(*text)) : std::nullopt);
    });
}
