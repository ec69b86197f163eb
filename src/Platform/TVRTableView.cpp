// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTableView.h"

#include "TVRAccessible_p.h"
#include "TVRFocusRing_p.h"
#include "TVRPalette_p.h"
#include "TVRTableViewCell.h"
#include "TVRTableViewDataSource.h"
#include "TVRTableViewDelegate.h"
#include "TVRTextLayout_p.h"

#include <QElapsedTimer>
#include <QHash>
#include <QInputDevice>
#include <QKeyEvent>
#include <QMap>
#include <QPointer>
#include <QResizeEvent>
#include <QScrollBar>
#include <QScroller>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace {

struct Row
{
    TVRIndexPath indexPath;
    qreal height = 0;
    bool exact = false; // measured, not estimated
    int top = 0;
    int bottom = 0;
};

// Where a row that is being measured may not move on screen: the row at the top of the
// view and how far the view's top lies into it.
struct Anchor
{
    TVRIndexPath indexPath;
    int shift = 0;
    bool set = false;
};

// How long the table measures estimated rows at a time, between two events of the loop.
constexpr qint64 measuringSliceNs = 4'000'000;

} // namespace

class TVRTableViewPrivate
{
public:
    explicit TVRTableViewPrivate(TVRTableView *q, TVRTableView::Style style)
        : q(q)
        , style(style)
    {
    }

    void reload();
    void layoutRows();
    void recycle(TVRTableViewCell *cell);
    void updateScrollRange();
    int headerHeight() const { return header ? header->height() : 0; }

    // Positions every row from the heights, the header and the section gaps.
    void placeRows();
    Anchor anchor() const;
    void restore(const Anchor &anchor);
    // Measures the row at \a index exactly, if it was only estimated; true if it was.
    bool measure(qsizetype index);
    // Moves firstEstimated past the rows that are measured.
    void skipMeasured();
    // Measures the estimated rows in and around the view, keeping what is shown in place.
    void measureAroundView();
    // Measures estimated rows for a slice of time, then lets the event loop go on.
    void measureSome();
    // Takes every height as an estimate again, to be asked anew from the event loop.
    void remeasure();
    // After heights changed: places the rows, keeps \a kept where it was on screen, lays
    // the cells out and goes on measuring from the event loop while rows are estimated.
    void rowsChanged(const Anchor &kept);

    TVRTableView *const q;
    const TVRTableView::Style style;
    TVRTableViewDataSource *dataSource = nullptr;
    TVRTableViewDelegate *delegate = nullptr;
    QPointer<QWidget> header;
    QScrollBar *indicator = nullptr;
    QTimer *measuring = nullptr;

    bool loaded = false;
    bool laying = false;
    int loadedWidth = -1; // the viewport width the rows were measured for
    QList<int> rowCounts;
    QList<Row> rows; // in order, top to bottom
    qsizetype firstEstimated = 0; // rows before it are all measured
    int contentHeight = 0;

    QMap<TVRIndexPath, TVRTableViewCell *> visible;
    QHash<QString, QList<TVRTableViewCell *>> reusable;
};

void TVRTableViewPrivate::placeRows()
{
    const int gap = style == TVRTableView::Style::Grouped ? TVRTableView::sectionSpacing() : 0;
    // Heights add up in floating point; each row then spans whole pixels between the
    // rounded positions of its edges, so neighbours neither overlap nor leave gaps.
    qreal y = headerHeight();
    int section = -1;
    for (Row &row : rows) {
        // Every section starts with a gap, those without rows too.
        y += gap * (row.indexPath.section - section);
        section = row.indexPath.section;
        const qreal top = y;
        y += row.height;
        row.top = int(std::lround(top));
        row.bottom = int(std::lround(y));
    }
    const int sections = int(rowCounts.size());
    if (sections > 0)
        y += gap * (sections - section);
    contentHeight = int(std::ceil(y));
}

Anchor TVRTableViewPrivate::anchor() const
{
    const int offset = q->verticalScrollBar()->value();
    const auto row = std::upper_bound(rows.cbegin(), rows.cend(), offset,
                                      [](int y, const Row &candidate) { return y < candidate.bottom; });
    if (row == rows.cend() || offset <= headerHeight())
        return {};
    return {row->indexPath, offset - row->top, true};
}

void TVRTableViewPrivate::restore(const Anchor &anchor)
{
    updateScrollRange();
    if (!anchor.set)
        return;
    const auto row =
        std::find_if(rows.cbegin(), rows.cend(), [&](const Row &r) { return r.indexPath == anchor.indexPath; });
    if (row != rows.cend())
        q->verticalScrollBar()->setValue(row->top + anchor.shift);
}

bool TVRTableViewPrivate::measure(qsizetype index)
{
    Row &row = rows[index];
    if (row.exact)
        return false;
    row.height = qMax<qreal>(0, delegate->tableViewHeightForRowAtIndexPath(q, row.indexPath));
    row.exact = true;
    skipMeasured();
    return true;
}

void TVRTableViewPrivate::skipMeasured()
{
    while (firstEstimated < rows.size() && rows[firstEstimated].exact)
        ++firstEstimated;
}

void TVRTableViewPrivate::measureAroundView()
{
    // Half a view above and below, so that rows scrolled in come measured. Measuring moves
    // the rows after the measured ones, and may bring others in: until nothing changes.
    for (int pass = 0; pass < 8; ++pass) {
        const int offset = q->verticalScrollBar()->value();
        const int height = q->viewport()->height();
        const int from = offset - height / 2;
        const int to = offset + height + height / 2;
        const Anchor kept = anchor();
        bool changed = false;
        auto row = std::upper_bound(rows.begin(), rows.end(), from, [](int y, const Row &r) { return y < r.bottom; });
        for (; row != rows.end() && row->top < to; ++row)
            changed |= measure(row - rows.begin());
        if (!changed)
            break;
        placeRows();
        restore(kept);
    }
}

void TVRTableViewPrivate::measureSome()
{
    if (firstEstimated >= rows.size())
        return;
    QElapsedTimer slice;
    slice.start();
    const Anchor kept = anchor();
    // A view scrolled to the end stays there, as rows above it change.
    QScrollBar *bar = q->verticalScrollBar();
    const bool atEnd = bar->maximum() > 0 && bar->value() == bar->maximum();
    while (firstEstimated < rows.size() && slice.nsecsElapsed() < measuringSliceNs)
        measure(firstEstimated);
    rowsChanged(kept);
    if (atEnd)
        bar->setValue(bar->maximum());
}

void TVRTableViewPrivate::remeasure()
{
    if (!loaded || !delegate || rows.isEmpty())
        return;
    for (Row &row : rows)
        row.exact = false;
    firstEstimated = 0;
    measuring->start();
}

void TVRTableViewPrivate::rowsChanged(const Anchor &kept)
{
    placeRows();
    laying = true;
    restore(kept);
    laying = false;
    layoutRows();
    if (firstEstimated < rows.size())
        measuring->start();
}

void TVRTableViewPrivate::reload()
{
    // The row at the top of the view stays where it is, though rows above it may change.
    const Anchor kept = anchor();
    loaded = true;
    loadedWidth = q->viewport()->width();
    for (TVRTableViewCell *cell : std::as_const(visible))
        recycle(cell);
    visible.clear();

    // Rows the delegate can estimate are measured when they come near the view, and the
    // rest of them a slice at a time from the event loop, so that a long document shows
    // without waiting for every row to be laid out.
    rowCounts.clear();
    rows.clear();
    const int sections = dataSource ? qMax(0, dataSource->numberOfSectionsInTableView(q)) : 0;
    for (int section = 0; section < sections; ++section) {
        const int count = qMax(0, dataSource->tableViewNumberOfRowsInSection(q, section));
        rowCounts.append(count);
        for (int index = 0; index < count; ++index) {
            Row row;
            row.indexPath = {section, index};
            const qreal estimate =
                delegate ? delegate->tableViewEstimatedHeightForRowAtIndexPath(q, row.indexPath) : -1;
            if (estimate >= 0) {
                row.height = estimate;
            } else {
                row.height =
                    delegate ? qMax<qreal>(0, delegate->tableViewHeightForRowAtIndexPath(q, row.indexPath)) : 44.0;
                row.exact = true;
            }
            rows.append(row);
        }
    }
    firstEstimated = 0;
    skipMeasured();
    rowsChanged(kept);
}

void TVRTableViewPrivate::updateScrollRange()
{
    QScrollBar *bar = q->verticalScrollBar();
    const int viewportHeight = q->viewport()->height();
    bar->setRange(0, qMax(0, contentHeight - viewportHeight));
    bar->setPageStep(viewportHeight);
    bar->setSingleStep(20);

    indicator->setRange(bar->minimum(), bar->maximum());
    indicator->setPageStep(bar->pageStep());
    indicator->setValue(bar->value());
    const QRect area = q->viewport()->geometry();
    const int width = indicator->sizeHint().width();
    indicator->setGeometry(area.right() + 1 - width, area.top(), width, area.height());
    indicator->setVisible(bar->maximum() > 0);
    indicator->raise();
}

void TVRTableViewPrivate::layoutRows()
{
    if (laying)
        return;
    laying = true;
    measureAroundView();
    laying = false;
    const int offset = q->verticalScrollBar()->value();
    const int width = q->viewport()->width();
    const int viewTop = offset;
    const int viewBottom = offset + q->viewport()->height();

    if (header)
        header->setGeometry(0, -offset, width, header->height());

    // The rows in view: from the first whose bottom is below the view's top, while their
    // tops are above the view's bottom.
    const auto first =
        std::upper_bound(rows.cbegin(), rows.cend(), viewTop, [](int y, const Row &row) { return y < row.bottom; });
    auto end = first;
    while (end != rows.cend() && end->top < viewBottom)
        ++end;

    // Rows that left the view give up their cells first, for the rows that came in.
    QMap<TVRIndexPath, TVRTableViewCell *> shown;
    for (auto it = first; it != end; ++it) {
        if (TVRTableViewCell *cell = visible.take(it->indexPath))
            shown.insert(it->indexPath, cell);
    }
    for (TVRTableViewCell *cell : std::as_const(visible))
        recycle(cell);

    for (auto it = first; it != end; ++it) {
        if (it->bottom == it->top)
            continue;
        TVRTableViewCell *cell = shown.value(it->indexPath);
        const bool fresh = !cell;
        if (fresh && dataSource)
            cell = dataSource->tableViewCellForRowAtIndexPath(q, it->indexPath);
        if (!cell)
            continue;
        if (cell->parentWidget() != q->viewport())
            cell->setParent(q->viewport());
        cell->setGeometry(0, it->top - offset, width, it->bottom - it->top);
        if (fresh) {
            if (delegate)
                delegate->tableViewWillDisplayCell(q, cell, it->indexPath);
            cell->show();
            shown.insert(it->indexPath, cell);
        }
    }
    const bool reordered = visible.keys() != shown.keys();
    visible = shown;
    if (reordered)
        TVRAccessible::rowsChanged(q);
}

void TVRTableViewPrivate::recycle(TVRTableViewCell *cell)
{
    cell->hide();
    QList<TVRTableViewCell *> &pool = reusable[cell->reuseIdentifier()];
    if (!pool.contains(cell))
        pool.append(cell);
}

TVRTableView::TVRTableView(Style style, QWidget *parent)
    : QAbstractScrollArea(parent)
    , d(std::make_unique<TVRTableViewPrivate>(this, style))
{
    TVRAccessible::install();
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setBackgroundColor(Qt::white);

    // A slim indicator over the rows' right margin, as on touch platforms, rather than a
    // scroll bar beside them: the rows keep the full width their heights were measured for.
    d->indicator = new QScrollBar(Qt::Vertical, this);
    d->indicator->setStyleSheet(QStringLiteral(
        "QScrollBar:vertical { width: 6px; background: transparent; margin: 0; }"
        "QScrollBar::handle:vertical { background: rgba(0, 0, 0, 90); border-radius: 3px; min-height: 24px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"));
    d->indicator->hide();
    TVRFocusRing::attach(this);
    d->measuring = new QTimer(this);
    d->measuring->setSingleShot(true);
    d->measuring->setInterval(0);
    connect(d->measuring, &QTimer::timeout, this, [this] { d->measureSome(); });
    // A row with a long text has an estimated height until the text is laid out whole.
    connect(TVRTextLayout::LongTextProgress::instance(), &TVRTextLayout::LongTextProgress::completed, this,
            [this] { d->remeasure(); });
    connect(d->indicator, &QScrollBar::valueChanged, verticalScrollBar(), &QScrollBar::setValue);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, d->indicator, &QScrollBar::setValue);
    // Kinetic scrolling for fingers, where there are touch screens. (Qt keeps a little
    // memory per grab for good, so tables on other devices do without.)
    const QList<const QInputDevice *> devices = QInputDevice::devices();
    if (std::any_of(devices.cbegin(), devices.cend(),
                    [](const QInputDevice *device) { return device->type() == QInputDevice::DeviceType::TouchScreen; }))
        QScroller::grabGesture(viewport(), QScroller::TouchGesture);
}

TVRTableView::~TVRTableView() = default;

TVRTableView::Style TVRTableView::style() const
{
    return d->style;
}

TVRTableViewDataSource *TVRTableView::dataSource() const
{
    return d->dataSource;
}

void TVRTableView::setDataSource(TVRTableViewDataSource *dataSource)
{
    d->dataSource = dataSource;
}

TVRTableViewDelegate *TVRTableView::delegate() const
{
    return d->delegate;
}

void TVRTableView::setDelegate(TVRTableViewDelegate *delegate)
{
    d->delegate = delegate;
}

QWidget *TVRTableView::tableHeaderView() const
{
    return d->header;
}

void TVRTableView::setTableHeaderView(QWidget *header)
{
    if (d->header == header)
        return;
    delete d->header;
    d->header = header;
    if (header) {
        header->setParent(viewport());
        header->show();
    }
    if (d->loaded)
        d->reload();
}

void TVRTableView::setBackgroundColor(const QColor &color)
{
    TVRPalette::setBackground(viewport(), color);
}

void TVRTableView::reloadData()
{
    d->reload();
}

TVRTableViewCell *TVRTableView::dequeueReusableCellWithIdentifier(const QString &identifier)
{
    auto pool = d->reusable.find(identifier);
    if (pool == d->reusable.end() || pool->isEmpty())
        return nullptr;
    return pool->takeLast();
}

int TVRTableView::numberOfSections() const
{
    return int(d->rowCounts.size());
}

int TVRTableView::numberOfRowsInSection(int section) const
{
    return d->rowCounts.value(section);
}

QRect TVRTableView::rectForRowAtIndexPath(TVRIndexPath indexPath) const
{
    const auto row =
        std::find_if(d->rows.cbegin(), d->rows.cend(), [&](const Row &r) { return r.indexPath == indexPath; });
    if (row == d->rows.cend())
        return {};
    // Where the row lies depends on every row above it: those are measured first.
    const qsizetype index = row - d->rows.cbegin();
    if (d->firstEstimated <= index) {
        const Anchor kept = d->anchor();
        for (qsizetype i = d->firstEstimated; i <= index; ++i)
            d->measure(i);
        d->rowsChanged(kept);
    }
    const Row &placed = d->rows.at(index);
    return QRect(0, placed.top, viewport()->width(), placed.bottom - placed.top);
}

int TVRTableView::contentHeight() const
{
    return d->contentHeight;
}

QList<TVRTableViewCell *> TVRTableView::visibleCells() const
{
    return d->visible.values();
}

TVRTableViewCell *TVRTableView::cellForRowAtIndexPath(TVRIndexPath indexPath) const
{
    return d->visible.value(indexPath);
}

void TVRTableView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    // Rows are measured for the width they are shown in: a new width measures them again.
    if (!d->loaded || viewport()->width() != d->loadedWidth) {
        d->reload();
        return;
    }
    d->updateScrollRange();
    d->layoutRows();
}

void TVRTableView::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    if (!d->loaded)
        d->reload();
}

void TVRTableView::scrollContentsBy(int, int)
{
    d->layoutRows();
}

void TVRTableView::keyPressEvent(QKeyEvent *event)
{
    // Arrows and Page Up/Down scroll as in any scroll area; Home, End and Space as in a
    // document.
    QScrollBar *bar = verticalScrollBar();
    if (event->key() == Qt::Key_Home && event->modifiers() == Qt::NoModifier) {
        bar->triggerAction(QAbstractSlider::SliderToMinimum);
    } else if (event->key() == Qt::Key_End && event->modifiers() == Qt::NoModifier) {
        // Rows measured on the way in may make the content taller than it was estimated:
        // go on to the new end until it stays put.
        for (int pass = 0; pass < 8 && bar->value() != bar->maximum(); ++pass)
            bar->triggerAction(QAbstractSlider::SliderToMaximum);
    } else if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    } else if (event->key() == Qt::Key_Space && event->modifiers() == Qt::ShiftModifier) {
        bar->triggerAction(QAbstractSlider::SliderPageStepSub);
    } else {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
}
