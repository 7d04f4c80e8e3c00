#!/usr/bin/env bash
# openMode=click: resting on the notch does not open it, a click does.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" click_mode

navro_settings hasCompletedOnboarding=true hoverDelay=0.2 openMode=click
navro_start "$NAVRO" || finish

xdotool mousemove $SCREEN_MIDDLE 8
check "hover does not open in click mode" stays 1.5 navro_field_is status closed
xdotool click 1
check "a click on the notch opens it" wait_until 5 "status open" navro_field_is status open
check "the open notch is drawn" drawn 5 "$SHOTS/open.png" $SCREEN_MIDDLE 250 000000

finish
