#!/usr/bin/env bash
# clazy, level 1, over the given sources; fails when it reports anything.
#   scripts/clazy.sh BUILD_FOLDER FILE...
set -euo pipefail
folder=$1
shift
report=$(printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 \
    clazy-standalone -p "$folder" -checks=level1 -header-filter="^$PWD/(?!build)" 2>&1 | sort -u)
if grep -E 'warning:|error:' <<<"$report"; then
    exit 1
fi
