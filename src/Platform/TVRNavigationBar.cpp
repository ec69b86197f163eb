// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRNavigationBar_p.h"

#include "TVRFocusRing_p.h"
#include "TVRPalette_p.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

namespace {
constexpr int Margin = 8;

void showItem(QToolButton *button, QAction *action)
{
    button->setVisible(action);
    if (!action)
        return;
    button->setDefaultAction(action);
    button->setFont(action->font()); // a "done" item is bold
    button->adjustSize();
}
} // namespace

TVRNavigationBar::TVRNavigationBar(QWidget *parent)
    : QWidget(parent)
    , m_title(new QLabel(this))
    , m_left(new QToolButton(this))
    , m_right(new QToolButton(this))
{
    setFixedHeight(Height);
    // A light bar under any system palette, as the screens under it are white.
    setPalette(TVRPalette::bar());
    setAutoFillBackground(true);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setTextFormat(Qt::PlainText);
    for (QToolButton *button : {m_left, m_right}) {
        button->setAutoRaise(true);
        TVRFocusRing::attach(button);
        button->hide();
    }
}

void TVRNavigationBar::setTitle(const QString &title)
{
    m_title->setText(title);
}

QString TVRNavigationBar::title() const
{
    return m_title->text();
}

void TVRNavigationBar::setItems(QAction *left, QAction *right)
{
    showItem(m_left, left);
    showItem(m_right, right);
    place();
}

void TVRNavigationBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        place();
}

void TVRNavigationBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    place();
}

void TVRNavigationBar::place()
{
    const int h = height();
    // The leading item sits at the start of the bar: on the left, or on the right when the
    // layout runs right to left.
    const QRect leading(QPoint(Margin, (h - m_left->height()) / 2), m_left->size());
    const QRect trailing(QPoint(width() - Margin - m_right->width(), (h - m_right->height()) / 2), m_right->size());
    m_left->setGeometry(QStyle::visualRect(layoutDirection(), rect(), leading));
    m_right->setGeometry(QStyle::visualRect(layoutDirection(), rect(), trailing));
    // The title is centred on the bar, clear of whichever button is wider.
    const int side =
        Margin + qMax(m_left->isVisible() ? m_left->width() : 0, m_right->isVisible() ? m_right->width() : 0);
    m_title->setGeometry(side, 0, qMax(0, width() - 2 * side), h);
}
