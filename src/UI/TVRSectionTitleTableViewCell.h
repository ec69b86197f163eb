#ifndef TVRSECTIONTITLETABLEVIEWCELL_H
#define TVRSECTIONTITLETABLEVIEWCELL_H

#include "tovra_export.h"
#include "TVRSectionTableViewCell.h"

#include <QPointer>

class QLabel;

/*!
    \brief The row with a section's title: a label wrapping over as many lines as needed,
    8 px in from either side and as tall as the row.
*/
class TOVRA_EXPORT TVRSectionTitleTableViewCell : public TVRSectionTableViewCell
{
    Q_OBJECT

public:
    TVRSectionTitleTableViewCell();
    ~TVRSectionTitleTableViewCell() override;

    void setSection(std::shared_ptr<TVRSection> section) override;

    //! Made on first read, with the title font and colour of that moment.
    QLabel *titleLabel();
    void setTitleLabel(QLabel *label);

    static QString cellIdentifier();
    //! The title's height in the title font, measured in the screen's width less 40.
    static qreal cellHeightForSection(const std::shared_ptr<TVRSection> &section);

private:
    QPointer<QLabel> m_titleLabel;
};

#endif
