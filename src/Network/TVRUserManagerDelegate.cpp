// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRUserManagerDelegate.h"

TVRUserManagerDelegate::~TVRUserManagerDelegate() = default;
