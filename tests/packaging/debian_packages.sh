#!/usr/bin/env bash
# Makes the Debian packages, installs them into an empty root folder, runs the programs from there and
# takes the packages away again: nothing is left. dpkg judges the dependencies by what is installed on
# this machine.
#   debian_packages.sh BUILD_FOLDER WORK_FOLDER
set -euo pipefail
. "$(dirname "$0")/check_programs.sh"
build=$1
work=$2
root=$work/root
admin=$root/var/lib/dpkg

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(fakeroot)

dpkg_here() {
    "${as_root[@]}" dpkg --root="$root" --force-not-root --log="$work/dpkg.log" "$@" \
        >>"$work/log" 2>&1 || { grep -v 'files list file' "$work/log" | tail -30; fail "dpkg $*"; }
}

files_in_root() { (cd "$root" && find . -path ./var/lib/dpkg -prune -o -print | sort); }

rm -rf "$work"
mkdir -p "$work/packages" "$admin/info" "$admin/updates"
cp /var/lib/dpkg/status "$admin/status"
for package in kestrel-workbench libkestrelsdk-dev libkestrelprobe-dev; do # should they be installed here
    sed -i "/^Package: $package\$/,/^\$/d" "$admin/status"
done
files_in_root >"$work/before"

(cd "$work" && cpack --config "$build/CPackConfig.cmake" -B "$work/packages") >"$work/log" 2>&1 ||
    { tail -30 "$work/log"; fail "cpack"; }
workbench=$(find "$work/packages" -maxdepth 1 -name 'kestrel-workbench_*.deb')
sdk=$(find "$work/packages" -maxdepth 1 -name 'libkestrelsdk-dev_*.deb')
probe=$(find "$work/packages" -maxdepth 1 -name 'libkestrelprobe-dev_*.deb')
if [ ! -f "$workbench" ] || [ ! -f "$sdk" ] || [ ! -f "$probe" ]; then fail "not the packages that are expected"; fi

depends=$(dpkg-deb -f "$workbench" Depends)
for library in libc6 libqt5core5a libqt5network5 libqt5widgets5 libstdc++6; do
    [[ "$depends" == *"$library "* ]] || fail "kestrel-workbench does not depend on $library: $depends"
done
[[ "$depends" != *kestrelsdk* ]] || fail "the programs need the development files"

dpkg_here --install "$workbench"
[ ! -d "$root/usr/include" ] || fail "the programs come with headers"
check_programs "$root/usr" "$work"

dpkg_here --install "$sdk"
for file in include/kestrel_sdk/KestrelParser.h include/kestrel/host_api/moduleinterface.h \
    lib/libkestrel_sdk.a lib/cmake/KestrelSDK/KestrelSDKConfig.cmake \
    lib/cmake/KestrelHostApi/KestrelHostApiConfig.cmake \
    share/doc/libkestrelsdk-dev/data_lines.md share/doc/libkestrelsdk-dev/examples/tips.cpp; do
    [ -s "$root/usr/$file" ] || fail "libkestrelsdk-dev has no $file"
done

dpkg_here --install "$probe"
for file in include/kestrel_probe/PivotFit.h include/kestrel_probe/PointCapture.h \
    include/kestrel_probe/Verdict.h lib/libkestrel_probe.a \
    lib/cmake/KestrelProbe/KestrelProbeConfig.cmake share/doc/libkestrelprobe-dev/tip_check.md; do
    [ -s "$root/usr/$file" ] || fail "libkestrelprobe-dev has no $file"
done

dpkg_here --purge kestrel-workbench libkestrelsdk-dev libkestrelprobe-dev
files_in_root | diff "$work/before" - || fail "the packages leave something behind"
rm -rf "$root"
