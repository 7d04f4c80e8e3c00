#!/usr/bin/env bash
# bench/devices_cpu.sh [BUILD_DIR] [SECONDS]: Navro's processor use with every monitor running and
# nothing changing (target: 0.00 %), with a UPower, BlueZ and UDisks2 on a private system bus and
# a watched downloads folder; then while the menu panel is shown (its figures sampled every 2 s),
# and after it closed again. On the virtual desktop of the desktop tests.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
navro="$build/src/navro"
# shellcheck source=lib.sh
source "$root/bench/lib.sh"
bench_require devices_cpu "$navro" "$build/tests/desktop/navro_test_x11"
bench_desktop "$build"
desktop_start_system_bus || exit 1
desktop_start_mock upower upower org.freedesktop.UPower || exit 1
gdbus call --system --dest org.freedesktop.UPower --object-path /org/freedesktop/UPower \
    --method org.freedesktop.DBus.Mock.AddDischargingBattery BAT0 Battery 60.0 7200 >/dev/null
desktop_start_mock bluez bluez5 org.bluez || exit 1
gdbus call --system --dest org.bluez --object-path /org/bluez \
    --method org.bluez.Mock.AddAdapter hci0 computer >/dev/null
desktop_start_udisks || exit 1
gdbus call --system --dest org.freedesktop.UDisks2 --object-path /org/freedesktop/UDisks2 \
    --method io.navro.test.UDisks2.AddStick stick STICK 8000000000 Vendor Model >/dev/null
mkdir -p "$HOME/Downloads"
navro_start "$navro" || { echo "devices_cpu: Navro did not start" >&2; exit 1; }
wait_until 10 "the battery" devices_has "len(d['batteries']) == 1 and len(d['drives']) == 1" ||
    { echo "devices_cpu: the monitors did not report" >&2; exit 1; }

measure() { measure_cpu "$1" "$seconds" "$NAVRO_PID"; }

sleep 3
measure "idle, every monitor running"
wait_until 10 "a docked tray icon" tray_icon_centre || exit 1
# shellcheck disable=SC2086
xdotool mousemove $(tray_icon_centre) click 1
wait_until 5 "the menu panel" navro_panel_shown '^Navro( Menu)?$' || exit 1
sleep 1
measure "menu panel shown, sampling every 2 s"
xdotool key Escape
wait_until 5 "the menu panel to close" eval '! navro_panel_shown "^Navro( Menu)?$"' || exit 1
xdotool mousemove 100 700
sleep 2
measure "idle after the panel closed"
