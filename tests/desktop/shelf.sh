#!/usr/bin/env bash
# Files dragged from another program onto the closed notch over the X drag-and-drop protocol: the
# notch opens on the shelf, the files land in its first section and in shelf.json, and they are
# still there after a restart.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
desktop_test_begin "$1" "$2" shelf
DRAG_SOURCE=$3
shelf_file="$XDG_DATA_HOME/Navro/shelf.json"

mkdir -p "$HOME/Documents"
echo report >"$HOME/Documents/report.txt"
echo notes >"$HOME/Documents/notes.md"

navro_settings hasCompletedOnboarding=true language=english
navro_start "$NAVRO" || finish

desktop_spawn drag-source "$DRAG_SOURCE" "$HOME/Documents/report.txt" "$HOME/Documents/notes.md"
check "the drag source is on screen" wait_until 10 "the drag source" \
    grep -q shown "$DESKTOP_DIR/logs/drag-source.log"

# Press on the source, move in small steps onto the closed notch, hold there, then drop.
xdotool mousemove 200 560 mousedown 1
for step in $(seq 1 12); do
    xdotool mousemove $((200 + step * 63)) $((560 - step * 46))
    sleep 0.05
done
xdotool mousemove "$SCREEN_MIDDLE" 12
check "the notch opens on the shelf while files are dragged over it" wait_until 5 \
    "the open shelf" navro_field_is selectedTab shelf
check "the notch is open" wait_until 5 "the open notch" navro_field_is status open
xdotool mousemove "$SCREEN_MIDDLE" 30
sleep 0.2
xdotool mouseup 1
check "the drag source saw the drop taken" wait_until 5 "a drop action" \
    grep -q "dropped [12]" "$DESKTOP_DIR/logs/drag-source.log"
check "the files are in shelf.json" wait_until 5 "shelf.json" \
    grep -q "report.txt.*notes.md" "$shelf_file"
check "shelf.json is private" [ "$(stat -c %a "$shelf_file")" = 600 ]

desktop_stop "$NAVRO_PID"
navro_start "$NAVRO" navro-again || finish
navro_call OpenTab shelf
check "after a restart the shelf still lists them" grep -q "notes.md" "$shelf_file"
check "nothing was logged as damaged" bash -c "! grep -q 'damaged\|could not' '$DESKTOP_DIR/logs/navro-again.log'"
settled_screenshot "$SHOTS/shelf.png"
finish
