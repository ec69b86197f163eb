#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Builds the kit in release mode and runs, isolated like the tests: the screen benchmark;
# launch to first frame of four host programs; the size ladder (first frame, longest stall
# and peak memory from 10 KB to 5 MB); and the stall probe for documents at the reply size
# limit.
#   bench/run.sh [--json FILE]    the launch and ladder rows are added to FILE; the stall
#                                 probe writes FILE with .stall-<document> before its suffix
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/common.sh

tovra_install_packages
build_dir=${BUILD_DIR:-build-release}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTOVRA_BUILD_TESTS=ON \
    -DTOVRA_BUILD_EXAMPLES=OFF -DTOVRA_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build_dir" --parallel 2 --target bench_screens bench_stall bench_launch
args=("$@")
[[ " $* " == *" --json "* ]] || args+=(--json "$(realpath -m "$build_dir/bench_screens.json")")
tests/run-isolated.sh "$build_dir/bench/bench_screens" "${args[@]}"
json=${args[-1]}
echo
tests/run-isolated.sh "$build_dir/bench/bench_launch" --json "$json"
echo
tests/run-isolated.sh "$build_dir/bench/bench_stall" --ladder --json "$json" 2>/dev/null
echo
echo "Longest GUI stall (ms) and peak memory, documents at the reply size limit:"
# One process a document, so that each peak memory is that document's own.
for document in "2,000 sections of 2.5 KB" "one section of 1 MB"; do
    tests/run-isolated.sh "$build_dir/bench/bench_stall" --document "$document" \
        --json "${json%.json}.stall-${document//[^a-z0-9]/}.json" 2>/dev/null
done
