#!/usr/bin/env bash
# bench/calendar_idle.sh [BUILD_DIR] [SECONDS]: Navro's processor use over SECONDS with three
# calendars (Evolution's, each with a weekly meeting that is not near) and nothing changing
# (target: 0.00 % between refreshes); on the virtual desktop of the desktop tests.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
navro="$build/src/navro"
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_require calendar_idle "$navro" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"

start=$(date -u -d "tomorrow 23:00" +%Y%m%dT%H%M%SZ)
for name in Work Home Team; do
    folder="$XDG_DATA_HOME/evolution/calendar/$name"
    mkdir -p "$folder"
    printf '%s\r\n' BEGIN:VCALENDAR VERSION:2.0 "X-WR-CALNAME:$name" BEGIN:VEVENT \
        "UID:weekly-$name@example.com" "SUMMARY:$name weekly" "DTSTART:$start" \
        "DURATION:PT1H" "RRULE:FREQ=WEEKLY;COUNT=50" END:VEVENT END:VCALENDAR \
        >"$folder/calendar.ics"
done
navro_start "$navro" || { echo "calendar_idle: Navro did not start" >&2; exit 1; }
wait_until 10 "the calendars read" eval \
    '[ "$(navro_property NextMeeting | grep -c weekly)" = 1 ]' ||
    { echo "calendar_idle: the meetings did not arrive" >&2; exit 1; }
sleep 3
measure_cpu "idle with three calendars" "$seconds" "$NAVRO_PID"
desktop_stop_all
