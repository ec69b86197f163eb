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
    //! Called when \a cell is about to be shown for the row, after it has been placed.
    virtual void tableViewWillDisplayCell(TVRTableView *tableView, TVRTableViewCell *cell, TVRIndexPath indexPath);
};

#endif
