#!/usr/bin/env bash
# On a screen narrower than the open notch, the notch narrows to fit inside it with its settings
# button, and goes back to its full width when the screen does.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" small_screen
navro_settings hasCompletedOnboarding=true
navro_start "$NAVRO" || finish

# The running X server's own resizing is refused; a mode of its own is not.
xrandr --newmode 640x480_small 25 640 656 752 800 480 490 492 525 &&
    xrandr --addmode screen 640x480_small &&
    xrandr --output screen --mode 640x480_small || finish
check "the screen is 640 wide" \
    wait_until 5 "the new mode" eval 'xdpyinfo | grep -q "dimensions: *640x480"'
xdotool mousemove 300 400
check "the closed notch is drawn at the new top centre" \
    drawn 10 "$SHOTS/small-closed.png" 320 10 000000
navro_call Open true
check "the notch opens" wait_until 5 "status open" navro_field_is status open
check "the open notch is drawn" drawn 5 "$SHOTS/small-open.png" 320 66 000000
# Measured in the gap between the tab bar and the tab's content, where only the notch draws.
width=$(dark_run "$SHOTS/small-open.png" 66 40)
check "it is as wide as the screen allows (measured $width)" [ "$width" -ge 560 -a "$width" -le 624 ]
check "the screen's left edge shows beside it" pixel_is "$SHOTS/small-open.png" 1 150 $BACKGROUND
check "the screen's right edge shows beside it" pixel_is "$SHOTS/small-open.png" 638 150 $BACKGROUND
check "its top corners stay on the screen" pixel_is "$SHOTS/small-open.png" 0 1 $BACKGROUND
# The settings button, a gear near the notch's right end, is drawn whole with the notch's black
# to its right: in the columns from 560 up to the notch's right end (624), what is lit ends well
# before that end.
gear=$(column_profile "$SHOTS/small-open.png" 560 14 64 36)
lit_to=$(echo "$gear" | sed 's/0*$//' | tr -d '\n' | wc -c)
check "the settings button is on the screen (columns $gear)" [ "$lit_to" -gt 0 -a "$lit_to" -lt 56 ]
navro_call Close
check "it closes" wait_until 5 "status closed" navro_field_is status closed

xrandr --output screen --mode 1920x1080 || finish
navro_call Open true
check "back on the wide screen the notch opens" \
    drawn 10 "$SHOTS/wide-open.png" $SCREEN_MIDDLE 66 000000
# A loaded machine can hold a frame of the opening still for longer than the settling wait, so
# the width is watched until it is right.
at_full_width() {
    screenshot "$SHOTS/wide-open.png" &&
        wide=$(dark_run "$SHOTS/wide-open.png" 66 $((SCREEN_MIDDLE - 300))) &&
        [ "$wide" -ge 680 -a "$wide" -le 692 ]
}
check "at its full width again, 680 to 692 pixels" wait_until 5 "the full width" at_full_width
finish
