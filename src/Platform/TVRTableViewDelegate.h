// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABLEVIEWDELEGATE_H
#define TVRTABLEVIEWDELEGATE_H

#include "tovra_export.h"
#include "TVRIndexPath.h"

#include <QtGlobal>

class TVRTableView;
class TVRTableViewCell;

//! \brief How a TVRTableView lays its rows out. Every method is optional.
class TOVRA_EXPORT TVRTableViewDelegate
{
public:
    virtual ~TVRTableViewDelegate();

    //! The row's height in device-independent pixels; 44 unless told otherwise.
    virtual qreal tableViewHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath);
    /*!
        A cheap estimate of the row's height, or a negative value (the default) for none.
        A table whose rows are estimated asks for their exact heights only as they come
        near the view, and for the others a little at a time from the event loop, keeping
        the rows in view in place as the estimates are corrected.
    */
    virtual qreal tableViewEstimatedHeightForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath);
    //! Called when \a cell is about to be shown for the row, after it has been placed.
    virtual void tableViewWillDisplayCell(TVRTableView *tableView, TVRTableViewCell *cell, TVRIndexPath indexPath);
};

#endif
