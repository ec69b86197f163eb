// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TOVRAVERSION_H
#define TOVRAVERSION_H

#include "tovra_export.h"
#include "tovra_version.h"

/*!
    \brief What(1)-style identification of the kit: "@(#)PROGRAM:Tovra  PROJECT:Tovra-1"
    followed by a line feed and the terminating zero.
*/
extern "C" TOVRA_EXPORT const unsigned char TovraVersionString[];

//! The kit's version as a number: major.minor, 1.0 for this release.
extern "C" TOVRA_EXPORT const double TovraVersionNumber;

#endif
