// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRWEAKDELEGATE_P_H
#define TVRWEAKDELEGATE_P_H

#include <QObject>
#include <QPointer>

// A delegate held weakly: it reads as null once its object is destroyed. Only QObjects can
// be watched that way, so a delegate that is not one is not kept.
template <typename Delegate>
class TVRWeakDelegate
{
public:
    Delegate *get() const { return m_object ? m_delegate : nullptr; }

    void set(Delegate *delegate)
    {
        m_object = dynamic_cast<QObject *>(delegate);
        m_delegate = m_object ? delegate : nullptr;
    }

private:
    QPointer<QObject> m_object;
    Delegate *m_delegate = nullptr;
};

#endif
