#!/usr/bin/env bash
# scripts/deb.sh: builds the Debian package from the files of this tree (build-deb/), then checks
# it as a distribution would: lintian with no errors, and the desktop entry and the AppStream
# metainfo valid. The package lands in build-deb/ as navro_<version>_<arch>.deb.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=${DEB_BUILD_DIR:-$root/build-deb}
source_copy="$out/navro"

# A copy of what git tracks (and new files not ignored), so that the build never writes into the
# working tree and the package holds nothing left over from other builds.
rm -rf "$source_copy" "$out"/navro_* "$out/contents"
mkdir -p "$source_copy"
(cd "$root" && git ls-files -z --cached --others --exclude-standard |
    while IFS= read -r -d '' file; do
        [ -e "$file" ] && printf '%s\0' "$file"
    done | xargs -0 cp --parents -t "$source_copy")

# Rebuilds are quicker with the compiler cache, where one is installed (debhelper gives the build
# a HOME of its own, so the cache is named).
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
    CCACHE_DIR=$(ccache -k cache_dir)
    export CCACHE_DIR
fi
(cd "$source_copy" && DEB_BUILD_OPTIONS="parallel=${JOBS:-$(nproc)} ${DEB_BUILD_OPTIONS:-}" \
    dpkg-buildpackage -b -us -uc)

deb=$(ls "$out"/navro_*.deb)
echo "== lintian $deb"
lintian --fail-on error "$deb"
# The desktop entry and the metainfo as the package installs them.
contents="$out/contents"
dpkg-deb -x "$deb" "$contents"
echo "== desktop-file-validate"
desktop-file-validate "$contents/usr/share/applications/io.navro.Navro.desktop"
echo "== appstreamcli validate"
appstreamcli validate --no-net "$contents/usr/share/metainfo/io.navro.Navro.metainfo.xml"
echo "built and checked: $deb"
