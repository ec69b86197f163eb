// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef WAITING_H
#define WAITING_H

#include <QCoreApplication>
#include <QDeadlineTimer>

// Serves events until \a done holds, for at most \a ms milliseconds; whether it came to hold.
template <typename Predicate>
bool waitFor(Predicate done, int ms = 10000)
{
    const QDeadlineTimer deadline(ms);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

#endif
