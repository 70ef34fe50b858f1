#!/bin/sh
# Installs what Quillon needs to build, test and run on Debian 12, and the
# packages named as arguments (scripts/fuzz.sh adds clang this way).
# Quick when everything is already there: dpkg is asked first, apt only runs
# for what is missing.
set -e

PACKAGES="build-essential cmake ninja-build ccache pkg-config \
qtbase5-dev qtbase5-dev-tools libqt5svg5-dev libqt5serialport5-dev \
libqt5xmlpatterns5-dev libqwt-qt5-dev libhidapi-dev libelf-dev \
python3-dev pybind11-dev xvfb x11-apps imagemagick gcc \
desktop-file-utils shared-mime-info dpkg-dev $*"

missing=""
for p in $PACKAGES; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed"; then
        missing="$missing $p"
    fi
done

if [ -n "$missing" ]; then
    SUDO=""
    if [ "$(id -u)" != "0" ]; then SUDO="sudo"; fi
    echo "Installing:$missing"
    export DEBIAN_FRONTEND=noninteractive
    $SUDO apt-get update -qq
    $SUDO apt-get install -y -qq --no-install-recommends $missing
fi
