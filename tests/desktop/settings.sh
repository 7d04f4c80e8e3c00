#!/usr/bin/env bash
# The settings window's General page in Arabic, built at a fresh start and built again on the way
# back from the Prayer page: its two switches ("show the notch" and "launch at login") each sit on
# their own row, apart from the other, and each takes the clicks aimed at it.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" settings
SETTINGS_TITLE='^(Navro Settings|إعدادات نافرو)$'
AUTOSTART="$XDG_CONFIG_HOME/autostart/navro.desktop"

# switch_runs FILE: "TOP BOTTOM X" for every band of rows of the picture that shows a switch in
# the accent: rows with a stretch of blue in the leading fifth of the window (its left in Arabic),
# where the switches are and nothing else is blue.
switch_runs() {
    local width
    width=$("$DESKTOP_CONVERT" "$1" -format '%w' info:)
    "$DESKTOP_CONVERT" "$1" -crop "$((width / 5))x100000+0+0" +repage -depth 8 txt:- | awk '
        /^#/ { next }
        {
            split($1, at, ","); x = at[1] + 0; y = at[2] + 0
            gsub(/[()]/, "", $2); split($2, c, ",")
            if (c[3] > 150 && c[1] < 80 && c[2] > 60 && c[2] < 180 && c[3] - c[2] > 60) {
                count[y]++; sum[y] += x
                if (y > last) last = y
            }
        }
        END {
            top = -1
            for (y = 0; y <= last + 1; y++) {
                if (count[y] >= 8) {
                    if (top < 0) { top = y; xs = 0; n = 0 }
                    xs += sum[y]; n += count[y]
                } else if (top >= 0) {
                    print top, y - 1, int(xs / n)
                    top = -1
                }
            }
        }'
}

# check_switches NAME: the page as it is now: two switches, each 20 to 30 pixels tall, at least
# 8 pixels apart; a click on each flips its own setting and only that one.
check_switches() {
    local name=$1 id x y w h runs
    wait_until 10 "the settings window" navro_window "$SETTINGS_TITLE" || return 1
    id=$(navro_window "$SETTINGS_TITLE")
    read -r x y w h < <(window_rect "$id")
    window_screenshot "$id" "$SHOTS/$name.png"
    runs=$(switch_runs "$SHOTS/$name.png")
    echo "$runs" | sed "s/^/[$name] switch rows: /" >&2
    check "$name: two switches are drawn" [ "$(echo "$runs" | grep -c .)" = 2 ]
    local top1 bottom1 x1 top2 bottom2 x2
    read -r top1 bottom1 x1 top2 bottom2 x2 < <(echo $runs)
    check "$name: each switch is 20 to 30 pixels tall ($top1-$bottom1, $top2-$bottom2)" \
        [ $((bottom1 - top1)) -ge 19 -a $((bottom1 - top1)) -le 29 \
          -a $((bottom2 - top2)) -ge 19 -a $((bottom2 - top2)) -le 29 ]
    check "$name: the switches are at least 8 pixels apart ($((top2 - bottom1 - 1)))" \
        [ $((top2 - bottom1 - 1)) -ge 8 ]

    # The upper switch is "show the notch", the lower one "launch at login".
    xdotool mousemove $((x + x1)) $((y + (top1 + bottom1) / 2)) click 1
    check "$name: a click on the upper switch turns the notch off" \
        wait_until 5 "notchEnabled false" navro_field_is notchEnabled false
    check "$name: and leaves launch at login alone" [ -f "$AUTOSTART" ]
    xdotool click 1
    wait_until 5 "notchEnabled true" navro_field_is notchEnabled true
    xdotool mousemove $((x + x2)) $((y + (top2 + bottom2) / 2)) click 1
    check "$name: a click on the lower switch turns launch at login off" \
        wait_until 5 "the autostart entry to go" eval '! [ -f "$AUTOSTART" ]'
    check "$name: and leaves the notch on" navro_field_is notchEnabled true
    xdotool click 1
    wait_until 5 "the autostart entry" [ -f "$AUTOSTART" ]
    xdotool mousemove 100 700
}

# Launch at login is on from the start, so both switches show the accent.
mkdir -p "$(dirname "$AUTOSTART")"
printf '[Desktop Entry]\nType=Application\nName=Navro\nExec=navro\n' >"$AUTOSTART"
navro_settings hasCompletedOnboarding=true language=arabic theme=light
navro_start "$NAVRO" || finish

navro_call OpenSettings general
check_switches fresh-arabic
# The page is built anew each time it is shown (the call returns once it is).
navro_call OpenSettings prayer
window_screenshot "$(navro_window "$SETTINGS_TITLE")" "$SHOTS/prayer.png"
navro_call OpenSettings general
check_switches after-prayer

finish
