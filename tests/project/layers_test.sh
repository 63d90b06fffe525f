#!/usr/bin/env bash
# Includes point only at a folder's own files and at folders above it; the programs that have no
# window link none; every test source is built.
set -uo pipefail
root=$1
build=$2
cd "$root" || exit 1
layers=(platform util records object_model interchange settings pim desktop drawing touch forms pages editors views shell)
faults=0
fault() { echo "$*"; faults=$((faults + 1)); }

declare -A rank
for i in "${!layers[@]}"; do rank[${layers[$i]}]=$i; done
for layer in "${layers[@]}"; do
    while IFS=: read -r file line text; do
        target=$(sed -E 's/.*"([a-z_]+)\/.*/\1/' <<<"$text")
        if [ -z "${rank[$target]:-}" ]; then
            fault "$file:$line includes the unknown folder $target"
        elif [ "${rank[$target]}" -gt "${rank[$layer]}" ]; then
            fault "$file:$line: $layer may not include $target"
        fi
    done < <(grep -rnE '^#include "[a-z_]+/' "src/$layer" --include='*.h' --include='*.cpp')
done

# What stays in the one folder that owns it.
only() {
    local owner=$1 pattern=$2
    while IFS= read -r hit; do fault "$hit (belongs in $owner)"; done < <(
        grep -rnE "$pattern" src --include='*.h' --include='*.cpp' | grep -vE "^src/($owner)/")
}
only platform '#include <(sqlite3|SQLiteCpp)'
only interchange '#include <(libical|unicode)/'
only desktop '#include <(QDBus|QLocalS|QTcp|sys/socket)'
for layer in platform util records object_model interchange settings pim tools; do
    while IFS= read -r hit; do fault "$hit: a data layer draws"; done < <(
        grep -rnE '#include <Q(Painter|Image|Pixmap|Font|Widget|Application|GuiApplication|Dialog|Color)\b' "src/$layer")
done

for program in tessera-pim tessera-sample; do
    if [ -x "$build/bin/$program" ]; then
        # What it needs itself; what its libraries need in turn is theirs.
        if readelf -d "$build/bin/$program" | grep -E 'NEEDED.*Qt6(Gui|Widgets|DBus)'; then
            fault "$program links a window system"
        fi
    else
        fault "$program is not built"
    fi
done

while IFS= read -r source; do
    grep -q "$source" "$build/build.ninja" || fault "$source is in no test program"
done < <(find tests -name '*_test.cpp')

echo "$faults faults"
[ "$faults" -eq 0 ]
