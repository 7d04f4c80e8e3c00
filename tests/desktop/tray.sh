#!/usr/bin/env bash
# The tray icon: before onboarding is finished a click shows onboarding (never the menu panel);
# after it, a click toggles the menu panel.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" tray
# Window titles as Navro sets them (regular expressions).
ONBOARDING_TITLE=${ONBOARDING_TITLE:-^Welcome to Navro$}
MENU_TITLE=${MENU_TITLE:-^Navro( Menu)?$}

click_tray() {
    local centre
    centre=$(tray_icon_centre) || return 1
    # shellcheck disable=SC2086
    xdotool mousemove $centre click 1
}
onboarding_shown() { navro_panel_shown "$ONBOARDING_TITLE"; }
onboarding_hidden() { ! navro_panel_shown "$ONBOARDING_TITLE"; }
menu_shown() { navro_panel_shown "$MENU_TITLE"; }
menu_hidden() { ! navro_panel_shown "$MENU_TITLE"; }

# Before onboarding is finished.
navro_settings hasCompletedOnboarding=false
navro_start "$NAVRO" navro-first-run || finish
check "onboarding shows at the first start" wait_until 10 "the onboarding window" onboarding_shown
check "the tray icon is docked" wait_until 10 "a docked tray icon" tray_icon_centre
screenshot "$SHOTS/onboarding.png"
# The window manager's close key, as a user would press it. Activation can still be settling
# when the key arrives, so an unanswered press is repeated a few times.
close_onboarding() {
    local attempt id
    for attempt in 1 2 3; do
        for id in $(navro_windows "$ONBOARDING_TITLE"); do
            xdotool windowactivate --sync "$id"
            xdotool key alt+F4
        done
        wait_until 2 "onboarding to close" onboarding_hidden && return 0
    done
    return 1
}
check "onboarding closes through the window manager" close_onboarding
click_tray
check "a tray click before onboarding shows onboarding" \
    wait_until 5 "the onboarding window" onboarding_shown
check "and not the menu panel" stays 0.5 menu_hidden
desktop_stop "$NAVRO_PID"

# After it.
navro_settings hasCompletedOnboarding=true
navro_start "$NAVRO" || finish
check "the tray icon is docked again" wait_until 10 "a docked tray icon" tray_icon_centre
check "no onboarding once it is finished" stays 0.5 onboarding_hidden
click_tray
check "a tray click shows the menu panel" wait_until 5 "the menu panel" menu_shown
screenshot "$SHOTS/menu.png"
# Straight away, as a user would: a second click inside the double-click interval is still a
# click on the icon and must toggle.
click_tray
check "a second tray click hides it" wait_until 5 "the menu panel to hide" menu_hidden
check "the menu panel never shows onboarding" onboarding_hidden

finish
