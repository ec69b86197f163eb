#!/usr/bin/env bash
# Sets up a Debian 12 machine for the kit and runs the whole test suite: installs what is
# missing from Debian's packages, configures, builds and runs CTest. Safe to run again;
# later runs only rebuild what changed.
#   ./test.sh                  build in ./build and run every test
#   BUILD_DIR=dir ./test.sh
# With CI=true, compiler warnings are errors.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

tovra_install_packages
tovra_build
ctest --test-dir "$tovra_build_dir" --output-on-failure --parallel "$tovra_jobs"
