#!/usr/bin/env bash
# Remakes the pictures of docs/ from the sample calendar of a fixed day.
# Usage: pictures.sh [FOLDER OF THE PROGRAMS]
set -euo pipefail
cd "$(dirname "$0")/.."
bin=${1:-build/release/bin}

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$home
export TESSERA_VOLUME=$home/pim.vol TZ=Europe/Berlin LC_ALL=C.UTF-8 LANG=C.UTF-8
unset LANGUAGE DISPLAY WAYLAND_DISPLAY
"$bin/tessera-sample" --today 2026-03-10 >/dev/null

picture() { "$bin/tessera" --snapshot "docs/$1.png" --size "$2" --density "$3" --now 2026-03-10T10:40 'OPEN|DAILY'; }
picture daily-240x320 240x320 96
picture daily-320x240 320x240 96
picture daily-480x640-192 480x640 192
picture daily-640x480-192 640x480 192
picture daily 400x800 96
