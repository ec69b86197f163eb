// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TovraVersion.h"

#define TOVRA_STRINGIFY_(x) #x
#define TOVRA_STRINGIFY(x) TOVRA_STRINGIFY_(x)

extern "C" {

const unsigned char TovraVersionString[] =
    "@(#)PROGRAM:Tovra  PROJECT:Tovra-" TOVRA_STRINGIFY(TOVRA_VERSION_MAJOR) "\n";

const double TovraVersionNumber = TOVRA_VERSION_NUMBER;
}
