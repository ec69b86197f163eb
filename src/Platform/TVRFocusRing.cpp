// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRFocusRing_p.h"

#include "TVRPalette_p.h"

#include <QEvent>
#include <QPainter>
#include <QWidget>

namespace {

class FocusRing : public QWidget
{
public:
    explicit FocusRing(QWidget *target)
        : QWidget(target)
    {
        setObjectName(QStringLiteral("TVRFocusRing"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
        setFocusPolicy(Qt::NoFocus);
        hide();
        target->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::FocusIn:
        case QEvent::FocusOut:
        case QEvent::Resize:
        case QEvent::Show:
            follow(static_cast<QWidget *>(watched));
            break;
        default:
            break;
        }
        return QWidget::eventFilter(watched, event);
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(TVRPalette::focus(), Width));
        painter.setBrush(Qt::NoBrush);
        const qreal inset = Width / 2.0;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 3, 3);
    }

private:
    static constexpr int Width = 2;

    void follow(QWidget *target)
    {
        // Focus by mouse or by the program marks nothing; focus by Tab or a shortcut does.
        const bool shown = target->hasFocus() && target->window()->testAttribute(Qt::WA_KeyboardFocusChange);
        if (shown) {
            setGeometry(target->rect());
            raise();
        }
        setVisible(shown);
    }
};

} // namespace

void TVRFocusRing::attach(QWidget *target)
{
    // Once per widget. (The ring has no meta-object of its own: it is found by its name.)
    if (!target->findChild<QWidget *>(QStringLiteral("TVRFocusRing"), Qt::FindDirectChildrenOnly))
        new FocusRing(target);
}
