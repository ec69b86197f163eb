// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECTIONBODYTABLEVIEWCELL_H
#define TVRSECTIONBODYTABLEVIEWCELL_H

#include "tovra_export.h"
#include "TVRSectionTableViewCell.h"

#include <memory>

class QTextEdit;

class TVRSectionBodyTableViewCellPrivate;

/*!
    \brief The row with a section's body: a text view that does not scroll, 8 px in from
    either side and as tall as the row. A QTextEdit, it stays editable and selectable; it
    takes focus from a click only, and Tab moves on out of it. The text is laid out with no
    margin, so it fits the measured height.

    Most bodies are only read, and a text view makes a document of its text and lays all of
    it out before it shows any. So the body is painted as the text view would paint it,
    from the layout that measured it, and the text view is made when the body is clicked or
    given focus (by a screen reader, which reads the painted body as editable text), with
    the cursor where the click was; reading bodyTextView() makes it too. A body of 32,768
    characters or more is laid out a slice at a time, and its row has an estimated height
    until its lines all are.
*/
class TOVRA_EXPORT TVRSectionBodyTableViewCell : public TVRSectionTableViewCell
{
    Q_OBJECT

public:
    //! A cell with no body yet, under the reuse identifier cellIdentifier().
    TVRSectionBodyTableViewCell();
    ~TVRSectionBodyTableViewCell() override;

    //! Shows the body of \a section (none for null) and names the cell after it for screen readers.
    void setSection(std::shared_ptr<TVRSection> section) override;

    //! Made on first read, or on the first click or focus on the body, with the body font and
    //! colour of the moment the cell was made; the painted body gives it its place.
    QTextEdit *bodyTextView();
    //! Replaces the body's text view: the new one takes its place, belongs to the cell from now on and
    //! shows the section's body; the one it replaces is deleted.
    void setBodyTextView(QTextEdit *textView);

    //! "TVRSectionBodyTableViewCell", the reuse identifier of body cells.
    static QString cellIdentifier();
    //! The body's height in the body font, measured in the primary screen's width less 24.
    //! A long body's height is an estimate until its lines are all laid out.
    static qreal cellHeightForSection(const std::shared_ptr<TVRSection> &section);
    //! The height of the body's row in a table \a rowWidth wide: measured in that width less 24.
    static qreal cellHeightForSection(const std::shared_ptr<TVRSection> &section, qreal rowWidth);

private:
    std::unique_ptr<TVRSectionBodyTableViewCellPrivate> const d;
};

#endif
