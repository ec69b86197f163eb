// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

// Compiled into every program that links Tovra::Widgets, as a source of its own (the target's
// interface source), not into the library. The widgets library installs its agreement screen
// in the core as it loads (TVRManagerScreens.cpp). A host that calls only the core's functions
// refers to nothing of the library, and linkers leave such a static library's files out, or
// drop such a shared library with --as-needed: this call is the reference that keeps it in.
extern "C" void tovraWidgetsInstallAgreementScreen();

namespace {
const struct TovraWidgetsEntry
{
    TovraWidgetsEntry() { tovraWidgetsInstallAgreementScreen(); }
} tovraWidgetsEntry;
} // namespace
