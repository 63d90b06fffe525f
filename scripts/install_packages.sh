#!/usr/bin/env bash
# Installs what a Debian machine still lacks. Usage: install_packages.sh run|test
# run: what building and starting the program needs; test: that and what the tests need.
set -euo pipefail

run=(git g++ cmake ninja-build ccache pkg-config
     qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-l10n-tools qt6-wayland
     libsqlite3-dev libical-dev libminizip-dev zlib1g-dev libcli11-dev
     fonts-dejavu-core fonts-dejavu-extra tzdata)
test=("${run[@]}" libgtest-dev librapidcheck-dev clang-14 libclang-rt-14-dev
      xvfb xauth xdotool imagemagick x11-utils dbus python3 procps)

case "${1:-}" in
run) wanted=("${run[@]}") ;;
test) wanted=("${test[@]}") ;;
*) echo "usage: install_packages.sh run|test" >&2; exit 2 ;;
esac

if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian system. Needed, by Debian's names: ${wanted[*]}" >&2
    exit 0
fi
missing=()
for package in "${wanted[@]}"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "Please install as root: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${root[@]}" apt-get update -q
"${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
