#!/usr/bin/env bash
# Takes the README's picture of kxbase-gui on a virtual X server (Xvfb).
#   scripts/screenshot.sh [BUILD_DIR] [OUT.png]
# BUILD_DIR defaults to build/release (configured and built here when kxbase-gui is missing);
# OUT defaults to docs/kxbase-gui.png. The product folder tree is made in /tmp/kxbase-demo
# (removed afterwards) so that the picture shows the same paths on every machine.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
out=${2:-docs/kxbase-gui.png}
gui="$build/tools/gui/kxbase-gui"
if [ ! -x "$gui" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DKXBASE_BUILD_TESTS=OFF >/dev/null
    cmake --build "$build" --target kxbase_gui
fi
product=/tmp/kxbase-demo
rm -rf "$product"
mkdir -p "$product"
trap 'rm -rf "$product"' EXIT
mkdir -p "$(dirname "$out")"
KXBASE_PRODUCT_DIR="$product" QT_QPA_PLATFORM=xcb \
    xvfb-run -a -s "-screen 0 1280x800x24" "$gui" --angle 30 --screenshot "$out"
