#!/usr/bin/env bash
# Music from a real player: mpv with its MPRIS plugin on the test sound server, playing tagged
# tracks from a folder with a cover. What Navro shows and publishes, its controls reaching the
# player, the watcher coming back after it is killed, and the choice among several players.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" nowplaying
desktop_start_sound || exit 1
music="$DESKTOP_DIR/music"
desktop_make_music "$music" || exit 1

cover=C03020
tint=D6786E # the cover's colour taken 35 % toward white

shows_colour() {
    local file=$1 minimum=$2
    shift 2
    screenshot "$file" && [ "$(colour_count "$file" "$@")" -ge "$minimum" ]
}

player_status_is() {
    [ "$(playerctl -p "$1" status 2>/dev/null)" = "$2" ]
}

player_title_is() {
    [ "$(playerctl -p "$1" metadata title 2>/dev/null)" = "$2" ]
}

# player_quit BUS_NAME: the player's own Quit, as a desktop's media controls send it.
player_quit() {
    gdbus call --session --dest "$1" --object-path /org/mpris/MediaPlayer2 \
        --method org.mpris.MediaPlayer2.Quit >/dev/null
}

helper_pid() {
    ps --ppid "$NAVRO_PID" -o pid=,comm= | awk '$2 ~ /^navro-nowplay/ { print $1 }'
}

new_helper_running() {
    local pid
    pid=$(helper_pid)
    [ -n "$pid" ] && [ "$pid" != "$1" ]
}

desktop_start_player mpv "$music/a.ogg" "$music/b.ogg" "$music/c.ogg" || exit 1
mpv_name=${PLAYER_BUS_NAME#org.mpris.MediaPlayer2.}
navro_settings hasCompletedOnboarding=true openMode=hover
navro_start "$NAVRO" || finish

# What plays arrives on the bus and in the closed notch.
check "title on the bus" wait_until 10 "the title" now_playing_field_is title "First Song"
check "artist on the bus" now_playing_field_is artist "Test Artist"
check "album on the bus" now_playing_field_is album "Test Album"
check "playing on the bus" now_playing_field_is playing true
check "duration on the bus" now_playing_field_is duration 60.0
check "the player's name on the bus" now_playing_field_is app "mpv Media Player"
check "the music activity shows" wait_until 5 "the music activity" navro_field_is activityKind music
check "the cover at the leading side of the closed notch" \
    wait_until 5 "the cover" shows_colour "$SHOTS/closed.png" 30 $((SCREEN_MIDDLE - 160)) 0 140 30 $cover
check "no cover at the trailing side" \
    [ "$(colour_count "$SHOTS/closed.png" $((SCREEN_MIDDLE + 20)) 0 140 30 $cover)" -eq 0 ]
check "bars at the trailing side" \
    [ "$(colour_count "$SHOTS/closed.png" $((SCREEN_MIDDLE + 20)) 0 140 30 FF375F)" -ge 4 ]

# The music tab: cover, tint, controls.
navro_call Open false
wait_until 5 "the notch to open" navro_field_is status open
# Inside the open notch the pointer keeps it open (hover mode). The Music tab is the second of
# the tab bar; a click that lands while the notch is still growing misses it, so click again.
select_music_tab() {
    xdotool mousemove 737 30 click 1
    navro_field_is selectedTab nowPlaying
}
check "the music tab is selected" wait_until 5 "the music tab" select_music_tab
xdotool mousemove 1250 240
check "the cover in the music tab" \
    wait_until 5 "the cover" shows_colour "$SHOTS/tab.png" 400 620 60 220 200 $cover
check "the position bar in the cover's tint" \
    wait_until 5 "the tint" shows_colour "$SHOTS/tab.png" 3 840 170 420 30 $tint

desktop_spawn monitor gdbus monitor --session --dest io.navro.Navro --object-path /io/navro/Navro
monitor=$DESKTOP_LAST_PID
wait_until 5 "the bus monitor" grep -q . "$DESKTOP_DIR/logs/monitor.log"

# Play/pause, next and seeking from Navro reach mpv.
xdotool mousemove 1045 222 click 1
check "play/pause from Navro pauses mpv" wait_until 5 "mpv paused" player_status_is "$mpv_name" Paused
check "paused on the bus" wait_until 5 "playing false" now_playing_field_is playing false
check "pausing removes the activity" wait_until 5 "no activity" navro_field_is activityKind ""
check "the change is announced with PropertiesChanged" wait_until 5 "the signal" \
    grep -q "PropertiesChanged.*'NowPlaying'.*'playing': <false>" "$DESKTOP_DIR/logs/monitor.log"
xdotool mousemove 1045 222 click 1
check "play/pause from Navro plays again" wait_until 5 "mpv playing" player_status_is "$mpv_name" Playing
check "the activity is back" wait_until 5 "the music activity" navro_field_is activityKind music
xdotool mousemove 1103 222 click 1
check "next from Navro reaches mpv" wait_until 5 "the next track" player_title_is "$mpv_name" "Second Song"
check "the next title on the bus" wait_until 5 "the title" now_playing_field_is title "Second Song"
xdotool mousemove 1043 184 click 1
position_near_half() {
    local position
    position=$(playerctl -p "$mpv_name" position 2>/dev/null) || return 1
    awk -v p="$position" 'BEGIN { exit !(p >= 25 && p <= 40) }'
}
check "a click in the middle of the bar seeks to about half way" \
    wait_until 5 "the seek" position_near_half
desktop_stop "$monitor"
xdotool mousemove 100 700
wait_until 5 "the notch to close" navro_field_is status closed

# The player pauses by itself.
playerctl -p "$mpv_name" pause
check "a pause in the player removes the activity" \
    wait_until 5 "no activity" navro_field_is activityKind ""
playerctl -p "$mpv_name" play
wait_until 5 "the music activity" navro_field_is activityKind music

# A killed watcher comes back within 3 to 4 seconds and tells the same.
first_helper=$(helper_pid)
check "the watcher runs as Navro's child" [ -n "$first_helper" ]
if [ -n "$first_helper" ]; then
    kill -KILL "$first_helper"
    killed_at=$(desktop_now_ms)
    wait_until 6 "a new watcher" new_helper_running "$first_helper"
    back_after=$(($(desktop_now_ms) - killed_at))
    # A wait of seconds may end up to 5 % early: such timers let the system group wake-ups.
    check "the watcher is back after 3 to 4 s (took $back_after ms)" \
        [ "$back_after" -ge 2850 -a "$back_after" -le 4500 ]
    check "the track is still known" now_playing_field_is title "Second Song"
fi

# Quitting the player clears everything.
player_quit "$PLAYER_BUS_NAME"
desktop_wait_exit "$PLAYER_PID" 10
check "quitting mpv clears the bus property" wait_until 5 "nothing playing" \
    eval '[ "$(navro_property NowPlaying)" = "(<@a{sv} {}>,)" ]'
check "quitting mpv removes the activity" navro_field_is activityKind ""

# Several players: the one that started last, then the other one playing, then the one that
# played last.
desktop_start_player first "$music/a.ogg" || finish
first=$PLAYER_BUS_NAME
first_pid=$PLAYER_PID
wait_until 10 "the first player" now_playing_field_is title "First Song"
desktop_start_player second "$music/c.ogg" || finish
second=$PLAYER_BUS_NAME
check "of two playing, the one that started last" \
    wait_until 10 "the second player" now_playing_field_is title "Third Song"
playerctl -p "${second#org.mpris.MediaPlayer2.}" pause
check "pausing it hands over to the one still playing" \
    wait_until 5 "the first player" now_playing_field_is title "First Song"
player_quit "$first"
desktop_wait_exit "$first_pid" 10
check "with none playing, the one that played last" \
    wait_until 5 "the second player" now_playing_field_is title "Third Song"
check "and it is paused" now_playing_field_is playing false

finish
