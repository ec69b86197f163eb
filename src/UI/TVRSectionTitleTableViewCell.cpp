#include "TVRSectionTitleTableViewCell.h"

#include "TVRDesignClass.h"

#include <QLabel>

TVRSectionTitleTableViewCell::TVRSectionTitleTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
{
    placeInContentView(titleLabel());
}

TVRSectionTitleTableViewCell::~TVRSectionTitleTableViewCell() = default;

void TVRSectionTitleTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    TVRSectionTableViewCell::setSection(std::move(section));
    titleLabel()->setText(this->section() ? this->section()->title() : QString());
}

QLabel *TVRSectionTitleTableViewCell::titleLabel()
{
    if (!m_titleLabel) {
        auto *label = new QLabel;
        label->setTextFormat(Qt::PlainText);
        label->setFont(textFont(TVRDesignClass::sectionTitleFont()));
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, TVRDesignClass::sectionTitleColor());
        label->setPalette(palette);
        label->setWordWrap(true);
        m_titleLabel = label;
    }
    return m_titleLabel;
}

void TVRSectionTitleTableViewCell::setTitleLabel(QLabel *label)
{
    m_titleLabel = label;
}

QString TVRSectionTitleTableViewCell::cellIdentifier()
{
    return QString::fromLatin1(staticMetaObject.className());
}

qreal TVRSectionTitleTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section)
{
    return heightForText(section ? section->title() : QString(), TVRDesignClass::sectionTitleFont(),
                         measuringWidth(40.0));
}
