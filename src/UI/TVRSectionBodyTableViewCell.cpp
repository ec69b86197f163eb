#include "TVRSectionBodyTableViewCell.h"

#include "TVRDesignClass.h"

#include <QTextEdit>

TVRSectionBodyTableViewCell::TVRSectionBodyTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
{
    placeInContentView(bodyTextView());
}

TVRSectionBodyTableViewCell::~TVRSectionBodyTableViewCell() = default;

void TVRSectionBodyTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    TVRSectionTableViewCell::setSection(std::move(section));
    bodyTextView()->setPlainText(this->section() ? this->section()->body() : QString());
}

QTextEdit *TVRSectionBodyTableViewCell::bodyTextView()
{
    if (!m_bodyTextView) {
        auto *textView = new QTextEdit;
        textView->setFont(textFont(TVRDesignClass::sectionBodyFont()));
        // A text view that does not scroll: no scroll bars, and no frame or margin, so that
        // the text wraps as it was measured and fills exactly the height of its row.
        textView->setFrameShape(QFrame::NoFrame);
        textView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->document()->setDocumentMargin(0);
        textView->setWordWrapMode(QTextOption::WordWrap);
        QPalette palette = textView->palette();
        palette.setColor(QPalette::Text, TVRDesignClass::sectionBodyColor());
        palette.setColor(QPalette::Base, Qt::white);
        textView->setPalette(palette);
        m_bodyTextView = textView;
    }
    return m_bodyTextView;
}

void TVRSectionBodyTableViewCell::setBodyTextView(QTextEdit *textView)
{
    m_bodyTextView = textView;
}

QString TVRSectionBodyTableViewCell::cellIdentifier()
{
    return QString::fromLatin1(staticMetaObject.className());
}

qreal TVRSectionBodyTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section)
{
    return heightForText(section ? section->body() : QString(), TVRDesignClass::sectionBodyFont(),
                         measuringWidth(24.0));
}
