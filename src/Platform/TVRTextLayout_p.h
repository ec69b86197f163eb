// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRTEXTLAYOUT_P_H
#define TVRTEXTLAYOUT_P_H

#include <QFont>
#include <QObject>
#include <QString>
#include <QTextOption>

#include <limits>
#include <memory>
#include <vector>

class QPainter;
class QTextLayout;
class QPointF;
class QRectF;

/*
    How the kit wraps a text: at word boundaries, a word longer than the line broken inside
    it, every script shaped, each paragraph in the direction of its own text and aligned by
    it. A text is measured with the very layout that paints it, so a row is exactly as tall
    as its lines.
*/
namespace TVRTextLayout {

// The option both the labels and the text views of the kit lay their text out with.
QTextOption wrappingOption();

/*
    The height of \a text in \a font wrapped within \a width, as a QTextDocument with the
    wrapping option, no document margin and a paragraph per line break lays it out (the
    body's text view), and as drawPlainText() paints it (the title's label).
*/
qreal plainTextHeight(const QString &text, const QFont &font, qreal width);

// Paints \a text as plainTextHeight() lays it out, its first line at the top of \a rect.
void drawPlainText(QPainter *painter, const QRectF &rect, const QString &text, const QFont &font);

// A text laid out once as plainTextHeight() lays it out, and kept to be painted again.
class PlainText
{
public:
    PlainText(const QString &text, const QFont &font, qreal width);
    ~PlainText();
    // Paints the paragraphs that cross \a clip, a rectangle in the text's own coordinates,
    // with the text's top left at \a origin.
    void draw(QPainter *painter, const QPointF &origin, const QRectF &clip) const;

private:
    struct Paragraph
    {
        std::unique_ptr<QTextLayout> layout;
        qreal top;
    };
    std::vector<Paragraph> paragraphs;
};

// What names a text's layout: its font, width, length and a hash of it seeded at random for
// each process, rather than a second copy of the text.
QByteArray layoutKey(const QString &text, const QFont &font, qreal width);

// From this many characters on, a text takes longer to lay out than a frame lasts.
constexpr qsizetype longTextLength = 32768;

/*
    A text too long to lay out at once, laid out as plainTextHeight() does, some lines at a
    time. Only where each line starts and stands is kept, so any stretch of lines is painted
    by laying out that stretch alone.
*/
class LongText
{
public:
    LongText(const QString &text, const QFont &font, qreal width);

    bool isComplete() const { return next > text.size(); }
    // Lays out lines for about \a ns, or until they pass \a untilY; true once all are laid out.
    bool layOut(qint64 ns, qreal untilY = std::numeric_limits<qreal>::max());
    // How far down the lines laid out so far reach.
    qreal laidOutHeight() const { return y; }
    // The height, once complete; until then the lines so far and the rest at their rate.
    qreal height() const;
    // Paints the laid-out lines that cross \a clip, a rectangle in the text's own
    // coordinates, with the text's top left at \a origin.
    void draw(QPainter *painter, const QPointF &origin, const QRectF &clip) const;

private:
    struct Line
    {
        qsizetype start;
        qsizetype length;
        qreal top;
        qreal height;
        bool rightToLeft;
    };

    const QString text;
    const QFont font;
    const qreal width;
    std::vector<Line> lines;
    qsizetype next = 0; // where the next line starts
    qsizetype paragraphStart = 0;
    qsizetype paragraphEnd = 0;
    bool paragraphRightToLeft = false;
    qreal y = 0;
};

// The long text laid out for \a text, \a font and \a width: the one made lately if there is
// one, else a new one that goes on being laid out from the event loop until complete.
std::shared_ptr<LongText> longText(const QString &text, const QFont &font, qreal width);

// Tells when long texts have been laid out further.
class LongTextProgress : public QObject
{
    Q_OBJECT

public:
    static LongTextProgress *instance();

Q_SIGNALS:
    // More lines of some long text are laid out.
    void advanced();
    // Some long text is laid out whole: the heights it was given before were estimates.
    void completed();
};

} // namespace TVRTextLayout

#endif
