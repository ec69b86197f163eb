// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTABLEVIEWCELL_H
#define TVRTABLEVIEWCELL_H

#include "tovra_export.h"

#include <QWidget>

/*!
    \brief A row of a TVRTableView. Subclasses put their views in contentView(), which
    fills the cell. Cells are reused for other rows under their reuse identifier; nothing
    is reset on reuse.
*/
class TOVRA_EXPORT TVRTableViewCell : public QWidget
{
    Q_OBJECT

public:
    explicit TVRTableViewCell(const QString &reuseIdentifier, QWidget *parent = nullptr);
    ~TVRTableViewCell() override;

    QString reuseIdentifier() const { return m_reuseIdentifier; }
    QWidget *contentView() const { return m_contentView; }

private:
    QString m_reuseIdentifier;
    QWidget *m_contentView;
};

#endif
