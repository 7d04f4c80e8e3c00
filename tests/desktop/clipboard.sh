#!/usr/bin/env bash
# The clipboard history on a real X desktop: what real owners copy is recorded by its kind with the
# application it came from, concealed content never reaches the disk, an entry copied back from the
# Clipboard tab is what another program pastes, and the files are private.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
# shellcheck source=clipboard_lib.sh
source "$here/clipboard_lib.sh"
OWNER=$3
desktop_test_begin "$1" "$2" clipboard
command -v xclip >/dev/null || { desktop_say "missing xclip: run scripts/install-deps.sh"; exit 1; }
data="$XDG_DATA_HOME/Navro"

# An application to copy from: its window is the active one, its desktop entry names it.
mkdir -p "$XDG_DATA_HOME/applications"
cat >"$XDG_DATA_HOME/applications/org.example.Writer.desktop" <<'ENTRY'
[Desktop Entry]
Type=Application
Name=Writer
Name[ar]=الكاتب
Exec=writer %F
StartupWMClass=example-writer
ENTRY
desktop_spawn writer "$DESKTOP_HELPER" window writer example-writer
wait_until 10 "the writer's window" grep -q mapped "$DESKTOP_DIR/logs/writer.log" || exit 1
xdotool search --class example-writer windowactivate --sync

not_recorded() { ! history_lines | grep -qF "$1"; }
stays_unrecorded() { stays 1 not_recorded "$1"; }
open_tab() {
    navro_call OpenTab clipboard &&
        wait_until 5 "the clipboard tab open" navro_field_is status open &&
        navro_field_is selectedTab clipboard
}
pasted_is() { [ "$(pasted "${2:-}")" = "$1" ]; }
contains() { [[ "$1" == *"$2"* ]]; }

copy_text "there before Navro"
navro_settings hasCompletedOnboarding=true language=english
navro_start "$NAVRO" || finish
check "nothing is written before anything is copied" [ ! -e "$data" ]

# --- What is recorded ---------------------------------------------------------------------------
copy_text "  hello from the writer
"
check "copied text is recorded trimmed, named after the active application" \
    wait_until 5 "the text in the history" history_has text "hello from the writer" Writer
check "what was on the clipboard at launch is not recorded" not_recorded "there before Navro"
copy_text "https://example.com/page"
check "a web address is a link" wait_until 5 "the link" history_has link "https://example.com/page"
copy_text "https://example.com/other and more"
check "a web address and words is text" \
    wait_until 5 "the text" history_has text "https://example.com/other and more"
copy_text "ftp://example.com/file"
check "another scheme is text" wait_until 5 "the ftp text" history_has text "ftp://example.com/file"
copy_text "hello from the writer"
check "the same text again is one entry, at the top" \
    wait_until 5 "the repeat on top" history_top text "hello from the writer"
check "the repeat left no second entry" \
    [ "$(history_lines | grep -c "	hello from the writer	")" = 1 ]

mkdir -p "$HOME/My Files"
echo report >"$HOME/My Files/report 1.txt"
copy_text "$(printf 'file:///etc/hosts\r\nfile://%s/My%%20Files/report%%201.txt\r\nhttps://example.com/x\r\n' "$HOME")" \
    text/uri-list
check "several files are one entry with one local path per line" \
    wait_until 5 "the files" history_has file "/etc/hosts\\n$HOME/My Files/report 1.txt"

"$DESKTOP_CONVERT" -size 64x48 xc:'#ff8800' "$DESKTOP_DIR/orange.png"
xclip -selection clipboard -t image/png -i "$DESKTOP_DIR/orange.png"
check "an image is recorded with its size" wait_until 5 "the image" history_has image "64 × 48"
image_file=$(history_lines | awk -F'\t' '$1 == "image" { print $4; exit }')
check "the image is kept as a PNG named after its entry" \
    pixel_is "$data/ClipboardImages/$image_file" 10 10 FF8800

# --- What is never recorded ---------------------------------------------------------------------
desktop_spawn hinted "$OWNER" "text/plain=correct horse battery staple" \
    "x-kde-passwordManagerHint=secret"
wait_until 5 "the password manager's copy" grep -q owned "$DESKTOP_DIR/logs/hinted.log"
desktop_spawn concealed "$OWNER" "text/plain=concealed words" "org.nspasteboard.ConcealedType="
wait_until 5 "the concealed copy" grep -q owned "$DESKTOP_DIR/logs/concealed.log"
# Changes are looked at in order: once this one is recorded, the two before it were seen.
copy_text "after the secrets"
wait_until 5 "the copy after the secrets" history_top text "after the secrets"
check "a password marked secret is not recorded" not_recorded "correct horse"
check "concealed content is not recorded" not_recorded "concealed words"
check "neither reaches the disk" \
    bash -c "! grep -rqaE 'correct horse|concealed words' '$data'"
desktop_spawn marked "$OWNER" "text/plain=not a password" "x-kde-passwordManagerHint=public"
wait_until 5 "the other mark's copy" grep -q owned "$DESKTOP_DIR/logs/marked.log"
check "another value of the password manager's mark is recorded" \
    wait_until 5 "the marked text" history_has text "not a password"

check "the data folder is private (0700)" [ "$(stat -c %a "$data")" = 700 ]
check "the history file is private (0600)" [ "$(stat -c %a "$data/clipboard.plist")" = 600 ]
check "the images folder is private (0700)" [ "$(stat -c %a "$data/ClipboardImages")" = 700 ]
check "the image file is private (0600)" \
    [ "$(stat -c %a "$data/ClipboardImages/$image_file")" = 600 ]

# --- The Clipboard tab: keyboard, copy back, delete -----------------------------------------------
entries=$(history_count)
check "OpenTab opens the notch on the clipboard tab" open_tab
settled_screenshot "$SHOTS/tab.png"
xdotool type --delay 30 "example.com/page"
xdotool key Return
check "Enter copies the match back and closes the notch" \
    wait_until 5 "status closed" navro_field_is status closed
check "another program pastes the link copied back" wait_until 5 "the paste" \
    pasted_is "https://example.com/page"
check "copying back records nothing new" [ "$(history_count)" = "$entries" ]
check "the entry copied back is at the top" history_top link "https://example.com/page"

open_tab
xdotool type --delay 30 "report 1"
xdotool key Return
check "file managers paste the files copied back" wait_until 5 "the files' paste" pasted_is \
    "$(printf 'copy\nfile:///etc/hosts\nfile://%s/My%%20Files/report%%201.txt' "$HOME")" \
    x-special/gnome-copied-files
check "and so do programs that take a URI list" \
    bash -c "xclip -o -selection clipboard -t text/uri-list | grep -q '^file:///etc/hosts'"

open_tab
xdotool type --delay 30 "48"
check "the image's row shows its thumbnail" \
    drawn 5 "$SHOTS/image-row.png" 656 133 FF8800
xdotool key Return
wait_until 5 "status closed" navro_field_is status closed
xclip -o -selection clipboard -t image/png >"$DESKTOP_DIR/pasted.png" 2>/dev/null
check "the image copied back pastes as a PNG" pixel_is "$DESKTOP_DIR/pasted.png" 32 24 FF8800
check "still nothing new" [ "$(history_count)" = "$entries" ]

copy_text "delete me please"
wait_until 5 "the text to delete" history_top text "delete me please"
open_tab
xdotool type --delay 30 "delete me"
xdotool key Down Delete
check "Delete removes the current entry" \
    wait_until 5 "the entry gone" not_recorded "delete me please"

navro_call Close

# A search left behind on another tab does not filter the list when the tab comes back.
copy_text "the newest copy"
wait_until 5 "the newest copy" history_top text "the newest copy"
open_tab
xdotool type --delay 30 "example.com"
navro_call OpenTab notes
wait_until 5 "the notes tab" navro_field_is selectedTab notes
open_tab
xdotool key Return
check "back on the tab, Enter copies the newest entry, not the old search's match" \
    wait_until 5 "the paste" pasted_is "the newest copy"
navro_call Close

refusal=$(gdbus call --session --dest io.navro.Navro --object-path /io/navro/Navro \
    --method io.navro.Navro.OpenTab nowhere 2>&1)
check "OpenTab with an unknown tab is refused with InvalidArgs" contains "$refusal" InvalidArgs
check "and changes nothing" navro_field_is status closed

# --- In Arabic, and with the history off -----------------------------------------------------------
desktop_stop "$NAVRO_PID"
navro_settings hasCompletedOnboarding=true language=arabic
navro_start "$NAVRO" navro-arabic || finish
open_tab
xdotool type --delay 30 "48"
check "the tab mirrors in Arabic: the thumbnail is on the right" \
    drawn 5 "$SHOTS/image-row-arabic.png" $((2 * SCREEN_MIDDLE - 656)) 133 FF8800
navro_call Close
desktop_stop "$NAVRO_PID"

navro_settings hasCompletedOnboarding=true clipboardEnabled=false
navro_start "$NAVRO" navro-off || finish
copy_text "while the history is off"
check "with the history off nothing is recorded" stays_unrecorded "while the history is off"
open_tab
settled_screenshot "$SHOTS/off.png"

finish
