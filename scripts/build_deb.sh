#!/bin/sh
# Builds the Debian package with CPack (dependencies computed from the
# binaries by dpkg-shlibdeps), unpacks it with dpkg-deb -x into a scratch
# folder, checks its desktop entry, and runs the unpacked program headless on
# the bundled example: exit code 0 and every header written.
# Not part of ctest (packaging strips and scans the binaries, which takes a
# while); run it by hand or in CI after scripts/run_tests.sh.
set -e
cd "$(dirname "$0")/.."
./scripts/build.sh
BUILD_DIR=${BUILD_DIR:-build}
rm -rf "$BUILD_DIR/packages"
(cd "$BUILD_DIR" && cpack -G DEB)
DEB=$(ls "$BUILD_DIR"/packages/quillon_*.deb | head -n 1)
echo "Package: $DEB"
dpkg-deb --field "$DEB" Package Version Architecture Depends

# The dependencies come from the binaries: Qt and hidapi must be among them.
DEPENDS=$(dpkg-deb --field "$DEB" Depends)
for lib in libqt5widgets5 libqt5network5 libhidapi; do
    echo "$DEPENDS" | grep -q "$lib" || { echo "missing dependency $lib"; exit 1; }
done

SCRATCH=$(mktemp -d)
trap 'rm -rf "$SCRATCH"' EXIT
dpkg-deb -x "$DEB" "$SCRATCH/root"
desktop-file-validate "$SCRATCH/root/usr/share/applications/quillon.desktop"
test -f "$SCRATCH/root/usr/share/man/man1/quillon.1.gz"
test -f "$SCRATCH/root/usr/share/mime/packages/quillon.xml"
test -f "$SCRATCH/root/usr/share/icons/hicolor/64x64/apps/quillon.png"

mkdir -p "$SCRATCH/work" "$SCRATCH/config"
cp "$SCRATCH/root/usr/lib/quillon/examples/nrf52840/"* "$SCRATCH/work/"
set +e
QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME="$SCRATCH/config" \
    "$SCRATCH/root/usr/bin/quillon" -q -s "-c$SCRATCH/work/console.log" "$SCRATCH/work/nrf52840_board.xml"
rc=$?
set -e
if [ "$rc" != "0" ]; then
    echo "unpacked quillon ended with $rc"; cat "$SCRATCH/work/console.log"; exit 1
fi
for h in $(grep -o '<header file="[^"]*"' "$SCRATCH/work/nrf52840_board.xml" | sed 's/.*file="//; s/"$//' | sort -u); do
    grep -q '#define' "$SCRATCH/work/$h" || { echo "header $h not written"; cat "$SCRATCH/work/console.log"; exit 1; }
    echo "written: $h"
done
echo "OK: $DEB installs, and the unpacked program does the main job."
