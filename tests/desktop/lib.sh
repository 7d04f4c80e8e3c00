# shellcheck shell=bash
# The virtual desktop shared by the desktop tests and by `make run` without a display: an X server
# (Xvfb), a private session bus, a window manager (openbox), a compositor (xcompmgr) and a tray
# host (trayer), all under a fresh HOME so that nothing touches the user's own files or bus.
#
# Source this file, set DESKTOP_HELPER to the x11_helper program, call desktop_start. Every
# process started through desktop_spawn is stopped in reverse order when the shell exits.

desktop_pids=()
desktop_names=()
DESKTOP_DIR=""
DESKTOP_OWN_DIR=0
# The real ImageMagick, not a look-alike earlier in PATH.
DESKTOP_CONVERT=/usr/bin/convert
[ -x "$DESKTOP_CONVERT" ] || DESKTOP_CONVERT=convert

desktop_say() { echo "[desktop] $*" >&2; }

desktop_now_ms() {
    local micro=${EPOCHREALTIME/./}
    echo $((micro / 1000))
}

# wait_until SECONDS DESCRIPTION COMMAND...: runs COMMAND until it succeeds; after SECONDS it gives
# up, says what it was waiting for and returns 1.
wait_until() {
    local seconds=$1 what=$2
    shift 2
    local deadline=$(($(desktop_now_ms) + $(awk "BEGIN { print int($seconds * 1000) }")))
    while ! "$@" >/dev/null 2>&1; do
        if [ "$(desktop_now_ms)" -ge "$deadline" ]; then
            desktop_say "gave up after ${seconds}s waiting for: $what"
            return 1
        fi
        sleep 0.05
    done
}

desktop_is_running() {
    local pid=$1
    [ -r "/proc/$pid/status" ] && ! grep -q '^State:.*Z' "/proc/$pid/status"
}

# desktop_spawn NAME COMMAND...: starts COMMAND in the background, output in $DESKTOP_DIR/logs/NAME.log.
# Its pid is in DESKTOP_LAST_PID.
desktop_spawn() {
    local name=$1
    shift
    "$@" >"$DESKTOP_DIR/logs/$name.log" 2>&1 &
    DESKTOP_LAST_PID=$!
    desktop_pids+=("$DESKTOP_LAST_PID")
    desktop_names+=("$name")
}

# desktop_wait_exit PID SECONDS: waits for a spawned process to end and sets DESKTOP_EXIT_STATUS;
# returns 1 (and leaves DESKTOP_EXIT_STATUS unset) if it is still running after SECONDS.
desktop_wait_exit() {
    local pid=$1 seconds=$2
    unset DESKTOP_EXIT_STATUS
    wait_until "$seconds" "process $pid to exit" eval '! desktop_is_running '"$pid" || return 1
    DESKTOP_EXIT_STATUS=0
    wait "$pid" 2>/dev/null || DESKTOP_EXIT_STATUS=$?
    desktop_forget "$pid"
}

desktop_forget() {
    local pid=$1 i
    for i in "${!desktop_pids[@]}"; do
        if [ "${desktop_pids[$i]}" = "$pid" ]; then
            unset 'desktop_pids[i]' 'desktop_names[i]'
        fi
    done
}

# desktop_stop PID: SIGTERM, and SIGKILL if it is still there after a few seconds. Sets
# DESKTOP_EXIT_STATUS, also for a process that had already ended.
desktop_stop() {
    local pid=$1
    if desktop_is_running "$pid"; then
        kill -TERM "$pid" 2>/dev/null
        if ! desktop_wait_exit "$pid" 5; then
            kill -KILL "$pid" 2>/dev/null
            desktop_wait_exit "$pid" 5
        fi
    else
        DESKTOP_EXIT_STATUS=0
        wait "$pid" 2>/dev/null || DESKTOP_EXIT_STATUS=$?
    fi
    desktop_forget "$pid"
}

desktop_stop_all() {
    local i
    local indices=("${!desktop_pids[@]}")
    for ((i = ${#indices[@]} - 1; i >= 0; i--)); do
        desktop_stop "${desktop_pids[${indices[$i]}]}"
    done
    if [ "$DESKTOP_OWN_DIR" = 1 ] && [ -n "$DESKTOP_DIR" ] && [ -z "${DESKTOP_KEEP:-}" ]; then
        rm -rf "$DESKTOP_DIR"
    fi
}

desktop_has_selection_owner() {
    "$DESKTOP_HELPER" owner "$1"
}

# desktop_start [DIR]: everything but Navro. Exports DISPLAY, HOME, XDG_*, DBUS_SESSION_BUS_ADDRESS.
# Set DESKTOP_TRAY=0 to go without the tray host.
desktop_start() {
    if [ -n "${1:-}" ]; then
        DESKTOP_DIR=$1
        mkdir -p "$DESKTOP_DIR"
    else
        DESKTOP_DIR=$(mktemp -d "${TMPDIR:-/tmp}/navro-desktop.XXXXXX")
        DESKTOP_OWN_DIR=1
    fi
    trap desktop_stop_all EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM

    local tool
    for tool in Xvfb dbus-daemon openbox xcompmgr xdotool gdbus import "$DESKTOP_HELPER"; do
        if ! command -v "$tool" >/dev/null 2>&1; then
            desktop_say "missing $tool: run scripts/install-deps.sh"
            return 1
        fi
    done

    mkdir -p "$DESKTOP_DIR/logs" "$DESKTOP_DIR/home" "$DESKTOP_DIR/runtime"
    chmod 0700 "$DESKTOP_DIR/runtime"
    export HOME="$DESKTOP_DIR/home"
    export XDG_RUNTIME_DIR="$DESKTOP_DIR/runtime"
    export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share"
    export XDG_CACHE_HOME="$HOME/.cache" XDG_STATE_HOME="$HOME/.local/state"
    export NO_AT_BRIDGE=1
    unset WAYLAND_DISPLAY XAUTHORITY SESSION_MANAGER XDG_SESSION_TYPE QT_QPA_PLATFORM
    unset DBUS_SESSION_BUS_ADDRESS
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME"

    # The server names its display once it accepts connections; no display number is guessed.
    : >"$DESKTOP_DIR/display"
    desktop_spawn xvfb Xvfb -displayfd 3 -screen 0 1920x1080x24 -nolisten tcp -noreset \
        3>"$DESKTOP_DIR/display"
    wait_until 10 "the X server" grep -q . "$DESKTOP_DIR/display" || return 1
    export DISPLAY=":$(head -n1 "$DESKTOP_DIR/display")"

    # The bus gets HOME and DISPLAY first: services it starts inherit them.
    : >"$DESKTOP_DIR/bus-address"
    desktop_start_bus || return 1
    export DBUS_SESSION_BUS_ADDRESS
    DBUS_SESSION_BUS_ADDRESS=$(head -n1 "$DESKTOP_DIR/bus-address")

    desktop_spawn openbox openbox --sm-disable
    wait_until 10 "the window manager" desktop_wm_ready || return 1
    # After the window manager, which paints the root itself when it starts.
    "$DESKTOP_HELPER" background 3060a0 || return 1
    desktop_spawn xcompmgr xcompmgr -n
    wait_until 10 "the compositor" desktop_has_selection_owner _NET_WM_CM_S0 || return 1
    if [ "${DESKTOP_TRAY:-1}" = 1 ]; then
        desktop_spawn trayer trayer --edge top --align right --widthtype request --height 24 \
            --transparent false --SetDockType true --SetPartialStrut false
        wait_until 10 "the tray host" desktop_has_selection_owner _NET_SYSTEM_TRAY_S0 || return 1
    fi
    desktop_say "desktop $DISPLAY ready in $DESKTOP_DIR"
}

# desktop_start_bus: the session bus at its fixed socket; its pid is in DESKTOP_BUS_PID.
desktop_start_bus() {
    : >"$DESKTOP_DIR/bus-address"
    desktop_spawn dbus dbus-daemon --session --nofork --nopidfile \
        --address="unix:path=$DESKTOP_DIR/runtime/bus" --print-address=3 3>"$DESKTOP_DIR/bus-address"
    DESKTOP_BUS_PID=$DESKTOP_LAST_PID
    wait_until 10 "the session bus" grep -q . "$DESKTOP_DIR/bus-address"
}

# desktop_restart_bus: the session bus stops and a new one starts at the same socket, as after a
# crash of the session's bus; programs started afterwards get its address (with its new guid).
desktop_restart_bus() {
    desktop_stop "$DESKTOP_BUS_PID"
    desktop_start_bus || return 1
    DBUS_SESSION_BUS_ADDRESS=$(head -n1 "$DESKTOP_DIR/bus-address")
}

desktop_wm_ready() {
    xprop -root -notype _NET_SUPPORTING_WM_CHECK | grep -q 'window id'
}

# --- Navro -------------------------------------------------------------------------------------

# navro_settings KEY=VALUE...: the settings file Navro reads at start ([General] of QSettings).
navro_settings() {
    mkdir -p "$XDG_CONFIG_HOME/Navro"
    {
        echo '[General]'
        printf '%s\n' "$@"
    } >"$XDG_CONFIG_HOME/Navro/Navro.conf"
}

# navro_property [NAME]: one property of the control interface (State unless named) as gdbus
# prints it.
navro_property() {
    gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method org.freedesktop.DBus.Properties.Get io.navro.Navro "${1:-State}" 2>/dev/null
}

navro_state() {
    navro_property State
}

# navro_field NAME [PROPERTY]: one field of the State property (or of PROPERTY: 'closed', true,
# …) without quotes.
navro_field() {
    navro_property "${2:-State}" | sed -n "s/.*'$1': <\([^>]*\)>.*/\1/p" | tr -d "'"
}

navro_field_is() {
    [ "$(navro_field "$1")" = "$2" ]
}

# timer_field_is NAME VALUE: a field of the Timer property.
timer_field_is() {
    [ "$(navro_field "$1" Timer)" = "$2" ]
}

# now_playing_field_is NAME VALUE: a field of the NowPlaying property (empty while nothing
# plays).
now_playing_field_is() {
    [ "$(navro_field "$1" NowPlaying)" = "$2" ]
}

# navro_owns_name: io.navro.Navro has an owner on the session bus.
navro_owns_name() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.GetNameOwner io.navro.Navro >/dev/null 2>&1
}

# longest_line FILE: the length in bytes of the file's longest line.
longest_line() {
    LC_ALL=C awk '{ if (length($0) > n) n = length($0) } END { print n + 0 }' "$1"
}

navro_call() {
    local method=$1
    shift
    gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method "io.navro.Navro.$method" "$@" >/dev/null
}

# navro_start BINARY [NAME [FIELD VALUE]]: starts Navro and waits until it answers on the bus with
# FIELD of its State at VALUE (by default: its notch window on screen). Its pid is in NAVRO_PID,
# its output in $DESKTOP_DIR/logs/NAME.log.
navro_start() {
    local binary=$1 name=${2:-navro} field=${3:-panelVisible} value=${4:-true}
    desktop_spawn "$name" "$binary"
    NAVRO_PID=$DESKTOP_LAST_PID
    NAVRO_LOG="$DESKTOP_DIR/logs/$name.log"
    wait_until 20 "Navro on the session bus with $field $value" navro_field_is "$field" "$value"
}

# --- Pictures ----------------------------------------------------------------------------------

screenshot() {
    import -silent -window root "$1"
}

# pixel FILE X Y: the colour there as RRGGBB (upper case).
pixel() {
    "$DESKTOP_CONVERT" "$1" -format "%[hex:u.p{$2,$3}]" info: | cut -c1-6
}

# dark_run FILE Y X: length of the run of near-black pixels in row Y that contains column X.
dark_run() {
    "$DESKTOP_CONVERT" "$1" -crop "100000x1+0+$2" +repage -depth 8 txt:- | awk -v x="$3" '
        /^#/ { next }
        {
            split($1, at, ","); column = at[1] + 0
            gsub(/[()]/, "", $2); split($2, c, ",")
            dark[column] = (c[1] < 24 && c[2] < 24 && c[3] < 24)
        }
        END {
            if (!dark[x]) { print 0; exit }
            left = x; while (dark[left - 1]) left--
            right = x; while (dark[right + 1]) right++
            print right - left + 1
        }'
}

# colour_count FILE X Y W H RRGGBB: how many pixels of the area are within a small distance of
# the colour (text is drawn with smoothed edges, so only its cores match exactly).
colour_count() {
    local hex=$6
    "$DESKTOP_CONVERT" "$1" -crop "${4}x${5}+${2}+${3}" +repage -depth 8 txt:- |
        awk -v r=$((16#${hex:0:2})) -v g=$((16#${hex:2:2})) -v b=$((16#${hex:4:2})) '
        /^#/ { next }
        {
            gsub(/[()]/, "", $2); split($2, c, ",")
            if ((c[1] - r) ^ 2 + (c[2] - g) ^ 2 + (c[3] - b) ^ 2 < 40 ^ 2) n++
        }
        END { print n + 0 }'
}

# --- Reporting ---------------------------------------------------------------------------------

desktop_failures=0
desktop_checks=0

# check DESCRIPTION COMMAND...: one named check; a failure is reported and counted, not fatal.
check() {
    local what=$1
    shift
    desktop_checks=$((desktop_checks + 1))
    if "$@"; then
        echo "ok   - $what"
    else
        echo "FAIL - $what"
        desktop_failures=$((desktop_failures + 1))
    fi
}

# views_loaded: no view of Navro's failed to load (a type it names missing, a file that does not
# compile) or fought itself (a binding loop, a value its property refuses); the rest of the window
# would still show and hide the loss.
views_loaded() {
    ! cat "$DESKTOP_DIR"/logs/navro*.log 2>/dev/null |
        grep -E 'qrc:/Navro/.*(unavailable|is not a type|is not installed|failed to load|non-existent property|Binding loop detected|Invalid property assignment|Cannot assign)'
}

# finish: prints the summary, Navro's log on failure, and exits with the verdict.
finish() {
    check "Navro's views all loaded" views_loaded
    echo "$((desktop_checks - desktop_failures)) passed, $desktop_failures failed"
    if [ "$desktop_failures" -ne 0 ]; then
        local log
        for log in "$DESKTOP_DIR"/logs/navro*.log; do
            [ -f "$log" ] && { echo "--- $log"; tail -n 40 "$log"; }
        done
        exit 1
    fi
    exit 0
}

# --- Test scripts ------------------------------------------------------------------------------

# desktop_test_begin NAVRO_BINARY X11_HELPER NAME: the arguments CTest passes, a screenshot folder
# (screenshots/NAME under the working directory) and a started desktop.
desktop_test_begin() {
    NAVRO=$1
    DESKTOP_HELPER=$2
    SHOTS="$PWD/screenshots/$3"
    rm -rf "$SHOTS"
    mkdir -p "$SHOTS"
    if [ ! -x "$NAVRO" ]; then
        desktop_say "no Navro program at $NAVRO"
        exit 1
    fi
    desktop_start || exit 1
    # Keep the pointer away from the notch until a check puts it there.
    xdotool mousemove 100 700
}

# stays SECONDS COMMAND...: true when COMMAND holds at every poll for SECONDS (for checking that
# something does not happen).
stays() {
    local seconds=$1
    shift
    local until=$(($(desktop_now_ms) + $(awk "BEGIN { print int($seconds * 1000) }")))
    while [ "$(desktop_now_ms)" -lt "$until" ]; do
        "$@" >/dev/null 2>&1 || return 1
        sleep 0.05
    done
}

# settled_screenshot FILE: a screenshot taken once two in a row are identical (animations done).
settled_screenshot() {
    local file=$1 previous="$1.previous.png"
    screenshot "$previous"
    local deadline=$(($(desktop_now_ms) + 5000))
    while :; do
        screenshot "$file"
        if cmp -s "$file" "$previous" || [ "$(desktop_now_ms)" -ge "$deadline" ]; then
            rm -f "$previous"
            return 0
        fi
        mv "$file" "$previous"
        sleep 0.05
    done
}

pixel_is() {
    [ "$(pixel "$1" "$2" "$3")" = "$4" ]
}

shows_pixel() {
    screenshot "$1" && pixel_is "$@"
}

# drawn SECONDS FILE X Y RRGGBB: waits until a screenshot (kept in FILE) shows that colour there,
# then until the picture stops changing. The state changes before the first frame is drawn, so
# a still picture alone could be the frame before an animation.
drawn() {
    local seconds=$1
    shift
    wait_until "$seconds" "colour $4 at ($2,$3)" shows_pixel "$@" && settled_screenshot "$1"
}

# Screen geometry of the tests' 1920-pixel-wide screen.
SCREEN_MIDDLE=960
BACKGROUND=3060A0

# column_profile FILE X Y W H: one character per column of the area, 1 where something is drawn
# on the black notch in that column (any channel above 40), 0 where it is all black.
column_profile() {
    "$DESKTOP_CONVERT" "$1" -crop "${4}x${5}+${2}+${3}" +repage -depth 8 txt:- | awk -v w="$4" '
        /^#/ { next }
        {
            split($1, at, ","); gsub(/[()]/, "", $2); split($2, c, ",")
            if (c[1] > 40 || c[2] > 40 || c[3] > 40) lit[at[1] + 0] = 1
        }
        END { for (i = 0; i < w; i++) printf "%d", (i in lit); print "" }'
}

# button_rows FILE X TOP BOTTOM: "FROM TO" for each run of at least 14 rows, top to bottom, down
# the column X between TOP and BOTTOM, in a button's colour on the black notch: a dark grey
# (#1c1c1e, lighter while hovered or pressed). A column through a button's end, clear of its
# text, crosses nothing else of that colour.
button_rows() {
    "$DESKTOP_CONVERT" "$1" -crop "1x$(($4 - $3))+$2+$3" +repage -depth 8 txt:- | awk -v top="$3" '
        /^#/ { next }
        {
            split($1, at, ","); y = at[2] + top; last = y
            gsub(/[()]/, "", $2); split($2, c, ",")
            grey = c[1] >= 20 && c[1] <= 72 && c[2] >= 20 && c[2] <= 72 && c[3] >= 20 && c[3] <= 72
            if (grey && !inside) { inside = 1; from = y }
            if (!grey && inside) { inside = 0; if (y - from >= 14) print from, y - 1 }
        }
        END { if (inside && last - from + 1 >= 14) print from, last }'
}

# overlap A B: how much two profiles agree where either has content (intersection over union,
# in percent).
overlap() {
    awk -v a="$1" -v b="$2" 'BEGIN {
        for (i = 1; i <= length(a); i++) {
            x = substr(a, i, 1); y = substr(b, i, 1)
            if (x == 1 && y == 1) both++
            if (x == 1 || y == 1) either++
        }
        print either ? int(100 * both / either) : 0
    }'
}

reversed() {
    echo "$1" | rev
}

# navro_windows PATTERN: ids of Navro's visible windows whose title matches PATTERN.
navro_windows() {
    xdotool search --all --onlyvisible --pid "$NAVRO_PID" --name "$1" 2>/dev/null
}

navro_window_shown() {
    [ -n "$(navro_windows "$1")" ]
}

# navro_window PATTERN: the id of a visible window of Navro's with a matching title that is
# neither the notch window (728 x 280) nor its tray icon (at most 32 pixels wide).
navro_window() {
    local id geometry
    for id in $(navro_windows "$1"); do
        geometry=$(xdotool getwindowgeometry "$id" | awk '/Geometry:/ { print $2 }')
        case "$geometry" in
        728x280) ;;
        *)
            [ "${geometry%%x*}" -gt 32 ] && { echo "$id"; return 0; }
            ;;
        esac
    done
    return 1
}

navro_panel_shown() {
    navro_window "$1" >/dev/null
}

# window_rect ID: "X Y W H" of a window's inside, in root coordinates.
window_rect() {
    # Without an id xwininfo would wait for a click on some window.
    [ -n "$1" ] || return 1
    xwininfo -id "$1" | awk '
        /Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
        /Width:/ { w = $NF } /Height:/ { h = $NF }
        END { if (w > 0 && h > 0) print x, y, w, h; else exit 1 }'
}

# crop_screenshot FILE X Y W H: that area of the screen as it is composited (translucent
# windows over what lies below), taken once two pictures in a row agree.
crop_screenshot() {
    local file=$1 area="${4}x${5}+${2}+${3}" whole="$1.whole.png"
    settled_screenshot "$whole" &&
        "$DESKTOP_CONVERT" "$whole" -crop "$area" +repage "$file" &&
        rm -f "$whole"
}

# window_screenshot ID FILE: the window as the user sees it, once it stopped changing.
window_screenshot() {
    local rect
    rect=$(window_rect "$1") || return 1
    # shellcheck disable=SC2086
    crop_screenshot "$2" $rect
}

# tray_cell_rect: "X Y W H" of the tray host's panel once an icon has been docked in it.
tray_cell_rect() {
    local id rect w h
    for id in $(xdotool search --class trayer 2>/dev/null); do
        xwininfo -id "$id" | grep -q 'IsViewable' || continue
        rect=$(window_rect "$id") || continue
        read -r _ _ w h <<<"$rect"
        [ "$w" -ge 16 ] && [ "$h" -ge 16 ] && { echo "$rect"; return 0; }
    done
    return 1
}

# tray_icon_centre: "X Y" of the tray host's panel once an icon has been docked in it.
tray_icon_centre() {
    local x y w h
    read -r x y w h < <(tray_cell_rect) || return 1
    echo $((x + w / 2)) $((y + h / 2))
}

# tray_start TINT: a tray host along the top edge, painted RRGGBB.
tray_start() {
    desktop_spawn trayer trayer --edge top --align right --widthtype request --height 24 \
        --transparent true --alpha 0 --tint "0x$1" --SetDockType true --SetPartialStrut false
    wait_until 10 "the tray host" desktop_has_selection_owner _NET_SYSTEM_TRAY_S0
}

# --- Sound and stand-in services ---------------------------------------------------------------

# desktop_start_sound: a PulseAudio server of the desktop's own whose default output is a null
# sink (test_sink); exports PULSE_SERVER for everything started after it.
desktop_start_sound() {
    local folder="$DESKTOP_DIR/pulse"
    mkdir -p "$folder"
    cat >"$folder/server.pa" <<CONFIG
load-module module-native-protocol-unix auth-anonymous=1 socket=$folder/native
load-module module-null-sink sink_name=test_sink rate=48000 channels=2 sink_properties=device.description=TestSink
set-default-sink test_sink
CONFIG
    export PULSE_SERVER="unix:$folder/native"
    desktop_spawn pulseaudio pulseaudio --daemonize=no --exit-idle-time=-1 --system=false \
        --use-pid-file=no -n -F "$folder/server.pa" --log-target=stderr
    wait_until 10 "the sound server" pactl info
}

# desktop_start_screensaver: the test's own org.freedesktop.ScreenSaver on the session bus; every
# call it receives is a line of $DESKTOP_DIR/logs/screensaver.log.
desktop_start_screensaver() {
    desktop_spawn screensaver /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/helpers/screensaver.py"
    wait_until 10 "the screen saver stand-in" grep -q ready "$DESKTOP_DIR/logs/screensaver.log"
}

# screensaver_active_is N: the inhibitions in force after the last call are N.
screensaver_active_is() {
    [ "$(sed -n 's/.* active=\([0-9]*\)$/\1/p' "$DESKTOP_DIR/logs/screensaver.log" | tail -n1)" = "$1" ]
}

# bus_has_name NAME: true once NAME has an owner on the session bus.
bus_has_name() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.NameHasOwner "$1" 2>/dev/null | grep -q true
}

# desktop_start_notifications: dunst on the session bus, keeping every notification on screen
# until it is closed, so that what arrived can be counted at leisure (`dunstctl count`).
desktop_start_notifications() {
    cat >"$DESKTOP_DIR/dunstrc" <<'CONFIG'
[global]
    monitor = 0
    follow = none
[urgency_low]
    timeout = 0
[urgency_normal]
    timeout = 0
[urgency_critical]
    timeout = 0
CONFIG
    desktop_spawn dunst dunst -config "$DESKTOP_DIR/dunstrc"
    wait_until 10 "the notification daemon" bus_has_name org.freedesktop.Notifications
}

# --- A media player ----------------------------------------------------------------------------

# desktop_make_music DIR: three tagged tracks of a minute each (a.ogg, b.ogg, c.ogg) and a
# one-colour cover.png (C03020) beside them, as a music folder has.
desktop_make_music() {
    local dir=$1
    mkdir -p "$dir"
    sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=First Song" \
        --add-comment "ARTIST=Test Artist" --add-comment "ALBUM=Test Album" \
        "$dir/a.ogg" synth 60 sine 440 vol 0.5 &&
        sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Second Song" \
            --add-comment "ARTIST=Other Artist" --add-comment "ALBUM=Test Album" \
            "$dir/b.ogg" synth 60 sine 660 vol 0.5 &&
        sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Third Song" \
            --add-comment "ARTIST=Test Artist" --add-comment "ALBUM=Test Album" \
            "$dir/c.ogg" synth 60 sine 550 vol 0.5 &&
        "$DESKTOP_CONVERT" -size 64x64 xc:'#c03020' "$dir/cover.png"
}

# desktop_start_player NAME FILE...: mpv with its MPRIS plugin playing the files on the sound
# server, without a window. Waits until it is on the session bus; its bus name is in
# PLAYER_BUS_NAME, its pid in PLAYER_PID. mpv names itself org.mpris.MediaPlayer2.mpv, and
# ...mpv.instance<pid> when that name is taken.
desktop_start_player() {
    local name=$1
    shift
    desktop_spawn "$name" mpv --no-config --script=/usr/lib/mpv-mpris/mpris.so --no-video \
        --ao=pulse --idle=no --no-terminal "$@"
    PLAYER_PID=$DESKTOP_LAST_PID
    wait_until 10 "$name on the session bus" desktop_player_named "$PLAYER_PID" || return 1
    PLAYER_BUS_NAME=$(desktop_player_named "$PLAYER_PID")
}

# desktop_player_named PID: the MPRIS bus name owned by the process PID.
desktop_player_named() {
    local name pid
    for name in $(desktop_bus_call ListNames | grep -o 'org\.mpris\.MediaPlayer2\.[A-Za-z0-9_.-]*'); do
        pid=$(desktop_bus_call GetConnectionUnixProcessID "$name" | grep -o '[0-9][0-9]*' | tail -n 1)
        if [ "$pid" = "$1" ]; then
            echo "$name"
            return 0
        fi
    done
    return 1
}

desktop_bus_call() {
    local method=$1
    shift
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method "org.freedesktop.DBus.$method" "$@" 2>/dev/null
}

# --- Sound outputs -----------------------------------------------------------------------------

# desktop_add_sink NAME DESCRIPTION: another null sink on the test sound server.
desktop_add_sink() {
    pactl load-module module-null-sink sink_name="$1" rate=48000 channels=2 \
        "sink_properties=\"device.description='$2'\"" >/dev/null
}

# recording_source NAME: the source that the record stream with media name NAME reads (one line
# per such stream; nothing when there is none).
recording_source() {
    pactl -f json list source-outputs 2>/dev/null | /usr/bin/python3 -c '
import json, subprocess, sys
streams = json.load(sys.stdin)
sources = {str(s["index"]): s["name"] for s in json.loads(subprocess.run(
    ["pactl", "-f", "json", "list", "sources"], capture_output=True, text=True).stdout or "[]")}
for stream in streams:
    if stream.get("properties", {}).get("media.name") == sys.argv[1]:
        print(sources.get(str(stream.get("source")), "?"))
' "$1"
}

# volume_field_is NAME VALUE: a field of the Volume property; numbers within 0.01.
volume_field_is() {
    local actual
    actual=$(navro_field "$1" Volume)
    case $2 in
    [0-9]*) awk -v a="$actual" -v b="$2" 'BEGIN { d = a - b; exit !(a != "" && d < 0.01 && d > -0.01) }' ;;
    *) [ "$actual" = "$2" ] ;;
    esac
}

# --- Services of the system bus ----------------------------------------------------------------

# desktop_start_system_bus: a private bus standing in for the system bus (DBUS_SYSTEM_BUS_ADDRESS
# is exported), for the stand-ins of UPower, BlueZ and UDisks2.
desktop_start_system_bus() {
    : >"$DESKTOP_DIR/system-bus-address"
    desktop_spawn system-bus dbus-daemon --config-file=/usr/share/dbus-1/session.conf --nofork \
        --nopidfile --address="unix:path=$DESKTOP_DIR/runtime/system_bus" --print-address=3 \
        3>"$DESKTOP_DIR/system-bus-address"
    wait_until 10 "the system bus" grep -q . "$DESKTOP_DIR/system-bus-address" || return 1
    DBUS_SYSTEM_BUS_ADDRESS=$(head -n1 "$DESKTOP_DIR/system-bus-address")
    export DBUS_SYSTEM_BUS_ADDRESS
}

# system_bus_has_name NAME: true once NAME has an owner on the system bus.
system_bus_has_name() {
    gdbus call --system --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.NameHasOwner "$1" 2>/dev/null | grep -q true
}

# desktop_start_mock NAME TEMPLATE BUS_NAME [--session]: python3-dbusmock's template on the
# system bus (or the session bus), ready once BUS_NAME is owned.
desktop_start_mock() {
    local name=$1 template=$2 owner=$3 bus=${4:---system}
    desktop_spawn "$name" /usr/bin/python3 -m dbusmock "$bus" --template "$template"
    if [ "$bus" = --system ]; then
        wait_until 10 "$template on the system bus" system_bus_has_name "$owner"
    else
        wait_until 10 "$template on the session bus" bus_has_name "$owner"
    fi
}

# desktop_start_udisks: the test's own UDisks2 on the system bus; every call it receives is a line
# of $DESKTOP_DIR/logs/udisks2.log.
desktop_start_udisks() {
    desktop_spawn udisks2 /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/helpers/udisks2.py"
    wait_until 10 "the UDisks2 stand-in" grep -q ready "$DESKTOP_DIR/logs/udisks2.log"
}

# mock_upower METHOD ARGUMENT..., mock_bluez ..., mock_udisks ...: the stand-ins' own methods
# (adding a battery, pairing a headset, mounting a stick) on the system bus.
mock_upower() {
    gdbus call --system --dest org.freedesktop.UPower --object-path /org/freedesktop/UPower \
        --method "org.freedesktop.DBus.Mock.$1" "${@:2}" >/dev/null
}
mock_bluez() {
    gdbus call --system --dest org.bluez --object-path /org/bluez \
        --method "org.bluez.Mock.$1" "${@:2}" >/dev/null
}
mock_udisks() {
    gdbus call --system --dest org.freedesktop.UDisks2 --object-path /org/freedesktop/UDisks2 \
        --method "io.navro.test.UDisks2.$1" "${@:2}" >/dev/null
}

# devices_has PYTHON_EXPRESSION: true when the expression holds of `d`, Navro's Devices property
# read over the bus, and of `s`, its State.
devices_has() {
    /usr/bin/python3 - "$1" <<'PYTHON' 2>/dev/null
import sys
import dbus
bus = dbus.SessionBus()
proxy = bus.get_object("io.navro.Navro", "/io/navro/Navro")
properties = dbus.Interface(proxy, "org.freedesktop.DBus.Properties")
d = properties.Get("io.navro.Navro", "Devices")
s = properties.Get("io.navro.Navro", "State")
sys.exit(0 if eval(sys.argv[1]) else 1)
PYTHON
}
