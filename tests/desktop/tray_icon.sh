#!/usr/bin/env bash
# The tray icon reads on a dark panel and on a light one, in either theme, and it is Navro's own
# mark: the blue screen of the application icon with the black notch at its top.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
DESKTOP_TRAY=0 desktop_test_begin "$1" "$2" tray_icon

# icon_measures FILE BACKGROUND: "LEGIBLE BLUE BLACK MAX" for the picture of a tray cell painted
# BACKGROUND (RRGGBB): the share of its pixels (in percent) that stand out from the background by
# at least 3:1 (the contrast asked of a symbol), the share in the application icon's blue, the
# number of near-black pixels (the notch), and the highest contrast found.
icon_measures() {
    "$DESKTOP_CONVERT" "$1" -depth 8 txt:- | awk -v bg="$2" '
        function channel(v) { v /= 255; return v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ^ 2.4 }
        function luminance(r, g, b) { return 0.2126 * channel(r) + 0.7152 * channel(g) + 0.0722 * channel(b) }
        function hex(s) { return index("0123456789abcdef", tolower(s)) - 1 }
        BEGIN {
            background = luminance(16 * hex(substr(bg, 1, 1)) + hex(substr(bg, 2, 1)),
                                   16 * hex(substr(bg, 3, 1)) + hex(substr(bg, 4, 1)),
                                   16 * hex(substr(bg, 5, 1)) + hex(substr(bg, 6, 1)))
        }
        /^#/ { next }
        {
            gsub(/[()]/, "", $2); split($2, c, ",")
            l = luminance(c[1], c[2], c[3])
            ratio = l > background ? (l + 0.05) / (background + 0.05) : (background + 0.05) / (l + 0.05)
            total++
            if (ratio >= 3) legible++
            if (ratio > best) best = ratio
            if (c[3] > 200 && c[1] < 60 && c[2] > 100 && c[2] < 170) blue++
            if (c[1] < 16 && c[2] < 16 && c[3] < 16) black++
        }
        END { printf "%d %d %d %.1f\n", 100 * legible / total, 100 * blue / total, black, best }'
}

for panel in 1e1e1e:dark f0f0f0:light; do
    tint=${panel%%:*}
    for theme in light dark; do
        name="$panel-panel-$theme-theme"
        name=${name#*:}
        tray_start "$tint" || finish
        tray=$DESKTOP_LAST_PID
        navro_settings hasCompletedOnboarding=true theme="$theme"
        navro_start "$NAVRO" "navro-$name" || finish
        check "$name: the icon is docked" wait_until 10 "a docked tray icon" tray_cell_rect
        # shellcheck disable=SC2046
        crop_screenshot "$SHOTS/$name.png" $(tray_cell_rect)
        read -r legible blue black best < <(icon_measures "$SHOTS/$name.png" "$tint")
        check "$name: a quarter of the cell stands out by 3:1 or more ($legible %, best $best:1)" \
            [ "$legible" -ge 25 ]
        check "$name: it shows the application icon's blue screen ($blue %)" [ "$blue" -ge 25 ]
        check "$name: and its black notch ($black pixels)" [ "$black" -ge 6 ]
        desktop_stop "$NAVRO_PID"
        desktop_stop "$tray"
    done
done

finish
