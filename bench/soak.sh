#!/usr/bin/env bash
# bench/soak.sh [BUILD_DIR] [SCALE]: a compressed day of use. Navro runs on the virtual desktop of
# the desktop tests with the home of bench/realistic_home.sh, every service fed by a real
# counterpart: a sound server and mpv with its MPRIS plugin playing albums of short tones with
# their covers, a notification daemon, the tests' screen saver, and on a private system bus
# python3-dbusmock's UPower (a battery and a charger) and BlueZ (a paired headset) and the tests'
# UDisks2 (a stick), and an application window the user works in, which has the keyboard while
# the notch is closed. bench/soak_driver.py then sends, interleaved, 2,000 distinct clipboard
# copies, 1,000 open/close cycles over every tab, 200 timers started and stopped, 500 track
# changes and 100 battery, charger and Bluetooth changes, each waited for on Navro's control
# interface, while 50 to-dos of notes.json come due (a few in each minute: reminders fire at the
# start of their minute). SCALE (1 by default; 0.1 for a short run) multiplies every count.
#
# A warm-up of a tenth of every count (at least every variant of each stimulus once) and the
# first reminder come first. Navro's resident memory (VmRSS), open file descriptors and threads
# are read after it and at the end, each after a rest, and printed with the growth and what the
# new descriptors and threads are; the target is at most 2 MiB more, no new descriptor, no new
# thread. Every property of the control interface must still read back sane values. Then Navro
# is asked to quit (SIGTERM) and its exit status printed. The exit status is 1 when the home was
# not taken in, a stimulus went unanswered, a reminder did not come, a property read back wrong
# or Navro did not exit cleanly; figures over their target are reported, not failed. SOAK_NAVRO
# runs another program in Navro's place (a wrapper that sets its environment), SOAK_REST sets the
# rest before each reading (at_rest_seconds of bench/lib.sh), and the run's folder stays when
# DESKTOP_KEEP is set.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
scale=${2:-1}
navro=${SOAK_NAVRO:-$build/src/navro}
owner="$build/tests/desktop/navro_test_clipboard_owner"
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
# shellcheck source=realistic_home.sh
source "$root/bench/realistic_home.sh"
bench_require soak "$navro" "$owner" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
soak_started=$(desktop_now_ms)

fail() {
    echo "soak: $*" >&2
    [ -n "${NAVRO_LOG:-}" ] && tail -n 20 "$NAVRO_LOG" >&2
    # The first process of the desktop is its X server.
    desktop_is_running "${desktop_pids[0]}" ||
        { echo "soak: the X server is gone:" >&2; tail -n 20 "$DESKTOP_DIR/logs/xvfb.log" >&2; }
    exit 1
}

scaled() { awk -v n="$1" -v s="$scale" 'BEGIN { v = int(n * s + 0.5); print (v < 1 ? 1 : v) }'; }
# warm_up COUNT LEAST: a tenth of COUNT, and at least LEAST, the stimuli it takes for every variant
# of a kind to come once (every size of picture among the copies, every tab and the hot key, a
# timer that runs out, a pause of the player, every kind of device change), so that whatever Navro
# sets up on first use is there before the first figures.
warm_up() {
    awk -v n="$1" -v least="$2" 'BEGIN { v = int(n / 10 + 0.5); print (v < least ? least : v) }'
}
copies=$(scaled 2000)
tabs=$(scaled 1000)
timers=$(scaled 200)
tracks=$(scaled 500)
devices=$(scaled 100)
reminders=$(scaled 50)

# --- The home and the desktop's services ------------------------------------------------------
realistic_services playing 10 || fail "the home or a service of the desktop did not come up"
desktop_spawn notifications-monitor dbus-monitor --session \
    "type='method_call',interface='org.freedesktop.Notifications',member='Notify'"
notifications_log="$DESKTOP_DIR/logs/notifications-monitor.log"
export SOAK_BATTERY=$REALISTIC_BATTERY SOAK_CHARGER=$REALISTIC_CHARGER
export SOAK_HEADSET=$REALISTIC_HEADSET
export SOAK_PLAYER=$REALISTIC_PLAYER SOAK_OWNER=$owner
SOAK_IMAGES=""
for size in 1280x720 800x600 1920x1080 640x480; do
    picture="$DESKTOP_DIR/copied-$size.png"
    /usr/bin/python3 "$root/bench/realistic_home.py" picture "$picture" "${size%x*}" "${size#*x}"
    SOAK_IMAGES+="${SOAK_IMAGES:+:}$picture"
done
export SOAK_IMAGES

# The application the user works in, with the keyboard whenever the notch is closed.
desktop_spawn application "$DESKTOP_HELPER" window editor Editor
{
    wait_until 10 "the application's window" grep -q mapped "$DESKTOP_DIR/logs/application.log" &&
        wait_until 10 "the application focused" eval \
            '[ "$(xdotool getwindowfocus)" = "$(xdotool search --classname editor | head -n1)" ]'
} || fail "no application window"
export SOAK_APPLICATION
SOAK_APPLICATION=$(xdotool getwindowfocus)

# --- Navro ------------------------------------------------------------------------------------
# A reminder fires at the start of its minute. The first comes during the warm-up, the others
# 12 s apart from the minute after it: a few at the start of each minute of the day. Written just
# before Navro starts: a to-do already due when it starts has no reminder left to show.
warm_reminder=$((($(date +%s) + 60 + 59) / 60 * 60 + 1))
dues=("$warm_reminder")
for ((i = 1; i < reminders; i++)); do
    dues+=($((warm_reminder + 60 + (i - 1) * 12)))
done
/usr/bin/python3 "$root/bench/realistic_home.py" add-reminders "$HOME" "${dues[@]}" ||
    fail "could not add the reminders"
last_reminder=$((dues[-1] / 60 * 60))
navro_start "$navro" || fail "Navro did not start"
[ "$(date +%s)" -lt $((warm_reminder - 1)) ] || fail "Navro was not up before the first reminder"
echo "soak: Navro (pid $NAVRO_PID) with the realistic home:"
realistic_check "$DESKTOP_DIR/shots" || fail "Navro did not take in the whole home"
wait_until 10 "the devices on the bus" devices_has \
    "len(d['batteries']) == 1 and len(d['bluetooth']) == 1 and len(d['drives']) == 1" ||
    fail "the stand-in devices did not reach Navro"

# process_figures PID: its resident memory in KiB, open descriptors and threads.
process_figures() {
    local pid=$1
    echo "$(rss_kib "$pid") $(find "/proc/$pid/fd" -mindepth 1 -maxdepth 1 | wc -l)" \
        "$(find "/proc/$pid/task" -mindepth 1 -maxdepth 1 | wc -l)"
}
# process_inventory PID: what its descriptors are (sockets, pipes, files by path) and what its
# threads are called, one "count what" line each, to tell what is new.
process_inventory() {
    {
        find "/proc/$1/fd" -mindepth 1 -maxdepth 1 -printf 'descriptor %l\n' |
            sed -E 's/\[[0-9]+\]$//'
        cat "/proc/$1/task/"*/comm | sed 's/^/thread /'
    } | sort | uniq -c
}
helper_of() { ps --ppid "$1" -o pid=,comm= | awk '$2 ~ /^navro-nowplay/ { print $1 }'; }
# Figures are read at rest: after the closed notch has let its open views go (two minutes), which
# puts both readings in the same state, and longer than Qt keeps an idle pool thread (30 s), so
# that the workers of the last few seconds' work are not counted as growth.
settle() { sleep "${SOAK_REST:-$at_rest_seconds}"; }

driver() { /usr/bin/python3 "$root/bench/soak_driver.py" "$@"; }
reminders_shown() {
    grep -o 'string "Reminder [0-9]*"' "$notifications_log" | sort -u | wc -l
}
until_minute() {
    local left=$(($1 - $(date +%s)))
    echo $((left > 0 ? left + 30 : 30))
}
driver run warm-up "$(warm_up "$copies" 80)" "$(warm_up "$tabs" 13)" "$(warm_up "$timers" 10)" \
    "$(warm_up "$tracks" 26)" "$(warm_up "$devices" 5)" || fail "the warm-up did not go through"
wait_until "$(until_minute "$warm_reminder")" "the first reminder" \
    grep -q 'string "Reminder 1"' "$notifications_log" || fail "the first reminder did not come"
settle
read -r rss_warm fds_warm threads_warm < <(process_figures "$NAVRO_PID")
process_inventory "$NAVRO_PID" >"$DESKTOP_DIR/inventory-warm-up"
smaps_groups "$NAVRO_PID" | sort >"$DESKTOP_DIR/memory-warm-up"
helper=$(helper_of "$NAVRO_PID")
helper_warm=$(rss_kib "$helper" 2>/dev/null)

driver run day "$copies" "$tabs" "$timers" "$tracks" "$devices" || fail "the day did not go through"
wait_until "$(until_minute "$last_reminder")" "every reminder" \
    eval '[ "$(reminders_shown)" -ge "$reminders" ]'
shown=$(reminders_shown)
echo "reminders shown: $shown of $reminders"
settle
read -r rss_end fds_end threads_end < <(process_figures "$NAVRO_PID")
process_inventory "$NAVRO_PID" >"$DESKTOP_DIR/inventory-end"
smaps_groups "$NAVRO_PID" | sort >"$DESKTOP_DIR/memory-end"
helper_end=$(rss_kib "$helper" 2>/dev/null)

driver check
answering=$?

echo
echo "soak at scale $scale ($(($(desktop_now_ms) - soak_started)) ms in all):"
printf '%-16s %12s %6s %8s\n' "" "VmRSS (KiB)" "fds" "threads"
printf '%-16s %12d %6d %8d\n' "after warm-up" "$rss_warm" "$fds_warm" "$threads_warm"
printf '%-16s %12d %6d %8d\n' "at the end" "$rss_end" "$fds_end" "$threads_end"
printf '%-16s %+12d %+6d %+8d   (target: at most +2048, +0, +0)\n' "growth" \
    $((rss_end - rss_warm)) $((fds_end - fds_warm)) $((threads_end - threads_warm))
echo "growth by group (smaps, KiB):"
join -t$'\t' -a1 -a2 -e0 -o 0,1.2,2.2 "$DESKTOP_DIR/memory-warm-up" "$DESKTOP_DIR/memory-end" |
    awk -F'\t' '$3 != $2 { printf "  %-52s %+8d\n", $1, $3 - $2 }'
[ -n "$helper_warm" ] && [ -n "$helper_end" ] &&
    echo "navro-nowplaying VmRSS: $helper_warm KiB after warm-up, $helper_end KiB at the end"
if ! cmp -s "$DESKTOP_DIR/inventory-warm-up" "$DESKTOP_DIR/inventory-end"; then
    echo "descriptors and threads (count, what) after warm-up < and at the end >:"
    diff "$DESKTOP_DIR/inventory-warm-up" "$DESKTOP_DIR/inventory-end" | grep '^[<>]'
fi
if [ $((rss_end - rss_warm)) -le 2048 ] && [ "$fds_end" -le "$fds_warm" ] &&
    [ "$threads_end" -le "$threads_warm" ]; then
    echo "within target"
else
    echo "OVER TARGET"
fi

# Quitting as a session's end asks it to; a sanitizer's report at exit takes its time.
stopped=$(desktop_now_ms)
kill -TERM "$NAVRO_PID"
desktop_wait_exit "$NAVRO_PID" 120 || fail "Navro did not exit within 120 s of SIGTERM"
echo "Navro exited with status $DESKTOP_EXIT_STATUS," \
    "$(($(desktop_now_ms) - stopped)) ms after SIGTERM"
[ "$answering" -eq 0 ] && [ "$shown" -ge "$reminders" ] && [ "$DESKTOP_EXIT_STATUS" -eq 0 ]
