#!/usr/bin/env bash
# Builds and runs every test:
#   1. unit tests and the golden-vector runner under AddressSanitizer + UndefinedBehaviorSanitizer
#   2. the concurrency tests (label "tsan") under ThreadSanitizer
#   3. every libFuzzer target for a short fixed time (clang, ASan + UBSan)
#   4. a release build of the tool and the benchmarks, so they keep compiling
#   5. an install into a temporary prefix and a consumer built against it
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
jobs=$(nproc)
fuzz_seconds=${KXBASE_FUZZ_SECONDS:-20}

echo "== unit tests and vectors (ASan + UBSan)"
cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKXBASE_SANITIZE="address;undefined" >/dev/null
cmake --build build/asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build/asan -j "$jobs" --output-on-failure -L unit

echo "== concurrency tests (TSan)"
cmake -S . -B build/tsan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKXBASE_SANITIZE=thread -DKXBASE_BUILD_TOOLS=OFF >/dev/null
cmake --build build/tsan -j "$jobs" --target kxbase_tsan_tests
TSAN_OPTIONS=halt_on_error=1 ctest --test-dir build/tsan -j "$jobs" --output-on-failure -L tsan --no-tests=ignore

echo "== fuzz targets (${fuzz_seconds}s each)"
CC=clang-14 CXX=clang++-14 cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DKXBASE_SANITIZE="address;undefined" -DKXBASE_BUILD_FUZZ=ON -DKXBASE_BUILD_TESTS=OFF \
    -DKXBASE_BUILD_TOOLS=OFF >/dev/null
cmake --build build/fuzz -j "$jobs"
bash scripts/fuzz.sh build/fuzz "$fuzz_seconds"

echo "== release build of the tool and the benchmarks"
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DKXBASE_BUILD_TESTS=OFF -DKXBASE_BUILD_BENCH=ON >/dev/null
cmake --build build/release -j "$jobs"
build/release/tools/kxbase --version

echo "== installed package: a consumer through CMake and through pkg-config"
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install build/release --prefix "$prefix" >/dev/null
cmake -S tests/package -B build/consumer -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build build/consumer
libdir=$(dirname "$(find "$prefix" -name 'libkxBaseCommon.so' | head -n 1)")
LD_LIBRARY_PATH="$libdir" build/consumer/consumer_shared
build/consumer/consumer_static
PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --exists kxbase
PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --exists kxbase_ui
g++ -std=c++20 tests/package/consumer.cpp -o build/consumer/consumer_pc \
    $(PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --cflags --libs kxbase)
LD_LIBRARY_PATH="$libdir" build/consumer/consumer_pc
echo "all tests passed"
