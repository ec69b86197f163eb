#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Sets up a Debian 12 machine for the kit and runs the whole test suite: installs what is
# missing from Debian's packages, then
#   1. builds in build/ and runs every test;
#   2. builds in build-asan/ with AddressSanitizer and UBSan and runs them again;
#   3. builds the fuzz targets with clang in build-fuzz/ and runs each for a minute;
#   4. checks that src/'s folders include only downwards and that the core and the QML
#      module include no widget header, that every function an installed header declares
#      is defined by an installed library, the format (.clang-format), lints src/
#      (.clang-tidy) on build/, and builds the API reference (the docs target), which any
#      Doxygen warning fails, an undocumented public member included.
# Safe to run again; later runs only rebuild what changed.
#   ./test.sh            all four stages
#   ./test.sh --quick    the first stage only
# With CI=true, compiler warnings are errors.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

quick=false
[ "${1:-}" = "--quick" ] && quick=true

if $quick; then
    tovra_install_packages
else
    tovra_install_packages "${tovra_fuzz_packages[@]}"
fi

echo "== 1. tests"
tovra_build_dir=${BUILD_DIR:-build}
tovra_build
ctest --test-dir "$tovra_build_dir" --output-on-failure --parallel "$tovra_jobs"
$quick && exit 0

echo "== 2. tests under AddressSanitizer and UndefinedBehaviorSanitizer"
tovra_build_dir=build-asan
tovra_build -DTOVRA_SANITIZE=ON -DTOVRA_BUILD_BENCHMARKS=OFF
ASAN_OPTIONS=detect_leaks=1 \
LSAN_OPTIONS=suppressions=$PWD/tests/sanitizers/lsan.supp \
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-asan --output-on-failure --parallel "$tovra_jobs" --exclude-regex consumer_project

echo "== 3. fuzzing, a minute per target"
tovra_build_dir=build-fuzz
CC=clang-14 CXX=clang++-14 tovra_build -DTOVRA_FUZZ=ON -DTOVRA_BUILD_TESTS=OFF \
    -DTOVRA_BUILD_EXAMPLES=OFF -DTOVRA_BUILD_BENCHMARKS=OFF
bash tests/fuzz/run.sh build-fuzz "${FUZZ_SECONDS:-60}"

echo "== 4. layers, declarations, format, lint and API reference"
cmake -P cmake/check_layers.cmake
python3 scripts/check-declarations.py build clang++-14
bash scripts/check-format.sh
bash scripts/check-lint.sh build
cmake -S . -B build >/dev/null
cmake --build build --target docs
