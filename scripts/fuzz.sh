#!/usr/bin/env bash
# Builds the fuzz targets, replays their kept corpora, and fuzzes each for its share of 120 s.
# A set of programs that has had its time is not fuzzed again; a change of any of them is.
# The seed is fixed, so that a red run can be had again.
# Usage: fuzz.sh [SECONDS]   (in all; a number given fuzzes whatever was done before)
set -euo pipefail
cd "$(dirname "$0")/.."
total=${1:-120}

[ -f build/fuzz/build.ninja ] || cmake --preset fuzz
cmake --build build/fuzz --target fuzz_targets
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 TZ=Europe/Berlin
targets=()
for source in fuzz/*_fuzz.cpp; do targets+=("$(basename "$source" _fuzz.cpp)"); done

for name in "${targets[@]}"; do
    "build/fuzz/bin/${name}_fuzz" -runs=0 -rss_limit_mb=1024 -timeout=10 "fuzz/corpus/$name" 2>"build/fuzz/$name.replay.log" ||
        { cat "build/fuzz/$name.replay.log"; echo "fuzz: replay of $name failed"; exit 1; }
done
echo "fuzz: ${#targets[@]} corpora replayed"

stamp=build/fuzz/fuzzed.sha256
now=$(sha256sum build/fuzz/bin/*_fuzz)
if [ $# -eq 0 ] && [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$now" ]; then
    echo "fuzz: these programs have had their time"
    exit 0
fi
share=$((total / ${#targets[@]}))
fuzz_one() {
    local name=$1 found=build/fuzz/found/$1
    mkdir -p "$found" "build/fuzz/crashes/$name"
    if "build/fuzz/bin/${name}_fuzz" -seed=1 -max_total_time="$share" -rss_limit_mb=1024 -timeout=10 -max_len=65536 \
        -print_final_stats=1 -artifact_prefix="build/fuzz/crashes/$name/" "$found" "fuzz/corpus/$name" \
        >"build/fuzz/$name.log" 2>&1; then
        echo "fuzz: $name, $share s: $(grep -o 'stat::number_of_executed_units: *[0-9]*' "build/fuzz/$name.log" | grep -o '[0-9]*$') runs, no fault"
    else
        tail -40 "build/fuzz/$name.log"
        echo "fuzz: $name found a fault; its input is in build/fuzz/crashes/$name"
        return 1
    fi
}
export -f fuzz_one
export share
printf '%s\n' "${targets[@]}" | xargs -P 2 -I{} bash -c 'fuzz_one {}'
printf '%s' "$now" >"$stamp"
