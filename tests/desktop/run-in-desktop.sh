#!/usr/bin/env bash
# run-in-desktop.sh X11_HELPER PROGRAM [ARGS...]: runs a test program inside a fresh virtual
# desktop (X server, session bus, window manager, compositor) and exits with its status.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
DESKTOP_HELPER=$1
shift
# shellcheck source=lib.sh
source "$here/lib.sh"
DESKTOP_TRAY=0 desktop_start || exit 1
"$@"
