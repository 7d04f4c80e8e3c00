#!/usr/bin/env bash
# What's new and the network: the window shows once after an update and never on a fresh install,
# and a Navro built without an update feed or a statistics address makes no network request of
# any kind, whatever page the user opens.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" services
version=$("$NAVRO" --version | awk '{ print $2 }')
settings_file="$XDG_CONFIG_HOME/Navro/Navro.conf"

whats_new_shown() {
    navro_panel_shown "What's New in Navro"
}

stop_navro() {
    desktop_stop "$NAVRO_PID"
}

# --- A fresh install ---------------------------------------------------------------------------
navro_start "$NAVRO" navro-fresh
check "a fresh install shows onboarding" wait_until 10 "onboarding" navro_panel_shown "Welcome to Navro"
check "a fresh install shows no what's new window" stays 2 eval '! whats_new_shown'
check "the running version is recorded" wait_until 10 "the record" grep -q "^lastSeenVersion=$version$" "$settings_file"
stop_navro

# --- An update ---------------------------------------------------------------------------------
navro_settings hasCompletedOnboarding=true lastSeenVersion=0.0.1
navro_start "$NAVRO" navro-updated
check "after an update the what's new window shows" wait_until 10 "what's new" whats_new_shown
window=$(navro_window "What's New in Navro")
window_screenshot "$window" "$SHOTS/whats-new.png"
check "it names this version" test -n "$window"
xdotool windowactivate --sync "$window" key Return 2>/dev/null
check "Continue closes it" wait_until 10 "the window to close" eval '! whats_new_shown'
check "the new version is recorded" grep -q "^lastSeenVersion=$version$" "$settings_file"
stop_navro
navro_start "$NAVRO" navro-again
check "the next start shows it no more" stays 3 eval '! whats_new_shown'
stop_navro

# --- No network --------------------------------------------------------------------------------
# Every socket Navro and its helper open is traced; the settings pages (the About page reads the
# update state, the General page the statistics) are opened on the way.
trace="$DESKTOP_DIR/network.trace"
desktop_spawn navro-traced strace -f -qq -e trace=socket,connect,sendto,sendmsg -o "$trace" "$NAVRO"
NAVRO_PID=$DESKTOP_LAST_PID
check "Navro starts under the trace" wait_until 30 "Navro on the bus" navro_field_is panelVisible true
for page in about general; do
    navro_call OpenSettings "$page"
    wait_until 10 "the settings window" navro_panel_shown "Navro Settings"
    crop_screenshot "$SHOTS/settings-$page.png" 0 0 1920 1080
done
internet_socket() {
    grep -qE "AF_INET6?[,)]|PF_INET" "$trace"
}
check "no internet socket is ever opened" stays 3 eval '! internet_socket'
grep -E "AF_INET6?[,)]|PF_INET" "$trace" | head -n 5
stop_navro
finish
