#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Fails, listing the files, when a C++ file of the repository differs from what
# clang-format makes of it with the repository's .clang-format. To fix: the same with -i.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${files[@]}"
echo "format: ${#files[@]} files as .clang-format wants them"
