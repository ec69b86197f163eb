// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSUBVIEW_P_H
#define TVRSUBVIEW_P_H

class QWidget;

namespace TVRSubview {

// What a subview property's writer does with the widget it is given: \a replacement takes
// \a current's place (its slot in its parent's layout, else its parent and geometry, and
// its visibility) and \a current is deleted, as the holder owns what it holds. A
// \a current that is not placed yet is deleted too; the holder places the replacement when
// it builds its view. Nothing happens when the two are the same.
void replace(QWidget *current, QWidget *replacement);

} // namespace TVRSubview

#endif
