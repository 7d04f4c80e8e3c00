#!/usr/bin/env bash
# bench/capture.sh [BUILD_DIR] [SECONDS]: on the virtual desktop of the desktop tests (1920×1080),
# the time from TakeScreenshot("screen") to the PNG on disk (five rounds); Navro's processor use
# while it records the screen, with ffmpeg's own reported apart; and Navro's idle processor use with
# a shelf of 200 items (target: 0.00 %).
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-20}
navro="$build/src/navro"
[ -x "$navro" ] || { echo "capture: $navro is missing; build first" >&2; exit 1; }
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_desktop "$build"

# A shelf of 200 files in four sections, written before Navro starts.
mkdir -p "$HOME/Files" "$XDG_DATA_HOME/Navro"
{
    printf '{"sections":['
    for section in 1 2 3 4; do
        [ "$section" = 1 ] || printf ','
        printf '{"name":"Section %d","items":[' "$section"
        for item in $(seq 1 50); do
            file="$HOME/Files/file-$section-$item.txt"
            : >"$file"
            [ "$item" = 1 ] || printf ','
            printf '{"path":"%s"}' "$file"
        done
        printf ']}'
    done
    printf ']}'
} >"$XDG_DATA_HOME/Navro/shelf.json"
navro_start "$navro" || { echo "capture: Navro did not start" >&2; exit 1; }

shots="$HOME/Pictures/Screenshots"
pngs_at_least() { [ "$(find "$shots" -name '*.png' 2>/dev/null | wc -l)" -ge "$1" ]; }
for round in 1 2 3 4 5; do
    start=$(desktop_now_ms)
    navro_call TakeScreenshot screen
    wait_until 10 "screenshot $round" pngs_at_least "$round" || exit 1
    echo "TakeScreenshot(\"screen\") to the PNG on disk, round $round: $(($(desktop_now_ms) - start)) ms"
    sleep 1.2 # file names count whole seconds
done

measure() { # WHAT PID…: processor use of the processes over the next $seconds seconds
    local what=$1 before=() after=() pid i total=0
    shift
    for pid in "$@"; do before+=("$(cpu_ticks "$pid")"); done
    sleep "$seconds"
    i=0
    for pid in "$@"; do total=$((total + $(cpu_ticks "$pid") - before[i])); i=$((i + 1)); done
    awk -v t="$total" -v hz="$ticks" -v s="$seconds" -v what="$what" 'BEGIN {
        printf "%s over %d s: %.2f s of CPU time (%.2f %% of one core)\n", what, s, t / hz, 100 * t / hz / s }'
}

navro_call StartRecording screen
wait_until 5 "the recording" navro_field_is activityKind recording || exit 1
ffmpeg_pid=$(pgrep -P "$NAVRO_PID" -x ffmpeg)
measure "Navro while recording the screen" "$NAVRO_PID" &
navro_measure=$!
measure "ffmpeg recording the screen (1920x1080, 30 frames/s)" "$ffmpeg_pid"
# Only that measurement: the desktop's own servers are children of this shell too.
wait "$navro_measure"
navro_call StopRecording
recording_saved() { [ -n "$(ls "$HOME/Videos/Screencasts" 2>/dev/null)" ]; }
wait_until 15 "the recording saved" recording_saved || exit 1
wait_until 10 "the toast to end" navro_field_is activityKind "" || exit 1
sleep 2
measure "Navro idle with a shelf of 200 items" "$NAVRO_PID"
