#!/usr/bin/env bash
# The live bars and the system volume on the test sound server with two outputs: the bars'
# record stream exists only while music plays (and 5 s after), on the default output's monitor;
# the volume follows pactl both ways, and the bus's methods reach the server.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" sound
desktop_start_sound || exit 1
desktop_add_sink other_sink "Other Output" || exit 1
music="$DESKTOP_DIR/music"
desktop_make_music "$music" || exit 1

bars_on() {
    [ "$(recording_source "Navro bars")" = "$1" ]
}

no_bars() {
    [ -z "$(recording_source "Navro bars")" ]
}

sink_volume_is() {
    pactl get-sink-volume "$1" | head -n 1 | grep -q "/ *$2% /"
}

sink_mute_is() {
    [ "$(pactl get-sink-mute "$1")" = "Mute: $2" ]
}

default_sink_is() {
    [ "$(pactl get-default-sink)" = "$1" ]
}

player_on() {
    pactl -f json list sink-inputs | /usr/bin/python3 -c '
import json, sys
sinks = {s["index"]: s["name"] for s in json.loads(sys.argv[2])}
inputs = json.load(sys.stdin)
sys.exit(0 if inputs and all(sinks.get(i["sink"]) == sys.argv[1] for i in inputs) else 1)
' "$1" "$(pactl -f json list sinks)"
}

navro_settings hasCompletedOnboarding=true openMode=hover
navro_start "$NAVRO" || finish

# The volume and the outputs, and no capture while nothing plays.
check "the default output on the bus" wait_until 5 "the output" volume_field_is output TestSink
check "both outputs listed" bash -c "gdbus call --session --dest io.navro.Navro \
    --object-path /io/navro/Navro --method org.freedesktop.DBus.Properties.Get io.navro.Navro \
    Volume | grep -q \"'outputs': <\['TestSink', 'Other Output'\]>\""
check "nothing recorded while nothing plays" stays 1 no_bars

# pactl reaches the Volume property.
pactl set-sink-volume test_sink 30%
check "pactl's volume on the bus" wait_until 2 "volume 0.3" volume_field_is volume 0.3
pactl set-sink-mute test_sink 1
check "pactl's mute on the bus" wait_until 2 "muted" volume_field_is muted true
pactl set-sink-volume other_sink 90%
check "another output's volume is not this one's" stays 0.5 volume_field_is volume 0.3

# The bus reaches the server: raising a muted output unmutes it; values are clamped.
navro_call SetVolume 0.8
check "SetVolume sets the sink" wait_until 2 "80 %" sink_volume_is test_sink 80
check "raising unmutes" wait_until 2 "unmuted" sink_mute_is test_sink no
navro_call SetVolume 1.7
check "SetVolume above 1 is 100 %" wait_until 2 "100 %" sink_volume_is test_sink 100
navro_call SetVolume -- -0.5
check "SetVolume below 0 is 0 %" wait_until 2 "0 %" sink_volume_is test_sink 0
check "lowering to 0 does not mute" stays 0.5 sink_mute_is test_sink no
navro_call SetVolume 0.5
navro_call ToggleMute
check "ToggleMute mutes the sink" wait_until 2 "muted" sink_mute_is test_sink yes
navro_call ToggleMute
check "ToggleMute again unmutes" wait_until 2 "unmuted" sink_mute_is test_sink no
check "an unknown output is refused" bash -c "gdbus call --session --dest io.navro.Navro \
    --object-path /io/navro/Navro --method io.navro.Navro.SelectOutput 'No Such Output' 2>&1 |
    grep -q InvalidArgs"
check "and changes nothing" default_sink_is test_sink

# Music plays: the bars listen to the default output's monitor.
desktop_start_player mpv "$music/a.ogg" || finish
check "the bars record the default monitor" wait_until 10 "Navro bars on test_sink.monitor" \
    bars_on test_sink.monitor

# Choosing the other output moves the player there, and the bars follow.
navro_call SelectOutput "Other Output"
check "SelectOutput makes it the default" wait_until 2 "other_sink the default" \
    default_sink_is other_sink
check "the player moved with it" wait_until 2 "mpv on other_sink" player_on other_sink
check "the bars followed" wait_until 3 "Navro bars on other_sink.monitor" \
    bars_on other_sink.monitor
check "the output on the bus" wait_until 2 "Other Output" volume_field_is output "Other Output"

# Another program changes the default output: the capture is rebuilt there.
pactl set-default-sink test_sink
check "the bars rebuilt on the new default" wait_until 3 "Navro bars on test_sink.monitor" \
    bars_on test_sink.monitor

# Playback stops: the capture stays for a short pause, then goes.
playerctl -p "${PLAYER_BUS_NAME#org.mpris.MediaPlayer2.}" pause
check "not playing on the bus" wait_until 5 "paused" now_playing_field_is playing false
check "the capture outlives a short pause" stays 3 bars_on test_sink.monitor
check "and is gone some 5 s after" wait_until 5 "no Navro bars" no_bars
check "no capture failure logged" bash -c "! grep -q 'could not listen' '$NAVRO_LOG'"
finish
