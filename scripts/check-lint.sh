#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Lints every source file of the kit (src/) with clang-tidy and the checks chosen in
# .clang-tidy, against the compile commands of a configured and built tree (it needs the
# generated headers). Any finding fails.
#   scripts/check-lint.sh [BUILD_DIR]      default: build
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${1:-build}
[ -f "$build_dir/compile_commands.json" ] || {
    echo "no $build_dir/compile_commands.json: build with ./test.sh --quick first" >&2
    exit 1
}
mapfile -t files < <(git ls-files 'src/*.cpp')
run-clang-tidy -p "$build_dir" -j "${TOVRA_JOBS:-2}" -quiet "${files[@]/#/$PWD/}" \
    >"$build_dir/lint.log" 2>&1 || {
    grep -E 'warning:|error:' "$build_dir/lint.log" >&2 || cat "$build_dir/lint.log" >&2
    exit 1
}
echo "lint: ${#files[@]} files of src/, no findings"
