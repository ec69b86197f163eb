// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRLogging_p.h"

Q_LOGGING_CATEGORY(lcTovra, "tovra")
