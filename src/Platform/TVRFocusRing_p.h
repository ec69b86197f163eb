// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRFOCUSRING_P_H
#define TVRFOCUSRING_P_H

class QWidget;

namespace TVRFocusRing {

/*
    Draws a 2 px ring in the focus colour just inside \a target's edges while \a target has
    focus that came from the keyboard, the way a button's focus frame would, whatever the
    style draws itself. The ring is a child of \a target that lies over its children and
    lets every event through.
*/
void attach(QWidget *target);

} // namespace TVRFocusRing

#endif
