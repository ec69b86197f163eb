#include "TVRTableViewDelegate.h"

TVRTableViewDelegate::~TVRTableViewDelegate() = default;

qreal TVRTableViewDelegate::tableViewHeightForRowAtIndexPath(TVRTableView *, TVRIndexPath)
{
    return 44.0;
}

void TVRTableViewDelegate::tableViewWillDisplayCell(TVRTableView *, TVRTableViewCell *, TVRIndexPath)
{
}
