#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Sets up a Debian 12 machine for the kit, builds it and runs the demo host application.
# With a display it opens the demo's window; without one, or with --screenshots DIR, it
# renders each screen to a PNG and prints the paths.
#   ./demo.sh [--screenshots DIR] [--documents DIR]
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

tovra_install_packages
tovra_build >/dev/null
exec "$tovra_build_dir/examples/demo/tovra-demo" "$@"
