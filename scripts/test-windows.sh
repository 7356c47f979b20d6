#!/usr/bin/env bash
# Cross-builds the library for 64-bit Windows (MinGW-w64) and runs, under Wine, headless, in a
# Wine prefix inside the build folder:
#   - every unit test in one program (kxbase_test_windows.exe; POSIX-only cases skip there
#     with their reason), including the two-process shared memory test, whose second process
#     (kxbase_shm_peer.exe) the test starts with CreateProcess;
#   - the golden-vector runner on the vendored vectors and on our own extra ones;
#   - kxbase.exe --version, info (the DLL's start-up) and a compress / decompress round trip.
# It prints the passed and skipped counts (with the reasons) and each vector family's line.
# Usage: scripts/test-windows.sh [build folder, default build/mingw]
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
start=$SECONDS

# Unoptimised: this step builds from scratch within a few minutes on two cores, and the tests
# check results, not speed (results do not depend on the level: no fast-math, SSE2 doubles).
cmake -S . -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/mingw-w64-x86_64.cmake \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O0 -DNDEBUG" \
    -DCMAKE_C_FLAGS_RELEASE="-O0 -DNDEBUG" -DKXBASE_BUILD_UI=OFF -DKXBASE_ALLOC_SWEEP=OFF >/dev/null
nice -n 5 cmake --build "$build" -j "$jobs" \
    --target kxbase kxbase_static kxbase_test_windows kxbase_shm_peer kxbase_conformance kxbase_tool
echo "== built in $((SECONDS - start)) s"

export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
WINEPREFIX=$(cd "$build" && pwd)/wineprefix
# The prefix is made once (about 20 s); every program after that starts quickly.
[ -f "$WINEPREFIX/system.reg" ] || "$wine" wineboot -i >/dev/null 2>&1 || true

failed=0
run() {  # run LOG FOLDER PROGRAM ARGS...: one Wine start; the log stays in FOLDER
    local log=$1 dir=$2
    shift 2
    if ! (cd "$dir" && "$wine" "$@" >"$log" 2>&1); then
        cat "$dir/$log"
        echo "FAILED: $*" >&2
        failed=1
    fi
}

tests=$(dirname "$(find "$build/tests" -name kxbase_test_windows.exe | head -n 1)")
echo "== wine kxbase_test_windows.exe"
run log-wine.txt "$tests" ./kxbase_test_windows.exe
# Counts, then every skipped test with the reason it gave (Wine writes CR LF line ends).
tr -d '\r' <"$tests/log-wine.txt" | grep -E '^\[(==========|  PASSED  |  FAILED  |  SKIPPED )\] [0-9]+ test' || true
tr -d '\r' <"$tests/log-wine.txt" |
    awk '/^\[ RUN      \]/ { name = $4 } /: Skipped$/ { getline reason; print "  skipped " name ": " reason }'

conf=$build/tests/conformance
echo "== wine kxbase_conformance.exe"
run log-wine.txt "$conf" ./kxbase_conformance.exe
grep -E 'passed, ' "$conf/log-wine.txt" || true
echo "== wine kxbase_conformance.exe (extra vectors)"
run log-wine-extra.txt "$conf" ./kxbase_conformance.exe --vectors "$(pwd)/tests/conformance/extra"
grep -E 'passed, ' "$conf/log-wine-extra.txt" |
    awk '{ t += $2; f += $4; u += $6 } END { print "extra vectors: " t " passed, " f " failed, " u " unsupported" }'

# The tool: its version, and a file through the LZW codec and back.
tool=$build/tools
echo "== wine kxbase.exe"
cp "$build"/kxBaseCommon.dll "$tool"/ 2>/dev/null || true
cat runtime/*.cpp >"$tool/smoke-in.bin"
run log-version.txt "$tool" ./kxbase.exe --version
cat "$tool/log-version.txt"
# Loading kxBaseCommon.dll runs the start-up: the product tree appears beside the DLL.
run log-info.txt "$tool" ./kxbase.exe info
if tr -d '\r' <"$tool/log-info.txt" | grep -q 'kxBaseCommon\.dll$' &&
    tr -d '\r' <"$tool/log-info.txt" | grep -Eq 'm_strChartProofPath +yes +.*\\Chart/ChartProof/$'; then
    echo "kxbase.exe info: kxBaseCommon.dll loaded, product tree created beside it"
else
    cat "$tool/log-info.txt"
    echo "FAILED: kxbase.exe info" >&2
    failed=1
fi
run log-codec.txt "$tool" ./kxbase.exe compress --codec lzw smoke-in.bin smoke.kxz
run log-codec2.txt "$tool" ./kxbase.exe decompress smoke.kxz smoke-out.bin
if cmp -s "$tool/smoke-in.bin" "$tool/smoke-out.bin"; then
    echo "kxbase.exe compress/decompress (lzw): round trip of $(stat -c %s "$tool/smoke-in.bin") bytes"
else
    echo "FAILED: kxbase.exe compress/decompress round trip differs" >&2
    failed=1
fi

echo "== Windows step: $((SECONDS - start)) s"
if [ "$failed" -ne 0 ]; then
    echo "Windows tests failed" >&2
    exit 1
fi
echo "Windows tests passed"
