#!/usr/bin/env bash
# Builds the library and the kxbase tool (release), then runs the tool's main job (kxbase
# print: the built-in A4 page at 720 DPI rasterised, compressed and handed to a printer
# process, which writes page.png into the current folder; then the summary). Arguments
# replace it.
set -euo pipefail
here=$(pwd)
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DKXBASE_BUILD_TESTS=OFF >/dev/null
cmake --build build/release --target kxbase_tool
tool=$(pwd)/build/release/tools/kxbase
cd "$here"
[ $# -eq 0 ] && set -- print
exec "$tool" "$@"
