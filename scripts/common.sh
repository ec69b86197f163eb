# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Shared by test.sh and demo.sh: install what is missing from Debian's packages, then
# configure and build the kit, its tests and its demo in one build directory.

tovra_packages=(
    cmake g++ ninja-build pkgconf
    qt6-base-dev qt6-httpserver-dev qt6-websockets-dev qtkeychain-qt6-dev qt6-qpa-plugins
    qt6-l10n-tools qt6-tools-dev
    qt6-declarative-dev qt6-declarative-dev-tools qml6-module-qtqml qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-layouts
    qml6-module-qtquick-templates qml6-module-qtquick-window qml6-module-qttest
    libsecret-1-0 libsecret-tools libssl3 ca-certificates
    gnome-keyring dbus dbus-bin dbus-daemon nginx-light
    fonts-dejavu-core fonts-noto-cjk
)

# Only for the full run: clang and its libFuzzer runtime for the fuzzing stage, the format
# and lint checks, Python and clang for the check of installed declarations, and Doxygen
# for the API reference.
tovra_fuzz_packages=(clang-14 libclang-rt-14-dev clang-format clang-tidy doxygen python3)

tovra_install_packages() {
    local missing=() package
    for package in "${tovra_packages[@]}" "$@"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing from Debian's packages: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    "${sudo[@]}" apt-get update -q
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
}

tovra_jobs=$(( $(nproc) < 2 ? $(nproc) : 2 ))

# Configures and builds in $tovra_build_dir (default: build), with extra CMake options.
# With CI=true, compiler warnings are errors.
tovra_build() {
    tovra_build_dir=${tovra_build_dir:-${BUILD_DIR:-build}}
    local werror=OFF
    [ "${CI:-}" = "true" ] && werror=ON
    cmake -S . -B "$tovra_build_dir" -G Ninja \
        -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" \
        -DTOVRA_BUILD_TESTS=ON -DTOVRA_BUILD_EXAMPLES=ON -DTOVRA_BUILD_BENCHMARKS=ON \
        -DTOVRA_WARNINGS_AS_ERRORS="$werror" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "$@"
    cmake --build "$tovra_build_dir" --parallel "$tovra_jobs"
}
