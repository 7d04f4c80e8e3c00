# shellcheck shell=bash
# What the clipboard tests share: Navro's history file read with Python's own property-list
# reader (not Navro's), and copies made by real clipboard owners.

HISTORY_FILE() { echo "$XDG_DATA_HOME/Navro/clipboard.plist"; }

# history_lines: one line per entry, newest first: kind, text (line breaks as \n), source, image
# file, separated by tabs. Fails when the file is missing or does not parse whole.
history_lines() {
    /usr/bin/python3 - "$(HISTORY_FILE)" <<'PY'
import plistlib, signal, sys
signal.signal(signal.SIGPIPE, signal.SIG_DFL)
with open(sys.argv[1], "rb") as f:
    entries = plistlib.load(f)
for e in entries:
    print("\t".join([e["kind"], e["text"].replace("\n", "\\n"), e.get("source", "-"),
                     e.get("imageFile", "-")]))
PY
}

history_count() {
    history_lines | wc -l
}

# history_has KIND TEXT [SOURCE]: an entry of that kind and text (and source) is in the file.
history_has() {
    # Through the environment: awk would read backslashes in -v values as escapes.
    history_lines | KIND=$1 TEXT=$2 SOURCE=${3:-} awk -F'\t' '
        $1 == ENVIRON["KIND"] && $2 == ENVIRON["TEXT"] &&
        (ENVIRON["SOURCE"] == "" || $3 == ENVIRON["SOURCE"]) { found = 1 }
        END { exit !found }'
}

# history_top KIND TEXT: the newest entry is that one.
history_top() {
    [ "$(history_lines | head -n1 | cut -f1,2)" = "$1	$2" ]
}

# copy_text TEXT [TYPE]: xclip owns the clipboard with TEXT as one type (UTF8_STRING by default).
copy_text() {
    printf '%s' "$1" | xclip -selection clipboard ${2:+-t "$2"} -i
}

pasted() {
    xclip -o -selection clipboard ${1:+-t "$1"} 2>/dev/null
}
