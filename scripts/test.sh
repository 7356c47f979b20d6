#!/usr/bin/env bash
# Builds and runs every test:
#   0. system headers only in the platform backend; the two smallest layer subsets on their own
#   1. unit tests and the golden-vector runner under AddressSanitizer + UndefinedBehaviorSanitizer
#   2. the concurrency tests (label "tsan") under ThreadSanitizer, then the Windows cross build
#      with its unit tests, vectors and tool under Wine (scripts/test-windows.sh)
#   3. every libFuzzer target for a short fixed time (clang, ASan + UBSan)
#   4. a release build of the tool and the benchmarks, so they keep compiling, and the API
#      reference, which must be free of Doxygen warnings (any warning is printed and fails;
#      the log stays in build/release/docs)
#   5. the Debian packages from that build: lintian, then the consumer and every example
#      built and run against the extracted packages (scripts/package.sh)
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
jobs=$(nproc)
fuzz_seconds=${KXBASE_FUZZ_SECONDS:-20}

echo "== system calls only in the platform backend"
bash scripts/check_system_headers.sh

# The smallest subsets must build and pass their own tests, which keeps every layer free of
# dependencies on the layers above it.
for subset in platform base; do
    echo "== subset: $subset"
    cmake -S . -B "build/subset-$subset" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKXBASE_SUBSYSTEMS="$subset" >/dev/null
    cmake --build "build/subset-$subset" -j "$jobs"
    ctest --test-dir "build/subset-$subset" -j "$jobs" --output-on-failure -L unit
done

echo "== unit tests and vectors (ASan + UBSan)"
cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKXBASE_SANITIZE="address;undefined" >/dev/null
cmake --build build/asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build/asan -j "$jobs" --output-on-failure -L unit

echo "== concurrency tests (TSan)"
cmake -S . -B build/tsan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKXBASE_SANITIZE=thread -DKXBASE_BUILD_TOOLS=OFF >/dev/null
cmake --build build/tsan -j "$jobs" --target kxbase_tsan_tests
TSAN_OPTIONS=halt_on_error=1 ctest --test-dir build/tsan -j "$jobs" --output-on-failure -L tsan --no-tests=ignore

echo "== Windows: MinGW-w64 cross build, tests under Wine"
bash scripts/test-windows.sh build/mingw

echo "== fuzz targets (${fuzz_seconds}s each)"
CC=clang-14 CXX=clang++-14 cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DKXBASE_SANITIZE="address;undefined" -DKXBASE_BUILD_FUZZ=ON -DKXBASE_BUILD_TESTS=OFF \
    -DKXBASE_BUILD_TOOLS=OFF >/dev/null
cmake --build build/fuzz -j "$jobs"
bash scripts/fuzz.sh build/fuzz "$fuzz_seconds"

echo "== release build of the tool and the benchmarks"
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DKXBASE_BUILD_TESTS=OFF -DKXBASE_BUILD_BENCH=ON \
    -DKXBASE_BUILD_DOCS=ON -DKXBASE_DOCS_WARN_AS_ERROR=ON -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
cmake --build build/release -j "$jobs"
build/release/tools/kxbase --version
cmake --build build/release --target docs

echo "== Debian packages: lintian, then the consumer and the examples against them"
bash scripts/package.sh build/release
echo "all tests passed"
