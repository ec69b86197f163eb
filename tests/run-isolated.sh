#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Runs one test command where it can touch nothing of the user's: a throw-away HOME and XDG
# directories, a private D-Bus session with its own gnome-keyring (unlocked), and Qt's
# offscreen platform.
#   tests/run-isolated.sh <command> [args...]
set -euo pipefail

sandbox=$(mktemp -d "${TMPDIR:-/tmp}/tovra-test.XXXXXX")
trap 'rm -rf "$sandbox"' EXIT

export HOME=$sandbox/home
export XDG_CONFIG_HOME=$HOME/.config
export XDG_DATA_HOME=$HOME/.local/share
export XDG_CACHE_HOME=$HOME/.cache
export XDG_STATE_HOME=$HOME/.local/state
export XDG_RUNTIME_DIR=$sandbox/runtime
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"

export QT_QPA_PLATFORM=offscreen
unset DBUS_SESSION_BUS_ADDRESS GNOME_KEYRING_CONTROL SSH_AUTH_SOCK
# Keep the desktop detection of the keychain library on its default path (Secret Service).
unset XDG_CURRENT_DESKTOP DESKTOP_SESSION KDE_FULL_SESSION KDE_SESSION_VERSION GNOME_DESKTOP_SESSION_ID

inner() {
    # gnome-keyring makes its "login" collection only when it is unlocked with a
    # non-empty password; without that collection every write fails. It runs in the
    # foreground here so that it can be stopped: it would outlive the bus it serves.
    printf '%s' 'tovra-test-keyring' | gnome-keyring-daemon --foreground --unlock --components=secrets >/dev/null &
    local keyring=$! status=0 tries=0
    until dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
            org.freedesktop.DBus.NameHasOwner string:org.freedesktop.secrets 2>/dev/null | grep -q 'boolean true'; do
        tries=$((tries + 1))
        if [ "$tries" -gt 100 ]; then
            echo "run-isolated: gnome-keyring did not come up on the private bus" >&2
            kill "$keyring" 2>/dev/null
            return 1
        fi
        sleep 0.05
    done
    "$@" || status=$?
    kill "$keyring" 2>/dev/null || true
    wait "$keyring" 2>/dev/null || true
    return $status
}
export -f inner

# dbus-daemon complains on stderr when it may not raise its fd limit; that is harmless.
status=0
dbus-run-session -- bash -c 'inner "$@"' inner "$@" 2> >(grep -v --line-buffered 'Failed to set fd limit' >&2) || status=$?
exit $status
