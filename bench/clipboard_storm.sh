#!/usr/bin/env bash
# bench/clipboard_storm.sh [BUILD_DIR] [COPIES]: the whole application recording a storm of text
# copies on the virtual desktop of the desktop tests: its processor time per recorded change and
# its resident memory before and after. Each copy is made once Navro has read the one before.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
copies=${2:-2000}
navro="$build/src/navro"
owner="$build/tests/desktop/navro_test_clipboard_owner"
for program in "$navro" "$owner" "$build/tests/desktop/navro_test_x11"; do
    [ -x "$program" ] || { echo "clipboard_storm: $program is missing; build first" >&2; exit 1; }
done

# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_desktop "$build"
# shellcheck source=../tests/desktop/clipboard_lib.sh
source "$root/tests/desktop/clipboard_lib.sh"

navro_start "$navro" || { echo "clipboard_storm: Navro did not start" >&2; exit 1; }
# Settled: the first frame drawn, the views loaded.
navro_call OpenTab clipboard
wait_until 5 "the notch open" navro_field_is status open
navro_call Close
sleep 3
rss_before=$(rss_kib "$NAVRO_PID")
cpu_before=$(cpu_ticks "$NAVRO_PID")
started=$(desktop_now_ms)
"$owner" storm "$copies" storm 2000 >"$DESKTOP_DIR/storm.out"
wait_until 30 "the last copy recorded" history_top text "storm $((copies - 1))" ||
    echo "clipboard_storm: the last copy was not recorded" >&2
elapsed=$(($(desktop_now_ms) - started))
cpu_after=$(cpu_ticks "$NAVRO_PID")
sleep 3
rss_after=$(rss_kib "$NAVRO_PID")

echo "copies read by Navro: $(cat "$DESKTOP_DIR/storm.out") in ${elapsed} ms"
awk -v t=$((cpu_after - cpu_before)) -v hz="$ticks" -v n="$copies" 'BEGIN {
    printf "processor time: %.2f s for %d copies, %.2f ms per recorded change\n", t / hz, n, 1000 * t / hz / n }'
echo "resident memory: $((rss_before / 1024)) MiB before, $((rss_after / 1024)) MiB after" \
    "($((rss_after - rss_before)) KiB more)"
kill "$NAVRO_PID"
