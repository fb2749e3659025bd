#!/usr/bin/env bash
# Runs every libFuzzer program of a build folder for so many seconds, one per processor at a time,
# from the checked-in corpora on. Fails on any finding; the input that shows it is kept.
#
#   scripts/fuzz.sh BUILD [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?the build folder}
seconds=${2:-20}

run_one() {
    local program=$1 seconds=$2 work=$3/runs/${1##*/} name=${1##*/fuzz_}
    local checked_in=(fuzz/*/corpus/"$name") words=(fuzz/*/"$name".dict)
    [ -f "${words[0]}" ] && words=("-dict=${words[0]}") || words=()
    [ -d "${checked_in[0]}" ] || { echo "fuzz_$name has no corpus"; return 1; }
    rm -rf "$work"
    mkdir -p "$work/corpus"
    # the entropic schedule costs up to a third of the time
    if "$program" -max_total_time="$seconds" -max_len=512 -timeout=10 -entropic=0 "${words[@]}" \
        -print_final_stats=1 -artifact_prefix="$work/" "$work/corpus" "${checked_in[@]}" \
        >"$work/log" 2>&1; then
        sed -n "s/^stat::number_of_executed_units: */fuzz_$name: /p" "$work/log" |
            sed "s/\$/ executions in $seconds s, no finding/"
        return
    fi
    tail -n 60 "$work/log"
    echo "fuzz_$name: FINDING; again with: $program" "$work"/*-*
    return 1
}
export -f run_one

programs=("$build"/bin/fuzz_*)
printf '%s\n' "${programs[@]}" |
    xargs -P "$(nproc)" -I '{}' bash -c 'run_one "$@"' - '{}' "$seconds" "$build"
