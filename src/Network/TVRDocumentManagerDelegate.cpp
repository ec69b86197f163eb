// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRDocumentManagerDelegate.h"

TVRDocumentManagerDelegate::~TVRDocumentManagerDelegate() = default;

void TVRDocumentManagerDelegate::managerDidFinishWithSuccess(TVRDocumentManager *, bool) { }

void TVRDocumentManagerDelegate::managerFailedWithError(TVRDocumentManager *, const TVRError &) { }
