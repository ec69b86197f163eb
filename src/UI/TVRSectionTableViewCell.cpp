// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSectionTableViewCell.h"

#include "TVRTextLayout_p.h"

#include <QCache>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>

#include <algorithm>
#include <cmath>

class TVRSectionTableViewCellPrivate
{
public:
    std::shared_ptr<TVRSection> section;
};

TVRSectionTableViewCell::TVRSectionTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
{
}

TVRSectionTableViewCell::TVRSectionTableViewCell(const QString &reuseIdentifier)
    : TVRTableViewCell(reuseIdentifier)
    , d(std::make_unique<TVRSectionTableViewCellPrivate>())
{
}

TVRSectionTableViewCell::~TVRSectionTableViewCell() = default;

std::shared_ptr<TVRSection> TVRSectionTableViewCell::section() const
{
    return d->section;
}

void TVRSectionTableViewCell::placeInContentView(QWidget *subview)
{
    auto *layout = qobject_cast<QHBoxLayout *>(contentView()->layout());
    if (!layout) {
        layout = new QHBoxLayout(contentView());
        layout->setContentsMargins(8, 0, 8, 0);
    }
    layout->addWidget(subview);
}

void TVRSectionTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    d->section = std::move(section);
}

QString TVRSectionTableViewCell::cellIdentifier()
{
    return QString::fromLatin1(staticMetaObject.className());
}

qreal TVRSectionTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &)
{
    return 64.0;
}

qreal TVRSectionTableViewCell::heightForText(const QString &text, const QFont &font, float width)
{
    const bool present = !text.isNull();
    if (!present)
        return rowHeightForMeasuredHeight(0, present);

    // Laying the text out is the whole cost, and a reload asks for the same texts again:
    // the height of a text, font and width is kept for the texts measured last, under the
    // text's length and a hash of it (64 bits where size_t has them) seeded at random for
    // each process, rather than a second copy of it. A SHA-1 digest cost more than the
    // layouts it spared.
    static QCache<QByteArray, qreal> remembered(4096);
    const QByteArray key = TVRTextLayout::layoutKey(text, font, qreal(width));
    if (const qreal *height = remembered.object(key))
        return *height;

    const qreal measured = TVRTextLayout::plainTextHeight(text, font, qreal(width));
    const qreal height = rowHeightForMeasuredHeight(measured, present);
    remembered.insert(key, new qreal(height));
    return height;
}

qreal TVRSectionTableViewCell::rowHeightForMeasuredHeight(qreal measured, bool textPresent)
{
    // Only a present text is rounded up; an absent one measures 0 and ends at 40 anyway.
    const qreal height = textPresent ? std::ceil(measured) : measured;
    return qreal(std::max(40.0f, float(height)));
}

float TVRSectionTableViewCell::measuringWidth(qreal margin)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const qreal screenWidth = screen ? screen->geometry().width() : 0.0;
    return float(screenWidth - margin);
}
