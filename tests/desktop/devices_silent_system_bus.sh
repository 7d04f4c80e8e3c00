#!/usr/bin/env bash
# A system bus that takes connections in and never answers (a hung bus daemon): Navro starts,
# draws its notch, answers on the session bus and opens the Devices tab, without the sections the
# system bus would have filled, and says once why they are missing.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" devices_silent_system_bus

desktop_spawn deaf-system-bus socat "UNIX-LISTEN:$DESKTOP_DIR/deaf-system-bus,fork" EXEC:"sleep 600"
wait_until 10 "the deaf bus" test -S "$DESKTOP_DIR/deaf-system-bus" || finish
export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$DESKTOP_DIR/deaf-system-bus"

navro_settings hasCompletedOnboarding=true language=english
check "Navro starts and answers on the session bus" navro_start "$NAVRO"
check "its notch is drawn at the top centre" drawn 5 "$SHOTS/notch.png" $SCREEN_MIDDLE 10 000000
# Navro answers before the probe of the system bus has given up on it.
check "one line says the system bus did not answer" wait_until 5 "the line" eval \
    '[ "$(grep -c "the system bus at .* did not answer" "$NAVRO_LOG")" = 1 ]'
check "and only one" stays 1 eval \
    '[ "$(grep -c "the system bus at .* did not answer" "$NAVRO_LOG")" = 1 ]'

check "batteries, Bluetooth and drives are absent, the screen is listed" devices_has \
    "not d['batteries'] and not d['bluetooth'] and not d['drives'] and d['displays'][0]['width'] == 1920"
navro_call OpenTab devices
check "the Devices tab opens" wait_until 5 "the devices tab" navro_field_is selectedTab devices
check "and is drawn" drawn 5 "$SHOTS/devices-tab.png" $SCREEN_MIDDLE 150 000000
# Every answer comes at once: nothing waits on the silent bus.
check "Navro keeps answering" timeout 3 gdbus call --session --dest io.navro.Navro \
    --object-path /io/navro/Navro --method org.freedesktop.DBus.Properties.Get io.navro.Navro Devices
navro_call Close
check "and closes" wait_until 5 "closed" navro_field_is status closed
finish
