#!/usr/bin/env bash
# Fails when a text of the sources has no finished translation, or a catalogue has texts that no
# source uses any more.
#   translations.sh SOURCE_FOLDER WORK_FOLDER
set -euo pipefail
source=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
cp "$source"/translations/*.ts "$work"
"$source/translations/update.sh" "$work" >/dev/null

for catalogue in "$source"/translations/*.ts; do
    if ! diff -u "$catalogue" "$work/${catalogue##*/}"; then
        echo "${catalogue##*/} is not up to date: run translations/update.sh and translate what is new"
        exit 1
    fi
    if grep -n 'type="\|<translation></translation>' "$catalogue"; then
        echo "${catalogue##*/} has unfinished or unused texts"
        exit 1
    fi
    count=$(grep -c '<translation>' "$catalogue")
    [ "$count" -ge 50 ] || { echo "${catalogue##*/} has $count texts only"; exit 1; }
    echo "${catalogue##*/}: $count texts"
done
