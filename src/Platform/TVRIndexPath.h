// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRINDEXPATH_H
#define TVRINDEXPATH_H

#include <QtGlobal>

//! A row of a table: its section and its row within the section.
struct TVRIndexPath
{
    int section = 0;
    int row = 0;

    friend bool operator==(const TVRIndexPath &a, const TVRIndexPath &b)
    {
        return a.section == b.section && a.row == b.row;
    }
    friend bool operator!=(const TVRIndexPath &a, const TVRIndexPath &b) { return !(a == b); }
    friend bool operator<(const TVRIndexPath &a, const TVRIndexPath &b)
    {
        return a.section != b.section ? a.section < b.section : a.row < b.row;
    }
};

#endif
