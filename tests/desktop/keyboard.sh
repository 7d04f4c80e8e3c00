#!/usr/bin/env bash
# The open notch and the keyboard. However it was opened with focus (the hot key, the bus, the
# tray panel's "Open notch"), Escape closes it and so does a click elsewhere. Inside it the arrow
# keys move between tabs in the direction they point (mirrored in Arabic), Tab moves through the
# controls with a visible focus ring, and Space presses the focused one.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" keyboard
# The band of the open notch that holds the tab bar (as in arabic.sh), and the first action of
# the tray panel, measured from the panel's top edge (below its header and first separator).
BAND_X=$((SCREEN_MIDDLE - 330))
BAND_W=660
OPEN_NOTCH_ROW_Y=${OPEN_NOTCH_ROW_Y:-91}

tab_is() { navro_field_is selectedTab "$1"; }
is_open() { navro_field_is status open; }
is_closed() { navro_field_is status closed; }
park_pointer() { xdotool mousemove 100 700; }

# ring_pixels FILE: how many pixels of the tab bar have the blue of the notch's focus ring.
ring_pixels() {
    "$DESKTOP_CONVERT" "$1" -crop "${BAND_W}x56+${BAND_X}+0" +repage -depth 8 txt:- | awk '
        /^#/ { next }
        { gsub(/[()]/, "", $2); split($2, c, ",")
          if (c[3] > 200 && c[1] < 80 && c[2] > 90 && c[2] < 170) n++ }
        END { print n + 0 }'
}

# open_from_tray: the tray panel's "Open notch", clicked as a user would.
open_from_tray() {
    local centre id x y w h
    centre=$(tray_icon_centre) || return 1
    # shellcheck disable=SC2086
    xdotool mousemove $centre click 1
    wait_until 5 "the tray panel" navro_window '^Navro$' || return 1
    id=$(navro_window '^Navro$') || return 1
    read -r x y w h < <(window_rect "$id")
    xdotool mousemove $((x + w / 2)) $((y + OPEN_NOTCH_ROW_Y)) click 1
    park_pointer
    wait_until 5 "the notch to open" is_open
}

navro_settings hasCompletedOnboarding=true language=english
navro_start "$NAVRO" || finish
park_pointer

# The hot key hands the notch the keyboard.
xdotool key ctrl+alt+l
check "Control+Alt+L opens the notch on its first tab" \
    wait_until 5 "the notch to open" eval 'is_open && tab_is home'
check "the focused tab shows a focus ring" \
    drawn 5 "$SHOTS/hotkey-open.png" $SCREEN_MIDDLE 250 000000
rings=$(ring_pixels "$SHOTS/hotkey-open.png")
check "the ring is drawn in the tab bar ($rings pixels)" [ "$rings" -ge 60 ]
xdotool key Right
check "Right selects the next tab" wait_until 5 "the music tab" tab_is nowPlaying
xdotool key Right Right
check "Right twice more goes on two tabs" wait_until 5 "the timer tab" tab_is timer
xdotool key Left
check "Left goes back one tab" wait_until 5 "the calendar tab" tab_is calendar
xdotool key Tab
check "Tab alone moves the focus, not the selection" stays 0.5 tab_is calendar
xdotool key space
check "Space selects the tab Tab moved to" wait_until 5 "the timer tab" tab_is timer
xdotool key Escape
check "Escape closes it" wait_until 5 "the notch to close" is_closed

# A click elsewhere closes it, and the hot key still hands over the keyboard afterwards.
navro_call Open true
wait_until 5 "the notch to open" is_open
xdotool click 1
check "a click elsewhere closes the notch opened over the bus" \
    wait_until 5 "the notch to close" is_closed
xdotool key ctrl+alt+l
wait_until 5 "the notch to open" is_open
xdotool key Escape
check "Escape closes the notch opened by the hot key after that click" \
    wait_until 5 "the notch to close" is_closed

# Opened by the tray panel's "Open notch": the same two ways close it.
check "the tray panel's Open notch opens the notch" open_from_tray
xdotool key Escape
check "Escape closes the notch opened from the tray panel" \
    wait_until 5 "the notch to close" is_closed
check "the tray panel's Open notch opens it again" open_from_tray
xdotool key Right
check "its tabs answer the arrow keys" wait_until 5 "the next tab" tab_is notes
xdotool click 1
check "a click elsewhere closes the notch opened from the tray panel" \
    wait_until 5 "the notch to close" is_closed

# Opened by a click, no ring shows until the keyboard is used.
xdotool mousemove $SCREEN_MIDDLE 8 click 1
wait_until 5 "the notch to open" is_open
check "opened by a click" drawn 5 "$SHOTS/click-open.png" $SCREEN_MIDDLE 250 000000
rings=$(ring_pixels "$SHOTS/click-open.png")
check "no focus ring after a click ($rings pixels)" [ "$rings" -lt 10 ]
xdotool key Escape
wait_until 5 "the notch to close" is_closed
park_pointer
desktop_stop "$NAVRO_PID"

# In Arabic the tab bar runs from right to left, and so do the arrows.
navro_settings hasCompletedOnboarding=true language=arabic
navro_start "$NAVRO" navro-arabic || finish
xdotool key ctrl+alt+l
wait_until 5 "the notch to open" eval 'is_open && tab_is home'
xdotool key Left
check "in Arabic Left selects the next tab" wait_until 5 "the music tab" tab_is nowPlaying
xdotool key Right Right
check "in Arabic Right goes back, and stops at the first tab" \
    wait_until 5 "the home tab" tab_is home
xdotool key Escape
check "in Arabic Escape closes it" wait_until 5 "the notch to close" is_closed

finish
