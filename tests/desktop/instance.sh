#!/usr/bin/env bash
# One Navro per user, whatever the timing and whatever the bus does: a second launch asks the first
# to open its notch and exits 0, or exits 1 when it cannot, and never becomes a second notch.
# SIGTERM ends Navro cleanly. A bus that goes away, or never answers, costs only the bus.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" instance
navro_settings hasCompletedOnboarding=true

navro_start "$NAVRO" || finish
first=$NAVRO_PID
check "the first Navro starts closed" navro_field_is status closed

desktop_spawn navro-second "$NAVRO"
second=$DESKTOP_LAST_PID
check "the second launch ends by itself" desktop_wait_exit "$second" 15
check "the second launch exits 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "the first Navro opened its notch" wait_until 5 "status open" navro_field_is status open
check "the first Navro is still running" desktop_is_running "$first"

kill -TERM "$first"
check "SIGTERM ends Navro" desktop_wait_exit "$first" 10
check "SIGTERM exit status is 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "the bus name is released" bash -c '! gdbus call --session --dest org.freedesktop.DBus \
    --object-path /org/freedesktop/DBus --method org.freedesktop.DBus.GetNameOwner io.navro.Navro'
check "Navro did not crash" bash -c "! grep -iE 'segmentation|abort|core dumped' '$NAVRO_LOG'"

# Launched four at once, three times over: one runs, the others hand over.
navro_processes() {
    local pid count=0
    for pid in "$@"; do
        desktop_is_running "$pid" && count=$((count + 1))
    done
    echo "$count"
}
for round in 1 2 3; do
    pids=()
    for i in 1 2 3 4; do
        desktop_spawn "navro-burst-$round-$i" "$NAVRO"
        pids+=("$DESKTOP_LAST_PID")
    done
    check "round $round: all but one of four launches end" \
        wait_until 30 "three to end" eval '[ "$(navro_processes "${pids[@]}")" = 1 ]'
    check "round $round: one keeps running" stays 2 eval '[ "$(navro_processes "${pids[@]}")" = 1 ]'
    check "round $round: it owns the bus name" navro_owns_name
    survivor=
    for pid in "${pids[@]}"; do
        desktop_is_running "$pid" && survivor=$pid
    done
    for pid in "${pids[@]}"; do
        if [ "$pid" != "$survivor" ]; then
            desktop_wait_exit "$pid" 5
            check "round $round: a launch that handed over exited 0 (status ${DESKTOP_EXIT_STATUS:-none})" \
                [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
        fi
    done
    for pid in "${pids[@]}"; do
        desktop_stop "$pid"
    done
done

# A Navro that does not answer for a while (stopped, swapping) still keeps a second one out.
navro_start "$NAVRO" navro-frozen || finish
frozen=$NAVRO_PID
kill -STOP "$frozen"
desktop_spawn navro-beside-frozen "$NAVRO"
beside=$DESKTOP_LAST_PID
check "a launch beside a frozen Navro ends by itself" desktop_wait_exit "$beside" 20
check "... with status 1 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-0}" = 1 ]
check "... and says why in one line" \
    [ "$(grep -c '^Navro: Navro already runs (process '"$frozen"')' "$DESKTOP_DIR/logs/navro-beside-frozen.log")" = 1 ]
kill -CONT "$frozen"
check "the frozen Navro runs on when it wakes" wait_until 5 "its state" navro_field_is panelVisible true
navro_call Close
wait_until 5 "the notch to close" navro_field_is status closed || finish

# The session bus goes away and comes back: the running Navro takes its name again, and a new
# launch hands over to it instead of running beside it.
desktop_restart_bus || finish
check "after the bus restarts Navro owns its name again" wait_until 15 "the name" navro_owns_name
check "the log says the bus was lost" grep -q 'lost the session bus' "$NAVRO_LOG"
desktop_spawn navro-after-restart "$NAVRO"
check "a launch after the restart ends by itself" desktop_wait_exit "$DESKTOP_LAST_PID" 15
check "... with status 0 (status ${DESKTOP_EXIT_STATUS:-none})" [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
check "... after opening the running Navro's notch" wait_until 5 "status open" navro_field_is status open
desktop_stop "$frozen"

# A bus that takes the connection and never answers: the notch comes all the same, quickly.
desktop_spawn deaf-bus socat "UNIX-LISTEN:$DESKTOP_DIR/deaf-bus,fork" EXEC:"sleep 600"
deaf=$DESKTOP_LAST_PID
wait_until 10 "the deaf bus" test -S "$DESKTOP_DIR/deaf-bus" || finish
desktop_spawn navro-deaf-bus env DBUS_SESSION_BUS_ADDRESS="unix:path=$DESKTOP_DIR/deaf-bus" "$NAVRO"
deaf_navro=$DESKTOP_LAST_PID
deaf_log="$DESKTOP_DIR/logs/navro-deaf-bus.log"
check "with a bus that never answers Navro shows its notch within 15 s" \
    wait_until 15 "its window" eval '[ -n "$(xdotool search --onlyvisible --pid "$deaf_navro")" ]'
check "... drawn at the top centre" drawn 5 "$SHOTS/deaf-bus.png" $SCREEN_MIDDLE 10 000000
check "... and one line says the bus does not answer" \
    [ "$(grep -c '^Navro: remote control unavailable: the session bus at .* did not answer' "$deaf_log")" = 1 ]
xdotool key ctrl+alt+l
check "... and the hot key still opens the notch" \
    drawn 5 "$SHOTS/deaf-bus-open.png" $SCREEN_MIDDLE 250 000000
desktop_stop "$deaf_navro"
check "... and SIGTERM still exits 0 (status ${DESKTOP_EXIT_STATUS:-none})" \
    [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]
desktop_stop "$deaf"

# Without a session bus Navro runs all the same, minus the remote control, and says so once.
desktop_spawn navro-without-bus env DBUS_SESSION_BUS_ADDRESS="unix:path=$DESKTOP_DIR/no-bus-here" "$NAVRO"
lonely=$DESKTOP_LAST_PID
lonely_log="$DESKTOP_DIR/logs/navro-without-bus.log"
check "without a bus the notch is still drawn" \
    drawn 20 "$SHOTS/without-bus.png" $SCREEN_MIDDLE 10 000000
check "without a bus Navro says so in one line" \
    [ "$(grep -c '^Navro: remote control unavailable: ' "$lonely_log")" = 1 ]
xdotool key ctrl+alt+l
check "without a bus the hot key still opens the notch" \
    drawn 5 "$SHOTS/without-bus-open.png" $SCREEN_MIDDLE 250 000000
desktop_stop "$lonely"
check "without a bus SIGTERM still exits 0 (status ${DESKTOP_EXIT_STATUS:-none})" \
    [ "${DESKTOP_EXIT_STATUS:-1}" = 0 ]

finish
