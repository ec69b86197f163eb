#include "TVRTableViewCell.h"

#include <QVBoxLayout>

namespace {
void paintWhite(QWidget *widget)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, Qt::white);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}
} // namespace

TVRTableViewCell::TVRTableViewCell(const QString &reuseIdentifier, QWidget *parent)
    : QWidget(parent)
    , m_reuseIdentifier(reuseIdentifier)
    , m_contentView(new QWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_contentView);
    paintWhite(this);
    paintWhite(m_contentView);
}

TVRTableViewCell::~TVRTableViewCell() = default;
