// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRMANAGER_P_H
#define TVRMANAGER_P_H

#include "TVRManager.h"

// The kit's own way to show the agreement screen, tried after the host's presenter, if any,
// did not show it. The core has none: the widgets library installs its screen here as it
// loads, so that a host that links the widget screens gets them presented and a QML host
// pulls in no widget. Returns whether the document is taken care of; when it is not, the
// document becomes the shared document manager's Terms of Service and nothing is shown.
TOVRA_EXPORT void tvrSetBuiltInAgreementPresenter(TVRManager::AgreementPresenter presenter);

#endif
