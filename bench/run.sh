#!/usr/bin/env bash
# Measures everything that docs/performance.md tells, and prints the machine first.
# The workloads come from a generator of calendars (TESSERA_TOOLS, default ../shared/tools), the
# same file each time. Usage: bench/run.sh [--only=REGEX]
set -euo pipefail
cd "$(dirname "$0")/.."
tools=${TESSERA_TOOLS:-../shared/tools}
folder=build/bench/workloads
mkdir -p "$folder"

[ -f build/bench/build.ninja ] || cmake --preset bench
cmake --build build/bench >/dev/null
[ -f "$folder/W10.ics" ] || python3 "$tools/gen_ics.py" --events 10000 --tasks 2000 --seed 1 -o "$folder/W10.ics"
[ -f "$folder/W100.ics" ] || python3 "$tools/gen_ics.py" --events 100000 --tasks 5000 --seed 1 -o "$folder/W100.ics"

only=.
for argument in "$@"; do case $argument in --only=*) only=${argument#--only=} ;; esac; done

grep -m1 'model name' /proc/cpuinfo || true
echo "$(nproc) cores, $(free -g | awk '/Mem/{print $2}') GiB, $(uname -sr), $(date +%F)"

if [ "$only" = . ]; then
    if command -v xvfb-run >/dev/null; then
        xvfb-run -a -s '-screen 0 1280x1024x24' bench/whole_programs.py build/bench/bin "$folder"
    else
        bench/whole_programs.py build/bench/bin "$folder"
    fi
fi
export TZ=America/New_York QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
export TESSERA_BENCH_VOLUME=$PWD/$folder/W100.vol TESSERA_BENCH_CALENDAR=$PWD/$folder/W100.ics
for program in build/bench/bin/*_bench; do
    "$program" --benchmark_filter="$only" --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
done
