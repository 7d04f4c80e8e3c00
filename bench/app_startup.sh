#!/usr/bin/env bash
# bench/app_startup.sh [BUILD_DIR] [IDLE_SECONDS]: Navro's start-up read against its floor, on the
# virtual desktop of the desktop tests (Xvfb, openbox, xcompmgr, trayer, a private session bus):
#   - the time from exec to the closed notch's first frame on screen, for a bare Qt Quick window
#     of the closed notch's size (bench/BareNotchWindow.cpp) and for Navro, started alternately:
#     one warm-up start each, then RUNS (7) each; both medians and their ratio;
#   - the resident memory of both 10 s after start, and Navro's after every tab was opened once,
#     as the notch closes and again at rest, once it has let the open notch's views go;
#   - Navro's processor use over IDLE_SECONDS with the notch closed and nothing changing, from
#     then on.
# Navro runs with every service fed (bench/realistic_home.sh: a home after months of use, the
# sound server, notifications, the screen saver, battery, headset and drive stand-ins on a system
# bus, a paused player with covers); the figures after the first frames come from one more start
# whose log is checked for the whole home taken in.
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
# shellcheck source=realistic_home.sh
source "$root/bench/realistic_home.sh"
bench_require app_startup "$navro" "$bare" "$probe" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
realistic_services paused || { echo "app_startup: the desktop's services did not come up" >&2; exit 1; }

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
    stop "$pid"
done
bare_median=$(median "${bare_times[@]}")
navro_median=$(median "${navro_times[@]}")
echo "first frame, median of $runs starts after one warm-up each:"
echo "  bare Qt Quick window $bare_median ms (all: ${bare_times[*]})"
echo "  Navro                $navro_median ms (all: ${navro_times[*]})"
awk -v n="$navro_median" -v b="$bare_median" 'BEGIN { printf "  ratio %.2f\n", n / b }'

desktop_spawn bare "$bare"
bare_pid=$DESKTOP_LAST_PID
navro_start "$navro" || exit 1
sleep 10
echo "resident memory 10 s after start: bare window $(($(rss_kib "$bare_pid") / 1024)) MiB," \
    "Navro $(($(rss_kib "$NAVRO_PID") / 1024)) MiB ($(rss_kib "$NAVRO_PID") KiB)"
stop "$bare_pid"

# The home's checks open the music, notes and shelf tabs and copy once.
realistic_check "$DESKTOP_DIR/shots" || exit 1
open_every_tab || exit 1
echo "resident memory after opening every tab once: $(($(rss_kib "$NAVRO_PID") / 1024)) MiB ($(rss_kib "$NAVRO_PID") KiB)"

# At rest from here on: after the notch has stayed closed long enough to let its open views go
# (two minutes), and longer than Qt keeps an idle pool thread (30 s), so that the workers of the
# tabs' loading do not end inside the idle measurement.
sleep "$at_rest_seconds"
echo "resident memory at rest, $at_rest_seconds s after the notch closed: $(($(rss_kib "$NAVRO_PID") / 1024)) MiB ($(rss_kib "$NAVRO_PID") KiB)"
measure_cpu "idle processor use, notch closed" "$idle_seconds" "$NAVRO_PID"
stop "$NAVRO_PID"
