#!/usr/bin/env bash
# Lets simulator, workbench and plug-in run together without a display at 1000 frames per second, while
# the controller misbehaves at random and a user without a plan uses window and dialogs. Fails when a
# program crashes, when the window is frozen for longer than one time-out and a second, when memory grows by more
# than 1 MB per hour after the first ten minutes, or when threads, files or ports are left over.
#
#   scripts/soak.sh [--minutes MINUTES] [--seed N] [--rate HZ] [--folder FOLDER]
#
# 30 minutes unless told otherwise; at least 13 are needed to judge the memory. The seed of a run is
# printed first. Logs and samples go to build/soak.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing "${build_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target kestrel-soak
exec build/release/bin/kestrel-soak --folder build/soak "$@"
