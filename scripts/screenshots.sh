#!/usr/bin/env bash
# scripts/screenshots.sh BUILD_DIR [FOLDER]: pictures of every window and page of Navro, in English
# and Arabic, light and dark, at their default sizes, for looking them over before a release:
# onboarding (each page), the tray panel, the settings window (General, Prayer with its list of
# methods open, About, and General again after Prayer), the closed and the open notch. Written to FOLDER (BUILD_DIR/screenshots by
# default) as THEME-LANGUAGE-WHAT.png, on a virtual desktop of its own.
#
# Sourced by scripts/run.sh, which takes the same pictures on the desktop it starts anyway.
set -uo pipefail

# Window titles as Navro sets them, in either language (regular expressions).
SHOTS_ONBOARDING_TITLE='^(Welcome to Navro|مرحباً بك في نافرو)$'
SHOTS_SETTINGS_TITLE='^(Navro Settings|إعدادات نافرو)$'
SHOTS_MENU_TITLE='^Navro$'
SHOTS_ONBOARDING_PAGES=5

shots_say() { echo "  $1"; }

# shots_window FILE PATTERN: waits for the window and keeps its picture in FILE.
shots_window() {
    local file=$1 pattern=$2 id
    wait_until 10 "a window titled $pattern" navro_window "$pattern" || return 1
    id=$(navro_window "$pattern") || return 1
    window_screenshot "$id" "$file" && shots_say "$file"
}

# shots_click_continue: the onboarding window's primary button, at the trailing end of its footer
# (right in English, left in Arabic).
shots_click_continue() {
    local language=$1 id x y w h
    id=$(navro_window "$SHOTS_ONBOARDING_TITLE") || return 1
    read -r x y w h < <(window_rect "$id")
    if [ "$language" = arabic ]; then
        xdotool mousemove $((x + 44)) $((y + h - 36)) click 1
    else
        xdotool mousemove $((x + w - 44)) $((y + h - 36)) click 1
    fi
    xdotool mousemove 100 700
}

# shots_first_run NAVRO FOLDER THEME LANGUAGE: the onboarding pages, one by one.
shots_first_run() {
    local navro=$1 folder=$2 theme=$3 language=$4 page
    local prefix="$folder/$theme-$language"
    navro_settings hasCompletedOnboarding=false theme="$theme" language="$language"
    navro_start "$navro" "navro-$theme-$language-first-run" || return 1
    for page in $(seq "$SHOTS_ONBOARDING_PAGES"); do
        shots_window "$prefix-onboarding-$page.png" "$SHOTS_ONBOARDING_TITLE" || return 1
        [ "$page" -lt "$SHOTS_ONBOARDING_PAGES" ] && { shots_click_continue "$language" || return 1; }
    done
    desktop_stop "$NAVRO_PID"
}

# shots_settings_page FILE PAGE: the settings window on PAGE.
shots_settings_page() {
    navro_call OpenSettings "$2" || return 1
    shots_window "$1" "$SHOTS_SETTINGS_TITLE"
}

# shots_everyday NAVRO FOLDER THEME LANGUAGE: everything a user sees once onboarding is done.
shots_everyday() {
    local navro=$1 folder=$2 theme=$3 language=$4 centre attempt
    local prefix="$folder/$theme-$language"
    navro_settings hasCompletedOnboarding=true theme="$theme" language="$language"
    navro_start "$navro" "navro-$theme-$language" || return 1

    # The notch: the top centre of the screen, as wide as its window.
    drawn 10 "$prefix-notch-closed.png.whole.png" 960 10 000000 || return 1
    crop_screenshot "$prefix-notch-closed.png" 596 0 728 80 && shots_say "$prefix-notch-closed.png"
    rm -f "$prefix-notch-closed.png.whole.png"
    navro_call Open false
    wait_until 5 "the notch to open" navro_field_is status open || return 1
    drawn 5 "$prefix-notch-open.png.whole.png" 960 250 000000 || return 1
    crop_screenshot "$prefix-notch-open.png" 596 0 728 300 && shots_say "$prefix-notch-open.png"
    rm -f "$prefix-notch-open.png.whole.png"
    navro_call Close
    wait_until 5 "the notch to close" navro_field_is status closed || return 1
    # The tabs with views of their own, reached from the keyboard as a user would: the timer is
    # the fourth tab, the notes the fifth, and the arrows follow the reading direction.
    navro_call Open true
    wait_until 5 "the notch to open" navro_field_is status open || return 1
    local next=Right tab steps
    [ "$language" = arabic ] && next=Left
    for tab in timer:3 notes:1; do
        steps=${tab#*:}
        tab=${tab%%:*}
        # shellcheck disable=SC2046
        xdotool key $(yes "$next" | head -n "$steps")
        wait_until 5 "the $tab tab" navro_field_is selectedTab "$tab" || return 1
        drawn 5 "$prefix-notch-$tab.png.whole.png" 960 250 000000 || return 1
        crop_screenshot "$prefix-notch-$tab.png" 596 0 728 300 && shots_say "$prefix-notch-$tab.png"
        rm -f "$prefix-notch-$tab.png.whole.png"
    done
    xdotool key Escape
    wait_until 5 "the notch to close" navro_field_is status closed || return 1

    # The tray panel, opened as a user would. The tray host may still show the icon of the
    # Navro before for a moment, so a click that opens nothing is tried again.
    wait_until 10 "a docked tray icon" tray_icon_centre || return 1
    for attempt in 1 2 3; do
        centre=$(tray_icon_centre)
        # shellcheck disable=SC2086
        xdotool mousemove $centre click 1
        wait_until 3 "the tray panel" navro_window "$SHOTS_MENU_TITLE" && break
    done
    shots_window "$prefix-tray-panel.png" "$SHOTS_MENU_TITLE" || return 1
    xdotool key Escape
    wait_until 5 "the tray panel to close" eval '! navro_window "$SHOTS_MENU_TITLE"'
    xdotool mousemove 100 700

    shots_settings_page "$prefix-settings-general.png" general || return 1
    shots_settings_page "$prefix-settings-prayer.png" prayer || return 1
    # The calculation method's list, opened from the keyboard: the three pages of the sidebar
    # and the city list come before it.
    xdotool key Tab Tab Tab Tab Tab space
    shots_window "$prefix-settings-prayer-methods.png" "$SHOTS_SETTINGS_TITLE" || return 1
    xdotool key Escape
    shots_settings_page "$prefix-settings-about.png" about || return 1
    # The same page built a second time, after another one.
    shots_settings_page "$prefix-settings-general-again.png" general || return 1
    desktop_stop "$NAVRO_PID"
}

# shots_all NAVRO FOLDER: every picture, in every theme and language.
shots_all() {
    local navro=$1 folder=$2 theme language
    mkdir -p "$folder"
    for theme in light dark; do
        for language in english arabic; do
            shots_first_run "$navro" "$folder" "$theme" "$language" || return 1
            shots_everyday "$navro" "$folder" "$theme" "$language" || return 1
        done
    done
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    root=$(cd "$(dirname "$0")/.." && pwd)
    build=$(cd "${1:-$root/build}" && pwd)
    folder=${2:-$build/screenshots}
    # shellcheck source=../tests/desktop/lib.sh
    source "$root/tests/desktop/lib.sh"
    DESKTOP_HELPER="$build/tests/desktop/navro_test_x11"
    desktop_start || exit 1
    xdotool mousemove 100 700
    echo "Screenshots in $folder:"
    shots_all "$build/src/navro" "$folder" || {
        echo "screenshots.sh: stopped early; Navro's last log:" >&2
        tail -n 20 "$NAVRO_LOG" >&2
        exit 1
    }
fi
