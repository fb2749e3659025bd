#!/usr/bin/env bash
# Runs the whole test set several times in a row while the machine is busy with something else, and stops
# at the first run with a failure. Each run's whole output stays in build/repeat.
#
#   scripts/repeat.sh [--times N] [--load N] [--preset PRESET] [CTEST-OPTION...]
#
# 20 times in the release build unless told otherwise; the load is N busy loops, two for each core.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

times=20
load=$((2 * $(nproc)))
preset=release
while [ $# -gt 0 ]; do
    case "$1" in
        --times) times=$2; shift ;;
        --load) load=$2; shift ;;
        --preset) preset=$2; shift ;;
        -h | --help) sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
        *) break ;;
    esac
    shift
done

install_missing "${build_packages[@]}"
install_locale de_DE
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
logs=build/repeat
rm -rf $logs
mkdir -p $logs

loops=()
stop_load() { [ ${#loops[@]} -eq 0 ] || kill "${loops[@]}" 2>/dev/null || true; }
trap stop_load EXIT
trap 'exit 130' INT TERM
for ((i = 0; i < load; ++i)); do
    (while :; do :; done) &
    loops+=($!)
done

for ((run = 1; run <= times; ++run)); do
    log=$logs/run$run.log
    started=$SECONDS
    if ctest --preset "$preset" "$@" >$log 2>&1; then
        echo "run $run of $times: $(grep -m1 'tests passed' $log), $((SECONDS - started)) s," \
            "load average $(cut -d' ' -f1 /proc/loadavg)"
    else
        echo "run $run of $times failed, the output is in $log:"
        sed -n '/The following tests FAILED/,$p' $log
        exit 1
    fi
done
echo "$times runs with $load busy loops beside them, 0 failures"
