# shellcheck shell=bash
# What the whole-application measurements share: the virtual desktop of the desktop tests with
# onboarding done, and a process's processor time and resident memory.

# bench_desktop BUILD_DIR: sources the desktop tests' lib.sh and starts its desktop.
bench_desktop() {
    # shellcheck source=../tests/desktop/lib.sh
    source "$(dirname "${BASH_SOURCE[0]}")/../tests/desktop/lib.sh"
    DESKTOP_HELPER="$1/tests/desktop/navro_test_x11"
    desktop_start || exit 1
    xdotool mousemove 100 700
    navro_settings hasCompletedOnboarding=true language=english
}

# bench_require NAME PROGRAM...: stops, naming the bench, when a program it runs is not built.
bench_require() {
    local name=$1 program
    shift
    for program in "$@"; do
        [ -x "$program" ] || { echo "$name: $program is missing; build first" >&2; exit 1; }
    done
}

ticks=$(getconf CLK_TCK)
cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$1/stat"; }
# cpu_ns PID: the processor time of PID's threads in nanoseconds, as the scheduler counts it (clock
# ticks are 10 ms: too coarse for a process that uses a few milliseconds a second). A thread that
# ends between two readings takes its share with it; the processes measured keep theirs.
cpu_ns() { cat /proc/"$1"/task/*/schedstat 2>/dev/null | awk '{ n += $1 } END { printf "%d\n", n }'; }
rss_kib() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status"; }

# measure_cpu WHAT SECONDS PID: the processor use of PID over the next SECONDS seconds, as a line.
measure_cpu() {
    local before after
    before=$(cpu_ns "$3")
    sleep "$2"
    after=$(cpu_ns "$3")
    awk -v t=$((after - before)) -v s="$2" -v what="$1" 'BEGIN {
        printf "%s over %d s: %.3f s of CPU time (%.3f %% of one core)\n", what, s, t / 1e9, 100 * t / 1e9 / s }'
}
