#!/usr/bin/env bash
# Installs the Debian packages the build, the tests, the fuzzers and the benchmarks need,
# skipping what is already there. Run as root (or with sudo available).
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev libcli11-dev libpng-dev
    clang-14 libclang-rt-14-dev libfuzzer-14-dev
    libtiff-dev libtiff-tools zlib1g-dev libpixman-1-dev libcairo2-dev libagg-dev libsisl-dev libboost-dev
    libssl-dev libsodium-dev
    doxygen dpkg-dev file lintian groff-base
    qt6-base-dev xvfb xauth fonts-wqy-microhei
    g++-mingw-w64-x86-64-posix wine64 googletest
)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
