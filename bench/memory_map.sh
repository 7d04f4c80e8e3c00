#!/usr/bin/env bash
# bench/memory_map.sh [BUILD_DIR]: where Navro's resident memory goes, with the home and the
# desktop's services of bench/realistic_home.sh (a paused player with covers).
#   1. Navro as it runs, 10 s after start, after every tab was opened once, and at rest two minutes
#      later, when the closed notch has let its open views go: its resident memory from
#      /proc/PID/smaps in groups (the heap, other anonymous memory, Qt's libraries by
#      module, ICU, fonts, the rest of the libraries, Navro's own program), beside the bare Qt
#      Quick window of bench/BareNotchWindow.cpp, the floor.
#   2. Navro under heaptrack, through the same steps and stopped by SIGKILL, so that "leaked"
#      means "held at that moment": the heap it held, by who allocated it (the first of Navro's
#      services or stores on the allocation's stack, else the library doing the work). Stopped
#      after every tab was opened, or with HEAP_AT=rest at rest.
# heaptrack inflates the process, so the two runs are separate; the heap's split comes from the
# second, the sizes from the first.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
navro="$build/src/navro"
bare="$build/bench/bare_notch_window"
command -v heaptrack >/dev/null || { echo "memory_map: heaptrack is missing (make deps)" >&2; exit 1; }
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
# shellcheck source=realistic_home.sh
source "$root/bench/realistic_home.sh"
bench_require memory_map "$navro" "$bare" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
realistic_services paused || { echo "memory_map: the desktop's services did not come up" >&2; exit 1; }

table() {
    printf '  %-52s %9s %9s %9s %9s\n' "" "floor" "at 10 s" "all tabs" "at rest"
    join -t$'\t' -a1 -a2 -e0 -o 0,1.2,2.2 <(sort "$1") <(sort "$2") |
        join -t$'\t' -a1 -a2 -e0 -o 0,1.2,1.3,2.2 - <(sort "$3") |
        join -t$'\t' -a1 -a2 -e0 -o 0,1.2,1.3,1.4,2.2 - <(sort "$4") |
        sort -t$'\t' -k4 -nr |
        awk -F'\t' '{ printf "  %-52s %8.1fM %8.1fM %8.1fM %8.1fM\n", $1, $2 / 1024, $3 / 1024, $4 / 1024, $5 / 1024
                      f += $2; a += $3; b += $4; r += $5 }
                    END { printf "  %-52s %8.1fM %8.1fM %8.1fM %8.1fM\n", "total", f / 1024, a / 1024, b / 1024, r / 1024 }'
}

work="$DESKTOP_DIR/memory"
mkdir -p "$work"
desktop_spawn bare "$bare"
bare_pid=$DESKTOP_LAST_PID
navro_start "$navro" || exit 1
sleep 10
smaps_groups "$bare_pid" >"$work/floor"
smaps_groups "$NAVRO_PID" >"$work/start"
kill "$bare_pid"
rss_checked=$(rss_kib "$NAVRO_PID")
# The home's checks open the music, notes and shelf tabs and copy once.
realistic_check "$DESKTOP_DIR/shots" >/dev/null || exit 1
rss_checked=$(($(rss_kib "$NAVRO_PID") - rss_checked))
open_every_tab "$work/each-tab" || exit 1
smaps_groups "$NAVRO_PID" >"$work/tabs"
cp "/proc/$NAVRO_PID/smaps" "$work/smaps-tabs"
sleep "$at_rest_seconds"
smaps_groups "$NAVRO_PID" >"$work/rest"
echo "resident memory by group (smaps Rss):"
table "$work/floor" "$work/start" "$work/tabs" "$work/rest"
echo
echo "resident memory growth as the tabs open (the first opening loads the open notch's views):"
echo "  the home's checks (the music, notes and shelf tabs, one copy)  $((rss_checked / 1024)).$((rss_checked % 1024 * 10 / 1024))M"
awk '{ printf "  then %-12s %+6.1fM\n", $1, $2 / 1024 }' "$work/each-tab"
kill "$NAVRO_PID"
desktop_wait_exit "$NAVRO_PID" 20

# --- The heap by who holds it ------------------------------------------------------------------
cat >"$work/navro-heaptrack" <<WRAPPER
#!/bin/sh
exec heaptrack -o "$work/heaptrack" "$navro" "\$@"
WRAPPER
chmod +x "$work/navro-heaptrack"
# Under heaptrack the start takes many times longer.
desktop_spawn navro-heaptrack "$work/navro-heaptrack"
heaptrack_pid=$DESKTOP_LAST_PID
NAVRO_LOG="$DESKTOP_DIR/logs/navro-heaptrack.log"
wait_until 120 "Navro under heaptrack on the bus" navro_field_is panelVisible true || exit 1
sleep 10
open_every_tab || exit 1
heap_when="after every tab was opened"
if [ "${HEAP_AT:-tabs}" = rest ]; then
    sleep "$at_rest_seconds"
    heap_when="at rest"
fi
# SIGKILL: what is not freed is what Navro held at this moment.
pkill -KILL -x navro
desktop_wait_exit "$heaptrack_pid" 120 || { echo "memory_map: heaptrack did not finish" >&2; exit 1; }
data=$(ls "$work"/heaptrack* | grep -E '\.(zst|gz)$' | head -n1)
heaptrack_print -f "$data" --print-peaks 0 --print-allocators 0 --print-temporary 0 \
    --print-leaks 0 --flamegraph-cost-type leaked -F "$work/held.stacks" >/dev/null 2>&1
[ -s "$work/held.stacks" ] || { echo "memory_map: heaptrack gave no stacks" >&2; exit 1; }
echo
echo "heap held $heap_when, by who allocated it (heaptrack):"
/usr/bin/python3 "$root/bench/heap_owners.py" "$work/held.stacks"
