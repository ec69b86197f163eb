// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTableViewDelegate.h"

TVRTableViewDelegate::~TVRTableViewDelegate() = default;

qreal TVRTableViewDelegate::tableViewHeightForRowAtIndexPath(TVRTableView *, TVRIndexPath)
{
    return 44.0;
}

qreal TVRTableViewDelegate::tableViewEstimatedHeightForRowAtIndexPath(TVRTableView *, TVRIndexPath)
{
    return -1.0;
}

void TVRTableViewDelegate::tableViewWillDisplayCell(TVRTableView *, TVRTableViewCell *, TVRIndexPath) { }
