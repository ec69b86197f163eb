// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRQUICKAGREEMENT_P_H
#define TVRQUICKAGREEMENT_P_H

// Makes the agreement check show AgreementPage over the Qt Quick window in front, unless the
// host installed a presenter of its own.
void tvrInstallQuickAgreementPresenter();

#endif
