// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRSectionBodyTableViewCell.h"

#include "TVRDesignClass.h"
#include "TVRPalette_p.h"
#include "TVRSubview_p.h"
#include "TVRTextLayout_p.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QPointer>
#include <QTextEdit>

#include <mutex>
#include <optional>

class TVRPaintedBodyView;

class TVRSectionBodyTableViewCellPrivate
{
public:
    QPointer<QTextEdit> bodyTextView;
    std::optional<QString> shownText; // the text last set in bodyTextView, if any
    // Shows the body until the text view is made: a text view makes a document of its
    // text and lays it out whole before it shows any of it, and most bodies are only read.
    QPointer<TVRPaintedBodyView> paintedBodyView;
    // The body's font and colour when the cell was made, whenever its views are made.
    const QFont font = TVRDesignClass::sectionBodyFont();
    const QColor color = TVRDesignClass::sectionBodyColor();
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

/*
    Paints a body where the text view would, as the text view paints it: from its layout,
    kept, or for a long body from lines laid out a slice at a time. A click makes the text
    view, which then takes its place; so does focus, given by a screen reader to the
    editable text it reads here.
*/
class TVRPaintedBodyView : public QWidget
{
public:
    TVRPaintedBodyView(TVRSectionBodyTableViewCell *cell, const QFont &font, const QColor &color)
        : cell(cell)
    {
        setFont(font);
        setFocusPolicy(Qt::ClickFocus);
        TVRPalette::setTextColor(this, color);
        TVRPalette::setBackground(this, Qt::white);
        setCursor(Qt::IBeamCursor);
        connect(TVRTextLayout::LongTextProgress::instance(), &TVRTextLayout::LongTextProgress::advanced, this, [this] {
            if (waiting)
                update();
        });
    }

    const QString &bodyText() const { return text; }
    void setText(const QString &body)
    {
        if (body == text)
            return;
        text = body;
        laidOut.reset();
        update();
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        // The text view's text sits 4 px in from either side.
        const qreal textWidth = width() - 2 * textInset;
        const QRectF clip = QRectF(event->rect()).translated(-textInset, 0);
        QPainter painter(this);
        // Clipped to the text, as the text view's viewport clips it.
        painter.setClipRect(QRect(textInset, 0, width() - 2 * textInset, height()));
        painter.setPen(palette().color(QPalette::Text));
        if (text.size() < TVRTextLayout::longTextLength) {
            if (!laidOut || laidOutWidth != textWidth)
                laidOut = std::make_unique<TVRTextLayout::PlainText>(text, font(), textWidth);
            laidOutWidth = textWidth;
            laidOut->draw(&painter, QPointF(textInset, 0), clip);
            return;
        }
        const std::shared_ptr<TVRTextLayout::LongText> lines = TVRTextLayout::longText(text, font(), textWidth);
        // The lines shown are laid out first; those further down follow from the event loop.
        lines->layOut(lineSliceNs, clip.bottom());
        lines->draw(&painter, QPointF(textInset, 0), clip);
        waiting = !lines->isComplete() && lines->laidOutHeight() < clip.bottom();
    }

    void focusInEvent(QFocusEvent *event) override { cell->bodyTextView()->setFocus(event->reason()); }

    void mousePressEvent(QMouseEvent *event) override
    {
        // Focus came first, and with it the text view.
        const QPoint at = mapTo(cell, event->position().toPoint());
        QTextEdit *textView = cell->bodyTextView();
        textView->setTextCursor(textView->cursorForPosition(textView->viewport()->mapFrom(cell, at)));
    }

private:
    static constexpr int textInset = 4;
    static constexpr qint64 lineSliceNs = 30'000'000;
    TVRSectionBodyTableViewCell *const cell;
    QString text;
    std::unique_ptr<TVRTextLayout::PlainText> laidOut; // a body shorter than a long text
    qreal laidOutWidth = 0;
    bool waiting = false; // painted before the lines it shows were laid out
};

namespace {

// To a screen reader, the painted lines are the editable text they stand for.
class AccessiblePaintedBody : public QAccessibleWidget
{
public:
    explicit AccessiblePaintedBody(TVRPaintedBodyView *view)
        : QAccessibleWidget(view, QAccessible::EditableText)
    {
    }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Value)
            return static_cast<TVRPaintedBodyView *>(widget())->bodyText();
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.multiLine = true;
        return state;
    }
};

QAccessibleInterface *paintedBodyAccessible(const QString &className, QObject *object)
{
    // The view has no meta-object of its own: it is asked for as a QWidget.
    auto *view = className == QLatin1String("QWidget") ? dynamic_cast<TVRPaintedBodyView *>(object) : nullptr;
    return view ? new AccessiblePaintedBody(view) : nullptr;
}

} // namespace

TVRSectionBodyTableViewCell::TVRSectionBodyTableViewCell()
    : TVRSectionTableViewCell(cellIdentifier())
    , d(std::make_unique<TVRSectionBodyTableViewCellPrivate>())
{
}

TVRSectionBodyTableViewCell::~TVRSectionBodyTableViewCell() = default;

void TVRSectionBodyTableViewCell::setSection(std::shared_ptr<TVRSection> section)
{
    TVRSectionTableViewCell::setSection(std::move(section));
    const QString body = this->section() ? this->section()->body() : QString();
    setAccessibleName(body);
    if (!d->bodyTextView) {
        if (!d->paintedBodyView) {
            static std::once_flag accessible;
            std::call_once(accessible, [] { QAccessible::installFactory(paintedBodyAccessible); });
            d->paintedBodyView = new TVRPaintedBodyView(this, d->font, d->color);
            placeInContentView(d->paintedBodyView);
        }
        d->paintedBodyView->setText(body);
        return;
    }
    // Setting a text lays it out again, whole: a refresh that brings the text the view
    // already shows, unedited, leaves the view as it is.
    QTextEdit *textView = bodyTextView();
    if (d->shownText != body || textView->document()->isModified()) {
        textView->setPlainText(body);
        d->shownText = body;
    }
}

QTextEdit *TVRSectionBodyTableViewCell::bodyTextView()
{
    if (!d->bodyTextView) {
        auto *textView = new PaddedTextEdit;
        textView->setFont(d->font);
        // A text view that does not scroll: no scroll bars, and no frame or margin, so that
        // the text wraps as it was measured and fills exactly the height of its row.
        textView->setFrameShape(QFrame::NoFrame);
        textView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->document()->setDocumentMargin(0);
        textView->document()->setDefaultTextOption(TVRTextLayout::wrappingOption());
        TVRPalette::setTextColor(textView, d->color);
        TVRPalette::setBackground(textView, Qt::white);
        // The text stays editable with a click, but keyboard focus moves through the
        // screen's controls and its table, not into every body: Tab leaves a body it is in.
        textView->setFocusPolicy(Qt::ClickFocus);
        textView->setTabChangesFocus(true);
        setBodyTextView(textView);
    }
    return d->bodyTextView;
}

void TVRSectionBodyTableViewCell::setBodyTextView(QTextEdit *textView)
{
    if (d->bodyTextView) {
        TVRSubview::replace(d->bodyTextView, textView);
    } else if (textView) {
        placeInContentView(textView);
        // The text view takes the place of the body's painted lines, which may be handling
        // the click that asked for it.
        if (d->paintedBodyView) {
            const bool shown = !d->paintedBodyView->isHidden();
            d->paintedBodyView->hide();
            d->paintedBodyView->deleteLater();
            // Shown, it is laid out at once in the place the painted lines leave.
            textView->setVisible(shown);
        }
    }
    d->bodyTextView = textView;
    d->shownText.reset();
    if (!textView)
        return;
    // A long text is laid out a step at a time from the event loop. An edit before the last
    // step ends that layout where it stands, leaving the paragraphs it had not reached empty
    // and never painted: the layout is finished before the edit is laid out. This holds for
    // a host's text view as for the cell's own.
    QTextDocument *document = textView->document();
    connect(document, &QTextDocument::contentsChange, textView,
            [document] { document->documentLayout()->documentSize(); });
    setSection(section()); // the new text view shows the cell's body
}

QString TVRSectionBodyTableViewCell::cellIdentifier()
{
    return QString::fromLatin1(staticMetaObject.className());
}

qreal TVRSectionBodyTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section)
{
    return cellHeightForSection(section, measuringWidth(0));
}

qreal TVRSectionBodyTableViewCell::cellHeightForSection(const std::shared_ptr<TVRSection> &section, qreal rowWidth)
{
    const QString body = section ? section->body() : QString();
    const QFont font = TVRDesignClass::sectionBodyFont();
    const float width = float(rowWidth - margin);
    if (body.size() < TVRTextLayout::longTextLength)
        return heightForText(body, font, width);
    // Estimated until laid out whole; the table then asks again.
    return rowHeightForMeasuredHeight(TVRTextLayout::longText(body, font, qreal(width))->height(), true);
}
