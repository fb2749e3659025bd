#!/usr/bin/env bash
# clazy, level 1, over the given sources; fails when it reports anything.
#   scripts/clazy.sh BUILD_FOLDER FILE...
# The dialogs' slots are connected by name on purpose: the names are what hosts and tests know.
set -euo pipefail
folder=$1
shift
report=$(printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 \
    clazy-standalone -p "$folder" -checks=level1,no-connect-by-name \
    -ignore-included-files 2>&1 | sort -u)
if grep -E 'warning:|error:' <<<"$report"; then
    exit 1
fi
