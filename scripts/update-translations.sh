#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Brings every catalogue in translations/ up to date with the texts in src/: new texts are
# added unfinished for a translator, texts no longer used are dropped. The build compiles
# the catalogues into the kit; nothing else needs to run.
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=$(command -v lupdate6 || true)
[ -n "$lupdate" ] || lupdate=/usr/lib/qt6/bin/lupdate
for ts in translations/tovra_*.ts; do
    "$lupdate" -silent -locations none -no-obsolete src -ts "$ts"
done
echo "updated: $(ls translations/tovra_*.ts | tr '\n' ' ')"
