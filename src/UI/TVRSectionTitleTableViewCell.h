// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECTIONTITLETABLEVIEWCELL_H
#define TVRSECTIONTITLETABLEVIEWCELL_H

#include "tovra_export.h"
#include "TVRSectionTableViewCell.h"

#include <memory>

class QLabel;

class TVRSectionTitleTableViewCellPrivate;

/*!
    \brief The row with a section's title: a label wrapping over as many lines as needed,
    8 px in from either side and as tall as the row. Its text wraps 40 px narrower than the
    row: 12 px in from the side it starts from, level with the body's text, 28 px from the
    side it ends.
*/
class TOVRA_EXPORT TVRSectionTitleTableViewCell : public TVRSectionTableViewCell
{
    Q_OBJECT

public:
    //! A cell with an empty title label, under the reuse identifier cellIdentifier().
    TVRSectionTitleTableViewCell();
    ~TVRSectionTitleTableViewCell() override;

    //! Shows the title of \a section (none for null), inset by the side its text starts from,
    //! and names the cell after it for screen readers.
    void setSection(std::shared_ptr<TVRSection> section) override;

    //! Made on first read, with the title font and colour of that moment.
    QLabel *titleLabel();
    //! Replaces the title label: the new one takes its place, belongs to the cell from now on and
    //! shows the section's title; the one it replaces is deleted.
    void setTitleLabel(QLabel *label);

    //! "TVRSectionTitleTableViewCell", the reuse identifier of title cells.
    static QString cellIdentifier();
    //! The title's height in the title font, measured in the primary screen's width less 40.
    static qreal cellHeightForSection(const std::shared_ptr<TVRSection> &section);
    //! The height of the title's row in a table \a rowWidth wide: measured in that width less 40.
    static qreal cellHeightForSection(const std::shared_ptr<TVRSection> &section, qreal rowWidth);

private:
    std::unique_ptr<TVRSectionTitleTableViewCellPrivate> const d;
};

#endif
