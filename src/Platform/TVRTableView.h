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
    //! How the sections are set apart.
    enum class Style {
        //! Sections follow one another without a gap.
        Plain,
        //! A gap of sectionSpacing() above each section and below the last.
        Grouped
    };
    //! The gap of the grouped style, in device-independent pixels: 18.
    static constexpr int sectionSpacing() { return 18; }

    //! An empty white table of \a style; it loads its rows when first laid out.
    explicit TVRTableView(Style style = Style::Plain, QWidget *parent = nullptr);
    ~TVRTableView() override;

    //! The style the table was made with.
    Style style() const;

    //! The data source, not owned; null unless set.
    TVRTableViewDataSource *dataSource() const;
    //! Sets where the rows come from: asked for the counts at the next load (see
    //! reloadData()), for cells as rows come into view. Without one the table has no sections.
    void setDataSource(TVRTableViewDataSource *dataSource);
    //! The delegate, not owned; null unless set.
    TVRTableViewDelegate *delegate() const;
    //! Sets who gives the row heights, asked at the next load (see reloadData()) and as
    //! estimated rows are measured. Without one every row is 44 px high.
    void setDelegate(TVRTableViewDelegate *delegate);

    //! Shown above the first section at its own height and the table's width; owned.
    QWidget *tableHeaderView() const;
    //! Replaces the header view, deleting the one it replaces, and takes ownership of
    //! \a header (null for none); a table that has loaded loads again.
    void setTableHeaderView(QWidget *header);

    //! Paints the area behind the rows in \a color; white by default.
    void setBackgroundColor(const QColor &color);

    /*!
        Asks the data source and the delegate for everything again, keeping the row at the
        top of the view in place, and shows the cells anew; the cells shown go back for reuse.
    */
    void reloadData();
    //! A cell that left the screen under \a identifier, or null; the caller sets it up again.
    TVRTableViewCell *dequeueReusableCellWithIdentifier(const QString &identifier);

    //! The number of sections as of the last load.
    int numberOfSections() const;
    //! The number of rows in \a section as of the last load; 0 for a section out of range.
    int numberOfRowsInSection(int section) const;
    //! Where the row lies in the table's content, the header included; empty if no such row.
    QRect rectForRowAtIndexPath(TVRIndexPath indexPath) const;
    //! The height of the whole content, header and gaps included, with estimated heights for
    //! the rows not measured yet.
    int contentHeight() const;

    //! The cells shown, in the order of their rows.
    QList<TVRTableViewCell *> visibleCells() const;
    //! The cell shown for the row, or null when the row is not in view.
    TVRTableViewCell *cellForRowAtIndexPath(TVRIndexPath indexPath) const;

protected:
    //! Loads the rows again when the width changes, else lays the cells out for the new height.
    void resizeEvent(QResizeEvent *event) override;
    //! Loads the rows when the table is first shown, if nothing has loaded them yet.
    void showEvent(QShowEvent *event) override;
    //! Lays out the cells for the new scroll position.
    void scrollContentsBy(int dx, int dy) override;
    //! Home, End, Space and Shift+Space scroll as in a document; other keys as in any scroll area.
    void keyPressEvent(QKeyEvent *event) override;

private:
    std::unique_ptr<TVRTableViewPrivate> const d;
};

#endif
