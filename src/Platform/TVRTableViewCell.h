// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABLEVIEWCELL_H
#define TVRTABLEVIEWCELL_H

#include "tovra_export.h"

#include <memory>
#include <QWidget>

class TVRTableViewCellPrivate;

/*!
    \brief A row of a TVRTableView. Subclasses put their views in contentView(), which
    fills the cell. Cells are reused for other rows under their reuse identifier; nothing
    is reset on reuse.
*/
class TOVRA_EXPORT TVRTableViewCell : public QWidget
{
    Q_OBJECT

public:
    //! A white cell that the table hands out again under \a reuseIdentifier.
    explicit TVRTableViewCell(const QString &reuseIdentifier, QWidget *parent = nullptr);
    ~TVRTableViewCell() override;

    //! The identifier the cell was made with, for TVRTableView::dequeueReusableCellWithIdentifier().
    QString reuseIdentifier() const;
    //! The white view that fills the cell, for the subclass's views; owned by the cell.
    QWidget *contentView() const;

private:
    std::unique_ptr<TVRTableViewCellPrivate> const d;
};

#endif
