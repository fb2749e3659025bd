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
for package in kestrel-workbench kestrel-workbench-outlets libkestrelsdk-dev libkestrelprobe-dev \
    python3-kestrel-sdk; do # should they be installed here
    sed -i "/^Package: $package\$/,/^\$/d" "$admin/status"
done
files_in_root >"$work/before"

(cd "$work" && cpack --config "$build/CPackConfig.cmake" -B "$work/packages") >"$work/log" 2>&1 ||
    { tail -30 "$work/log"; fail "cpack"; }
workbench=$(find "$work/packages" -maxdepth 1 -name 'kestrel-workbench_*.deb')
outlets=$(find "$work/packages" -maxdepth 1 -name 'kestrel-workbench-outlets_*.deb')
sdk=$(find "$work/packages" -maxdepth 1 -name 'libkestrelsdk-dev_*.deb')
probe=$(find "$work/packages" -maxdepth 1 -name 'libkestrelprobe-dev_*.deb')
python=$(find "$work/packages" -maxdepth 1 -name 'python3-kestrel-sdk_*.deb')
for package in "$workbench" "$outlets" "$sdk" "$probe" "$python"; do
    [ -f "$package" ] || fail "not the packages that are expected"
done

depends=$(dpkg-deb -f "$workbench" Depends)
for library in libc6 libqt5core5a libqt5network5 libqt5widgets5 libstdc++6; do
    [[ "$depends" == *"$library "* ]] || fail "kestrel-workbench does not depend on $library: $depends"
done
sounds=plugins/probecheck/libProbeCheckSounds.so
if [ -e "$build/$sounds" ]; then
    [[ "$depends" == *"libqt5multimedia5 "* ]] || fail "no library to play sounds with: $depends"
    [[ "$(dpkg-deb -c "$workbench")" == *"/$sounds"* ]] || fail "the sounds are not in the package"
fi
if grep -q '^QWT_LIBRARY:FILEPATH=/' "$build/CMakeCache.txt"; then
    [[ "$depends" == *"libqwt-qt5-6 "* ]] || fail "no library to plot with: $depends"
fi
[[ "$depends" != *kestrelsdk* ]] || fail "the programs need the development files"
[[ "$depends" != *mosquitto* && "$depends" != *openigtlink* ]] ||
    fail "kestrel-workbench cannot do without the outlets' libraries: $depends"
[[ "$(dpkg-deb -f "$workbench" Recommends)" == *kestrel-workbench-outlets* ]] ||
    fail "kestrel-workbench does not recommend its outlets"
depends=$(dpkg-deb -f "$outlets" Depends)
for package in kestrel-workbench libmosquitto1 libopenigtlink1.11; do
    [[ "$depends, " == *"$package"[\ ,]* ]] || fail "the outlets do not depend on $package: $depends"
done

dpkg_here --install "$workbench"
[ ! -d "$root/usr/include" ] || fail "the programs come with headers"
check_programs "$root/usr" "$work"

is_over() { ! kill -0 "$1" 2>/dev/null; }
said_or_over() { grep -qsF "$1" "$work/send" || is_over "$2"; }

# send_to URL EXIT_CODE WORDS: what becomes of a workbench that is to send there until it has said the words,
# or ends by itself.
send_to() {
    local code=0 program
    rm -f "$work/send" # of the one before
    QT_QPA_PLATFORM=offscreen LC_ALL=C XDG_DATA_HOME="$work/data" "$root/usr/bin/kestrel-workbench" \
        --settings "$work/send.ini" --send "$1" --quit-after 100 >"$work/send" 2>&1 &
    program=$!
    if [ "$2" -eq 0 ]; then
        wait_for 90 said_or_over "$3" $program || true
    else
        wait_for 90 is_over $program || true
    fi
    kill $program 2>/dev/null || true
    wait $program || code=$?
    [ $code -eq "$2" ] || { cat "$work/send"; fail "--send $1 ended with exit code $code"; }
    grep -qF "$3" "$work/send" || { cat "$work/send"; fail "--send $1 does not say: $3"; }
}
for url in mqtt://127.0.0.1:1/p igtl://:18955; do
    send_to "$url" 6 kestrel-workbench-outlets
done
dpkg_here --install "$outlets"
send_to mqtt://127.0.0.1:1/p 0 Waiting
send_to igtl://:18955 0 'nobody is connected'

dpkg_here --install "$sdk"
for file in include/kestrel_sdk/KestrelParser.h include/kestrel/host_api/moduleinterface.h \
    lib/libkestrel_sdk.a lib/cmake/KestrelSDK/KestrelSDKConfig.cmake \
    lib/cmake/KestrelHostApi/KestrelHostApiConfig.cmake \
    share/doc/libkestrelsdk-dev/data_lines.md share/doc/libkestrelsdk-dev/examples/tips.cpp; do
    [ -s "$root/usr/$file" ] || fail "libkestrelsdk-dev has no $file"
done

dpkg_here --install "$probe"
for file in include/kestrel_probe/PivotFit.h include/kestrel_probe/PointCapture.h \
    include/kestrel_probe/TipSolver.h include/kestrel_probe/Verdict.h lib/libkestrel_probe.a \
    lib/cmake/KestrelProbe/KestrelProbeConfig.cmake share/doc/libkestrelprobe-dev/tip_check.md; do
    [ -s "$root/usr/$file" ] || fail "libkestrelprobe-dev has no $file"
done

depends=$(dpkg-deb -f "$python" Depends)
for package in libc6 libstdc++6 python3 python3-numpy; do
    [[ "$depends, " =~ (^|\ )"$package"[\ ,] ]] || fail "python3-kestrel-sdk does not depend on $package: $depends"
done
dpkg_here --install "$python"
[ -s "$root/usr/share/doc/python3-kestrel-sdk/python.md" ] || fail "python3-kestrel-sdk has no python.md"
PYTHONPATH="$root/usr/lib/python3/dist-packages" /usr/bin/python3 -B -c "
import kestrel_sdk
assert kestrel_sdk.__file__.startswith('$root/')
assert kestrel_sdk.Parser().parse_frame('fr 5').counter == 5" || fail "python3-kestrel-sdk does not work"
tests=$(cd "$(dirname "$0")/../python" && pwd)
examples=$root/usr/share/doc/python3-kestrel-sdk/examples
python_here() { # with the package, as somebody who has installed it
    PYTHONPATH="$root/usr/lib/python3/dist-packages" MPLCONFIGDIR="$work/matplotlib" MPLBACKEND=Agg \
        /usr/bin/python3 -B "$@" || fail "python3-kestrel-sdk: $*"
}
python_here -c "
import pathlib, sys
sys.path.append('$tests')
from samples import pivot_recording
pivot_recording(pathlib.Path('$work/probe.kestrel'), (0, 0.1, 0), 0.02)"
[[ "$(python_here "$examples/check_tip.py" "$work/probe.kestrel")" == *conforms* ]] || fail check_tip.py
python_here "$examples/plot_recording.py" "$work/probe.kestrel" M1 "$work/plot.png" >/dev/null
[ -s "$work/plot.png" ] || fail plot_recording.py

dpkg_here --purge kestrel-workbench-outlets kestrel-workbench libkestrelsdk-dev libkestrelprobe-dev python3-kestrel-sdk
files_in_root | diff "$work/before" - || fail "the packages leave something behind"
rm -rf "$root"
