#!/usr/bin/env bash
# bench/timer_cpu.sh [BUILD_DIR] [SECONDS]: Navro's processor use while a timer counts down in the
# closed notch (target: at most 0.3 % of one core, one redraw a second) and after it was stopped
# (target: 0.00 %), each over SECONDS and beside its floor, the same Navro idle before any timer;
# on the virtual desktop of the desktop tests.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
navro="$build/src/navro"
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_require timer_cpu "$navro" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
navro_settings hasCompletedOnboarding=true language=english timerSound=false
navro_start "$navro" || { echo "timer_cpu: Navro did not start" >&2; exit 1; }
measure() { measure_cpu "$1" "$seconds" "$NAVRO_PID"; }

sleep 3
measure "idle before any timer"
# Long enough to outlast the measurement.
navro_call StartTimer "$(awk -v s="$seconds" 'BEGIN { print (s + 60) / 60 }')" false
wait_until 5 "the timer activity" navro_field_is activityKind timer || exit 1
sleep 2
measure "a timer counting down in the closed notch"
navro_call StopTimer
wait_until 5 "no activity" navro_field_is activityKind "" || exit 1
sleep 2
measure "idle after the timer"
