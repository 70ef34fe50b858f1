#!/bin/sh
# Installs what is missing, builds, and runs every test headless.
set -e
cd "$(dirname "$0")/.."
./scripts/build.sh
BUILD_DIR=${BUILD_DIR:-build}
export QT_QPA_PLATFORM=offscreen
cd "$BUILD_DIR"
ctest --output-on-failure -j2
