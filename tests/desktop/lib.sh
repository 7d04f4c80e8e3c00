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
# returns 1 if it is still running after SECONDS.
desktop_wait_exit() {
    local pid=$1 seconds=$2
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

# desktop_stop PID: SIGTERM, and SIGKILL if it is still there after a few seconds.
desktop_stop() {
    local pid=$1
    if desktop_is_running "$pid"; then
        kill -TERM "$pid" 2>/dev/null
        if ! desktop_wait_exit "$pid" 5; then
            kill -KILL "$pid" 2>/dev/null
            desktop_wait_exit "$pid" 5
        fi
    else
        wait "$pid" 2>/dev/null
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
    for tool in Xvfb dbus-daemon openbox xcompmgr xsetroot xdotool gdbus import "$DESKTOP_HELPER"; do
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
    desktop_spawn dbus dbus-daemon --session --nofork --nopidfile \
        --address="unix:path=$DESKTOP_DIR/runtime/bus" --print-address=3 3>"$DESKTOP_DIR/bus-address"
    wait_until 10 "the session bus" grep -q . "$DESKTOP_DIR/bus-address" || return 1
    export DBUS_SESSION_BUS_ADDRESS
    DBUS_SESSION_BUS_ADDRESS=$(head -n1 "$DESKTOP_DIR/bus-address")

    xsetroot -solid '#3060a0'
    desktop_spawn openbox openbox --sm-disable
    wait_until 10 "the window manager" desktop_wm_ready || return 1
    desktop_spawn xcompmgr xcompmgr -n
    wait_until 10 "the compositor" desktop_has_selection_owner _NET_WM_CM_S0 || return 1
    if [ "${DESKTOP_TRAY:-1}" = 1 ]; then
        desktop_spawn trayer trayer --edge top --align right --widthtype request --height 24 \
            --transparent false --SetDockType true --SetPartialStrut false
        wait_until 10 "the tray host" desktop_has_selection_owner _NET_SYSTEM_TRAY_S0 || return 1
    fi
    desktop_say "desktop $DISPLAY ready in $DESKTOP_DIR"
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

navro_state() {
    gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method org.freedesktop.DBus.Properties.Get io.navro.Navro State 2>/dev/null
}

# navro_field NAME: one field of the State property ('closed', true, …) without quotes.
navro_field() {
    navro_state | sed -n "s/.*'$1': <\([^>]*\)>.*/\1/p" | tr -d "'"
}

navro_field_is() {
    [ "$(navro_field "$1")" = "$2" ]
}

navro_call() {
    local method=$1
    shift
    gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
        --method "io.navro.Navro.$method" "$@" >/dev/null
}

# navro_start BINARY [NAME]: starts Navro and waits until it answers on the bus with its notch
# window on screen. Its pid is in NAVRO_PID, its output in $DESKTOP_DIR/logs/NAME.log.
navro_start() {
    local binary=$1 name=${2:-navro}
    desktop_spawn "$name" "$binary"
    NAVRO_PID=$DESKTOP_LAST_PID
    NAVRO_LOG="$DESKTOP_DIR/logs/$name.log"
    wait_until 20 "Navro on the session bus" navro_field_is panelVisible true
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

# finish: prints the summary, Navro's log on failure, and exits with the verdict.
finish() {
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
