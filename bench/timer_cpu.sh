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
for program in "$navro" "$build/tests/desktop/navro_test_x11"; do
    [ -x "$program" ] || { echo "timer_cpu: $program is missing; build first" >&2; exit 1; }
done

# shellcheck source=../tests/desktop/lib.sh
source "$root/tests/desktop/lib.sh"
DESKTOP_HELPER="$build/tests/desktop/navro_test_x11"
desktop_start || exit 1
xdotool mousemove 100 700
navro_settings hasCompletedOnboarding=true language=english timerSound=false
navro_start "$navro" || { echo "timer_cpu: Navro did not start" >&2; exit 1; }

ticks=$(getconf CLK_TCK)
cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$1/stat"; }
# measure WHAT: processor use of Navro over the next $seconds seconds.
measure() {
    local before after
    before=$(cpu_ticks "$NAVRO_PID")
    sleep "$seconds"
    after=$(cpu_ticks "$NAVRO_PID")
    awk -v t=$((after - before)) -v hz="$ticks" -v s="$seconds" -v what="$1" 'BEGIN {
        printf "%s over %d s: %.2f s of CPU time (%.3f %% of one core)\n", what, s, t / hz, 100 * t / hz / s }'
}

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
