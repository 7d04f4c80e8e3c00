#!/usr/bin/env bash
# scripts/run.sh BUILD_DIR: runs Navro. On a machine with a display it simply starts there. Without
# one it starts the virtual desktop of the desktop tests, takes screenshots of the closed and the
# open notch in English and in Arabic, prints where they are, and keeps Navro running there until
# interrupted (Ctrl+C stops everything it started).
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-build}" && pwd)
navro="$build/src/navro"
if [ ! -x "$navro" ]; then
    echo "run.sh: $navro is missing; build first (make build)" >&2
    exit 1
fi

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$navro"
fi

# shellcheck source=../tests/desktop/lib.sh
source "$root/tests/desktop/lib.sh"
DESKTOP_HELPER="$build/tests/desktop/navro_test_x11"
shots="$build/screenshots"
mkdir -p "$shots"
desktop_start || exit 1
xdotool mousemove 100 700

show_language() {
    local language=$1
    navro_settings hasCompletedOnboarding=true language="$language"
    navro_start "$navro" "navro-$language" || {
        echo "run.sh: Navro did not come up; its log:" >&2
        cat "$NAVRO_LOG" >&2
        exit 1
    }
    drawn 10 "$shots/closed-$language.png" 960 10 000000
    echo "  $shots/closed-$language.png"
    navro_call Open false
    wait_until 5 "the notch to open" navro_field_is status open
    drawn 5 "$shots/open-$language.png" 960 250 000000
    echo "  $shots/open-$language.png"
    navro_call Close
    wait_until 5 "the notch to close" navro_field_is status closed
}

echo "Screenshots in $shots:"
show_language arabic
desktop_stop "$NAVRO_PID"
show_language english

echo "Navro runs on the virtual display $DISPLAY (session bus $DBUS_SESSION_BUS_ADDRESS)."
echo "Press Ctrl+C to stop."
wait "$NAVRO_PID"
