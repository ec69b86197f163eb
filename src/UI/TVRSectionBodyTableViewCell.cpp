// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSectionBodyTableViewCell.h"

#include "TVRDesignClass.h"
#include "TVRPalette_p.h"
#include "TVRSubview_p.h"
#include "TVRTextLayout_p.h"

#include <QPointer>
#include <QTextEdit>

#include <optional>

class TVRSectionBodyTableViewCellPrivate
{
public:
    QPointer<QTextEdit> bodyTextView;
    std::optional<QString> shownText; // the text last set in bodyTextView, if any
};

namespace {

constexpr qreal margin = 24.0;

// A text view whose text sits 4 px in from either side of it, as a phone's text view pads
// its text: with the cell's 8 px, the text is measured and laid out 24 px narrower than the
// row.
class PaddedTextEdit : public QTextEdit
{
public:
    PaddedTextEdit() { setViewportMargins(4, 0, 4, 0); }

protected:
    // QTextEdit scrolls its cursor into view when first shown, which lays out and shapes
    // the first line once more. The view is as tall as its text and never scrolls, so the
    // cursor is always in view.
    void showEvent(QShowEvent *) override { }
};

} // namespace

TVRSectionBodyTableViewCell::TVRSectionBodyTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
    , d(std::make_unique<TVRSectionBodyTableViewCellPrivate>())
{
    placeInContentView(bodyTextView());
}

TVRSectionBodyTableViewCell::~TVRSectionBodyTableViewCell() = default;

void TVRSectionBodyTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    TVRSectionTableViewCell::setSection(std::move(section));
    const QString body = this->section() ? this->section()->body() : QString();
    // Setting a text lays it out again, whole: a refresh that brings the text the view
    // already shows, unedited, leaves the view as it is.
    QTextEdit *textView = bodyTextView();
    if (d->shownText != body || textView->document()->isModified()) {
        textView->setPlainText(body);
        d->shownText = body;
    }
    setAccessibleName(body);
}

QTextEdit *TVRSectionBodyTableViewCell::bodyTextView()
{
    if (!d->bodyTextView) {
        auto *textView = new PaddedTextEdit;
        textView->setFont(TVRDesignClass::sectionBodyFont());
        // A text view that does not scroll: no scroll bars, and no frame or margin, so that
        // the text wraps as it was measured and fills exactly the height of its row.
        textView->setFrameShape(QFrame::NoFrame);
        textView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->document()->setDocumentMargin(0);
        textView->document()->setDefaultTextOption(TVRTextLayout::wrappingOption());
        TVRPalette::setTextColor(textView, TVRDesignClass::sectionBodyColor());
        TVRPalette::setBackground(textView, Qt::white);
        // The text stays editable with a click, but keyboard focus moves through the
        // screen's controls and its table, not into every body: Tab leaves a body it is in.
        textView->setFocusPolicy(Qt::ClickFocus);
        textView->setTabChangesFocus(true);
        d->bodyTextView = textView;
    }
    return d->bodyTextView;
}

void TVRSectionBodyTableViewCell::setBodyTextView(QTextEdit *textView)
{
    TVRSubview::replace(d->bodyTextView, textView);
    d->bodyTextView = textView;
    d->shownText.reset();
    if (textView)
        setSection(section()); // the new text view shows the cell's body
}

QString TVRSectionBodyTableViewCell::cellIdentifier()
{
    return QString::fromLatin1(staticMetaObject.className());
}

qreal TVRSectionBodyTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section)
{
    return heightForText(section ? section->body() : QString(), TVRDesignClass::sectionBodyFont(),
                         measuringWidth(margin));
}

qreal TVRSectionBodyTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section, qreal rowWidth)
{
    return heightForText(section ? section->body() : QString(), TVRDesignClass::sectionBodyFont(),
                         float(rowWidth - margin));
}
