#!/usr/bin/env bash
# Devices and transfers against real services on a private system bus: python3-dbusmock's UPower
# and BlueZ, the test's own UDisks2; BlueZ's OBEX stand-in on the session bus; a download growing
# in the test home's downloads folder; a display added to the X server. The closed notch tells of
# the battery, the charger, a headset, a drive, a finished download and Bluetooth transfer, and a
# new display; the Devices tab lists them and ejects the drive, saying beside its Eject button,
# in English and in Arabic, when the drive is in use.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" devices
desktop_start_system_bus || exit 1

title_is() {
    navro_field_is activityTitle "$1"
}
kind_is() {
    navro_field_is activityKind "$1"
}
udisks_saw() {
    grep -q "^$1 " "$DESKTOP_DIR/logs/udisks2.log"
}

# A laptop on battery at 25 %, its charger out; a paired headset that reports its battery.
desktop_start_mock upower upower org.freedesktop.UPower || finish
battery=/org/freedesktop/UPower/devices/mock_BAT
charger=/org/freedesktop/UPower/devices/mock_AC
mock_upower AddDischargingBattery mock_BAT "Mock Battery" 25.0 7200
mock_upower AddAC mock_AC "Mock AC"
mock_upower SetDeviceProperties "$charger" "{'Online': <false>}"
desktop_start_mock bluez bluez5 org.bluez || finish
mock_bluez AddAdapter hci0 computer
mock_bluez AddDevice hci0 11:22:33:44:55:66 "Travel Headset"
mock_bluez PairDevice hci0 11:22:33:44:55:66 2360324
headset=/org/bluez/hci0/dev_11_22_33_44_55_66
gdbus call --system --dest org.bluez --object-path "$headset" \
    --method org.freedesktop.DBus.Mock.AddProperties org.bluez.Battery1 "{'Percentage': <byte 80>}" \
    >/dev/null
desktop_start_udisks || finish
mock_udisks AddStick stick "PHOTOS" 16000000000 Kingston DataTraveler

mkdir -p "$HOME/Downloads" "$XDG_CONFIG_HOME"
echo "XDG_DOWNLOAD_DIR=\"\$HOME/Downloads\"" >"$XDG_CONFIG_HOME/user-dirs.dirs"

navro_settings hasCompletedOnboarding=true language=english
navro_start "$NAVRO" || finish

check "the battery is listed" wait_until 10 "the battery on the bus" \
    devices_has "d['batteries'][0]['percentage'] == 25 and not d['onCharger']"
check "the paired headset is listed with its battery" wait_until 5 "the headset" \
    devices_has "d['bluetooth'][0]['name'] == 'Travel Headset' and d['bluetooth'][0]['battery'] == 80"
check "the drive is listed by its label" wait_until 5 "the drive" \
    devices_has "d['drives'][0]['name'] == 'PHOTOS' and not d['drives'][0]['mounted']"
check "the screen is listed" devices_has "d['displays'][0]['width'] == 1920"
check "what was there at start is no notice" stays 1 eval '! kind_is toast'

# The battery falls through 20 %: one notice.
mock_upower SetDeviceProperties "$battery" "{'Percentage': <19.0>}"
check "falling through 20 % is told" wait_until 5 "Battery low" title_is "Battery low"
screenshot "$SHOTS/battery-low.png"
check "the notice goes after some 3 s" wait_until 6 "no toast" eval '! kind_is toast'
mock_upower SetDeviceProperties "$battery" "{'Percentage': <18.0>}"
check "and only once" stays 1 eval '! kind_is toast'

# The charger is plugged in.
mock_upower SetDeviceProperties "$charger" "{'Online': <true>}"
check "the charger is told" wait_until 5 "Charger connected" title_is "Charger connected"
check "and on the bus" wait_until 5 "on charger" devices_has "d['onCharger']"

# The headset connects.
mock_bluez ConnectDevice hci0 11:22:33:44:55:66
check "the headset's connection is told" wait_until 5 "Bluetooth device connected" \
    title_is "Bluetooth device connected"
check "the headset is connected on the bus" devices_has "d['bluetooth'][0]['connected']"

# The stick is mounted.
mock_udisks Mount stick "$DESKTOP_DIR"
check "the mounted drive is told" wait_until 5 "Drive mounted" title_is "Drive mounted"
check "its free room is known" wait_until 5 "mounted with room" \
    devices_has "d['drives'][0]['mounted'] and d['drives'][0]['free'] > 0"
check "the notice goes" wait_until 6 "no toast" eval '! kind_is toast'

# A download grows in the downloads folder, then the browser renames it.
part="$HOME/Downloads/film.mkv.part"
: >"$HOME/Downloads/film.mkv"
head -c 100000 /dev/zero >"$part"
check "a growing download shows the transfer activity" wait_until 5 "transfer" kind_is transfer
head -c 400000 /dev/zero >>"$part"
check "its bytes on the bus" wait_until 5 "500000 bytes" \
    devices_has "d['transfers'][0]['name'] == 'film.mkv' and d['transfers'][0]['bytes'] == 500000"
screenshot "$SHOTS/transfer.png"
mv "$part" "$HOME/Downloads/film.mkv"
check "the finished download is told" wait_until 5 "Download finished" title_is "Download finished"
check "and is no longer listed" devices_has "len(d['transfers']) == 0"
check "the notice goes" wait_until 6 "no toast" eval '! kind_is toast'

# A phone book comes over Bluetooth: BlueZ's OBEX service on the session bus creates a transfer,
# which grows, then completes.
desktop_start_mock obex bluez5-obex org.bluez.obex --session || finish
session=$(gdbus call --session --dest org.bluez.obex --object-path /org/bluez/obex \
    --method org.bluez.obex.Client1.CreateSession 11:22:33:44:55:66 "{'Target': <'PBAP'>}" |
    grep -o "/org/bluez/obex/client/session[0-9]*")
transfer=$(gdbus call --session --dest org.bluez.obex --object-path "$session" \
    --method org.bluez.obex.PhonebookAccess1.PullAll contacts.vcf "{}" |
    grep -o "$session/transfer[0-9]*" | head -n1)
obex_file=$(gdbus call --session --dest org.bluez.obex --object-path "$transfer" \
    --method org.freedesktop.DBus.Properties.Get org.bluez.obex.Transfer1 Filename |
    sed -n "s/.*<'\(.*\)'>.*/\1/p")
obex_status() {
    head -c "$1" /dev/zero >>"$obex_file"
    gdbus call --session --dest org.bluez.obex --object-path "$transfer" \
        --method org.bluez.obex.transfer1.Mock.UpdateStatus "$2" >/dev/null
}
check "the queued transfer is listed" wait_until 5 "a Bluetooth transfer" \
    devices_has "d['transfers'][0]['kind'] == 'bluetooth' and d['transfers'][0]['name'] == 'contacts.vcf'"
obex_status 3000 false
check "its bytes on the bus as it goes" wait_until 5 "3000 bytes" \
    devices_has "d['transfers'][0]['bytes'] == 3000 and d['transfers'][0]['total'] == -1"
check "the closed notch shows the transfer activity" wait_until 5 "transfer" kind_is transfer
screenshot "$SHOTS/bluetooth-transfer.png"
obex_status 2000 true
check "the finished transfer is told" wait_until 5 "Bluetooth transfer finished" \
    title_is "Bluetooth transfer finished"
check "with the file's name" navro_field_is activityDetail contacts.vcf
check "and it is no longer listed" devices_has "len(d['transfers']) == 0"
rm -f "$obex_file"
check "the notice goes" wait_until 6 "no toast" eval '! kind_is toast'

# The Devices tab ejects the drive: first while it is busy, then for good. The Eject button is
# found on screen, as the lowest button down a column through the trailing end of the rows'
# buttons (the drive's row is the last with one here): the tab scrolls to show a refusal.
TAB_TOP=72
TAB_BOTTOM=248
button_column=$((SCREEN_MIDDLE + 308))
eject_y() {
    screenshot "$DESKTOP_DIR/find-eject.png"
    button_rows "$DESKTOP_DIR/find-eject.png" "$button_column" $TAB_TOP $TAB_BOTTOM |
        tail -n1 | awk '{ print int(($1 + $2) / 2) }'
}
# busy_notice_shown X0 X1 Y: the refusal in its colour (#ff9f0a) between X0 and X1 on the row of
# the button at Y, and that row in sight.
busy_notice_shown() {
    local y=$3
    [ -n "$y" ] && [ "$((y - 13))" -ge $TAB_TOP ] && [ "$((y + 13))" -le $TAB_BOTTOM ] &&
        settled_screenshot "$SHOTS/$4" &&
        [ "$(colour_count "$SHOTS/$4" "$1" $((y - 12)) $(($2 - $1)) 24 ff9f0a)" -ge 30 ]
}
navro_call OpenTab devices
check "the devices tab opens" wait_until 5 "the devices tab" navro_field_is selectedTab devices
settled_screenshot "$SHOTS/devices-tab.png"
mock_udisks SetBusy true
# The drive's row is the last, cut by the tab's lower edge; its button shows enough to press.
y=$(eject_y)
check "the Eject button is found" test -n "$y"
xdotool mousemove "$((button_column - 4))" "${y:-0}" click 1
check "Eject asks to unmount" wait_until 5 "Unmount" udisks_saw Unmount
check "a busy drive says so" wait_until 5 "busy" devices_has "d['drives'][0]['status'] == 'busy'"
check "and is not powered off" stays 1 eval '! udisks_saw PowerOff'
y=$(eject_y)
check "the refusal shows beside the Eject button, in sight" \
    busy_notice_shown $((SCREEN_MIDDLE - 100)) $((button_column - 60)) "$y" drive-busy.png
mock_udisks SetBusy false
xdotool mousemove "$((button_column - 4))" "${y:-0}" click 1
check "Eject unmounts and powers the drive off" wait_until 5 "PowerOff" udisks_saw PowerOff
check "the ejected drive is told" wait_until 5 "Drive ejected" title_is "Drive ejected"
check "and is gone from the tab" wait_until 5 "no drives" devices_has "len(d['drives']) == 0"

# A second screen: a monitor of RandR 1.5, which Qt reports as a screen of its own, where the X
# server allows one to be added.
navro_call Close
wait_until 5 "closed" navro_field_is status closed
wait_until 6 "no toast" eval '! kind_is toast'
if xrandr --setmonitor NAVRO-2 1280/338x720/190+1920+0 none 2>"$DESKTOP_DIR/logs/xrandr.log"; then
    check "the new display is listed" wait_until 5 "a second display" \
        devices_has "any(x['name'] == 'NAVRO-2' and x['width'] == 1280 and x['height'] == 720 for x in d['displays'])"
    check "its connection is told" wait_until 5 "Display connected" title_is "Display connected"
    check "by its name" navro_field_is activityDetail NAVRO-2
    xrandr --delmonitor NAVRO-2
    check "and it goes again" wait_until 5 "one display" devices_has "len(d['displays']) == 1"
else
    echo "skip - a display added to the X server: it refused a monitor of its own ($(head -c 200 "$DESKTOP_DIR/logs/xrandr.log"))"
fi

# In Arabic, mirrored: the refusal beside the Eject button, now at the tab's leading edge.
desktop_stop "$NAVRO_PID"
mock_udisks AddStick backup "BACKUP" 32000000000 SanDisk Extreme
mock_udisks Mount backup "$DESKTOP_DIR"
navro_settings hasCompletedOnboarding=true language=arabic
navro_start "$NAVRO" navro-arabic || finish
navro_call OpenTab devices
check "Arabic: the devices tab opens" wait_until 5 "the devices tab" navro_field_is selectedTab devices
check "Arabic: the drive is listed" wait_until 5 "the drive" devices_has "d['drives'][0]['name'] == 'BACKUP'"
settled_screenshot "$SHOTS/devices-tab-arabic.png"
button_column=$((SCREEN_MIDDLE - 308))
mock_udisks SetBusy true
# Arabic's taller lines put the drive below the edge: the wheel over the tab brings it up, as a
# user scrolls to it.
xdotool mousemove "$SCREEN_MIDDLE" 160 click --repeat 3 --delay 50 5
settled_screenshot "$SHOTS/devices-tab-arabic-scrolled.png"
y=$(eject_y)
xdotool mousemove "$((button_column + 4))" "${y:-0}" click 1
check "Arabic: a busy drive says so" wait_until 5 "busy" devices_has "d['drives'][0]['status'] == 'busy'"
y=$(eject_y)
check "Arabic: the refusal shows beside the Eject button, in sight" \
    busy_notice_shown $((button_column + 60)) $((SCREEN_MIDDLE + 100)) "$y" drive-busy-arabic.png
finish
