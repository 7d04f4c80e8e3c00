#!/usr/bin/env bash
# bench/audio_bars.sh [BUILD_DIR] [SECONDS]: a 440 Hz track playing on the virtual desktop's
# sound server and the closed notch drawing live bars, side by side in the same run with cava
# (30 frames a second from the same monitor, drawing to a terminal nobody reads):
#   - processor use of Navro and of cava over SECONDS;
#   - Navro's processor use over 10 s, starting 10 s after playback stopped.
# SOUND=music plays pink noise swelling three times a second instead, so that the bars move all
# the time (a steady tone lets them rest).
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
case ${SOUND:-tone} in
tone) sound=(sine 440 vol 0.5) description="440 Hz playing" ;;
music) sound=(pinknoise tremolo 3 90 vol 0.5) description="swelling noise playing" ;;
*) echo "audio_bars: SOUND is tone or music" >&2; exit 2 ;;
esac
sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Tone" "$music/tone.ogg" \
    synth $((seconds + 60)) "${sound[@]}" || exit 1
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
navro_before=$(cpu_ns "$NAVRO_PID")
cava_before=$(cpu_ns "$cava_pid")
sleep "$seconds"
awk -v n=$(($(cpu_ns "$NAVRO_PID") - navro_before)) -v c=$(($(cpu_ns "$cava_pid") - cava_before)) \
    -v s="$seconds" -v what="$description" 'BEGIN {
    printf "processor use over %d s, %s, live bars in the closed notch: Navro %.3f s (%.2f %% of one core), cava at 30 fps %.3f s (%.2f %%); Navro/cava %.2f\n",
        s, what, n / 1e9, 100 * n / 1e9 / s, c / 1e9, 100 * c / 1e9 / s, n / c }'

kill "$cava_pid" 2>/dev/null
playerctl -p "$player" pause
wait_until 5 "paused" now_playing_field_is playing false || exit 1
sleep 10
measure_cpu "processor use from 10 s after playback stopped" 10 "$NAVRO_PID"
echo "Navro bars record streams left: $(recording_source "Navro bars" | wc -l)"
desktop_stop_all
