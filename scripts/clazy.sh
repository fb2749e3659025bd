#!/usr/bin/env bash
# clazy, level 1, over the given sources; fails when it reports anything.
#   scripts/clazy.sh BUILD_FOLDER FILE...
# The dialogs' slots are connected by name on purpose: the names are what hosts and tests know.
# Tests and benchmarks register themselves through static objects of their frameworks.
set -euo pipefail
folder=$1
shift
checks=level1,no-connect-by-name

# check CHECKS FILE... (none is fine)
check() {
    local wanted=$1
    shift
    [ $# -eq 0 ] && return
    printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 \
        clazy-standalone -p "$folder" "-checks=$wanted" -ignore-included-files 2>&1 | sort -u
}

products=()
tests=()
for file in "$@"; do
    case $file in
        tests/* | benchmarks/* | fuzz/*) tests+=("$file") ;;
        *) products+=("$file") ;;
    esac
done
failed=no
report=$(check "$checks" "${products[@]}") || failed=yes
report+=$'\n'$(check "$checks,no-non-pod-global-static" "${tests[@]}") || failed=yes
if grep -E 'warning:|error:' <<<"$report"; then
    exit 1
fi
# Nothing found by an analyser that has failed is no good news.
[ $failed = no ] || { printf '%s\n' "$report"; echo "clazy failed"; exit 1; }
