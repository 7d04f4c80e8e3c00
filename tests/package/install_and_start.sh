#!/usr/bin/env bash
# install_and_start.sh DEB X11_HELPER: the built package, unpacked into a throw-away root, starts
# on a fresh virtual desktop. Checks that apt could install it with nothing but Debian's own
# packages, that it holds what a desktop needs (the entry, the icon, the metainfo, the helper),
# and that Navro run from it takes its name on the bus and shows its notch.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
deb=$(realpath "$1")
DESKTOP_HELPER=$2
# shellcheck source=../desktop/lib.sh
source "$here/../desktop/lib.sh"

desktop_start || exit 1
root="$DESKTOP_DIR/root"
mkdir -p "$root"

# apt resolves every dependency against the archive without installing anything (and without
# taking the lock another installation may hold).
apt_would_install() {
    apt-get -s -o Debug::NoLocking=1 install "$deb" >"$DESKTOP_DIR/logs/apt.log" 2>&1 &&
        grep -q '^Inst navro ' "$DESKTOP_DIR/logs/apt.log"
}
check "apt can install the package from Debian's archive" apt_would_install
check "the package unpacks" dpkg-deb -x "$deb" "$root"
for file in usr/bin/navro usr/bin/navro-nowplaying usr/share/applications/io.navro.Navro.desktop \
    usr/share/icons/hicolor/scalable/apps/io.navro.Navro.svg \
    usr/share/metainfo/io.navro.Navro.metainfo.xml usr/share/doc/navro/copyright; do
    check "the package holds /$file" test -s "$root/$file"
done
check "its desktop entry is valid" desktop-file-validate "$root/usr/share/applications/io.navro.Navro.desktop"
check "its metainfo is valid" appstreamcli validate --no-net "$root/usr/share/metainfo/io.navro.Navro.metainfo.xml"
check "the program says its version" sh -c "'$root/usr/bin/navro' --version | grep -q '^Navro [0-9]'"

navro_start "$root/usr/bin/navro"
check "Navro from the package starts and shows its notch" navro_field_is panelVisible true
# The helper is found beside the program, in the package's folder.
check "it runs the package's own now-playing helper" \
    wait_until 10 "the helper" pgrep -f "^$root/usr/bin/navro-nowplaying"
finish
