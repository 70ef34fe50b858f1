#!/bin/sh
# Builds the whole program and test suite with AddressSanitizer and
# UndefinedBehaviorSanitizer in build-asan and runs every test there. Takes
# far longer than the normal build, so CI does not run it: run it before
# each submission.
#
#   scripts/sanitize.sh            gcc (the normal compiler)
#   CXX=clang++-14 CC=clang-14 scripts/sanitize.sh
#   ASAN_BUILD_DIR=/tmp/x scripts/sanitize.sh
set -e

cd "$(dirname "$0")/.."
SOURCE="$(pwd)"
BUILD="${ASAN_BUILD_DIR:-$SOURCE/build-asan}"
JOBS="${JOBS:-2}"

if [ ! -f "$BUILD/CMakeCache.txt" ]; then
    cmake -S "$SOURCE" -B "$BUILD" -G Ninja -DQUILLON_SANITIZE=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$BUILD" -j"$JOBS"

# Any report ends the test that caused it, with the stack that led there.
export ASAN_OPTIONS="detect_leaks=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
# Leaks inside Qt, Qwt, fontconfig and the other system libraries are listed
# there; the program's own are never suppressed.
export LSAN_OPTIONS="suppressions=$SOURCE/scripts/lsan.supp:print_suppressions=0"
cd "$BUILD"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$JOBS" --timeout 900
