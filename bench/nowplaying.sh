#!/usr/bin/env bash
# bench/nowplaying.sh [BUILD_DIR] [SECONDS]: music on the virtual desktop of the desktop tests
# (mpv with MPRIS on a null sink) and what Navro makes of it:
#   - latency from `playerctl play-pause` to Navro's NowPlaying and State PropertiesChanged on the
#     bus, and from mpv's own PropertiesChanged to Navro's (RUNS toggles, median and worst);
#   - navro-nowplaying's resident memory;
#   - processor use of Navro and of the helper over SECONDS with a track playing and the notch
#     closed, once without the music activity (musicInNotch off: the bars aside) and once with it
#     (its bars move 30 times a second).
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
runs=${RUNS:-21}
navro="$build/src/navro"
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_require nowplaying "$navro" "$build/src/navro-nowplaying" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
desktop_start_sound || exit 1
music="$DESKTOP_DIR/music"
mkdir -p "$music"
# Long enough to play through every measurement.
sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Long Song" --add-comment "ARTIST=Bench" \
    "$music/long.ogg" synth $((seconds * 3 + 120)) sine 440 vol 0.5 || exit 1
desktop_start_player mpv "$music/long.ogg" || exit 1
player=${PLAYER_BUS_NAME#org.mpris.MediaPlayer2.}

helper_of() { ps --ppid "$1" -o pid=,comm= | awk '$2 ~ /^navro-nowplay/ { print $1 }'; }

start_navro() {
    navro_settings hasCompletedOnboarding=true language=english "$@"
    navro_start "$navro" || { echo "nowplaying: Navro did not start" >&2; exit 1; }
    wait_until 10 "the track on the bus" now_playing_field_is title "Long Song" || exit 1
    helper=$(helper_of "$NAVRO_PID")
}

# --- Latency -----------------------------------------------------------------------------------
start_navro
monitor_log="$DESKTOP_DIR/logs/latency-monitor.log"
desktop_spawn latency-monitor dbus-monitor --session \
    "type='signal',sender='io.navro.Navro',member='PropertiesChanged'" \
    "type='signal',path='/org/mpris/MediaPlayer2',member='PropertiesChanged'" \
    "type='method_call',interface='org.mpris.MediaPlayer2.Player',member='PlayPause'"
monitor=$DESKTOP_LAST_PID
wait_until 5 "the monitor" grep -q . "$monitor_log"

# events LOG: "TIME KIND" for each message: call (playerctl's PlayPause reaching the bus), mpv
# (its PlaybackStatus), nowplaying, state.
events() {
    awk '
        /^method call time=/ && /member=PlayPause/ { split($3, t, "="); print t[2], "call"; next }
        /^signal time=/ { split($2, t, "="); time = t[2]; path = $0; next }
        /string "PlaybackStatus"/ && path ~ /path=\/org\/mpris\/MediaPlayer2/ { print time, "mpv" }
        /string "NowPlaying"/ { print time, "nowplaying" }
        /string "State"/ { print time, "state" }' "$1"
}

latencies=()
for run in $(seq "$runs"); do
    expected=$([ "$(navro_field playing NowPlaying)" = true ] && echo false || echo true)
    sent=$EPOCHREALTIME
    playerctl -p "$player" play-pause
    wait_until 5 "NowPlaying playing $expected" now_playing_field_is playing "$expected" || exit 1
    wait_until 5 "the State signal" eval \
        "events '$monitor_log' | awk -v s=$sent '\$1 >= s && \$2 == \"state\"' | grep -q ."
    latencies+=("$(events "$monitor_log" | awk -v s="$sent" '
        $1 >= s && !($2 in at) { at[$2] = $1 }
        END { printf "%.1f %.1f %.1f %.1f\n", (at["nowplaying"] - s) * 1000,
                                               (at["state"] - s) * 1000,
                                               (at["nowplaying"] - at["mpv"]) * 1000,
                                               (at["mpv"] - at["call"]) * 1000 }')")
    sleep 0.3
done
desktop_stop "$monitor"
summary() {
    printf '%s\n' "${latencies[@]}" | awk -v column="$1" '{ print $column }' | sort -n |
        awk '{ v[NR] = $1 } END { printf "median %.1f ms, worst %.1f ms", v[int((NR + 1) / 2)], v[NR] }'
}
echo "latency over $runs play/pause toggles:"
echo "  playerctl play-pause -> NowPlaying PropertiesChanged: $(summary 1)"
echo "  playerctl play-pause -> State (activity) PropertiesChanged: $(summary 2)"
echo "  mpv's PropertiesChanged -> NowPlaying PropertiesChanged: $(summary 3)"
echo "  (of the first: PlayPause on the bus -> mpv's PropertiesChanged: $(summary 4);"
echo "   the rest is playerctl starting and finding the player)"

# Make sure it plays for what follows.
[ "$(navro_field playing NowPlaying)" = true ] || playerctl -p "$player" play
wait_until 5 "playing" now_playing_field_is playing true

measure_cpu() {
    local label=$1 navro_before helper_before
    sleep 2
    navro_before=$(cpu_ticks "$NAVRO_PID")
    helper_before=$(cpu_ticks "$helper")
    sleep "$seconds"
    awk -v n=$(($(cpu_ticks "$NAVRO_PID") - navro_before)) \
        -v h=$(($(cpu_ticks "$helper") - helper_before)) -v hz="$ticks" -v s="$seconds" \
        -v label="$label" 'BEGIN {
        printf "processor use over %d s, %s: Navro %.2f s (%.3f %% of one core), navro-nowplaying %.2f s (%.3f %%)\n",
            s, label, n / hz, 100 * n / hz / s, h / hz, 100 * h / hz / s }'
}

echo "navro-nowplaying resident memory: $(($(rss_kib "$helper") / 1024)) MiB ($(rss_kib "$helper") KiB)"
measure_cpu "track playing, notch closed, music activity with its bars"
desktop_stop "$NAVRO_PID"

start_navro musicInNotch=false
measure_cpu "track playing, notch closed, bars aside (musicInNotch off)"
echo "navro-nowplaying resident memory after ${seconds}s: $(($(rss_kib "$helper") / 1024)) MiB ($(rss_kib "$helper") KiB)"
desktop_stop "$NAVRO_PID"
