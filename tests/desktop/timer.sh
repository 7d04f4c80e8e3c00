#!/usr/bin/env bash
# Timers over the control interface on a desktop with a sound server and a screen saver: the
# display is kept awake while one runs, the closed notch counts down, the end rings on the sound
# server and shows "Time's up" until the timer goes back to idle; a focus session runs the user's
# focus actions, also when Navro is ended in the middle of one.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" timer
desktop_start_sound || finish
desktop_start_screensaver || finish
screensaver_log="$DESKTOP_DIR/logs/screensaver.log"

# Two focus actions of the user's own, each leaving a line in a marker file.
markers="$DESKTOP_DIR/focus-markers"
actions="$XDG_DATA_HOME/Navro/Shortcuts"
mkdir -p "$actions"
for action in on off; do
    printf '#!/bin/sh\necho %s >>"%s"\n' "$action" "$markers" >"$actions/focus-$action"
    chmod +x "$actions/focus-$action"
done
marker_count() { grep -c "^$1\$" "$markers" 2>/dev/null || echo 0; }
marker_count_is() { [ "$(marker_count "$1")" = "$2" ]; }

# shows_colour FILE RRGGBB: a new screenshot has more than a few pixels of the colour on the
# closed notch.
shows_colour() {
    screenshot "$1" &&
        [ "$(colour_count "$1" $((SCREEN_MIDDLE - 300)) 0 600 32 "$2")" -gt 20 ]
}

navro_settings hasCompletedOnboarding=true language=english focusShortcutOn=focus-on \
    focusShortcutOff=focus-off
navro_start "$NAVRO" || finish

desktop_spawn sound-events pactl subscribe
wait_until 5 "the sound server's event stream" pactl list short clients
desktop_spawn monitor gdbus monitor --session --dest io.navro.Navro --object-path /io/navro/Navro
wait_until 5 "the bus monitor" grep -q . "$DESKTOP_DIR/logs/monitor.log"

# Lengths outside (0, 1440] minutes are refused as errors and change nothing.
for minutes in 0.0 -1.0 1440.5; do
    check "StartTimer refuses $minutes minutes with InvalidArgs" bash -c "gdbus call --session \
        --dest io.navro.Navro --object-path /io/navro/Navro --method io.navro.Navro.StartTimer \
        -- $minutes false 2>&1 | grep -q org.freedesktop.DBus.Error.InvalidArgs"
done
check "refused timers leave the timer idle" timer_field_is state idle
check "nothing was inhibited for them" [ "$(grep -c Inhibit "$screensaver_log")" = 0 ]

# A three-second timer.
navro_call StartTimer 0.05 false
check "the timer runs" timer_field_is state running
check "its length is 3 s" timer_field_is total 3.0
check "the display is kept awake at once" wait_until 1 "an inhibition" screensaver_active_is 1
check "asked as Navro, for the timer" grep -q '^Inhibit Navro|Navro timer ' "$screensaver_log"
check "the closed notch shows the timer" wait_until 3 "the timer activity" \
    navro_field_is activityKind timer
check "the ring and the time left are drawn" wait_until 3 "yellow on the notch" \
    shows_colour "$SHOTS/running.png" FFD60A

check "the timer finishes" wait_until 5 "state finished" timer_field_is state finished
finished_at=$(desktop_now_ms)
check "the finish sound reaches the sound server" wait_until 5 "a new sink input" \
    grep -q "Event 'new' on sink-input" "$DESKTOP_DIR/logs/sound-events.log"
check "the display may sleep again" wait_until 3 "the inhibition given back" screensaver_active_is 0
check "the very hold is given back" grep -q '^UnInhibit cookie=1 known=True' "$screensaver_log"
check "\"Time's up\" is drawn" wait_until 3 "green text on the notch" \
    shows_colour "$SHOTS/finished.png" 30D158
check "the activity stays while finished" navro_field_is activityKind timer
check "back to no activity after the finished state" wait_until 12 "no activity" \
    navro_field_is activityKind ""
shown_ms=$(($(desktop_now_ms) - finished_at))
check "finished showed for about 8 s ($shown_ms ms)" [ "$shown_ms" -ge 7000 -a "$shown_ms" -le 10000 ]
check "the timer is idle again" timer_field_is state idle
timer_signals=$(grep -c "PropertiesChanged.*'Timer'" "$DESKTOP_DIR/logs/monitor.log")
check "listeners heard running, finished and idle, not every second ($timer_signals signals)" \
    [ "$timer_signals" = 3 ]
check "a plain timer runs no focus action" [ ! -e "$markers" ]

# A focus session runs the focus-on action at its start and the focus-off action at its end.
navro_call StartTimer 0.05 true
check "a focus session runs the focus-on action" wait_until 5 "the focus-on marker" \
    marker_count_is on 1
check "a focus session is announced as one" timer_field_is focus true
check "its end runs the focus-off action" wait_until 8 "the focus-off marker" marker_count_is off 1
check "its hold is given back" wait_until 3 "no inhibition" screensaver_active_is 0

# A length typed and the focus switch flipped in the Timer tab stay chosen while another tab is
# looked at, and the start button, which has the keyboard again on the way back, starts them.
wait_until 12 "the timer idle after the focus session" timer_field_is state idle
navro_call Open true
wait_until 5 "the notch open" navro_field_is status open
navro_call OpenTab timer
wait_until 5 "the timer tab" navro_field_is selectedTab timer
xdotool key --delay 80 shift+Tab space shift+Tab ctrl+a
xdotool type --delay 50 "7"
navro_call OpenTab calendar
wait_until 5 "the calendar tab" navro_field_is selectedTab calendar
navro_call OpenTab timer
wait_until 5 "the timer tab again" navro_field_is selectedTab timer
xdotool key Return
check "the length chosen before the tab switch starts" wait_until 5 "a 7-minute timer" \
    timer_field_is total 420.0
check "as the focus session chosen before it" timer_field_is focus true
check "which runs the focus-on action" wait_until 5 "the second focus-on marker" marker_count_is on 2
navro_call StopTimer
check "stopped, it runs the focus-off action" wait_until 5 "the second focus-off marker" \
    marker_count_is off 2

# A length typed in the tab but not started gives way to a timer started from elsewhere: back in
# the tab, the start button offers that timer's length.
wait_until 5 "the timer idle after the stop" timer_field_is state idle
xdotool key --delay 80 shift+Tab shift+Tab ctrl+a
xdotool type --delay 50 "9"
navro_call OpenTab calendar
wait_until 5 "the calendar tab" navro_field_is selectedTab calendar
navro_call StartTimer 2.0 false
check "a timer started over the bus runs" wait_until 5 "a 2-minute timer" timer_field_is total 120.0
navro_call StopTimer
wait_until 5 "the timer idle after the bus's timer" timer_field_is state idle
navro_call OpenTab timer
wait_until 5 "the timer tab again" navro_field_is selectedTab timer
xdotool key Return
check "the tab then starts the bus's length, not the one typed before" wait_until 5 \
    "a timer from the tab" timer_field_is state running
check "which is 2 minutes" timer_field_is total 120.0
check "the focus switch still on" wait_until 5 "the third focus-on marker" marker_count_is on 3
navro_call StopTimer
wait_until 5 "the third focus-off marker" marker_count_is off 3
navro_call Close

# Ended in the middle of a focus session, Navro switches focus off and lets the display sleep.
navro_call StartTimer 30.0 true
check "a long focus session holds the display awake" wait_until 3 "an inhibition" \
    screensaver_active_is 1
check "and switched focus on" wait_until 5 "the fourth focus-on marker" marker_count_is on 4
kill -TERM "$NAVRO_PID"
check "SIGTERM ends Navro" desktop_wait_exit "$NAVRO_PID" 10
check "SIGTERM exit status is 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "the focus-off action ran on the way out" wait_until 5 "the fourth focus-off marker" \
    marker_count_is off 4
check "the hold was given back on the way out" screensaver_active_is 0
check "Navro did not crash" bash -c "! grep -iE 'segmentation|abort|core dumped' '$NAVRO_LOG'"

finish
