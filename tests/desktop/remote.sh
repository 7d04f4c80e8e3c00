#!/usr/bin/env bash
# The control object refuses what it does not know, with a D-Bus error that names what it does,
# and an argument of any size from another process leaves the log readable.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" remote
navro_settings hasCompletedOnboarding=true
navro_start "$NAVRO" || finish

# open_settings PAGE: the call's error output in $DESKTOP_DIR/logs/call.err, its status returned.
open_settings() {
    gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method io.navro.Navro.OpenSettings "$1" >/dev/null 2>"$DESKTOP_DIR/logs/call.err"
}

open_settings "'nowhere'"
status=$?
check "an unknown settings page is an error (status $status)" [ "$status" != 0 ]
check "... InvalidArgs" grep -q 'org.freedesktop.DBus.Error.InvalidArgs' "$DESKTOP_DIR/logs/call.err"
check "... that names the pages" grep -q 'general, prayer, calendars, about' "$DESKTOP_DIR/logs/call.err"
check "... and opens nothing" stays 1 eval '! navro_panel_shown Settings'

open_settings "'prayer'"
status=$?
check "a known page is no error (status $status)" [ "$status" = 0 ]
check "... and opens the settings window" wait_until 10 "the settings window" navro_panel_shown Settings

# 120 kB from another process, control characters included (one argument of a command line holds
# at most 128 kB).
half=$(head -c 60000 /dev/zero | tr '\0' x)
open_settings "'$half\\n\\t$half'"
status=$?
check "a 120 kB page name is refused (status $status)" eval \
    '[ "$status" = 1 ] && grep -q "InvalidArgs" "$DESKTOP_DIR/logs/call.err"'
check "... with a message of bounded length" [ "$(wc -c <"$DESKTOP_DIR/logs/call.err")" -lt 4096 ]
check "Navro still answers" navro_field_is panelVisible true
check "no line of Navro's log is over 4 kB (longest $(longest_line "$NAVRO_LOG"))" \
    [ "$(longest_line "$NAVRO_LOG")" -le 4096 ]

desktop_stop "$NAVRO_PID"
check "SIGTERM exits 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
finish
