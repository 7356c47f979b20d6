#!/usr/bin/env bash
# Builds the library and the kxbase tool (release), then runs the tool's main job
# (kxbase page: the A4 page at 720 DPI in pixels and every length unit). Arguments replace it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DKXBASE_BUILD_TESTS=OFF >/dev/null
cmake --build build/release --target kxbase_tool
[ $# -eq 0 ] && set -- page
exec build/release/tools/kxbase "$@"
