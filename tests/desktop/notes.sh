#!/usr/bin/env bash
# The Notes tab on a real desktop: a to-do typed into it lands in notes.json in the file's format;
# a reminder reaches the notification daemon (dunst) at the start of its deadline's minute, once,
# and one deleted before then never does. Navro runs on a clock that starts half a minute before
# noon (libfaketime), so that the minute comes soon.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" notes
desktop_start_notifications || finish

export TZ=UTC
fake_start="2026-03-01 11:59:30"
libfaketime=/usr/lib/x86_64-linux-gnu/faketime/libfaketimeMT.so.1
[ -f "$libfaketime" ] || { desktop_say "missing $libfaketime: run scripts/install-deps.sh"; exit 1; }
# Noon of that day in the file's count: seconds since 2001-01-01 00:00:00 UTC.
noon=$(($(date -u -d '2026-03-01 12:00:00' +%s) - 978307200))
notes="$XDG_DATA_HOME/Navro/notes.json"
mkdir -p "$(dirname "$notes")"
cat >"$notes" <<JSON
{"todos":[{"id":"6F1C2B7E-5A43-4C7B-9E0D-2B1A9C3D4E5F","text":"Pay rent","done":false,"created":$((noon - 3600)),"priority":0,"due":$((noon + 30))},{"id":"0E9B6A52-1C7D-4F3A-8B2E-5D4C3B2A1F0E","text":"Cancel me","done":false,"created":$((noon - 3600)),"priority":0,"due":$((noon + 10))}],"note":""}
JSON
navro_settings hasCompletedOnboarding=true openMode=click

desktop_spawn monitor dbus-monitor --session \
    "type='method_call',interface='org.freedesktop.Notifications',member='Notify'"
notify_log="$DESKTOP_DIR/logs/monitor.log"
wait_until 5 "the bus monitor" grep -q . "$notify_log" || finish

started=$(desktop_now_ms)
desktop_spawn navro env LD_PRELOAD="$libfaketime" FAKETIME="@$fake_start" "$NAVRO"
NAVRO_PID=$DESKTOP_LAST_PID
wait_until 20 "Navro on the session bus" navro_field_is panelVisible true || finish

navro_has_focus() {
    local focused
    focused=$(xdotool getwindowfocus 2>/dev/null) || return 1
    xdotool search --pid "$NAVRO_PID" 2>/dev/null | grep -qx "$focused"
}

navro_call Open true
check "the notch opens" wait_until 5 "status open" navro_field_is status open
drawn 5 "$SHOTS/open.png" $SCREEN_MIDDLE 250 000000
# The Notes tab is the fifth of the nine in the tab bar: the bar spans the open notch (688) less
# its margins (2 x 22) and the settings button with its gap (42).
tab_width=$(((688 - 44 - 42) / 9))
xdotool mousemove $((SCREEN_MIDDLE - 344 + 22 + 4 * tab_width + tab_width / 2)) 30 click 1
check "the Notes tab is selected" wait_until 5 "the notes tab" navro_field_is selectedTab notes
wait_until 5 "keyboard focus in the notch" navro_has_focus

# What is typed stays in the field while another tab is looked at.
xdotool type --delay 30 "Typed in"
navro_call OpenTab timer
wait_until 5 "the timer tab" navro_field_is selectedTab timer
navro_call OpenTab notes
wait_until 5 "the notes tab again" navro_field_is selectedTab notes
xdotool type --delay 30 " the tab"
xdotool key Return
check "a to-do typed into the tab is written at once" \
    wait_until 5 "notes.json to hold it" grep -q '"text":"Typed in the tab"' "$notes"
uuid='[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}'
check "it is written in the file's format" grep -Eq \
    "^\{\"todos\":\[\{\"id\":\"$uuid\",\"text\":\"Typed in the tab\",\"done\":false,\"created\":[0-9.]+,\"priority\":0\}," \
    "$notes"
created=$(sed -E 's/.*"text":"Typed in the tab","done":false,"created":([0-9.]+).*/\1/' "$notes")
check "its creation time counts from 2001 on Navro's clock ($created)" \
    awk -v c="$created" -v noon="$noon" 'BEGIN { exit !(c > noon - 30 && c < noon) }'
check "the loaded to-dos are kept beside it" grep -q '"text":"Pay rent"' "$notes"

# Deadlines first, the earlier one on top: Down reaches "Cancel me", Delete deletes it.
xdotool key Down Delete
check "a to-do deleted from the list is gone from notes.json" \
    wait_until 5 "Cancel me to go" eval '! grep -q "Cancel me" "$notes"'
check "the deletion came before the reminder's minute" \
    [ $(($(desktop_now_ms) - started)) -lt 28000 ]
settled_screenshot "$SHOTS/notes-tab.png"

# Opened again (here by a click on the closed notch, which gives it the keyboard), the cursor is
# in the add field, wherever it was before.
xdotool key Tab
navro_call Close
wait_until 5 "status closed" navro_field_is status closed
# Closing hands the keyboard back; the click comes after that, so that the window's losing focus
# cannot close what the click opens.
wait_until 5 "keyboard focus back elsewhere" eval '! navro_has_focus'
xdotool mousemove $SCREEN_MIDDLE 10 click 1
wait_until 5 "status open" navro_field_is status open
wait_until 5 "keyboard focus in the notch" navro_has_focus
xdotool type --delay 30 "Second one"
xdotool key Return
check "opening the notch on the tab puts the cursor in the add field" \
    wait_until 5 "the second to-do" grep -q '"text":"Second one"' "$notes"

pay_rent_notices() { grep -c 'string "Pay rent"' "$notify_log"; }
check "the reminder reaches the notification daemon" \
    wait_until 45 "the reminder" grep -q 'string "Pay rent"' "$notify_log"
elapsed=$(($(desktop_now_ms) - started))
check "at the start of its deadline's minute, 30 s on Navro's clock (after ${elapsed} ms)" \
    [ "$elapsed" -ge 29000 -a "$elapsed" -le 34000 ]
check "with its title" grep -q 'string "To-do due now"' "$notify_log"
check "and its button" grep -q 'string "Mark as done"' "$notify_log"
check "exactly once" stays 3 eval '[ "$(pay_rent_notices)" = 1 ]'
check "none for the deleted to-do" eval '! grep -q "Cancel me" "$notify_log"'
check "the daemon shows exactly one notification" [ "$(dunstctl count displayed)" = 1 ]
check "Navro found the daemon" eval '! grep -q "no desktop notifications" "$DESKTOP_DIR/logs/navro.log"'

finish
