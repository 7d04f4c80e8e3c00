#!/usr/bin/env bash
# install_and_start.sh DEB X11_HELPER: the built package installs, and Navro starts from it as on a
# fresh Debian 12, on a virtual desktop.
#
# As root (the CI machine, a throw-away Debian 12): apt installs the package for real, and Navro
# then runs in a throw-away root that holds only the package, the packages it depends on (their
# files as installed here) and Debian's essential set. A dependency the package forgets to name
# is missing there, as it would be on a user's fresh system, although this machine has it.
# Without root: apt only resolves the dependencies, and Navro runs from the package unpacked into
# a folder, with this machine's libraries.
set -uo pipefail
# chroot and ldconfig live in sbin, which a non-login shell may not search.
PATH=$PATH:/usr/sbin:/sbin
here=$(cd "$(dirname "$0")" && pwd)
deb=$(realpath "$1")
DESKTOP_HELPER=$2
views="$here/../../src/views"
# shellcheck source=../desktop/lib.sh
source "$here/../desktop/lib.sh"

desktop_start || exit 1
root="$DESKTOP_DIR/root"
mkdir -p "$root"

# apt resolves every dependency against the archive without installing anything (and without
# taking the lock another installation may hold).
apt_would_install() {
    apt-get -s -o Debug::NoLocking=1 install "$deb" >"$DESKTOP_DIR/logs/apt-simulation.log" 2>&1 &&
        grep -q '^Inst navro ' "$DESKTOP_DIR/logs/apt-simulation.log"
}

# A root of our own needs a private mount namespace; otherwise the package runs from a folder.
isolated=0
[ "$(id -u)" -eq 0 ] && unshare --mount true 2>/dev/null && isolated=1

# --- The real installation -------------------------------------------------------------------

installed_before=$(dpkg-query -W -f='${db:Status-Status}' navro 2>/dev/null)
remove_installed() {
    # A machine that had no Navro package before the test has none after it.
    [ "$installed_before" = installed ] ||
        apt-get -o DPkg::Lock::Timeout=600 purge -y navro >"$DESKTOP_DIR/logs/apt-purge.log" 2>&1
}
apt_installs() {
    DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 install -y "$deb" \
        >"$DESKTOP_DIR/logs/apt-install.log" 2>&1 &&
        [ "$(dpkg-query -W -f='${db:Status-Status}' navro)" = installed ]
}
says_version() {
    "$1" --version | grep -q "^Navro $(dpkg-deb -f "$deb" Version)$"
}

# --- The throw-away root ---------------------------------------------------------------------

# dependency_closure DEPENDS: the installed packages that satisfy DEPENDS (a Depends field), their
# own dependencies in turn, and the essential set, one name a line. For an alternative or a
# virtual package, the one installed here counts. A dependency nothing installed satisfies is
# named on standard error, and the function fails.
dependency_closure() {
    dpkg-query -W -f='${db:Status-Status}\t${Package}\t${Architecture}\t${Essential}\t${Provides}\t${Pre-Depends}, ${Depends}\n' |
        awk -F'\t' -v arch="$(dpkg --print-architecture)" -v wanted="$1" '
        function bare(name) {
            sub(/^[ \t]+/, "", name); sub(/[ \t(].*$/, "", name); sub(/:.*$/, "", name)
            return name
        }
        function satisfying(alternatives,   count, i, choice, name) {
            count = split(alternatives, choice, "|")
            for (i = 1; i <= count; i++) {
                name = bare(choice[i])
                if (name in depends) return name
                if (name in provider) return provider[name]
            }
            return ""
        }
        function visit(package,   count, i, dependency, chosen) {
            if (package in seen) return
            seen[package] = 1
            count = split(depends[package], dependency, ",")
            for (i = 1; i <= count; i++) {
                if (dependency[i] ~ /^[ \t]*$/) continue
                chosen = satisfying(dependency[i])
                if (chosen == "") { print "nothing installed satisfies" dependency[i] > "/dev/stderr"; failed = 1 }
                else visit(chosen)
            }
        }
        $1 == "installed" && ($3 == arch || $3 == "all") {
            depends[$2] = $6
            if ($4 == "yes") essential = essential ", " $2
            count = split($5, provided, ",")
            for (i = 1; i <= count; i++)
                if (!(bare(provided[i]) in provider)) provider[bare(provided[i])] = $2
        }
        END {
            depends[""] = wanted essential
            visit("")
            for (package in seen) if (package != "") print package
            exit failed
        }'
}

# make_root: the package unpacked over the files of its dependency closure, laid out as Debian 12
# lays out a system (/bin, /lib ... link into /usr), with the accounts and the machine id of this
# machine and the library cache that installing would have built.
make_root() {
    local package wanted
    wanted="$(dpkg-deb -f "$deb" Pre-Depends), $(dpkg-deb -f "$deb" Depends)"
    dependency_closure "$wanted" >"$DESKTOP_DIR/closure" || return 1
    mkdir -p "$root"/usr/{bin,sbin,lib,lib64} "$root"/{etc,proc,dev,sys,tmp/.X11-unix}
    chmod 1777 "$root/tmp"
    for link in bin sbin lib lib64; do ln -s "usr/$link" "$root/$link"; done
    # Documentation is left out: nothing runs it, and it is a third of the size. Files an
    # administrator removed (and dpkg's notes on diversions) are no files to copy.
    while read -r package; do dpkg-query -L "$package"; done <"$DESKTOP_DIR/closure" |
        grep '^/' | grep -v -E '^/usr/share/(doc|man|info)/' | sort -u |
        while IFS= read -r file; do
            if [ -L "$file" ] || { [ -e "$file" ] && [ ! -d "$file" ]; }; then
                printf '%s\0' "${file#/}"
            fi
        done | tar -C / --null --no-recursion -T - -cf - | tar -C "$root" -xf - || return 1
    dpkg-deb -x "$deb" "$root" || return 1
    cp /etc/passwd /etc/group "$root/etc/"
    [ -f /etc/machine-id ] && cp /etc/machine-id "$root/etc/"
    ldconfig -r "$root"
}

# Every QML module the views import is in the root (pages not opened here load theirs later).
root_has_every_qml_module() {
    local module missing=0
    for module in $(sed -n 's/^import \([A-Za-z][A-Za-z.]*\)$/\1/p' "$views"/*.qml | sort -u); do
        # The views' own module is built into the program.
        [ "$module" = Navro ] && continue
        if [ ! -f "$root/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/qt6/qml/${module//.//}/qmldir" ]; then
            desktop_say "QML module $module is not in the root"
            missing=1
        fi
    done
    return $missing
}

# navro_in_root: Navro, chrooted into the root in a mount namespace of its own, sees the desktop's
# folder (X server, session bus, sound server, HOME), /proc, /sys and /dev and nothing else of
# this machine. Started in the background (a subshell of its own) it becomes Navro, process id
# and all, so the desktop library stops it as any other.
navro_in_root() {
    exec unshare --mount --propagation private -- sh -c '
        root=$1 desktop=$2
        mount -t proc proc "$root/proc" && mount --rbind /sys "$root/sys" &&
            mount --rbind /dev "$root/dev" && mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix" &&
            mkdir -p "$root$desktop" && mount --bind "$desktop" "$root$desktop" &&
            exec chroot "$root" /usr/bin/navro' sh "$root" "$DESKTOP_DIR"
}

# The now-playing helper Navro started runs inside the root.
helper_runs_in_root() {
    local pid
    for pid in $(pgrep -P "$NAVRO_PID" -f navro-nowplaying); do
        [ "$(readlink "/proc/$pid/root")" = "$root" ] && return 0
    done
    return 1
}

check "apt can install the package from Debian's archive" apt_would_install
if [ "$isolated" = 1 ]; then
    trap 'remove_installed; desktop_stop_all' EXIT
    check "apt installs the package" apt_installs
    check "the installed program says its version" says_version /usr/bin/navro
    check "a root with the package and its dependencies alone is made" make_root
    check "the root has every QML module the views import" root_has_every_qml_module
    check "the root has the timer's and the prayer alert's sounds" test -f \
        "$root/usr/share/sounds/freedesktop/stereo/complete.oga" -a -f \
        "$root/usr/share/sounds/freedesktop/stereo/alarm-clock-elapsed.oga"
else
    desktop_say "not root: the package is unpacked into a folder and uses this machine's libraries"
    check "the package unpacks" dpkg-deb -x "$deb" "$root"
fi

for file in usr/bin/navro usr/bin/navro-nowplaying usr/share/applications/io.navro.Navro.desktop \
    usr/share/icons/hicolor/scalable/apps/io.navro.Navro.svg \
    usr/share/metainfo/io.navro.Navro.metainfo.xml usr/share/man/man1/navro.1.gz \
    usr/share/doc/navro/copyright; do
    check "the package holds /$file" test -s "$root/$file"
done
check "its desktop entry is valid" desktop-file-validate "$root/usr/share/applications/io.navro.Navro.desktop"
check "its metainfo is valid" appstreamcli validate --no-net "$root/usr/share/metainfo/io.navro.Navro.metainfo.xml"

# Lines of Navro's log that tell of a piece missing from the system it runs on.
log_shows_no_missing_qml() {
    ! grep -E 'module "[^"]*" (is not installed|plugin)|failed to load|Component is not ready' "$NAVRO_LOG"
}
navro_is_a_sound_client() {
    pactl list clients | grep -q 'application.process.binary = "navro"'
}

desktop_start_sound || exit 1
if [ "$isolated" = 1 ]; then
    navro_start navro_in_root
    check "Navro starts in the root and shows its notch" navro_field_is panelVisible true
    check "it runs in the root" test "$(readlink "/proc/$NAVRO_PID/root")" = "$root"
    check "it runs the package's own now-playing helper" \
        wait_until 10 "the helper in the root" helper_runs_in_root
else
    check "the program says its version" says_version "$root/usr/bin/navro"
    navro_start "$root/usr/bin/navro"
    check "Navro from the package starts and shows its notch" navro_field_is panelVisible true
    # The helper is found beside the program, in the package's folder.
    check "it runs the package's own now-playing helper" \
        wait_until 10 "the helper" pgrep -f "^$root/usr/bin/navro-nowplaying"
fi
check "every view it loaded found its QML modules" log_shows_no_missing_qml
check "it reaches the sound server" wait_until 10 "Navro among its clients" navro_is_a_sound_client
finish
