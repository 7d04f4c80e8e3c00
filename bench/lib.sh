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
# cpu_snapshot PID: the processor time PID has used so far, to be read with cpu_used: one
# "tid nanoseconds ticks" line per live thread (nanoseconds as the scheduler counts them; clock
# ticks are 10 ms, too coarse for a process that uses a few milliseconds a second), and the
# process's total in ticks, which keeps what ended threads used.
cpu_snapshot() {
    local task
    for task in /proc/"$1"/task/*; do
        echo "${task##*/} $(cut -d' ' -f1 "$task/schedstat" 2>/dev/null)" \
            "$(sed 's/^.*) //' "$task/stat" 2>/dev/null | awk '{ print $12 + $13 }')"
    done | awk 'NF == 3'
    echo "process 0 $(cpu_ticks "$1")"
}
# cpu_used BEFORE AFTER: the nanoseconds used between two snapshots, to the nanosecond for the
# threads alive at the end (those that started in between from zero); the time of threads that
# ended in between is known only in ticks, from the process's total, and counted only then: the
# process's ticks and its threads' are rounded apart, and would otherwise add a tick of noise.
cpu_used() {
    awk -v tick=$((1000000000 / ticks)) '
        NR == FNR { ns[$1] = $2; tk[$1] = $3; next }
        $1 == "process" { process = $3 - tk["process"]; next }
        $1 in ns { exact += $2 - ns[$1]; counted += $3 - tk[$1]; seen[$1] = 1; next }
        { exact += $2; counted += $3 }
        END {
            for (tid in ns) if (tid != "process" && !(tid in seen)) ended = 1
            rest = ended ? (process - counted) * tick : 0
            printf "%d\n", exact + (rest > 0 ? rest : 0)
        }' <(echo "$1") <(echo "$2")
}
# How long the closed notch must rest before it has let its open views go (NotchViewModel's
# openViewRest, two minutes), with a margin for the release itself; readings "at rest" wait this.
at_rest_seconds=125

rss_kib() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status"; }

# smaps_groups PID: resident KiB per group, one "group KiB" line each, largest first.
smaps_groups() {
    awk '
        /^[0-9a-f]+-[0-9a-f]+ / { path = (NF >= 6) ? $6 : "" ; next }
        /^Rss:/ {
            g = "other libraries and files"
            if (path == "[heap]") g = "heap (malloc)"
            else if (path == "" || path ~ /^\[anon|^\/memfd:/) g = "other anonymous (malloc arenas, JS heap, stacks)"
            else if (path ~ /^\[/) g = "stack and kernel pages"
            else if (path ~ /libQt6(Quick|Qml|QmlModels|QuickShapes|QuickControls|QuickTemplates|QuickLayouts|LabsQmlModels)/) g = "Qt Quick and QML libraries and plug-ins"
            else if (path ~ /qml\/|\/libqtquick|\/libqml|QtQuick|QtQml/) g = "Qt Quick and QML libraries and plug-ins"
            else if (path ~ /libQt6Widgets/) g = "Qt Widgets (tray menu)"
            else if (path ~ /libQt6(Gui|Core|DBus|XcbQpa|OpenGL|Network)|\/platforms\/|\/imageformats\//) g = "Qt Core, Gui, D-Bus, X11 platform"
            else if (path ~ /libicu/) g = "ICU (calendars, numbers, bidi)"
            else if (path ~ /\.(ttf|otf|ttc|pcf)(\.gz)?$|fontconfig|libfreetype|libharfbuzz/) g = "fonts and their libraries"
            else if (path ~ /\/navro$|\/navro-nowplaying$/) g = "Navro'"'"'s own program"
            kib[g] += $2
        }
        END { for (g in kib) printf "%s\t%d\n", g, kib[g] }' "/proc/$1/smaps" | sort -t$'\t' -k2 -nr
}

# measure_cpu WHAT SECONDS PID: the processor use of PID over the next SECONDS seconds, as a line.
measure_cpu() {
    local before
    before=$(cpu_snapshot "$3")
    sleep "$2"
    awk -v t="$(cpu_used "$before" "$(cpu_snapshot "$3")")" -v s="$2" -v what="$1" 'BEGIN {
        printf "%s over %d s: %.3f s of CPU time (%.3f %% of one core)\n", what, s, t / 1e9, 100 * t / 1e9 / s }'
}

# open_every_tab [LOG]: opens each tab in turn, then closes the notch; with LOG, writes there
# how much the resident memory grew with each.
open_every_tab() {
    local before
    for tab in home nowPlaying calendar timer notes clipboard capture shelf devices; do
        [ -z "${1:-}" ] || before=$(rss_kib "$NAVRO_PID")
        navro_call OpenTab "$tab" && wait_until 5 "the $tab tab" navro_field_is selectedTab "$tab" ||
            return 1
        sleep 0.5
        [ -z "${1:-}" ] || echo "$tab $(($(rss_kib "$NAVRO_PID") - before))" >>"$1"
    done
    navro_call Close && wait_until 5 "the notch closed" navro_field_is status closed && sleep 2
}
