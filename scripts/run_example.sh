#!/bin/sh
# The main job on the bundled example, headless: the nRF52840 board
# description and its SVD file become a configuration and C headers.
set -e
cd "$(dirname "$0")/.."
./scripts/build.sh
BUILD_DIR=${BUILD_DIR:-build}
export QT_QPA_PLATFORM=offscreen
EXAMPLE="$PWD/$BUILD_DIR/examples/nrf52840/nrf52840_board.xml"
LOG="$PWD/$BUILD_DIR/example-console.log"
rm -f "$LOG"
"$BUILD_DIR/quillon" -q -s "-c$LOG" "$EXAMPLE"
echo "quillon ended with $?; console messages in $LOG:"
cat "$LOG" 2>/dev/null || true
