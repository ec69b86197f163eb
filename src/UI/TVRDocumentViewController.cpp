// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocumentViewController.h"

#include "TVRDesignClass.h"
#include "TVRDocumentManager.h"
#include "TVRHeaderView.h"
#include "TVRPalette_p.h"
#include "TVRSection_p.h"
#include "TVRSectionBodyTableViewCell.h"
#include "TVRSectionTitleTableViewCell.h"
#include "TVRSubview_p.h"
#include "TVRTableView.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QScreen>
#include <QVBoxLayout>

#include <cmath>

class TVRDocumentViewControllerPrivate
{
public:
    QString titleOnLoad;
    QPointer<TVRHeaderView> headerView;
    QPointer<TVRTableView> tableView;
    std::shared_ptr<TVRDocument> loaded; // the document the table last loaded its rows from
};

namespace {

bool hasTitle(const std::shared_ptr<TVRSection> &section)
{
    return section && !section->title().isEmpty();
}

} // namespace

// The full local date, without the time of day.
QString TVRDocumentViewController::dateText(const std::shared_ptr<TVRDocument> &document)
{
    if (!document)
        return {};
    return document->dateText();
}

TVRDocumentViewController::TVRDocumentViewController(const QString &titleOnLoad, QWidget *parent)
    : TVRViewController(parent)
    , d(std::make_unique<TVRDocumentViewControllerPrivate>())
{
    d->titleOnLoad = titleOnLoad;
    setPalette(TVRPalette::light());
}

TVRDocumentViewController::~TVRDocumentViewController()
{
    // What the screen made and no widget has taken yet is the screen's to delete; a table
    // placed elsewhere stops asking this screen for its rows.
    if (d->tableView) {
        d->tableView->setDataSource(nullptr);
        d->tableView->setDelegate(nullptr);
        if (!d->tableView->parent())
            delete d->tableView;
    }
    if (d->headerView && !d->headerView->parent())
        delete d->headerView;
}

TVRHeaderView *TVRDocumentViewController::headerView()
{
    if (!d->headerView) {
        const QScreen *screen = QGuiApplication::primaryScreen();
        const int width = screen ? screen->geometry().width() : 0;
        d->headerView = new TVRHeaderView(QRect(0, 0, width, 44));
    }
    return d->headerView;
}

void TVRDocumentViewController::setHeaderView(TVRHeaderView *headerView)
{
    if (headerView == d->headerView)
        return;
    if (d->tableView) {
        d->tableView->setTableHeaderView(headerView); // deletes the header it showed
    } else {
        delete d->headerView;
    }
    d->headerView = headerView;
}

TVRTableView *TVRDocumentViewController::tableView()
{
    if (!d->tableView) {
        auto *table = new TVRTableView(TVRTableView::Style::Grouped);
        table->resize(isViewLoaded() ? view()->size() : QSize());
        showDocumentIn(table);
        d->tableView = table;
    }
    return d->tableView;
}

void TVRDocumentViewController::setTableView(TVRTableView *tableView)
{
    if (tableView == d->tableView)
        return;
    if (d->tableView) {
        d->tableView->setDataSource(nullptr);
        d->tableView->setDelegate(nullptr);
        // The header moves to the new table rather than going with the old one.
        if (d->headerView && d->headerView->parentWidget() == d->tableView->viewport())
            d->headerView->setParent(nullptr);
    }
    TVRSubview::replace(d->tableView, tableView);
    d->tableView = tableView;
    if (tableView)
        showDocumentIn(tableView);
}

void TVRDocumentViewController::showDocumentIn(TVRTableView *table)
{
    table->setDelegate(this);
    table->setDataSource(this);
    table->setBackgroundColor(Qt::white);
    table->setTableHeaderView(headerView());
}

void TVRDocumentViewController::loadView()
{
    TVRViewController::loadView();
    TVRPalette::setBackground(view(), Qt::white);
    tableView()->setParent(view());
    setupConstraints();
}

// The table fills the root view.
void TVRDocumentViewController::setupConstraints()
{
    auto *layout = new QVBoxLayout(view());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tableView());
}

void TVRDocumentViewController::viewDidLoad()
{
    TVRViewController::viewDidLoad();
    // Assistive technology names the list of rows after the screen.
    connect(this, &TVRViewController::titleChanged, this, [this] {
        if (d->tableView)
            d->tableView->setAccessibleName(title());
    });
    if (!d->titleOnLoad.isNull())
        setTitle(d->titleOnLoad);
    tableView()->setAccessibleName(title());
    // The header shows the date of the document the table shows, until a completion says
    // otherwise.
    headerView()->dateLabel()->setText(dateText(documentOf(TVRDocumentManager::sharedInstance())));
}

void TVRDocumentViewController::showEvent(QShowEvent *event)
{
    TVRViewController::showEvent(event);
    // The view shown for the first time is laid out and shown after this event: focus
    // follows once the event loop has shown it.
    QMetaObject::invokeMethod(
        this,
        [this] {
            QWidget *focus = window()->focusWidget();
            if (isVisible() && (!focus || !isAncestorOf(focus)))
                tableView()->setFocus(Qt::OtherFocusReason);
        },
        Qt::QueuedConnection);
}

TVRSectionList TVRDocumentViewController::sections() const
{
    const std::shared_ptr<TVRDocument> document = documentOf(TVRDocumentManager::sharedInstance());
    return document ? document->sections() : TVRSectionList();
}

int TVRDocumentViewController::numberOfSectionsInTableView(TVRTableView *)
{
    // Asked as the table loads its rows.
    d->loaded = documentOf(TVRDocumentManager::sharedInstance());
    return d->loaded ? int(d->loaded->sections().size()) : 0;
}

int TVRDocumentViewController::tableViewNumberOfRowsInSection(TVRTableView *, int section)
{
    return hasTitle(sections().value(section)) ? 2 : 1;
}

qreal TVRDocumentViewController::tableViewHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath)
{
    // Rows are as wide as the table shows them, whatever the screen's size.
    const qreal rowWidth = tableView->viewport()->width();
    const std::shared_ptr<TVRSection> section = sections().value(indexPath.section);
    if (indexPath.row == 0 && hasTitle(section))
        return TVRSectionTitleTableViewCell::cellHeightForSection(section, rowWidth);
    return TVRSectionBodyTableViewCell::cellHeightForSection(section, rowWidth);
}

qreal TVRDocumentViewController::tableViewEstimatedHeightForRowAtIndexPath(TVRTableView *tableView,
                                                                           TVRIndexPath indexPath)
{
    // Lines of average characters: close enough for the scroll range until the row is
    // measured, as it is before it is shown. Asked for every row at once, so the fonts'
    // metrics are looked up once per font.
    struct Metrics
    {
        QString fontKey;
        qreal averageCharWidth = 1;
        qreal lineHeight = 0;
    };
    static Metrics metrics[2];
    const std::shared_ptr<TVRSection> section = sections().value(indexPath.section);
    const bool title = indexPath.row == 0 && hasTitle(section);
    const QFont font = title ? TVRDesignClass::sectionTitleFont() : TVRDesignClass::sectionBodyFont();
    Metrics &known = metrics[title ? 0 : 1];
    if (known.fontKey != font.key()) {
        const QFontMetricsF measured(font);
        known = {font.key(), qMax<qreal>(1, measured.averageCharWidth()), measured.height()};
    }
    const qsizetype characters = section ? tvrSectionLengthEstimate(*section, title) : 0;
    const qreal width = tableView->viewport()->width() - (title ? 40.0 : 24.0);
    const qreal perLine = qMax<qreal>(1, std::floor(width / known.averageCharWidth));
    const qreal lines = qMax<qreal>(1, std::ceil(characters / perLine));
    return qMax<qreal>(40, std::ceil(lines * known.lineHeight));
}

TVRTableViewCell *TVRDocumentViewController::tableViewCellForRowAtIndexPath(TVRTableView *tableView,
                                                                            TVRIndexPath indexPath)
{
    const std::shared_ptr<TVRSection> section = sections().value(indexPath.section);
    TVRSectionTableViewCell *cell = nullptr;
    if (hasTitle(section) && indexPath.row == 0) {
        cell = static_cast<TVRSectionTableViewCell *>(
            tableView->dequeueReusableCellWithIdentifier(TVRSectionTitleTableViewCell::cellIdentifier()));
        if (!cell)
            cell = new TVRSectionTitleTableViewCell;
    } else if (!hasTitle(section) || indexPath.row == 1) {
        cell = static_cast<TVRSectionTableViewCell *>(
            tableView->dequeueReusableCellWithIdentifier(TVRSectionBodyTableViewCell::cellIdentifier()));
        if (!cell)
            cell = new TVRSectionBodyTableViewCell;
    }
    if (cell)
        cell->setSection(section);
    return cell;
}

void TVRDocumentViewController::managerDidFinishWithSuccess(TVRDocumentManager *manager, bool)
{
    // Whatever the flag says, the screen shows what the manager now holds. A reply that left
    // the document the rows were loaded from held leaves them as they are: the reader's place
    // and focus, and any text being edited in them.
    const std::shared_ptr<TVRDocument> document = documentOf(manager);
    if (document && document == d->loaded)
        return;
    const QString text = dateText(document);
    QMetaObject::invokeMethod(
        this,
        [this, text] {
            headerView()->dateLabel()->setText(text);
            tableView()->reloadData();
        },
        Qt::QueuedConnection);
}

void TVRDocumentViewController::managerFailedWithError(TVRDocumentManager *, const TVRError &)
{
    // Nothing to do: the screen goes on showing what the manager holds.
}
