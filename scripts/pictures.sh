#!/usr/bin/env bash
# Takes the pictures of the user guide, without a display: workbench, plug-in and simulated controller
# are started and walked through.
#
#   scripts/pictures.sh [FOLDER] [--language LANGUAGE] [--font PERCENT]
#
# FOLDER is docs/images unless given.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

folder=docs/images
if [ $# -gt 0 ] && [[ $1 != --* ]]; then
    folder=$1
    shift
fi
mkdir -p "$folder"
install_missing "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target kestrel-pictures translations
QT_QPA_PLATFORM=offscreen LC_ALL=C build/release/bin/kestrel-pictures "$folder" "$@"
