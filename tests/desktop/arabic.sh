#!/usr/bin/env bash
# In Arabic the open notch is laid out right to left: its tab bar is the English one mirrored.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" arabic
# The band of the open notch that holds the tab bar, symmetric about the screen's middle.
BAND_X=$((SCREEN_MIDDLE - 330))
BAND_W=660
BAND_Y=${TAB_BAND_Y:-6}
BAND_H=${TAB_BAND_H:-46}

open_and_profile() {
    local language=$1
    navro_settings hasCompletedOnboarding=true language="$language"
    navro_start "$NAVRO" "navro-$language" || return 1
    check "$language: State shows $language" navro_field_is language "$language"
    navro_call Open false
    check "$language: the notch opens" wait_until 5 "status open" navro_field_is status open
    check "$language: the open notch is drawn" \
        drawn 5 "$SHOTS/$language-open.png" $SCREEN_MIDDLE 250 000000
    profile=$(column_profile "$SHOTS/$language-open.png" $BAND_X "$BAND_Y" $BAND_W "$BAND_H")
    desktop_stop "$NAVRO_PID"
}

open_and_profile english
english=$profile
open_and_profile arabic
arabic=$profile
check "the tab bar has content" [ "$(overlap "$english" "$english")" -eq 100 ]
mirrored=$(overlap "$english" "$(reversed "$arabic")")
same=$(overlap "$english" "$arabic")
check "Arabic tab bar mirrors the English one (mirrored overlap $mirrored%, unmirrored $same%)" \
    [ "$mirrored" -ge 60 -a "$mirrored" -gt $((same + 10)) ]

finish
