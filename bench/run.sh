#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Builds the kit in release mode and runs the screen benchmark, isolated like the tests.
#   bench/run.sh [--json FILE]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

tovra_install_packages
build_dir=${BUILD_DIR:-build-release}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTOVRA_BUILD_TESTS=ON \
    -DTOVRA_BUILD_EXAMPLES=OFF -DTOVRA_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build_dir" --parallel 2 --target bench_screens
args=("$@")
[[ " $* " == *" --json "* ]] || args+=(--json "$(realpath -m "$build_dir/bench_screens.json")")
exec tests/run-isolated.sh "$build_dir/bench/bench_screens" "${args[@]}"
