// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRLOGGING_P_H
#define TVRLOGGING_P_H

#include <QLoggingCategory>

// Every line the kit writes goes through this category, so a host can route or silence
// them with QT_LOGGING_RULES="tovra.debug=false" and friends.
Q_DECLARE_LOGGING_CATEGORY(lcTovra)

#endif
