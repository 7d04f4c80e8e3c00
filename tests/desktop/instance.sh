#!/usr/bin/env bash
# One Navro per user: a second launch asks the first to open its notch and exits 0. SIGTERM ends
# Navro cleanly.
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
