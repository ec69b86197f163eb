// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRQUICKAPPEARANCE_P_H
#define TVRQUICKAPPEARANCE_P_H

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// The fonts and colours of TVRDesignClass for the QML pages, as they are when a page reads
// them: like the widget screens, a page takes the appearance in force when it is made.
class TVRQuickAppearance : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Appearance)
    QML_SINGLETON
    Q_PROPERTY(QFont dateFont READ dateFont CONSTANT)
    Q_PROPERTY(QColor dateColor READ dateColor CONSTANT)
    Q_PROPERTY(QFont titleFont READ titleFont CONSTANT)
    Q_PROPERTY(QColor titleColor READ titleColor CONSTANT)
    Q_PROPERTY(QFont bodyFont READ bodyFont CONSTANT)
    Q_PROPERTY(QColor bodyColor READ bodyColor CONSTANT)

public:
    using QObject::QObject;

    static QFont dateFont();
    static QColor dateColor();
    static QFont titleFont();
    static QColor titleColor();
    static QFont bodyFont();
    static QColor bodyColor();
};

#endif
