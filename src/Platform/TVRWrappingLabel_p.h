#ifndef TVRWRAPPINGLABEL_P_H
#define TVRWRAPPINGLABEL_P_H

#include <QLabel>

/*
    A plain-text label that wraps as the kit measures (TVRTextLayout): at word boundaries,
    a word too long for a line broken inside it, every script shaped, each paragraph aligned
    by its own direction. QLabel's own word wrap leaves a long word cut at the edge.
*/
class TVRWrappingLabel : public QLabel
{
public:
    TVRWrappingLabel();

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

#endif
