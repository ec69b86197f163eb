// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRNAVIGATIONBAR_P_H
#define TVRNAVIGATIONBAR_P_H

#include <QWidget>

class QAction;
class QLabel;
class QToolButton;

// The bar over a navigation controller's screens: the title in the middle, a bar button
// on either side. 44 px high, the height of a phone's navigation bar.
class TVRNavigationBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Height = 44;

    explicit TVRNavigationBar(QWidget *parent = nullptr);

    void setTitle(const QString &title);
    QString title() const;
    void setItems(QAction *left, QAction *right);

    QToolButton *leftButton() const { return m_left; }
    QToolButton *rightButton() const { return m_right; }

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void place();

    QLabel *m_title;
    QToolButton *m_left;
    QToolButton *m_right;
};

#endif
