// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABLEVIEW_H
#define TVRTABLEVIEW_H

#include "tovra_export.h"
#include "TVRIndexPath.h"

#include <QAbstractScrollArea>
#include <QList>
#include <QRect>

#include <memory>

class TVRTableViewCell;
class TVRTableViewDataSource;
class TVRTableViewDelegate;
class TVRTableViewPrivate;

/*!
    \brief A vertically scrolling list of rows in sections, below an optional header view.

    The table asks its data source for the counts and for a cell per row, and its delegate
    for row heights; it makes cells only for the rows in view and takes back the cells of
    rows scrolled away, which dequeueReusableCellWithIdentifier() hands out again. The
    grouped style leaves a gap of sectionSpacing() above each section and below the last.
    No separators are drawn and rows are not selectable.

    The table loads its data when first laid out, again on reloadData() and again when its
    width changes, keeping the row at the top of the view in place; row heights come from
    the delegate only, not from the cells. It scrolls with the arrow keys, Page Up and Page
    Down, Home, End and Space. The data source and delegate are not
    owned and must outlive the table or be unset. The scroll indicator floats over the
    rows, so the rows have the table's full width.
*/
class TOVRA_EXPORT TVRTableView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    enum class Style { Plain, Grouped };
    static constexpr int sectionSpacing() { return 18; }

    explicit TVRTableView(Style style = Style::Plain, QWidget *parent = nullptr);
    ~TVRTableView() override;

    Style style() const;

    TVRTableViewDataSource *dataSource() const;
    void setDataSource(TVRTableViewDataSource *dataSource);
    TVRTableViewDelegate *delegate() const;
    void setDelegate(TVRTableViewDelegate *delegate);

    //! Shown above the first section at its own height and the table's width; owned.
    QWidget *tableHeaderView() const;
    void setTableHeaderView(QWidget *header);

    void setBackgroundColor(const QColor &color);

    void reloadData();
    //! A cell that left the screen under \a identifier, or null; the caller sets it up again.
    TVRTableViewCell *dequeueReusableCellWithIdentifier(const QString &identifier);

    int numberOfSections() const;
    int numberOfRowsInSection(int section) const;
    //! Where the row lies in the table's content, the header included; empty if no such row.
    QRect rectForRowAtIndexPath(TVRIndexPath indexPath) const;
    int contentHeight() const;

    QList<TVRTableViewCell *> visibleCells() const;
    //! The cell shown for the row, or null when the row is not in view.
    TVRTableViewCell *cellForRowAtIndexPath(TVRIndexPath indexPath) const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    std::unique_ptr<TVRTableViewPrivate> const d;
};

#endif
