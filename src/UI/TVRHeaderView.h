// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRHEADERVIEW_H
#define TVRHEADERVIEW_H

#include "tovra_export.h"

#include <memory>
#include <QWidget>

class QLabel;

class TVRHeaderViewPrivate;

/*!
    \brief The line above a document: its date, centred, in the date font and colour.

    The header is white and keeps the geometry it is given; the date label, made with the
    header, spans its width at the label's own height, centred vertically. The screens set
    the label's text.
*/
class TOVRA_EXPORT TVRHeaderView : public QWidget
{
    Q_OBJECT

public:
    //! A header at \a frame, its date label made and placed, with no text yet.
    explicit TVRHeaderView(const QRect &frame, QWidget *parent = nullptr);
    ~TVRHeaderView() override;

    //! Made on first read with the date font and colour of that moment.
    QLabel *dateLabel();
    //! Replaces the date label: the new one takes its place, belongs to the header from now on and
    //! shows across its width; the one it replaces is deleted.
    void setDateLabel(QLabel *label);

protected:
    //! Places the date label across the header, centred vertically; the constructor calls it.
    void setupConstraints();
    //! Places the date label again for the new size.
    void resizeEvent(QResizeEvent *event) override;

private:
    void placeDateLabel();

    std::unique_ptr<TVRHeaderViewPrivate> const d;
};

#endif
