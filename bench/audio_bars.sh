#!/usr/bin/env bash
# bench/audio_bars.sh [BUILD_DIR] [SECONDS]: a 440 Hz track playing on the virtual desktop's
# sound server and the closed notch drawing live bars, side by side in the same run with cava
# (30 frames a second from the same monitor, drawing to a terminal nobody reads):
#   - processor use of Navro and of cava over SECONDS;
#   - Navro's processor use over 10 s, starting 10 s after playback stopped.
# SOUND=music plays pink noise swelling three times a second instead, so that the bars move all
# the time (a steady tone lets them rest). Everything else runs as in daily use: the home and the
# desktop's services of bench/realistic_home.sh, the track with a cover beside it.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
navro="$build/src/navro"
command -v cava >/dev/null || { echo "audio_bars: cava is missing (make deps)" >&2; exit 1; }
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
# shellcheck source=realistic_home.sh
source "$root/bench/realistic_home.sh"
bench_require audio_bars "$navro" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
realistic_services none || { echo "audio_bars: the desktop's services did not come up" >&2; exit 1; }
music="$DESKTOP_DIR/music"
mkdir -p "$music"
"$DESKTOP_CONVERT" -size 500x500 xc:#2080C0 -quality 90 "$music/cover.jpg" || exit 1
case ${SOUND:-tone} in
tone) sound=(sine 440 vol 0.5) description="440 Hz playing" ;;
music) sound=(pinknoise tremolo 3 90 vol 0.5) description="swelling noise playing" ;;
*) echo "audio_bars: SOUND is tone or music" >&2; exit 2 ;;
esac
sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Tone" "$music/tone.ogg" \
    synth $((seconds + 60)) "${sound[@]}" || exit 1
desktop_start_player mpv "$music/tone.ogg" || exit 1
player=${PLAYER_BUS_NAME#org.mpris.MediaPlayer2.}

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
navro_before=$(cpu_snapshot "$NAVRO_PID")
cava_before=$(cpu_snapshot "$cava_pid")
sleep "$seconds"
awk -v n="$(cpu_used "$navro_before" "$(cpu_snapshot "$NAVRO_PID")")" \
    -v c="$(cpu_used "$cava_before" "$(cpu_snapshot "$cava_pid")")" \
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
