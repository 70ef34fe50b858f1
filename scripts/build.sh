#!/bin/sh
# Installs what is missing, then configures and builds Quillon in build/.
# Incremental: a second run only rebuilds what changed (ccache keeps objects
# across clean clones).
set -e
cd "$(dirname "$0")/.."
./scripts/setup.sh
BUILD_DIR=${BUILD_DIR:-build}
if [ ! -f "$BUILD_DIR/build.ninja" ]; then
    cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$BUILD_DIR" -j2
