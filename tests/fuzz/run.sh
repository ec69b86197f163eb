#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Runs each fuzz target for a bounded time on a copy of its seed corpus. Any crash, leak
# or sanitizer report fails the run; the input that caused it is kept in the build folder.
#   tests/fuzz/run.sh BUILD_DIR SECONDS
set -euo pipefail
build=$(realpath "$1")
seconds=$2
here=$(cd "$(dirname "$0")" && pwd)
work=$build/fuzz-work
rm -rf "$work"
mkdir -p "$work"
status=0
for target in fuzz_document fuzz_date fuzz_keychain_value; do
    cp -r "$here/corpus/$target" "$work/$target"
    if "$build/tests/fuzz/$target" -max_total_time="$seconds" -rss_limit_mb=2048 -print_final_stats=1 \
            -artifact_prefix="$work/$target-" "$work/$target" >"$work/$target.log" 2>&1; then
        echo "$target: $(grep -m1 'stat::number_of_executed_units' "$work/$target.log" | awk '{print $2}') runs, no finding"
    else
        echo "$target: FAILED, see $work/$target.log"
        tail -n 40 "$work/$target.log"
        status=1
    fi
done
exit $status
