// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRSECTIONTABLEVIEWCELL_H
#define TVRSECTIONTABLEVIEWCELL_H

#include "tovra_export.h"
#include "TVRSection.h"
#include "TVRTableViewCell.h"

#include <memory>

class TVRSectionTableViewCellPrivate;

/*!
    \brief A table cell that holds a document section. The title and body cells build on
    it; each class's cellIdentifier() is its own class name, its reuse identifier.
*/
class TOVRA_EXPORT TVRSectionTableViewCell : public TVRTableViewCell
{
    Q_OBJECT

public:
    //! An empty cell under the reuse identifier cellIdentifier().
    TVRSectionTableViewCell();
    ~TVRSectionTableViewCell() override;

    //! The section the cell shows; null until one is set.
    std::shared_ptr<TVRSection> section() const;
    //! Sets the section the cell shows; the title and body cells also show its text.
    virtual void setSection(std::shared_ptr<TVRSection> section);

    //! "TVRSectionTableViewCell", the reuse identifier of this class's cells.
    static QString cellIdentifier();
    //! 64 whatever the section; the title and body cells measure theirs.
    static qreal cellHeightForSection(const std::shared_ptr<TVRSection> &section);

    /*!
        The row height for \a text set in \a font and wrapped at word boundaries (inside a
        word longer than the line) within \a width, shaped as it is painted: the text's
        height, rounded up, never below 40. A null text is 40. The result depends on nothing
        else, so it is remembered for the texts measured last.
    */
    static qreal heightForText(const QString &text, const QFont &font, float width);

protected:
    //! An empty cell under \a reuseIdentifier, for the cells that build on this one.
    explicit TVRSectionTableViewCell(const QString &reuseIdentifier);

    //! Puts \a subview in the content view, flush with its top and bottom, 8 px in from either side.
    void placeInContentView(QWidget *subview);

    //! The rule behind heightForText(): a present text's height is rounded up; 40 at least.
    static qreal rowHeightForMeasuredHeight(qreal measured, bool textPresent);
    //! The width a cell's text is measured in when no table is at hand: the primary
    //! screen's width less \a margin.
    static float measuringWidth(qreal margin);

private:
    std::unique_ptr<TVRSectionTableViewCellPrivate> const d;
};

#endif
