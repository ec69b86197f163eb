// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTextLayout_p.h"

#include <QCache>
#include <QElapsedTimer>
#include <QHashFunctions>
#include <QPainter>
#include <QRectF>
#include <QTextLayout>
#include <QTimer>

#include <algorithm>

namespace {

// QTextDocument starts a paragraph at every line break of a plain text.
bool isParagraphBreak(QChar c)
{
    return c == QLatin1Char('\n') || c == QChar::ParagraphSeparator || c == QChar::LineSeparator;
}

// As QTextDocumentLayout does with a block: the direction of its first strong character,
// left to right without one, and the start edge on that side.
QTextOption paragraphOption(bool rightToLeft)
{
    QTextOption option = TVRTextLayout::wrappingOption();
    option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setAlignment(rightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    return option;
}

qsizetype paragraphEnd(const QString &text, qsizetype start)
{
    qsizetype end = start;
    while (end < text.size() && !isParagraphBreak(text.at(end)))
        ++end;
    return end;
}

/*
    Lays out each paragraph of \a text within \a width, as QTextDocumentLayout lays out the
    blocks of a plain text: lines stacked at the sum of their heights (ascent and descent,
    without leading), an empty paragraph one line of the font. Calls \a paragraph with each
    laid-out paragraph, which it may keep, and its top; returns the total height.
*/
template <typename Paragraph>
qreal layOut(const QString &text, const QFont &font, qreal width, Paragraph paragraph)
{
    qreal y = 0;
    qsizetype start = 0;
    while (start <= text.size()) {
        const qsizetype end = paragraphEnd(text, start);
        const QString paragraphText = text.mid(start, end - start);
        auto layout = std::make_unique<QTextLayout>(paragraphText, font);
        layout->setTextOption(paragraphOption(paragraphText.isRightToLeft()));
        layout->setCacheEnabled(true);
        layout->beginLayout();
        const qreal top = y;
        qreal lineTop = 0;
        for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
            line.setLineWidth(width);
            line.setPosition(QPointF(0, lineTop));
            lineTop += line.height();
        }
        layout->endLayout();
        y += lineTop;
        paragraph(layout, top);
        start = end + 1;
    }
    return y;
}

} // namespace

QTextOption TVRTextLayout::wrappingOption()
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setAlignment(Qt::AlignLeft);
    return option;
}

qreal TVRTextLayout::plainTextHeight(const QString &text, const QFont &font, qreal width)
{
    return layOut(text, font, width, [](const std::unique_ptr<QTextLayout> &, qreal) {});
}

void TVRTextLayout::drawPlainText(QPainter *painter, const QRectF &rect, const QString &text, const QFont &font)
{
    layOut(text, font, rect.width(), [&](const std::unique_ptr<QTextLayout> &layout, qreal top) {
        layout->draw(painter, rect.topLeft() + QPointF(0, top));
    });
}

TVRTextLayout::PlainText::PlainText(const QString &text, const QFont &font, qreal width)
{
    layOut(text, font, width, [this](std::unique_ptr<QTextLayout> &layout, qreal top) {
        paragraphs.push_back({std::move(layout), top});
    });
}

TVRTextLayout::PlainText::~PlainText() = default;

void TVRTextLayout::PlainText::draw(QPainter *painter, const QPointF &origin, const QRectF &clip) const
{
    // QTextLayout passes over the lines outside the clip itself.
    const QRectF painterClip = clip.translated(origin);
    for (const Paragraph &paragraph : paragraphs)
        paragraph.layout->draw(painter, origin + QPointF(0, paragraph.top), {}, painterClip);
}

QByteArray TVRTextLayout::layoutKey(const QString &text, const QFont &font, qreal width)
{
    const size_t textHash = qHash(QStringView(text), QHashSeed::globalSeed());
    return font.key().toUtf8() + '\n' + QByteArray::number(width) + '\n' + QByteArray::number(text.size()) + '\n'
        + QByteArray::number(quint64(textHash));
}

TVRTextLayout::LongText::LongText(const QString &text, const QFont &font, qreal width)
    : text(text)
    , font(font)
    , width(width)
{
}

bool TVRTextLayout::LongText::layOut(qint64 ns, qreal untilY)
{
    // Qt shapes a paragraph whole before its first line: a long one is laid out a stretch
    // at a time instead. A stretch's last line may end only because the stretch does, so it
    // is laid out again at the start of the next.
    constexpr qsizetype stretchLength = 8192;
    QElapsedTimer elapsed;
    elapsed.start();
    while (!isComplete() && y < untilY && elapsed.nsecsElapsed() < ns) {
        if (next == paragraphStart) {
            paragraphEnd = ::paragraphEnd(text, next);
            paragraphRightToLeft = QStringView(text).mid(next, paragraphEnd - next).isRightToLeft();
        }
        const qsizetype stretchEnd = std::min(paragraphEnd, next + stretchLength);
        QTextLayout layout(text.mid(next, stretchEnd - next), font);
        layout.setTextOption(paragraphOption(paragraphRightToLeft));
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
            line.setLineWidth(width);
        layout.endLayout();
        const bool paragraphDone = stretchEnd == paragraphEnd;
        const int kept = paragraphDone || layout.lineCount() == 1 ? layout.lineCount() : layout.lineCount() - 1;
        for (int index = 0; index < kept; ++index) {
            const QTextLine line = layout.lineAt(index);
            lines.push_back({next + line.textStart(), line.textLength(), y, line.height(), paragraphRightToLeft});
            y += line.height();
        }
        if (paragraphDone) {
            next = paragraphStart = paragraphEnd + 1;
        } else {
            const QTextLine last = layout.lineAt(kept - 1);
            next += last.textStart() + last.textLength();
        }
    }
    return isComplete();
}

qreal TVRTextLayout::LongText::height() const
{
    if (isComplete() || next == 0)
        return y;
    return y + qreal(text.size() - next) * (y / qreal(next));
}

void TVRTextLayout::LongText::draw(QPainter *painter, const QPointF &origin, const QRectF &clip) const
{
    auto first = std::upper_bound(lines.cbegin(), lines.cend(), clip.top(),
                                  [](qreal top, const Line &line) { return top < line.top + line.height; });
    while (first != lines.cend() && first->top < clip.bottom()) {
        // The lines of one paragraph in the clip are laid out again together: from a line's
        // start, the text wraps where it wrapped before.
        auto last = first;
        while (std::next(last) != lines.cend() && std::next(last)->top < clip.bottom()
               && std::next(last)->start == last->start + last->length)
            ++last;
        QTextLayout layout(text.mid(first->start, last->start + last->length - first->start), font);
        layout.setTextOption(paragraphOption(first->rightToLeft));
        layout.beginLayout();
        qreal top = first->top;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            line.setPosition(QPointF(0, top));
            top += line.height();
        }
        layout.endLayout();
        layout.draw(painter, origin);
        first = std::next(last);
    }
}

namespace {

// Layouts of long texts made lately, for painting them and for asking their heights again.
QCache<QByteArray, std::shared_ptr<TVRTextLayout::LongText>> &longTexts()
{
    static QCache<QByteArray, std::shared_ptr<TVRTextLayout::LongText>> cache(16);
    return cache;
}

// How long long texts are laid out at a time, between two events of the loop.
constexpr qint64 longTextSliceNs = 4'000'000;

bool scheduled = false;

void layOutLongTexts();

void schedule()
{
    if (!scheduled)
        QTimer::singleShot(0, TVRTextLayout::LongTextProgress::instance(), &layOutLongTexts);
    scheduled = true;
}

void layOutLongTexts()
{
    scheduled = false;
    QElapsedTimer elapsed;
    elapsed.start();
    bool completed = false;
    bool pending = false;
    const QList<QByteArray> keys = longTexts().keys();
    for (const QByteArray &key : keys) {
        const std::shared_ptr<TVRTextLayout::LongText> text = *longTexts().object(key);
        if (text->isComplete())
            continue;
        const qint64 left = longTextSliceNs - elapsed.nsecsElapsed();
        if (left > 0 && text->layOut(left))
            completed = true;
        else
            pending = true;
    }
    TVRTextLayout::LongTextProgress *progress = TVRTextLayout::LongTextProgress::instance();
    if (pending)
        schedule();
    Q_EMIT progress->advanced();
    if (completed)
        Q_EMIT progress->completed();
}

} // namespace

std::shared_ptr<TVRTextLayout::LongText> TVRTextLayout::longText(const QString &text, const QFont &font, qreal width)
{
    const QByteArray key = layoutKey(text, font, width);
    if (std::shared_ptr<LongText> *known = longTexts().object(key))
        return *known;
    auto made = std::make_shared<LongText>(text, font, width);
    // The first slice at once, so that the first lines can be painted and the height
    // estimated from them.
    made->layOut(longTextSliceNs);
    longTexts().insert(key, new std::shared_ptr<LongText>(made));
    if (!made->isComplete())
        schedule();
    return made;
}

TVRTextLayout::LongTextProgress *TVRTextLayout::LongTextProgress::instance()
{
    static LongTextProgress progress;
    return &progress;
}
