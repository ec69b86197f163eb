#include "TVRSectionTableViewCell.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>

#include <algorithm>
#include <cmath>

TVRSectionTableViewCell::TVRSectionTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
{
}

TVRSectionTableViewCell::TVRSectionTableViewCell(const QString &reuseIdentifier)
    : TVRTableViewCell(reuseIdentifier)
{
}

TVRSectionTableViewCell::~TVRSectionTableViewCell() = default;

void TVRSectionTableViewCell::placeInContentView(QWidget *subview)
{
    auto *layout = new QHBoxLayout(contentView());
    layout->setContentsMargins(8, 0, 8, 0);
    layout->addWidget(subview);
}

void TVRSectionTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    m_section = std::move(section);
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
    qreal measured = 0;
    if (present) {
        const QRectF box(0, 0, qreal(width), 20000.0);
        measured = QFontMetricsF(font).boundingRect(box, Qt::TextWordWrap, text).height();
    }
    return rowHeightForMeasuredHeight(measured, present);
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
