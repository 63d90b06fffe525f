#!/usr/bin/env bash
# Remakes the pictures of docs/ from the sample calendar of a fixed day: the one of the first page,
# and the gallery of all views in two densities, both ways up and two languages.
# Usage: pictures.sh [FOLDER OF THE PROGRAMS]
set -euo pipefail
cd "$(dirname "$0")/.."
bin=${1:-build/release/bin}

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$home TZ=Europe/Berlin
unset LANGUAGE DISPLAY WAYLAND_DISPLAY
unset TESSERA_VOLUME
for locale in en_US de_DE; do
    LC_ALL=$locale.UTF-8 XDG_DATA_HOME=$home/$locale "$bin/tessera-sample" --today 2026-03-10 >/dev/null
done

# The number of a sample item, by a word of its subject.
id_of() {
    TESSERA_VOLUME=$home/en_US/tessera/pim.vol "$bin/tessera-pim" search --json "$1" | sed -n '1s/.*"id":\(-\{0,1\}[0-9]*\).*/\1/p'
}

# picture FILE WIDTHxHEIGHT DENSITY LOCALE REQUEST...; a home of its own per locale, since settings keep
# what a locale brought. 256 colours are enough, and a third of the bytes.
picture() {
    LC_ALL=$4.UTF-8 LANG=$4.UTF-8 XDG_DATA_HOME=$home/$4 "$bin/tessera" --snapshot "$home/picture.png" \
        --size "$2" --density "$3" --now 2026-03-10T10:40 "${@:5}"
    convert "$home/picture.png" -dither None -colors 256 -define png:exclude-chunk=date,time "PNG8:$1"
}
picture docs/daily.png 400x800 96 en_US 'OPEN|DAILY'

mkdir -p docs/gallery
rm -f docs/gallery/*.png
page=docs/gallery.md
{
    echo "# Gallery"
    echo
    echo "The sample calendar on 10 March 2026, made by \`scripts/pictures.sh\`: 240x320 and 320x240 at density 96,"
    echo "480x640, 640x480 and 1080x2160 at density 192, in English and in German."
} >"$page"
# chapter NAME REQUEST...
chapter() {
    printf '\n## %s\n\n' "${1^}" >>"$page"
    for locale in en_US de_DE; do
        for size in 240x320-96 320x240-96 480x640-192 640x480-192 1080x2160-192; do
            file=$1-${size%-*}-${locale%_*}.png
            picture "docs/gallery/$file" "${size%-*}" "${size#*-}" "$locale" "${@:2}"
            width=240
            [ "${size%-*}" = 1080x2160 ] && width=180
            printf '<img src="gallery/%s" width="%s">\n' "$file" "$width" >>"$page"
        done
        echo >>"$page"
    done
    sed -i '$ d' "$page"
}
chapter daily 'OPEN|DAILY'
chapter list 'OPEN|LIST'
chapter weekly 'OPEN|GRID'
chapter monthly 'OPEN|MONTHLY'
chapter tasks 'OPEN|TASKS'
chapter search --search re
chapter details "VIEW|$(id_of 'Project review')|66371040|APPT"
chapter appointment "EDIT|$(id_of 'Project review')|66371040|APPT"
chapter task "EDIT|$(id_of electricity)|0|TASK"
