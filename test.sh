#!/usr/bin/env bash
# Sets up a Debian 12 machine for the kit and runs the whole test suite:
# installs what is missing from Debian's packages, configures, builds and runs CTest.
# Safe to run again; later runs only rebuild what changed.
#   ./test.sh              build in ./build and run every test
#   BUILD_DIR=dir ./test.sh
# With CI=true, compiler warnings are errors.
set -euo pipefail
cd "$(dirname "$0")"

packages=(
    cmake g++ ninja-build
    qt6-base-dev qt6-httpserver-dev qt6-websockets-dev qtkeychain-qt6-dev
    libsecret-1-0 libssl3 ca-certificates
    gnome-keyring dbus dbus-bin dbus-daemon
    fonts-dejavu-core
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "test.sh: installing ${missing[*]}"
    sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    "${sudo[@]}" apt-get update -q
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

build_dir=${BUILD_DIR:-build}
werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
jobs=$(( $(nproc) < 2 ? $(nproc) : 2 ))

cmake -S . -B "$build_dir" -G Ninja \
    -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" \
    -DTOVRA_BUILD_TESTS=ON \
    -DTOVRA_WARNINGS_AS_ERRORS="$werror"
cmake --build "$build_dir" --parallel "$jobs"
ctest --test-dir "$build_dir" --output-on-failure --parallel "$jobs"
