#!/usr/bin/env bash
# leak_soak.sh NAVRO BUILD_DIR [SCALE]: the sanitizer build's Navro through a short compressed
# day (bench/soak.sh at SCALE, 0.1 by default: some 400 stimuli of every kind and 5 reminders),
# then asked to quit with SIGTERM so that LeakSanitizer reports what it still holds at exit.
# Fails when the day does not go through (a stimulus unanswered, a property wrong, an unclean
# exit: a sanitizer's error ends the process) or when a report of Navro or of its helper
# programs names a leak that tests/sanitizer-suppressions.txt does not excuse.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
navro=$1
build=$2
scale=${3:-0.1}

work=$(mktemp -d "${TMPDIR:-/tmp}/navro-leak.XXXXXX")
trap 'rm -rf "$work"' EXIT
reports="$work/reports"
mkdir -p "$reports"
# Navro and the helpers it starts report to files of their own, one per process. Allocation
# stacks are unwound in full: Qt's libraries keep no frame pointers, and the suppressions name
# functions deep inside them.
asan="detect_leaks=1:log_path=$reports/report:fast_unwind_on_malloc=0:malloc_context_size=30"
lsan="suppressions=$root/tests/sanitizer-suppressions.txt:print_suppressions=1"
cat >"$work/navro" <<WRAPPER
#!/bin/sh
ASAN_OPTIONS="$asan" LSAN_OPTIONS="$lsan" exec "$navro" "\$@"
WRAPPER
chmod +x "$work/navro"
# The test's own helper programs are of this build too; what they leave at their exit is no
# concern here.
export ASAN_OPTIONS=detect_leaks=0

started=$(date +%s)
# The figures mean nothing under the sanitizer: no rest before reading them.
SOAK_NAVRO="$work/navro" SOAK_REST=0 "$root/bench/soak.sh" "$build" "$scale"
day=$?
echo "leak_soak: the day took $(($(date +%s) - started)) s"

leaks=0
for report in "$reports"/report.*; do
    [ -f "$report" ] || continue
    echo "--- $(basename "$report")"
    cat "$report"
    grep -q "ERROR: LeakSanitizer" "$report" && leaks=$((leaks + 1))
done
if [ "$leaks" -ne 0 ]; then
    echo "FAIL - LeakSanitizer reported leaks in $leaks process(es)"
    exit 1
fi
if [ "$day" -ne 0 ]; then
    echo "FAIL - the short day did not go through (see above)"
    exit 1
fi
echo "ok   - no leak reported"
