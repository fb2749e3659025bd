#!/usr/bin/env bash
# A machine without Qwt: everything but the time plot is built, and no entry leads to it. Compiles what is
# another without it; the compiler's cache has the rest from the build that is given.
#   without_qwt.sh SOURCE_FOLDER BUILD_FOLDER WORK_FOLDER
set -euo pipefail
. "$(dirname "$0")/check_programs.sh"
source=$1
build=$2
work=$3
# As deep below the sources as that build: the cache knows paths by their relation.
bare=$source/build/without_qwt
watcher=

rm -rf "$work" "$bare"
mkdir -p "$work"
trap '[ -z "$watcher" ] || kill "$watcher" 2>/dev/null || true' EXIT

cd "$source"
. scripts/packages.sh
quietly() { "$@" >"$work/log" 2>&1 || { tail -30 "$work/log"; fail "$*"; }; }
quietly cmake --preset release -B "$bare" -DBUILD_TESTING=OFF -DKESTREL_BENCHMARKS=OFF \
    -DKESTREL_WERROR="${KESTREL_WERROR:-OFF}" -DCMAKE_DISABLE_FIND_PACKAGE_Qwt=ON
grep -q 'Qwt is missing: the workbench will have no time plot' "$work/log" || fail "not a word about Qwt"
quietly cmake --build "$bare" --target kestrel-workbench

# entries PROGRAM: the names of what an assistive tool finds in its window, until the read-out is there.
entries() {
    local seen=$work/seen
    rm -f "$seen"
    env -u LANGUAGE LC_ALL=C QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME="$work" \
        QT_PLUGIN_PATH="$build/tests/workbench/qt" QT_QPA_GENERIC_PLUGINS="kestrelwitness:$seen" \
        "$1" >"$work/log" 2>&1 &
    watcher=$!
    wait_for 60 grep -qs 'Read-out' "$seen" || { cat "$work/log"; fail "$1 shows no read-out"; }
    cut -f 4 "$seen" >"$work/entries" # before the window is closed
    kill "$watcher"
    wait "$watcher" || fail "$1 ended with $?"
    watcher=
}
needs_qwt() { readelf -d "$1" | grep -q 'NEEDED.*qwt'; }

# The same look at the usual build finds the plot: it is no blind one.
program=bin/kestrel-workbench
entries "$build/$program"
grep -qx 'Time plot' "$work/entries" || fail "the usual build has no time plot"
needs_qwt "$build/$program" || fail "the usual build does not need Qwt"
entries "$bare/$program"
! grep -i 'plot' "$work/entries" || fail "a time plot without Qwt"
! needs_qwt "$bare/$program" || fail "Qwt is needed"

rm -rf "$work" "$bare"
