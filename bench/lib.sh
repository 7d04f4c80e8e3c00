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

ticks=$(getconf CLK_TCK)
cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$1/stat"; }
rss_kib() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status"; }
