#!/usr/bin/env bash
# bench/app_startup.sh [BUILD_DIR] [IDLE_SECONDS]: the whole application's start-up time (exec to
# the notch's first frame on screen), its resident memory once started, and its processor use
# while idle, measured on the virtual desktop of the desktop tests (Xvfb, openbox, xcompmgr,
# trayer, a private session bus). Onboarding is marked done so that only the notch shows.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
idle_seconds=${2:-60}
runs=${RUNS:-5}
navro="$build/src/navro"
probe="$build/bench/first_frame_probe"
for program in "$navro" "$probe" "$build/tests/desktop/navro_test_x11"; do
    [ -x "$program" ] || { echo "app_startup: $program is missing; build first" >&2; exit 1; }
done

# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_desktop "$build"

# The closed notch's centre, one pixel below the screen's top edge.
frames=()
for run in $(seq "$runs"); do
    read -r elapsed pid < <("$probe" 960 2 "$navro")
    [ "$elapsed" != timeout ] || { echo "app_startup: no first frame" >&2; kill "$pid"; exit 1; }
    frames+=("$elapsed")
    if [ "$run" -lt "$runs" ]; then
        kill "$pid"
        while kill -0 "$pid" 2>/dev/null; do sleep 0.05; done
    fi
done
sorted=$(printf '%s\n' "${frames[@]}" | sort -n)
median=$(echo "$sorted" | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }')
echo "first frame: median ${median} ms over $runs starts (all: $(echo $sorted))"

# The last start keeps running: settle, then memory and idle processor use.
sleep 3
echo "resident memory 3 s after start: $(( $(rss_kib "$pid") / 1024 )) MiB ($(rss_kib "$pid") KiB)"
before=$(cpu_ticks "$pid")
sleep "$idle_seconds"
after=$(cpu_ticks "$pid")
awk -v t=$((after - before)) -v hz="$ticks" -v s="$idle_seconds" 'BEGIN {
    printf "idle processor use over %d s: %.2f s of CPU time (%.3f %% of one core)\n", s, t / hz, 100 * t / hz / s }'
kill "$pid"
