// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSectionTitleTableViewCell.h"

#include "TVRDesignClass.h"
#include "TVRPalette_p.h"
#include "TVRSubview_p.h"
#include "TVRWrappingLabel_p.h"

#include <QPointer>

class TVRSectionTitleTableViewCellPrivate
{
public:
    QPointer<QLabel> titleLabel;
};

namespace {

// Of the 40 px that a title is measured narrower than its row, the label takes 8 on either
// side; its text is inset 4 more on the side it starts from, level with the body's text,
// and 20 on the side it ends.
constexpr int startInset = 4;
constexpr int endInset = 20;
constexpr qreal margin = 40.0;

} // namespace

TVRSectionTitleTableViewCell::TVRSectionTitleTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
    , d(std::make_unique<TVRSectionTitleTableViewCellPrivate>())
{
    placeInContentView(titleLabel());
}

TVRSectionTitleTableViewCell::~TVRSectionTitleTableViewCell() = default;

void TVRSectionTitleTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    TVRSectionTableViewCell::setSection(std::move(section));
    const QString title = this->section() ? this->section()->title() : QString();
    QLabel *label = titleLabel();
    const bool rightToLeft = title.isRightToLeft();
    label->setContentsMargins(rightToLeft ? endInset : startInset, 0, rightToLeft ? startInset : endInset, 0);
    label->setText(title);
    setAccessibleName(title);
}

QLabel *TVRSectionTitleTableViewCell::titleLabel()
{
    if (!d->titleLabel) {
        auto *label = new TVRWrappingLabel;
        label->setFont(TVRDesignClass::sectionTitleFont());
        TVRPalette::setTextColor(label, TVRDesignClass::sectionTitleColor());
        label->setContentsMargins(startInset, 0, endInset, 0);
        d->titleLabel = label;
    }
    return d->titleLabel;
}

void TVRSectionTitleTableViewCell::setTitleLabel(QLabel *label)
{
    TVRSubview::replace(d->titleLabel, label);
    d->titleLabel = label;
    if (label)
        setSection(section()); // the new label shows the cell's title
}

QString TVRSectionTitleTableViewCell::cellIdentifier()
{
    return QString::fromLatin1(staticMetaObject.className());
}

qreal TVRSectionTitleTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section)
{
    return heightForText(section ? section->title() : QString(), TVRDesignClass::sectionTitleFont(),
                         measuringWidth(margin));
}

qreal TVRSectionTitleTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section, qreal rowWidth)
{
    return heightForText(section ? section->title() : QString(), TVRDesignClass::sectionTitleFont(),
                         float(rowWidth - margin));
}
