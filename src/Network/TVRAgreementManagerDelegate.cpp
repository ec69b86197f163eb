// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRAgreementManagerDelegate.h"

TVRAgreementManagerDelegate::~TVRAgreementManagerDelegate() = default;
