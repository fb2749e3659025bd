#!/usr/bin/env bash
# Makes the Debian packages of a build and lets Debian's, the desktop's, AppStream's and systemd's own
# checkers judge them.
#   scripts/lint_packages.sh [BUILD_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

build=${1:-build/release}
work=$PWD/build/packages
install_missing dpkg-dev lintian desktop-file-utils appstream systemd

rm -rf "$work"
mkdir -p "$work"
cpack --config "$build/CPackConfig.cmake" -B "$work" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
for package in "$work"/*.deb; do
    echo "${package##*/}"
    lintian --fail-on error "$package"
    dpkg-deb -x "$package" "$work/root"
done
desktop-file-validate "$work"/root/usr/share/applications/*.desktop
appstreamcli validate --no-net "$work"/root/usr/share/metainfo/*.xml
# What it does not know it only tells of.
unit=kestrel-gateway.service
sed "s|^ExecStart=/usr/|ExecStart=$work/root/usr/|" "$work/root/usr/share/doc/kestrel-workbench/examples/$unit" \
    >"$work/$unit"
told=$(systemd-analyze verify --man=no "$work/$unit" 2>&1) && [ -z "$told" ] || { echo "$unit: $told"; exit 1; }
rm -rf "$work/root"
