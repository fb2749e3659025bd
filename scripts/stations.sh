#!/usr/bin/env bash
# Starts a broker and many stations, each a workbench without a display with a simulated controller of
# its own, on this machine. They send poses and results to the broker, while broker and stations are
# killed at random. Fails when a result is lost; prints what everything took.
#
#   scripts/stations.sh [--stations N] [--results N] [--minutes MINUTES] [--seed N] [--calm] [--picture PNG]
#
# 50 stations, 20000 results and 30 minutes unless told otherwise: the results are written in half of that
# time, and it takes longer only while new ones still come. --calm: nobody is killed.
# --picture: what came when, drawn with matplotlib.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target kestrel-workbench kestrel-simulator kestrel_outlet_mqtt stationresults
exec /usr/bin/python3 scripts/stations/stations.py --build build/release "$@"
