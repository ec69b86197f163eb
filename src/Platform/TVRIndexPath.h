// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRINDEXPATH_H
#define TVRINDEXPATH_H

#include <QtGlobal>

//! A row of a table: its section and its row within the section.
struct TVRIndexPath
{
    //! The section, from 0.
    int section = 0;
    //! The row within the section, from 0.
    int row = 0;

    //! Whether \a a and \a b name the same row.
    friend bool operator==(const TVRIndexPath &a, const TVRIndexPath &b)
    {
        return a.section == b.section && a.row == b.row;
    }
    //! Whether \a a and \a b name different rows.
    friend bool operator!=(const TVRIndexPath &a, const TVRIndexPath &b) { return !(a == b); }
    //! Whether \a a comes before \a b in the table: by section, then by row.
    friend bool operator<(const TVRIndexPath &a, const TVRIndexPath &b)
    {
        return a.section != b.section ? a.section < b.section : a.row < b.row;
    }
};

#endif
