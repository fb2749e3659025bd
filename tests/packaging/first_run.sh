#!/usr/bin/env bash
# The first steps of somebody who has just got the sources: ./run in German, installation, packages,
# all of it with what ./run has built and no more.
#   first_run.sh SOURCE_FOLDER WORK_FOLDER
set -euo pipefail
. "$(dirname "$0")/check_programs.sh"
source=$1
work=$2
clone=$work/clone

rm -rf "$work"
mkdir -p "$clone"
tar -C "$source" --exclude=./build --exclude=./.git -cf - . | tar -C "$clone" -xf -
[ ! -e "$clone/build" ] || fail "the clone is not clean"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM LANGUAGE

run() {
    (cd "$clone" && env "$@") >"$work/log" 2>&1 </dev/null || { tail -30 "$work/log"; fail "$*"; }
}

run LC_ALL=C ./run --language de --after 1 --quit-after 3
grep -q $'^tableWidget6dmt\t0\tM1' "$work/log" || { tail -30 "$work/log"; fail "no live rows"; }
[ -s "$clone/build/workbench.png" ] || fail "no picture"

run LC_ALL=de_DE.UTF-8 ./run --help
grep -q 'Mit einem Controller verbinden' "$work/log" || fail "no German on a German desktop"
run LC_ALL=de_DE.UTF-8 ./run --language en --help
grep -q 'Connect to a controller' "$work/log" || fail "--language does not count"

# One file for each catalogue, in a folder that was installed or unpacked from a package.
check_catalogues() {
    local folder=$1 catalogue name
    for catalogue in "$source"/translations/*.ts; do
        name=$(basename "$catalogue" .ts).qm
        [ -s "$folder/$name" ] || fail "$name is not in $folder"
    done
}

run cmake --install build/release --prefix "$work/prefix"
check_catalogues "$work/prefix/share/kestrel/translations"
"$work/prefix/bin/kestrel-workbench" --language de --help |
    grep -q 'Mit einem Controller verbinden' || fail "the installed program has no German"

run cpack --config build/release/CPackConfig.cmake -B "$work/packages"
package=$(find "$work/packages" -maxdepth 1 -name 'kestrel-workbench_*.deb')
[ -n "$package" ] || fail "no package"
dpkg-deb -x "$package" "$work/unpacked"
check_catalogues "$work/unpacked/usr/share/kestrel/translations"

rm -rf "$work"
