#!/usr/bin/env bash
# Screen capture over the control interface on a known desktop: a screenshot of the screen has the
# root's colour and the window's at their places, an area chosen on the overlay with the pointer
# is saved at its size (and Escape saves nothing), a 2 s recording plays for about 2 s, and a
# recording that Navro's SIGTERM interrupts still leaves a file that ffprobe reads.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" capture
shots="$HOME/Pictures/Screenshots"
videos="$HOME/Videos/Screencasts"

count() { find "$1" -name "$2" 2>/dev/null | wc -l; }
count_is() { [ "$(count "$1" "$2")" = "$3" ]; }
newest() { ls -t "$1"/* 2>/dev/null | head -n1; }
refused() {
    local reply
    reply=$(gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method "io.navro.Navro.$1" -- "'$2'" 2>&1)
    grep -q org.freedesktop.DBus.Error.InvalidArgs <<<"$reply"
}
duration() { ffprobe -v error -show_entries format=duration -of csv=p=0 "$1"; }
about() { awk -v d="$(duration "$1")" -v lo="$2" -v hi="$3" 'BEGIN { exit !(d >= lo && d <= hi) }'; }

desktop_spawn window "$DESKTOP_HELPER" window capture-test CaptureTest
wait_until 10 "the test window" grep -q mapped "$DESKTOP_DIR/logs/window.log"
wait_until 10 "the window's place" xdotool search --class CaptureTest
eval "$(xdotool getwindowgeometry --shell "$(xdotool search --class CaptureTest | head -n1)")"
window_x=$((X + WIDTH / 2)) window_y=$((Y + HEIGHT / 2))

navro_settings hasCompletedOnboarding=true language=english
navro_start "$NAVRO" || finish

check "TakeScreenshot refuses another mode" refused TakeScreenshot everything
check "StartRecording refuses another mode" refused StartRecording everything

navro_call TakeScreenshot screen
check "a screenshot of the screen is saved" wait_until 10 "a PNG" count_is "$shots" '*.png' 1
png=$(newest "$shots")
check "it is 1920×1080" [ "$(identify -format %wx%h "$png")" = 1920x1080 ]
check "the root's colour is where the root shows" [ "$(pixel "$png" 1700 900)" = 3060A0 ]
check "the window's colour is where the window is" [ "$(pixel "$png" "$window_x" "$window_y")" = E0E0E0 ]
check "the closed notch shows a toast for it" wait_until 3 "the toast" navro_field_is activityKind toast
check "it is listed among the recent captures" grep -q "$(basename "$png")" "$XDG_DATA_HOME/Navro/captures.json"

# An area dragged out on the overlay.
navro_call TakeScreenshot area
sleep 0.5
xdotool mousemove 500 400 mousedown 1 mousemove 600 480 mousemove 700 550 mouseup 1
check "the chosen area is saved" wait_until 10 "a second PNG" count_is "$shots" '*.png' 2
check "at the size dragged out" [ "$(identify -format %wx%h "$(newest "$shots")")" = 200x150 ]
navro_call TakeScreenshot area
sleep 0.5
xdotool key Escape
check "Escape on the overlay saves nothing" stays 1.5 count_is "$shots" '*.png' 2

# A recording of about two seconds, started and stopped over the bus.
navro_call StartRecording screen
check "the recording runs" wait_until 5 "the recording activity" navro_field_is activityKind recording
sleep 2
navro_call StopRecording
check "the recording is saved" wait_until 15 "an MP4" count_is "$videos" '*.mp4' 1
recording=$(newest "$videos")
# ffmpeg may take a while to grab its first frame on a busy machine, so the lower bound is loose.
check "ffprobe reads it as at most about 2 s long ($(duration "$recording") s)" about "$recording" 0.5 3.5
check "the recording activity ends" wait_until 5 "no recording" \
    bash -c "! gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method org.freedesktop.DBus.Properties.Get io.navro.Navro State | grep -q recording"

# SIGTERM in the middle of a recording: the file is still finished.
navro_call StartRecording screen
check "a second recording runs" wait_until 5 "the recording activity" navro_field_is activityKind recording
sleep 1.5
kill -TERM "$NAVRO_PID"
desktop_wait_exit "$NAVRO_PID" 20
check "Navro ends on SIGTERM" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "the interrupted recording is on disk" count_is "$videos" '*.mp4' 2
check "ffprobe reads the interrupted recording" about "$(newest "$videos")" 0.5 5
check "no ffmpeg is left running" bash -c "! pgrep -x ffmpeg"
finish
