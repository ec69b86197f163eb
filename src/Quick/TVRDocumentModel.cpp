// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocumentModel.h"

#include "TVRDocumentManager.h"
#include "TVRQuickAgreement_p.h"

// The agreement presenter is installed as the library loads: a shared library when a QML
// engine first imports the module, a static one as the application starts. It is done from
// this file because the module's type registrations make every host link it, which a file
// of its own would not be in a static link.
Q_CONSTRUCTOR_FUNCTION(tvrInstallQuickAgreementPresenter)

class TVRDocumentModelPrivate
{
public:
    TVRDocumentManager::Document document() const
    {
        return kind == TVRDocumentModel::TermsOfService ? TVRDocumentManager::Document::TermsOfService
                                                        : TVRDocumentManager::Document::PrivacyPolicy;
    }

    // Shows the manager's document. Rows are changed, added and removed one by one rather than
    // reset, so that a refresh that brings the same sections leaves the view as it is: the
    // reader's place, and the rows' items with any text being edited in them.
    void showDocument(TVRDocumentModel &model);
    // The document is read when it is first asked about, so that a model made for one kind
    // and then set to the other never reads the first one's copy.
    TVRDocumentModelPrivate &read()
    {
        if (!readOnce) {
            readOnce = true;
            shown = TVRDocumentManager::sharedInstance()->documentFor(document());
            sections = shown ? shown->sections() : TVRSectionList();
        }
        return *this;
    }

    TVRDocumentModel::Kind kind = TVRDocumentModel::TermsOfService;
    bool readOnce = false;
    std::shared_ptr<TVRDocument> shown;
    TVRSectionList sections;
    bool loading = false;
    QString error;
};

void TVRDocumentModelPrivate::showDocument(TVRDocumentModel &model)
{
    if (!readOnce) {
        // Nothing shown yet to change: the first question reads the document as it is then.
        Q_EMIT model.documentChanged();
        return;
    }
    shown = TVRDocumentManager::sharedInstance()->documentFor(document());
    const TVRSectionList next = shown ? shown->sections() : TVRSectionList();
    const int before = int(sections.size());
    const int after = int(next.size());
    if (after < before) {
        model.beginRemoveRows({}, after, before - 1);
        sections.resize(after);
        model.endRemoveRows();
    }
    const auto same = [](const std::shared_ptr<TVRSection> &a, const std::shared_ptr<TVRSection> &b) {
        return a == b || (a && b && a->title() == b->title() && a->body() == b->body());
    };
    // One dataChanged() per run of changed rows: rows in between keep their items as they are.
    const QList<int> roles{TVRDocumentModel::TitleRole, TVRDocumentModel::BodyRole, Qt::DisplayRole};
    const int common = std::min(before, after);
    for (int row = 0; row < common;) {
        if (same(sections.at(row), next.at(row))) {
            sections[row] = next.at(row);
            ++row;
            continue;
        }
        const int first = row;
        for (; row < common && !same(sections.at(row), next.at(row)); ++row)
            sections[row] = next.at(row);
        Q_EMIT model.dataChanged(model.index(first), model.index(row - 1), roles);
    }
    if (after > before) {
        model.beginInsertRows({}, before, after - 1);
        sections = next;
        model.endInsertRows();
    }
    Q_EMIT model.documentChanged();
}

TVRDocumentModel::TVRDocumentModel(QObject *parent)
    : QAbstractListModel(parent)
    , d(std::make_unique<TVRDocumentModelPrivate>())
{
    TVRDocumentManager *manager = TVRDocumentManager::sharedInstance();
    // A fetch ends with the reply or the failure of this model's document, whoever asked.
    const auto stopLoading = [this] {
        if (d->loading) {
            d->loading = false;
            Q_EMIT loadingChanged();
        }
    };
    const auto reload = [this] { d->showDocument(*this); };
    connect(manager, &TVRDocumentManager::documentChanged, this,
            [this, reload, stopLoading](TVRDocumentManager::Document which) {
                if (which != d->document())
                    return;
                reload();
                if (!d->error.isEmpty()) {
                    d->error.clear();
                    Q_EMIT errorChanged();
                }
                stopLoading();
            });
    connect(manager, &TVRDocumentManager::fetchFailed, this,
            [this, stopLoading](TVRDocumentManager::Document which, const TVRError &error) {
                if (which != d->document())
                    return;
                d->error = error.message();
                Q_EMIT errorChanged();
                stopLoading();
            });
    connect(this, &TVRDocumentModel::kindChanged, this, reload);
}

TVRDocumentModel::~TVRDocumentModel() = default;

TVRDocumentModel::Kind TVRDocumentModel::kind() const
{
    return d->kind;
}

void TVRDocumentModel::setKind(Kind kind)
{
    const bool changed = d->kind != kind;
    d->kind = kind;
    // A page sets its kind as it is made: the copy is read while the rest of the page is.
    TVRDocumentManager::sharedInstance()->readAhead(d->document());
    if (changed)
        Q_EMIT kindChanged();
}

QString TVRDocumentModel::title() const
{
    const std::shared_ptr<TVRDocument> &shown = d->read().shown;
    return shown ? shown->title() : QString();
}

QDateTime TVRDocumentModel::date() const
{
    const std::shared_ptr<TVRDocument> &shown = d->read().shown;
    return shown ? shown->date() : QDateTime();
}

QString TVRDocumentModel::dateText() const
{
    const std::shared_ptr<TVRDocument> &shown = d->read().shown;
    return shown ? shown->dateText() : QString();
}

bool TVRDocumentModel::isLoading() const
{
    return d->loading;
}

QString TVRDocumentModel::error() const
{
    return d->error;
}

void TVRDocumentModel::fetch()
{
    if (!d->loading) {
        d->loading = true;
        Q_EMIT loadingChanged();
    }
    TVRDocumentManager::sharedInstance()->fetch(d->document());
}

int TVRDocumentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(d->read().sections.size());
}

QVariant TVRDocumentModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const std::shared_ptr<TVRSection> &section = d->sections.at(index.row());
    if (!section)
        return {};
    switch (role) {
    case TitleRole:
        return section->title();
    case BodyRole:
        return section->body();
    case Qt::DisplayRole:
        return section->title().isEmpty() ? section->body() : section->title();
    default:
        return {};
    }
}

QHash<int, QByteArray> TVRDocumentModel::roleNames() const
{
    return {{TitleRole, "title"}, {BodyRole, "body"}, {Qt::DisplayRole, "display"}};
}
