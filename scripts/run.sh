#!/usr/bin/env bash
# scripts/run.sh BUILD_DIR: runs Navro. On a machine with a display it simply starts there. Without
# one it starts the virtual desktop of the desktop tests, takes the screenshots of every window and
# page (scripts/screenshots.sh), prints where they are, and keeps Navro running there until
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
# shellcheck source=screenshots.sh
source "$root/scripts/screenshots.sh"
DESKTOP_HELPER="$build/tests/desktop/navro_test_x11"
shots="$build/screenshots"
desktop_start || exit 1
xdotool mousemove 100 700

echo "Screenshots of every window and page in $shots:"
shots_all "$navro" "$shots" || {
    echo "run.sh: the screenshots stopped early; Navro's last log:" >&2
    tail -n 20 "$NAVRO_LOG" >&2
    exit 1
}

navro_settings hasCompletedOnboarding=true
navro_start "$navro" || { cat "$NAVRO_LOG" >&2; exit 1; }
echo "Navro runs on the virtual display $DISPLAY (session bus $DBUS_SESSION_BUS_ADDRESS)."
echo "Press Ctrl+C to stop."
wait "$NAVRO_PID"
