#!/usr/bin/env bash
# Installs into an empty folder, moves the folder, runs the programs from there.
#   installation.sh BUILD_FOLDER WORK_FOLDER
set -euo pipefail
. "$(dirname "$0")/check_programs.sh"
build=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/first" >"$work/log"
mv "$work/first" "$work/prefix"

for file in share/applications/kestrel-workbench.desktop \
    share/metainfo/example.kestrel.workbench.metainfo.xml \
    share/icons/hicolor/scalable/apps/kestrel-workbench.svg \
    share/doc/kestrel-workbench/user_guide.md \
    share/doc/kestrel-workbench/user_guide.de.md \
    include/kestrel/host_api/moduleinterface.h; do
    [ -s "$work/prefix/$file" ] || fail "$file is not installed"
done
guide=$work/prefix/share/doc/kestrel-workbench
for picture in $(grep -ohE 'images/[a-z_/]+\.png' "$guide"/user_guide*.md); do
    [ -s "$guide/$picture" ] || fail "the guide's $picture is not installed"
done
desktop=$work/prefix/share/applications/kestrel-workbench.desktop
[ -x "$work/prefix/bin/$(sed -n 's/^Exec=//p' "$desktop")" ] || fail "Exec names no program"
[ -e "$work/prefix/share/icons/hicolor/scalable/apps/$(sed -n 's/^Icon=//p' "$desktop").svg" ] ||
    fail "Icon names no icon"

check_programs "$work/prefix" "$work"
