// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TOVRAVERSION_H
#define TOVRAVERSION_H

/*!
    \file
    \brief The kit's version, as C symbols that a host or a tool can look up in the library.

    For checks at compile time, the tovra_version.h that this header includes defines
    TOVRA_VERSION_MAJOR, TOVRA_VERSION_MINOR, TOVRA_VERSION_PATCH, TOVRA_VERSION_STRING
    (such as "1.0.0") and TOVRA_VERSION_NUMBER (major.minor, such as 1.0).
*/

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
