// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRACCESSIBLE_P_H
#define TVRACCESSIBLE_P_H

class TVRTableView;

/*
    What assistive technology is told about the kit's widgets. A table reads as a list
    whose items are the rows on screen, each named by the cell's accessible name, with its
    header view before them; a screen presented in a window of its own reads as a dialog.
*/
namespace TVRAccessible {

//! Installs the kit's accessibility factory; called by every table and screen as it is made.
void install();

//! Tells assistive technology that \a table shows other rows now.
void rowsChanged(TVRTableView *table);

} // namespace TVRAccessible

#endif
