#!/usr/bin/env bash
# Installs the Debian packages of scripts/packages.txt that are not installed yet.
# With everything present it touches nothing, so it is cheap to run before every build.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mapfile -t wanted < <(grep -v -E '^\s*(#|$)' "$here/packages.txt")

missing=()
for package in "${wanted[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = "installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing missing packages: ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
    apt_get=(apt-get)
else
    apt_get=(sudo apt-get)
fi
export DEBIAN_FRONTEND=noninteractive
# Another installation in progress (an unattended upgrade) holds the lock for a while: wait.
"${apt_get[@]}" -o DPkg::Lock::Timeout=600 update
"${apt_get[@]}" -o DPkg::Lock::Timeout=600 install -y --no-install-recommends "${missing[@]}"
