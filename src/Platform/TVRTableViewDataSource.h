// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABLEVIEWDATASOURCE_H
#define TVRTABLEVIEWDATASOURCE_H

#include "tovra_export.h"
#include "TVRIndexPath.h"

class TVRTableView;
class TVRTableViewCell;

//! \brief What a TVRTableView shows: how many sections and rows, and a cell for each row.
class TOVRA_EXPORT TVRTableViewDataSource
{
public:
    virtual ~TVRTableViewDataSource();

    //! One section unless told otherwise.
    virtual int numberOfSectionsInTableView(TVRTableView *tableView);
    //! The number of rows in \a section; a negative number counts as none.
    virtual int tableViewNumberOfRowsInSection(TVRTableView *tableView, int section) = 0;
    /*!
        The cell for a visible row, dequeued from \a tableView or made anew; the table
        takes ownership. Returning null leaves the row empty.
    */
    virtual TVRTableViewCell *tableViewCellForRowAtIndexPath(TVRTableView *tableView, TVRIndexPath indexPath) = 0;
};

#endif
