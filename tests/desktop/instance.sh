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

finish
