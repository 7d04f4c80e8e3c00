#!/usr/bin/env bash
# Calendars and prayer alerts on a real desktop. An Evolution calendar with a meeting five
# minutes ahead makes the closed notch show the meeting, and NextMeeting on the bus carries it
# with its join link; an edit of the file on disk reaches Navro without a restart. Then Navro
# runs under libfaketime a few seconds before a prayer of its city, and the notification daemon
# (dunst) receives the adhan alert while the closed notch shows its notice.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" calendar
desktop_start_notifications || finish
export TZ=UTC
libfaketime=/usr/lib/x86_64-linux-gnu/faketime/libfaketimeMT.so.1
[ -f "$libfaketime" ] || { desktop_say "missing $libfaketime: run scripts/install-deps.sh"; exit 1; }

ics_time() { date -u -d "@$1" +%Y%m%dT%H%M%SZ; }
# meeting_file TITLE START_EPOCH: Evolution's own calendar with one hour-long video call.
meeting_file() {
    local file="$XDG_DATA_HOME/evolution/calendar/system/calendar.ics"
    mkdir -p "$(dirname "$file")"
    printf '%s\r\n' BEGIN:VCALENDAR VERSION:2.0 BEGIN:VEVENT "UID:review@example.com" \
        "SUMMARY:$1" "DTSTART:$(ics_time "$2")" "DTEND:$(ics_time $(($2 + 3600)))" \
        "DESCRIPTION:Join https://meet.google.com/abc-defg-hij" END:VEVENT END:VCALENDAR \
        >"$file.new"
    # As Evolution writes it: a new file renamed over the old one.
    mv "$file.new" "$file"
}
meeting_field_is() { [ "$(navro_field "$1" NextMeeting)" = "$2" ]; }

now=$(date -u +%s)
meeting_file "Design review" $((now + 300))
navro_settings hasCompletedOnboarding=true openMode=click
navro_start "$NAVRO" || finish

check "the closed notch shows the meeting" \
    wait_until 10 "the meeting activity" navro_field_is activityKind meeting
settled_screenshot "$SHOTS/meeting.png"
check "NextMeeting carries its title" meeting_field_is title "Design review"
check "and its join link" meeting_field_is joinLink "https://meet.google.com/abc-defg-hij"
check "and its start" meeting_field_is start "$(date -u -d "@$((now + 300))" +%Y-%m-%dT%H:%M:%SZ)"

# The calendar tab: the month keeps its narrow column at the trailing side and the day's events
# have the rest. Below the one event, only the month's last week is drawn in that band.
navro_call OpenTab calendar
wait_until 5 "the calendar tab" navro_field_is selectedTab calendar
settled_screenshot "$SHOTS/calendar-tab.png"
last_week=$(column_profile "$SHOTS/calendar-tab.png" $((SCREEN_MIDDLE - 320)) 226 640 14)
last_week=${last_week%%1*}
check "the month keeps its own column (drawn from column ${#last_week} of 640)" \
    [ "${#last_week}" -gt 300 ]
navro_call Close

meeting_file "Moved review" $((now + 240))
check "a change of the file on disk reaches Navro" \
    wait_until 10 "the new title" meeting_field_is title "Moved review"

meeting_file "Next week" $((now + 7 * 86400))
check "a meeting beyond tomorrow is no next meeting" \
    wait_until 10 "NextMeeting empty" eval '[ -z "$(navro_field title NextMeeting)" ]'
check "and the closed notch lets it go" \
    wait_until 20 "no activity" eval '[ -z "$(navro_field activityKind)" ]'

# --- The adhan alert ---------------------------------------------------------------------------
check "NextPrayer names a prayer of the city" \
    eval 'navro_property NextPrayer | grep -q "'"'"'city'"'"': <'"'"'Manama'"'"'>"'
prayer=$(navro_field prayer NextPrayer)
at=$(navro_field at NextPrayer)
desktop_stop "$NAVRO_PID"
desktop_say "next prayer: $prayer at $at"

desktop_spawn monitor dbus-monitor --session \
    "type='method_call',interface='org.freedesktop.Notifications',member='Notify'"
notify_log="$DESKTOP_DIR/logs/monitor.log"
wait_until 5 "the bus monitor" grep -q . "$notify_log" || finish

fake_start=$(date -u -d "@$(($(date -u -d "$at" +%s) - 8))" '+%Y-%m-%d %H:%M:%S')
desktop_spawn navro env LD_PRELOAD="$libfaketime" FAKETIME="@$fake_start" "$NAVRO"
NAVRO_PID=$DESKTOP_LAST_PID
wait_until 20 "Navro on the session bus" navro_field_is panelVisible true || finish
title="Time for ${prayer^}"
check "the notification daemon receives \"$title\"" \
    wait_until 30 "the alert" grep -q "string \"$title\"" "$notify_log"
check "with the city's name" grep -q 'string "Manama"' "$notify_log"
check "the closed notch shows the notice" navro_field_is activityKind toast
settled_screenshot "$SHOTS/adhan.png"
check "exactly one alert" stays 3 eval '[ "$(grep -c "string \"$title\"" "$notify_log")" = 1 ]'
check "NextPrayer has moved on" eval '[ "$(navro_field prayer NextPrayer)" != "$prayer" ]'

finish
