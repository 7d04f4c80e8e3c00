#!/usr/bin/env bash
# Starting in a hostile environment: time zones that name folders, FIFOs and devices, a damaged
# cache, a FIFO in place of the settings file, no display, the command line and SIGHUP. Navro
# starts (or says in one line why it cannot), and ends cleanly when asked.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" startup
navro_settings hasCompletedOnboarding=true

# A log without a crash and without a line that is not Navro's own or Qt's (one line each).
no_crash() {
    ! grep -qiE 'segmentation|aborted|core dumped|terminate called' "$1"
}

# --- Time zones --------------------------------------------------------------------------------
mkfifo "$DESKTOP_DIR/fifo-zone"
zones=("TZ=Asia" "TZ=America/" "TZDIR=$DESKTOP_DIR TZ=fifo-zone" "TZDIR=/dev TZ=zero")
for i in "${!zones[@]}"; do
    setting=${zones[$i]}
    value=${setting##*TZ=}
    # shellcheck disable=SC2086 # the setting is one or two assignments
    desktop_spawn "navro-zone-$i" env $setting "$NAVRO"
    NAVRO_PID=$DESKTOP_LAST_PID
    log="$DESKTOP_DIR/logs/navro-zone-$i.log"
    check "with $setting the notch comes up" \
        wait_until 20 "Navro on the bus" navro_field_is panelVisible true
    check "with $setting one line names the value" \
        [ "$(grep -c "^Navro: TZ \"$value\" is no usable time zone" "$log")" = 1 ]
    check "with $setting the system zone serves" grep -q "using the system zone" "$log"
    desktop_stop "$NAVRO_PID"
    check "with $setting SIGTERM ends Navro with status 0 (status ${DESKTOP_EXIT_STATUS:-none})" \
        [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
    check "with $setting nothing crashed" no_crash "$log"
done

# --- A damaged cache ---------------------------------------------------------------------------
# What a cache holds after another version of Qt, a full disk or a crash: every file under
# ~/.cache garbled, and garbage where Qt and the graphics stack keep compiled code.
navro_start "$NAVRO" navro-first || finish
desktop_stop "$NAVRO_PID"
for place in Navro/qmlcache/0123456789abcdef.qmlc qtshadercache-x86_64-little_endian-lp64/1.bin \
    fontconfig/0123456789abcdef-le64.cache-8 mesa_shader_cache/index; do
    mkdir -p "$(dirname "$XDG_CACHE_HOME/$place")"
    : >"$XDG_CACHE_HOME/$place"
done
while IFS= read -r -d '' file; do
    head -c "$(($(stat -c %s "$file") + 4096))" /dev/urandom >"$file"
done < <(find "$XDG_CACHE_HOME" -type f -print0)
navro_start "$NAVRO" navro-cache || finish
check "after the cache is scrambled the notch is drawn" \
    drawn 10 "$SHOTS/scrambled-cache.png" $SCREEN_MIDDLE 10 000000
desktop_stop "$NAVRO_PID"
check "after the cache is scrambled nothing crashed (status ${DESKTOP_EXIT_STATUS:-none})" \
    eval '[ "${DESKTOP_EXIT_STATUS:-1}" = 0 ] && no_crash "$NAVRO_LOG"'

# --- A FIFO in place of the settings file ------------------------------------------------------
settings_file="$XDG_CONFIG_HOME/Navro/Navro.conf"
rm -f "$settings_file"
mkfifo "$settings_file"
navro_start "$NAVRO" navro-fifo || finish
check "with a FIFO as Navro.conf the notch comes up and the bus answers" \
    navro_field_is panelVisible true
check "the FIFO is named in one line" \
    [ "$(grep -c "settings file $settings_file: a FIFO" "$NAVRO_LOG")" = 1 ]
kill -TERM "$NAVRO_PID"
check "with a FIFO as Navro.conf SIGTERM ends Navro within 5 s" desktop_wait_exit "$NAVRO_PID" 5
check "... with status 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "the FIFO is left as it was" test -p "$settings_file"
rm -f "$settings_file"
navro_settings hasCompletedOnboarding=true

# --- SIGHUP ------------------------------------------------------------------------------------
navro_start "$NAVRO" navro-hangup || finish
kill -HUP "$NAVRO_PID"
check "SIGHUP ends Navro" desktop_wait_exit "$NAVRO_PID" 10
check "SIGHUP ends it cleanly with status 0 (status ${DESKTOP_EXIT_STATUS:-none})" \
    [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "the bus name went with it" eval '! navro_owns_name'
check "the settings are 0600 in a 0700 folder" eval \
    '[ "$(stat -c %a "$XDG_CONFIG_HOME/Navro")" = 700 ] && [ "$(stat -c %a "$settings_file")" = 600 ]'

# --- The command line --------------------------------------------------------------------------
for option in --version --help; do
    desktop_spawn "navro$option" "$NAVRO" "$option"
    pid=$DESKTOP_LAST_PID
    check "$option ends by itself" desktop_wait_exit "$pid" 10
    check "$option exits 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
    check "$option starts nothing on the bus" eval '! navro_owns_name'
done
check "--version prints the version" grep -qE '^Navro [0-9]+\.[0-9]+' "$DESKTOP_DIR/logs/navro--version.log"
check "--help prints the usage" grep -q '^Usage: navro' "$DESKTOP_DIR/logs/navro--help.log"
"$NAVRO" --frobnicate >"$DESKTOP_DIR/logs/unknown.out" 2>"$DESKTOP_DIR/logs/unknown.err"
status=$?
check "an unknown option exits 2 (status $status)" [ "$status" = 2 ]
check "... with the usage on standard error only" eval \
    'grep -q "^Usage: navro" "$DESKTOP_DIR/logs/unknown.err" && [ ! -s "$DESKTOP_DIR/logs/unknown.out" ]'

# --- No display --------------------------------------------------------------------------------
for setting in "DISPLAY=:99999" "DISPLAY="; do
    (ulimit -c unlimited; cd "$DESKTOP_DIR" && exec env "$setting" "$NAVRO") \
        >"$DESKTOP_DIR/logs/no-display.log" 2>&1
    status=$?
    check "with $setting Navro exits 1 (status $status)" [ "$status" = 1 ]
    check "with $setting one line of Navro's own says why" eval \
        '[ "$(wc -l <"$DESKTOP_DIR/logs/no-display.log")" = 1 ] && grep -q "^Navro: needs an X11 display (or XWayland)" "$DESKTOP_DIR/logs/no-display.log"'
    check "with $setting no core is left" eval '! ls "$DESKTOP_DIR"/core* >/dev/null 2>&1'
done

finish
