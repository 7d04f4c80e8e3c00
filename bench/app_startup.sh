#!/usr/bin/env bash
# bench/app_startup.sh [BUILD_DIR] [IDLE_SECONDS]: Navro's start-up read against its floor, on the
# virtual desktop of the desktop tests (Xvfb, openbox, xcompmgr, trayer, a private session bus):
#   - the time from exec to the closed notch's first frame on screen, for a bare Qt Quick window
#     of the closed notch's size (bench/BareNotchWindow.cpp) and for Navro, started alternately:
#     one warm-up start each, then RUNS (7) each; both medians and their ratio;
#   - the resident memory of both 10 s after start, and Navro's after every tab was opened once;
#   - Navro's processor use over IDLE_SECONDS with the notch closed and nothing changing.
# Onboarding is marked done so that only the notch shows.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
idle_seconds=${2:-60}
runs=${RUNS:-7}
navro="$build/src/navro"
bare="$build/bench/bare_notch_window"
probe="$build/bench/first_frame_probe"
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_require app_startup "$navro" "$bare" "$probe" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"

# first_frame PROGRAM: starts PROGRAM and sets `elapsed` to the milliseconds until the closed
# notch's centre, one pixel below the screen's top edge, turns black, and `pid` to its pid.
first_frame() {
    elapsed="" pid=""
    read -r elapsed pid < <("$probe" 960 2 "$1")
    if [ -z "$elapsed" ] || [ "$elapsed" = timeout ]; then
        echo "app_startup: no first frame from $1" >&2
        [ -n "$pid" ] && kill "$pid"
        exit 1
    fi
}
stop() {
    kill "$1"
    while kill -0 "$1" 2>/dev/null; do sleep 0.05; done
}
median() { printf '%s\n' "$@" | sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

bare_times=()
navro_times=()
for run in $(seq 0 "$runs"); do
    first_frame "$bare"
    [ "$run" -eq 0 ] || bare_times+=("$elapsed")
    stop "$pid"
    first_frame "$navro"
    [ "$run" -eq 0 ] || navro_times+=("$elapsed")
    # The last Navro keeps running.
    [ "$run" -eq "$runs" ] || stop "$pid"
done
navro_pid=$pid
bare_median=$(median "${bare_times[@]}")
navro_median=$(median "${navro_times[@]}")
echo "first frame, median of $runs starts after one warm-up each:"
echo "  bare Qt Quick window $bare_median ms (all: ${bare_times[*]})"
echo "  Navro                $navro_median ms (all: ${navro_times[*]})"
awk -v n="$navro_median" -v b="$bare_median" 'BEGIN { printf "  ratio %.2f\n", n / b }'

desktop_spawn bare "$bare"
bare_pid=$DESKTOP_LAST_PID
sleep 10
echo "resident memory 10 s after start: bare window $(($(rss_kib "$bare_pid") / 1024)) MiB," \
    "Navro $(($(rss_kib "$navro_pid") / 1024)) MiB ($(rss_kib "$navro_pid") KiB)"
stop "$bare_pid"

wait_until 20 "Navro on the bus" navro_owns_name || exit 1
for tab in home nowPlaying calendar timer notes clipboard capture shelf devices; do
    navro_call OpenTab "$tab" &&
        wait_until 5 "the $tab tab" navro_field_is selectedTab "$tab" || exit 1
    sleep 0.5
done
navro_call Close
wait_until 5 "the notch closed" navro_field_is status closed || exit 1
sleep 2
echo "resident memory after opening every tab once: $(($(rss_kib "$navro_pid") / 1024)) MiB ($(rss_kib "$navro_pid") KiB)"

measure_cpu "idle processor use, notch closed" "$idle_seconds" "$navro_pid"
stop "$navro_pid"
