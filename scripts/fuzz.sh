#!/bin/sh
# Runs every libFuzzer target of fuzz/ for a short time, one after the other
# (one process: the machine is shared). Use before a release; see
# fuzz/README.md for what each target takes and for the figures of longer
# runs.
#
#   scripts/fuzz.sh                     every target, 30 s each (a smoke run:
#                                       the slow targets, the old #define path
#                                       and scripts, spend most of it reading
#                                       their corpus)
#   FUZZ_SECONDS=300 scripts/fuzz.sh    longer runs
#   scripts/fuzz.sh svd script          only these targets
#
# Inputs that grow coverage are kept in build-fuzz/fuzz-corpus/<target>
# (seeds of fuzz/corpus/<target> are read, never written). A crash, leak,
# sanitizer report or hang leaves its input as
# build-fuzz/fuzz-artifacts/<target>-crash-... (or leak-, timeout-); the
# script then exits with 1. Keep such inputs as regression tests in
# tests/data/fuzz/.
set -e

cd "$(dirname "$0")/.."
SOURCE="$(pwd)"
BUILD="${FUZZ_BUILD_DIR:-$SOURCE/build-fuzz}"
SECONDS_EACH="${FUZZ_SECONDS:-30}"
# Vendor SVD files are read from where they are, not copied (size and
# licences); inputs longer than FUZZ_MAX_LEN are cut, which makes their
# beginnings good seeds.
SVD_DIR="${FUZZ_SVD_DIR:-$SOURCE/../shared/svd}"
MAX_LEN="${FUZZ_MAX_LEN:-65536}"
JOBS="${JOBS:-2}"

# clang and its sanitizer and libFuzzer runtimes, next to what the build needs.
"$SOURCE/scripts/setup.sh" clang-14 libclang-rt-14-dev

if [ ! -f "$BUILD/CMakeCache.txt" ]; then
    cmake -S "$SOURCE" -B "$BUILD" -G Ninja -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 \
        -DQUILLON_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$BUILD" -j"$JOBS" --target fuzzers

TARGETS="$*"
if [ -z "$TARGETS" ]; then
    TARGETS=$(cd "$SOURCE/fuzz" && ls fuzz_*.cpp | sed 's/^fuzz_//; s/\.cpp$//' | tr '\n' ' ')
fi

export QT_QPA_PLATFORM=offscreen
# Leaks inside Qt and the system libraries it loads are listed there; the
# program's own are never suppressed.
export LSAN_OPTIONS="suppressions=$SOURCE/scripts/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export ASAN_OPTIONS="detect_leaks=1"

failed=""
mkdir -p "$BUILD/fuzz-artifacts"
for target in $TARGETS; do
    binary="$BUILD/fuzz/fuzz_$target"
    corpus="$BUILD/fuzz-corpus/$target"
    mkdir -p "$corpus"
    seeds="$SOURCE/fuzz/corpus/$target"
    extra=""
    if [ "$target" = "svd" ] && [ -d "$SVD_DIR" ]; then extra="$SVD_DIR"; fi
    dict=""
    if [ -f "$SOURCE/fuzz/$target.dict" ]; then dict="-dict=$SOURCE/fuzz/$target.dict"; fi
    echo "== fuzz_$target for $SECONDS_EACH s"
    if ! "$binary" -max_total_time="$SECONDS_EACH" -timeout=20 -rss_limit_mb=4096 -max_len="$MAX_LEN" \
        -print_final_stats=1 -artifact_prefix="$BUILD/fuzz-artifacts/$target-" $dict \
        "$corpus" "$seeds" $extra 2>"$BUILD/fuzz-artifacts/$target.log"; then
        failed="$failed $target"
        tail -n 40 "$BUILD/fuzz-artifacts/$target.log"
    fi
    grep -E "^#[0-9]+[[:space:]]+(DONE|INITED)" "$BUILD/fuzz-artifacts/$target.log" | tail -n 2 || true
done

if [ -n "$failed" ]; then
    echo "Fuzzing found problems in:$failed (inputs and logs in $BUILD/fuzz-artifacts)"
    exit 1
fi
echo "Fuzzing found nothing in: $TARGETS"
