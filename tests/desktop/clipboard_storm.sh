#!/usr/bin/env bash
# No torn history: Navro is killed with SIGKILL at random moments while a storm of copies goes on.
# After every kill the history file is absent or parses whole, and every entry that the previous
# look found on disk is still there (unless the history is full and the oldest gave way).
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
# shellcheck source=clipboard_lib.sh
source "$here/clipboard_lib.sh"
OWNER=$3
KILLS=${KILLS:-200}
LIMIT=500
desktop_test_begin "$1" "$2" clipboard_storm
data="$XDG_DATA_HOME/Navro"
seen="$DESKTOP_DIR/seen-ids"

navro_settings hasCompletedOnboarding=true clipboardLimit=$LIMIT
# Copies without end; each waits for Navro to read it, or moves on after 100 ms while it is down.
desktop_spawn storm "$OWNER" storm 1000000 storm 100
storm=$DESKTOP_LAST_PID

# look: the file is whole (or absent) and holds everything the previous look saw; prints how many
# entries it holds now and the newest one's id.
look() {
    /usr/bin/python3 - "$data/clipboard.plist" "$seen" "$LIMIT" <<'PY'
import os, plistlib, sys
path, seen_path, limit = sys.argv[1], sys.argv[2], int(sys.argv[3])
current = []
if os.path.exists(path):
    try:
        with open(path, "rb") as f:
            current = [entry["id"] for entry in plistlib.load(f)]
    except Exception as error:
        print("torn:", error)
        sys.exit(1)
previous = open(seen_path).read().split() if os.path.exists(seen_path) else []
kept = set(current)
missing = [i for i in previous if i not in kept]
# Only a full history gives up entries, and then only its oldest.
if missing and not (len(current) >= limit and missing == previous[len(previous) - len(missing):]):
    print("lost:", len(missing), "of", len(previous))
    sys.exit(2)
with open(seen_path, "w") as f:
    f.write("\n".join(current))
print(len(current), current[0] if current else "-")
PY
}

torn=0
lost=0
changed=0
last="0 -"
for kill in $(seq "$KILLS"); do
    desktop_spawn "navro-$kill" "$NAVRO"
    pid=$DESKTOP_LAST_PID
    # Killed on purpose: the shell need not report it.
    disown "$pid"
    # Not a wait for anything: the moment of the kill is meant to be random, from the very start
    # (loading) to well into recording.
    sleep "0.$(printf '%03d' $((RANDOM % 700)))"
    kill -KILL "$pid"
    desktop_wait_exit "$pid" 5
    rm -f "$DESKTOP_DIR/logs/navro-$kill.log"
    outcome=$(look)
    case $? in
    0)
        [ "$outcome" != "$last" ] && changed=$((changed + 1))
        last=$outcome
        ;;
    1) torn=$((torn + 1)); echo "after kill $kill: $outcome" ;;
    *) lost=$((lost + 1)); echo "after kill $kill: $outcome" ;;
    esac
done

check "Navro was killed $KILLS times" [ "$KILLS" -ge 200 ]
check "after every kill the history was absent or whole ($torn torn)" [ "$torn" -eq 0 ]
check "no entry on disk before a kill was lost after it ($lost losses)" [ "$lost" -eq 0 ]
check "the history changed on disk between $changed of the kills" [ "$changed" -ge 20 ]

# A last start, once the storm is over, reads what it left, tidies what a kill cut short, and goes
# on recording.
desktop_stop "$storm"
navro_start "$NAVRO" navro-after || finish
check "the last start reads the history (${last% *} entries)" \
    [ "$(history_count)" -eq "${last% *}" ]
strays=$(find "$data" -name '.*.??????' | wc -l)
check "no half-written files are left behind ($strays)" [ "$strays" -eq 0 ]
copy_text "after the storm"
check "and goes on recording" \
    wait_until 10 "the copy after the storm" history_top text "after the storm"

finish
