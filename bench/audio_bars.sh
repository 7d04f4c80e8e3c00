#!/usr/bin/env bash
# bench/audio_bars.sh [BUILD_DIR] [SECONDS]: a 440 Hz track playing on the virtual desktop's
# sound server and the closed notch drawing live bars, side by side in the same run with cava
# (30 frames a second from the same monitor, drawing to a terminal nobody reads):
#   - processor use of Navro and of cava over SECONDS;
#   - Navro's processor use over 10 s, starting 10 s after playback stopped.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
navro="$build/src/navro"
command -v cava >/dev/null || { echo "audio_bars: cava is missing (make deps)" >&2; exit 1; }
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_require audio_bars "$navro" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
desktop_start_sound || exit 1
music="$DESKTOP_DIR/music"
mkdir -p "$music"
sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Tone" "$music/tone.ogg" \
    synth $((seconds + 60)) sine 440 vol 0.5 || exit 1
desktop_start_player mpv "$music/tone.ogg" || exit 1
player=${PLAYER_BUS_NAME#org.mpris.MediaPlayer2.}

navro_settings hasCompletedOnboarding=true language=english
navro_start "$navro" || exit 1
wait_until 10 "playing" now_playing_field_is playing true || exit 1
wait_until 10 "the music activity" navro_field_is activityKind music || exit 1
wait_until 10 "the bars' capture" eval '[ -n "$(recording_source "Navro bars")" ]' || exit 1

cat >"$DESKTOP_DIR/cava.conf" <<CONFIG
[general]
framerate = 30
bars = 24
[input]
method = pulse
source = test_sink.monitor
[output]
method = noncurses
CONFIG
desktop_spawn cava env TERM=xterm-256color script -qfc "cava -p $DESKTOP_DIR/cava.conf" /dev/null
cava_pid=""
wait_until 10 "cava" eval 'cava_pid=$(pgrep -n -x cava) && [ -n "$cava_pid" ]' || exit 1
cava_pid=$(pgrep -n -x cava)

sleep 2
navro_before=$(cpu_ticks "$NAVRO_PID")
cava_before=$(cpu_ticks "$cava_pid")
sleep "$seconds"
awk -v n=$(($(cpu_ticks "$NAVRO_PID") - navro_before)) -v c=$(($(cpu_ticks "$cava_pid") - cava_before)) \
    -v hz="$ticks" -v s="$seconds" 'BEGIN {
    printf "processor use over %d s, 440 Hz playing, live bars in the closed notch: Navro %.2f s (%.2f %% of one core), cava at 30 fps %.2f s (%.2f %%)\n",
        s, n / hz, 100 * n / hz / s, c / hz, 100 * c / hz / s }'

kill "$cava_pid" 2>/dev/null
playerctl -p "$player" pause
wait_until 5 "paused" now_playing_field_is playing false || exit 1
sleep 10
navro_before=$(cpu_ticks "$NAVRO_PID")
sleep 10
awk -v n=$(($(cpu_ticks "$NAVRO_PID") - navro_before)) -v hz="$ticks" 'BEGIN {
    printf "processor use over 10 s from 10 s after playback stopped: Navro %.2f s (%.2f %%)\n",
        n / hz, 100 * n / hz / 10 }'
echo "Navro bars record streams left: $(recording_source "Navro bars" | wc -l)"
desktop_stop_all
