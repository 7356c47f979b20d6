#!/usr/bin/env bash
# Cross-builds the library for 64-bit Windows (MinGW-w64) and runs the golden vectors and the
# unit test programs that apply to Windows under Wine, headless, in a Wine prefix inside the
# build folder. Usage: scripts/test-windows.sh [build folder, default build/mingw]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/mingw}
jobs=$(nproc)
wine=$(command -v wine || true)
[ -n "$wine" ] || wine=/usr/lib/wine/wine64
if [ ! -x "$wine" ]; then
    echo "wine not found: install the wine64 package (scripts/deps.sh)" >&2
    exit 1
fi

# Programs that call POSIX directly (mmap guard pages, dlopen, resource limits, /dev/shm) are
# not built for Windows; every other unit test program runs here.
programs=(
    tests/kxbase_test_platform tests/kxbase_test_base tests/kxbase_test_geometry
    tests/kxbase_test_units tests/kxbase_test_compress tests/kxbase_test_ellipse
    tests/kxbase_test_separate tests/runtime/kxbase_test_runtime_core
    tests/runtime/kxbase_test_runtime_error_race tests/conformance/kxbase_conformance
)
targets=(kxbase kxbase_static)
for p in "${programs[@]}"; do targets+=("$(basename "$p")"); done

cmake -S . -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/mingw-w64-x86_64.cmake \
    -DCMAKE_BUILD_TYPE=Release -DKXBASE_BUILD_TOOLS=OFF >/dev/null
nice -n 5 cmake --build "$build" -j "$jobs" --target "${targets[@]}"

export WINEPREFIX
WINEPREFIX=$(cd "$build" && pwd)/wineprefix
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
failed=0
for p in "${programs[@]}"; do
    echo "== wine $(basename "$p").exe"
    # Each program runs in its own folder, as ctest would start it.
    if ! (cd "$build/$(dirname "$p")" && "$wine" "./$(basename "$p").exe" >log-wine.txt 2>&1); then
        cat "$build/$(dirname "$p")/log-wine.txt"
        failed=1
    else
        grep -E '^\[  (PASSED|SKIPPED) |passed, ' "$build/$(dirname "$p")/log-wine.txt" || true
    fi
done
if [ "$failed" -ne 0 ]; then
    echo "Windows tests failed" >&2
    exit 1
fi
echo "Windows tests passed"
