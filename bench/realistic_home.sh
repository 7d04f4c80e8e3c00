#!/usr/bin/env bash
# bash bench/realistic_home.sh HOME_DIR [KEY=VALUE...]: fills HOME_DIR with what months of use
# leave behind, for the whole-application benches: a clipboard history at the largest limit the
# settings offer (500 entries, some 50 of them images in "ClipboardImages"), 200 to-dos with 20
# reminders ahead, a shelf of 100 files and folders that exist, a calendar of 500 events with
# recurrences in the data folder's "Calendars" folder, and settings with onboarding done, English,
# the prayer alert on (KEY=VALUE lines are added to them). Data folder 0700, its files 0600. Not
# executable, so that scripts/bench.sh does not take it for a bench.
#
# Sourced (after tests/desktop/lib.sh), it also gives:
#   realistic_home HOME_DIR [KEY=VALUE...]   the same as running it
#   realistic_player DIR [playing|paused] [ALBUMS]
#       mpv with its MPRIS plugin playing ALBUMS (4) folders of three 20-second tagged tones,
#       each folder with its own cover.jpg in a colour of its own, round and round; sets
#       PLAYER_PID, PLAYER_BUS_NAME and REALISTIC_PLAYER (its name for playerctl -p)
#   realistic_services [playing|paused|none] [ALBUMS]
#       the home above in $HOME, then every service of the desktop Navro talks to: a sound
#       server, a notification daemon, the tests' screen saver, a private system bus with
#       python3-dbusmock's UPower (battery $REALISTIC_BATTERY, charger $REALISTIC_CHARGER) and
#       BlueZ (paired headset $REALISTIC_HEADSET) and the tests' UDisks2 (a stick), and the
#       player of realistic_player in $DESKTOP_DIR/music (none: no player, the caller starts its
#       own)
#   realistic_cover_colour TITLE   the RRGGBB of the cover of the track of that title
#   realistic_check SHOTS_DIR      that the running Navro ($NAVRO_PID, $NAVRO_LOG) took in every
#       piece of the home: nothing of it refused in its log, the next meeting from the calendar,
#       the prayer alert's city, no onboarding, the notes and shelf tabs drawn with their rows,
#       the player's track and cover in the notch, and a copy recorded on top of the full history
#       (screenshots in SHOTS_DIR); one line per check, false when any failed

REALISTIC_HOME_BENCH=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
REALISTIC_CLIPBOARD_LIMIT=500

realistic_home() {
    local home=$1
    shift
    mkdir -p "$home" || return 1
    /usr/bin/python3 "$REALISTIC_HOME_BENCH/realistic_home.py" fill "$home" \
        "$REALISTIC_CLIPBOARD_LIMIT" || return 1
    [ "$#" -eq 0 ] || printf '%s\n' "$@" >>"$home/.config/Navro/Navro.conf"
}

# Album K's cover: a flat colour of its own, which the checks find again on screen.
realistic_album_colours=(C03020 2080C0 30A050 D0A020 8040B0 E06090 40B0B0 A06030 6070E0 90C040)

realistic_player() {
    local dir=$1 mode=${2:-playing} albums=${3:-4} album track files=() colour
    for ((album = 1; album <= albums; album++)); do
        colour=${realistic_album_colours[$(((album - 1) % ${#realistic_album_colours[@]}))]}
        mkdir -p "$dir/album-$album"
        for track in 1 2 3; do
            files+=("$dir/album-$album/track-$track.ogg")
            [ -s "${files[-1]}" ] && continue
            sox -n -r 48000 -c 2 --comment "" --add-comment "TITLE=Album $album Track $track" \
                --add-comment "ARTIST=Artist $album" --add-comment "ALBUM=Album $album" \
                "${files[-1]}" synth 20 sine $((220 + 40 * album + 110 * track)) vol 0.5 ||
                return 1
        done
        # What a music folder has: a JPEG cover of a few hundred pixels.
        "$DESKTOP_CONVERT" -size 500x500 "xc:#$colour" -quality 90 "$dir/album-$album/cover.jpg" ||
            return 1
    done
    local extra=(--loop-playlist=inf)
    [ "$mode" = paused ] && extra+=(--pause)
    desktop_start_player player "${extra[@]}" "${files[@]}" || return 1
    REALISTIC_PLAYER=${PLAYER_BUS_NAME#org.mpris.MediaPlayer2.}
}

REALISTIC_BATTERY=/org/freedesktop/UPower/devices/BAT0
REALISTIC_CHARGER=/org/freedesktop/UPower/devices/AC
REALISTIC_HEADSET=11:22:33:44:55:66

realistic_services() {
    realistic_home "$HOME" || return 1
    mkdir -p "$HOME/Downloads"
    echo "XDG_DOWNLOAD_DIR=\"\$HOME/Downloads\"" >"$XDG_CONFIG_HOME/user-dirs.dirs"
    desktop_start_sound && desktop_start_notifications && desktop_start_screensaver &&
        desktop_start_system_bus || return 1
    desktop_start_mock upower upower org.freedesktop.UPower &&
        mock_upower AddDischargingBattery BAT0 "Laptop Battery" 60.0 7200 &&
        mock_upower AddAC AC Charger || return 1
    desktop_start_mock bluez bluez5 org.bluez && mock_bluez AddAdapter hci0 computer &&
        mock_bluez AddDevice hci0 "$REALISTIC_HEADSET" "Travel Headset" &&
        mock_bluez PairDevice hci0 "$REALISTIC_HEADSET" 2360324 || return 1
    desktop_start_udisks &&
        mock_udisks AddStick stick PHOTOS 16000000000 Kingston DataTraveler || return 1
    [ "${1:-playing}" = none ] || realistic_player "$DESKTOP_DIR/music" "${1:-playing}" "${2:-4}"
}

realistic_cover_colour() {
    local album=${1#Album }
    album=${album%% *}
    echo "${realistic_album_colours[$(((album - 1) % ${#realistic_album_colours[@]}))]}"
}

realistic_say() {
    if "${@:2}"; then
        echo "ok   - $1"
    else
        echo "FAIL - $1"
        realistic_failed=1
    fi
}

# The data files and settings the log would name if Navro could not use them.
realistic_refusals() {
    grep -E 'clipboard\.plist|notes\.json|shelf\.json|calendar|setting "|kept a copy' "$NAVRO_LOG"
}

realistic_onboarding_absent() {
    [ -z "$(navro_windows 'Welcome to Navro')" ]
}

realistic_next_meeting() {
    local title
    title=$(navro_field title NextMeeting)
    [[ "$title" =~ sync\ [0-9]+$ ]] || grep -q "^SUMMARY:$title" \
        "$XDG_DATA_HOME/Navro/Calendars/Work.ics"
}

# realistic_lit_rows FILE: how many rows of the open notch's tab area carry drawing (text, icons).
realistic_lit_rows() {
    "$DESKTOP_CONVERT" "$1" -crop "680x200+$((SCREEN_MIDDLE - 340))+70" +repage -depth 8 txt:- |
        awk '/^#/ { next } {
            split($1, at, ","); gsub(/[()]/, "", $2); split($2, c, ",")
            if (c[1] > 90 || c[2] > 90 || c[3] > 90) lit[at[2] + 0] = 1
        } END { print length(lit) }'
}

# realistic_tab_rows TAB SHOTS_DIR: opens the tab, keeps its picture and prints its lit rows.
realistic_tab_rows() {
    navro_call OpenTab "$1" || return 1
    wait_until 5 "the $1 tab" navro_field_is selectedTab "$1" || return 1
    settled_screenshot "$2/tab-$1.png"
    realistic_lit_rows "$2/tab-$1.png"
}

realistic_history() {
    /usr/bin/python3 -c '
import plistlib, sys
entries = plistlib.load(open(sys.argv[1], "rb"))
print(len(entries), entries[0]["id"], entries[1]["id"], entries[0]["text"])
' "$XDG_DATA_HOME/Navro/clipboard.plist" 2>/dev/null
}

realistic_copy_recorded() {
    local count second top
    read -r count _ second top < <(realistic_history) || return 1
    [ "$count" = "$REALISTIC_CLIPBOARD_LIMIT" ] && [ "$top" = "$1" ] && [ "$second" = "$2" ]
}

# realistic_shows_colour FILE RRGGBB: a screenshot (kept in FILE) shows a good patch of that
# colour in the open notch.
realistic_shows_colour() {
    screenshot "$1" &&
        [ "$(colour_count "$1" $((SCREEN_MIDDLE - 364)) 0 728 280 "$2")" -gt 400 ]
}

realistic_check() {
    local shots=$1 notes shelf first probe="realistic home probe $$"
    mkdir -p "$shots"
    realistic_failed=0
    realistic_say "nothing of the home refused in the log" eval '[ -z "$(realistic_refusals)" ]'
    realistic_say "no onboarding window" realistic_onboarding_absent
    realistic_say "the next meeting comes from the calendar" \
        wait_until 20 "NextMeeting" realistic_next_meeting
    realistic_say "the prayer alert's city" eval '[ "$(navro_field city NextPrayer)" = Manama ]'
    if [ -n "${REALISTIC_PLAYER:-}" ]; then
        local title
        realistic_say "the player's track" wait_until 10 "NowPlaying" \
            eval '[[ "$(navro_field title NowPlaying)" == Album* ]]'
        title=$(navro_field title NowPlaying)
        navro_call OpenTab nowPlaying
        wait_until 5 "the music tab" navro_field_is selectedTab nowPlaying
        realistic_say "its cover on screen" wait_until 10 "the cover's colour" \
            realistic_shows_colour "$shots/tab-nowPlaying.png" "$(realistic_cover_colour "$title")"
    fi
    notes=$(realistic_tab_rows notes "$shots")
    shelf=$(realistic_tab_rows shelf "$shots")
    realistic_say "the notes tab lists to-dos ($notes lit rows)" eval '[ "${notes:-0}" -ge 100 ]'
    realistic_say "the shelf tab lists files ($shelf lit rows)" eval '[ "${shelf:-0}" -ge 100 ]'
    navro_call Close
    read -r _ first _ < <(realistic_history)
    printf '%s' "$probe" | xclip -selection clipboard -i
    realistic_say "a copy goes on top of the full history" wait_until 10 "the probe recorded" \
        realistic_copy_recorded "$probe" "$first"
    return "$realistic_failed"
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set -uo pipefail
    [ "$#" -ge 1 ] || { echo "usage: $0 HOME_DIR [KEY=VALUE...]" >&2; exit 2; }
    realistic_home "$@"
fi
