#!/usr/bin/env bash
# The closed notch on screen, hover opening and closing, and clicks beside the notch.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" notch
hover_delay=1

# A window under the transparent part of Navro's window, left of the notch, to receive clicks.
desktop_spawn clickpad "$DESKTOP_HELPER" clickpad 600 0 160 80
clickpad_log="$DESKTOP_DIR/logs/clickpad.log"
wait_until 10 "the click pad" grep -q mapped "$clickpad_log" || exit 1

navro_settings hasCompletedOnboarding=true hoverDelay=$hover_delay openMode=hover
navro_start "$NAVRO" || finish

# Closed: black, 190 wide, at the top centre, nothing drawn around it.
check "closed notch drawn at the top centre" drawn 10 "$SHOTS/closed.png" $SCREEN_MIDDLE 10 000000
check "status is closed" navro_field_is status closed
run=$(dark_run "$SHOTS/closed.png" 10 $SCREEN_MIDDLE)
check "closed notch is 190 wide (measured $run)" [ "$run" -ge 189 -a "$run" -le 191 ]
check "closed notch is centred" pixel_is "$SHOTS/closed.png" $((SCREEN_MIDDLE - 93)) 10 000000
check "background left of the closed notch" \
    pixel_is "$SHOTS/closed.png" $((SCREEN_MIDDLE - 95 - 4)) 12 $BACKGROUND
check "background right of the closed notch" \
    pixel_is "$SHOTS/closed.png" $((SCREEN_MIDDLE + 95 + 4)) 12 $BACKGROUND
check "background below the closed notch" \
    pixel_is "$SHOTS/closed.png" $SCREEN_MIDDLE 40 $BACKGROUND
check "background where the open notch would be" \
    pixel_is "$SHOTS/closed.png" $((SCREEN_MIDDLE - 300)) 150 $BACKGROUND

# A click beside the closed notch goes through Navro's window to the window below.
xdotool mousemove 680 20 click 1
check "click beside the notch reaches the window below" \
    wait_until 5 "the click pad to see the click" grep -q 'click 680 20' "$clickpad_log"
check "click beside the notch leaves it closed" navro_field_is status closed

# Resting on the notch opens it after the hover delay.
xdotool mousemove 100 700
started=$(desktop_now_ms)
xdotool mousemove $SCREEN_MIDDLE 8
check "hover opens the notch" wait_until 10 "status open" navro_field_is status open
elapsed=$(($(desktop_now_ms) - started))
check "hover opened after about ${hover_delay}s (took ${elapsed} ms)" \
    [ "$elapsed" -ge 800 -a "$elapsed" -le 3000 ]
check "open notch drawn" drawn 5 "$SHOTS/open.png" $SCREEN_MIDDLE 250 000000
# Measured in the gap between the tab bar and the tab's content, where nothing but the notch
# itself is drawn whichever tab is open.
open_run=$(dark_run "$SHOTS/open.png" 66 $((SCREEN_MIDDLE - 300)))
check "open notch drawn 688 wide (measured $open_run)" [ "$open_run" -ge 680 -a "$open_run" -le 692 ]
check "open notch edge is black" pixel_is "$SHOTS/open.png" $((SCREEN_MIDDLE - 340)) 150 000000
check "background beside the open notch" \
    pixel_is "$SHOTS/open.png" $((SCREEN_MIDDLE - 344 - 8)) 150 $BACKGROUND
check "background below the open notch" pixel_is "$SHOTS/open.png" $SCREEN_MIDDLE 275 $BACKGROUND

# Leaving closes it again.
xdotool mousemove $SCREEN_MIDDLE 700
check "leaving closes the notch" wait_until 5 "status closed" navro_field_is status closed

# Passing over the notch faster than the delay does not open it.
xdotool mousemove $SCREEN_MIDDLE 8 mousemove $SCREEN_MIDDLE 700
check "passing over the notch leaves it closed" stays $((hover_delay * 2)) navro_field_is status closed

# Closing and reopening by D-Bus work too, and listeners hear of the change.
desktop_spawn monitor gdbus monitor --session --dest io.navro.Navro --object-path /io/navro/Navro
monitor=$DESKTOP_LAST_PID
wait_until 5 "the bus monitor" grep -q . "$DESKTOP_DIR/logs/monitor.log"
navro_call Open false
check "Open over the bus opens" wait_until 5 "status open" navro_field_is status open
check "the change is announced with PropertiesChanged" wait_until 5 "the signal" \
    grep -q "PropertiesChanged.*'status': <'open'>" "$DESKTOP_DIR/logs/monitor.log"
desktop_stop "$monitor"
navro_call Close
check "Close over the bus closes" wait_until 5 "status closed" navro_field_is status closed

# The open notch is built from plain Qt Quick items: a library of controls would stay in memory
# for good once a single view pulled it in.
controls_unloaded() { ! grep -q libQt6QuickTemplates2 "/proc/$NAVRO_PID/maps"; }
for tab in home nowPlaying calendar timer notes clipboard capture shelf devices; do
    navro_call OpenTab "$tab"
    wait_until 5 "the $tab tab" navro_field_is selectedTab "$tab"
done
check "every tab opened without a library of controls loaded" controls_unloaded
navro_call Close

finish
