#!/usr/bin/env bash
# Takes the pictures of the user guide, without a display: workbench, plug-in and simulated controller
# are started and walked through.
#
#   scripts/pictures.sh [FOLDER] [--dpi DPI] [--language LANGUAGE] [--font PERCENT] [--dark] [--all]
#
# FOLDER is docs/images unless given, docs/images/LANGUAGE with a language. --all: the windows that the guide
# does not show, too.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

folder=
if [ $# -gt 0 ] && [[ $1 != --* ]]; then
    folder=$1
    shift
fi
dpi=96
language=
options=()
while [ $# -gt 0 ]; do
    if [ "$1" = --dpi ]; then
        dpi=$2
        shift
    else
        options+=("$1")
        [ "$1" != --language ] || language=/$2
    fi
    shift
done
folder=${folder:-docs/images$language}
mkdir -p "$folder"
install_missing "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target kestrel-pictures translations
export QT_QPA_PLATFORM=offscreen QT_FONT_DPI=$dpi LC_ALL=C PULSE_RUNTIME_PATH=/nonexistent/pulse # no sound
build/release/bin/kestrel-pictures "$folder" "${options[@]}"
