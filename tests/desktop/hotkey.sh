#!/usr/bin/env bash
# Control+Alt+L toggles the notch; with the key already held by another program Navro runs on
# without it and says nothing about it.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" hotkey
navro_settings hasCompletedOnboarding=true

# First with a rival holding the key.
desktop_spawn rival "$DESKTOP_HELPER" grab-key
rival=$DESKTOP_LAST_PID
rival_log="$DESKTOP_DIR/logs/rival.log"
wait_until 10 "the rival's grab" grep -q grabbed "$rival_log" || exit 1
navro_start "$NAVRO" navro-beside-rival || finish
check "Navro runs although the key is taken" navro_field_is panelVisible true
xdotool key ctrl+alt+l
check "the key goes to the program that holds it" \
    wait_until 5 "the rival to see the press" grep -q pressed "$rival_log"
check "Navro stays closed" navro_field_is status closed
check "nothing is said about the missing key" \
    bash -c "! grep -iE 'hot ?key|grab|BadAccess|XCB error' '$NAVRO_LOG'"
desktop_stop "$NAVRO_PID"
desktop_stop "$rival"
wait_until 5 "the server to release the rival's grab" "$DESKTOP_HELPER" key-free || finish

# Then with the key free.
navro_start "$NAVRO" || finish
xdotool key ctrl+alt+l
check "Control+Alt+L opens the notch" wait_until 5 "status open" navro_field_is status open
xdotool key ctrl+alt+l
check "Control+Alt+L again closes it" wait_until 5 "status closed" navro_field_is status closed
xdotool key ctrl+l
check "Control+L alone does nothing" stays 0.5 navro_field_is status closed
desktop_spawn late-rival "$DESKTOP_HELPER" grab-key
late_rival=$DESKTOP_LAST_PID
check "the key stays Navro's while it runs" \
    desktop_wait_exit "$late_rival" 10
check "a second grab of it is refused" grep -q failed "$DESKTOP_DIR/logs/late-rival.log"
desktop_stop "$NAVRO_PID"

# With the notch switched off there is nothing for the key to open.
navro_settings hasCompletedOnboarding=true notchEnabled=false
navro_start "$NAVRO" navro-disabled notchEnabled false || finish
check "the notch window is not shown while disabled" navro_field_is panelVisible false
xdotool key ctrl+alt+l
check "Control+Alt+L does nothing while the notch is off" stays 0.5 navro_field_is status closed
screenshot "$SHOTS/disabled.png"
check "no notch is drawn while disabled" pixel_is "$SHOTS/disabled.png" $SCREEN_MIDDLE 10 $BACKGROUND

finish
