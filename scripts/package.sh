#!/usr/bin/env bash
# Builds the Debian packages and checks them the way a user meets them:
#   1. cpack -G DEB in a Release build folder configured for /usr (default build/release;
#      configured and built here when it does not exist yet)
#   2. lintian on every package: any error fails
#   3. the man pages: kxbase(1), and kxbase-gui(1) when the Qt program is packaged, are in the
#      tools package and render with groff without a warning
#   4. the packages extracted into a temporary root (dpkg-deb -x), then the consumer project
#      (tests/package/) built against that root through CMake and through pkg-config, every
#      example (examples/) built through CMake and run (the Qt dialog without a display), and
#      the packaged programs run
# Usage: scripts/package.sh [BUILD_DIR]. The .deb files stay in BUILD_DIR/packages/.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
jobs=$(nproc)

if [ ! -f "$build/CMakeCache.txt" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
        -DKXBASE_BUILD_TESTS=OFF >/dev/null
fi
# Packages hold optimised code installed under /usr, never a debug or sanitizer build.
cache_value() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }
if [ "$(cache_value CMAKE_BUILD_TYPE)" != Release ] || [ "$(cache_value CMAKE_INSTALL_PREFIX)" != /usr ] ||
    [ -n "$(cache_value KXBASE_SANITIZE)" ]; then
    echo "package.sh: $build must be a Release build with CMAKE_INSTALL_PREFIX=/usr and no sanitizer" >&2
    exit 2
fi
cmake --build "$build" -j "$jobs"

echo "-- Debian packages"
rm -rf "$build/packages"
(cd "$build" && cpack -G DEB >/dev/null)
debs=("$build"/packages/*.deb)
changelog_version=$(dpkg-parsechangelog -l docs/debian/changelog -S Version)
for deb in "${debs[@]}"; do
    echo "$(basename "$deb"): $(dpkg-deb -f "$deb" Depends)"
    if [ "$(dpkg-deb -f "$deb" Version)" != "$changelog_version" ]; then
        echo "package.sh: $(basename "$deb") is not version $changelog_version of docs/debian/changelog" >&2
        exit 1
    fi
done

echo "-- lintian"
# Errors fail; warnings are printed for the record.
lintian --fail-on error --tag-display-limit 0 "${debs[@]}"

echo "-- man pages"
tools_deb=$(printf '%s\n' "${debs[@]}" | grep '/kxbase-tools_')
tools_files=$(dpkg-deb -c "$tools_deb" | awk '{ print $NF }')
pages=(kxbase)
if grep -qx './usr/bin/kxbase-gui' <<<"$tools_files"; then pages+=(kxbase-gui); fi
for name in "${pages[@]}"; do
    grep -qx "./usr/share/man/man1/$name.1.gz" <<<"$tools_files" ||
        { echo "package.sh: $(basename "$tools_deb") has no man page $name.1.gz" >&2; exit 1; }
    # -ww turns on every groff warning; -z renders without writing the output anywhere.
    warnings=$(dpkg-deb --fsys-tarfile "$tools_deb" | tar -xOf - "./usr/share/man/man1/$name.1.gz" |
        gzip -dc | LC_ALL=C.UTF-8 MANWIDTH=80 groff -man -Tutf8 -ww -z 2>&1)
    if [ -n "$warnings" ]; then
        echo "package.sh: $name.1 renders with warnings:" >&2
        echo "$warnings" >&2
        exit 1
    fi
    echo "$name.1: renders without warnings"
done

echo "-- the extracted packages: consumer, examples and the tool"
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
for deb in "${debs[@]}"; do dpkg-deb -x "$deb" "$root"; done
prefix="$root/usr"
libdir=$(dirname "$(find "$root" -name 'libkxBaseCommon.so.*' -type f | head -n 1)")
# Only the extracted root may answer: no kxBaseCommon installed on this machine can stand in.
export PKG_CONFIG_LIBDIR="$libdir/pkgconfig"

out="$build/package-check"
rm -rf "$out"
cmake -S tests/package -B "$out/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$out/consumer" >/dev/null
LD_LIBRARY_PATH="$libdir" "$out/consumer/consumer_shared"
"$out/consumer/consumer_static"
# shellcheck disable=SC2046  # pkg-config prints several words on purpose
g++ -std=c++20 tests/package/consumer.cpp -o "$out/consumer/consumer_pc" $(pkg-config --cflags --libs kxbase)
LD_LIBRARY_PATH="$libdir" "$out/consumer/consumer_pc"

cmake -S examples -B "$out/examples" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$out/examples" -j "$jobs" >/dev/null
LD_LIBRARY_PATH="$libdir" ctest --test-dir "$out/examples" --output-on-failure
# With the widget library packaged, the Qt dialog must be among the examples that ran.
if find "$root" -name 'libkxBaseCommonUi.so.*' -type f | grep -q .; then
    listed=$(ctest --test-dir "$out/examples" -N)
    grep -q ' qt_dialog$' <<<"$listed" ||
        { echo "package.sh: the Qt dialog example was not built against the packages" >&2; exit 1; }
fi

# The README shows the units example in full; it must be the program that was just run.
awk '/^<!-- examples\/units\/units.cpp/ { on = 1; next } on && /^```cpp$/ { next }
     on && /^```$/ { exit } on' README.md | diff -u examples/units/units.cpp - >/dev/null ||
    { echo "package.sh: the example in README.md differs from examples/units/units.cpp" >&2; exit 1; }

LD_LIBRARY_PATH="$libdir" "$prefix/bin/kxbase" --version
LD_LIBRARY_PATH="$libdir" "$prefix/bin/kxbase" page >/dev/null
# The packaged man page describes the packaged program: a section for each subcommand.
page=$(gzip -dc "$prefix/share/man/man1/kxbase.1.gz")
for sub in $(LD_LIBRARY_PATH="$libdir" "$prefix/bin/kxbase" --help |
    awk '/^[A-Za-z ]*:$/ { on = ($0 == "Subcommands:"); next } on && /^  [^ ]/ { print $1 }'); do
    grep -Fxq ".SS \"kxbase $sub\"" <<<"$page" ||
        { echo "package.sh: kxbase.1 has no section for 'kxbase $sub'" >&2; exit 1; }
done
if [ -x "$prefix/bin/kxbase-gui" ]; then
    LD_LIBRARY_PATH="$libdir" QT_QPA_PLATFORM=offscreen "$prefix/bin/kxbase-gui" --help >/dev/null
fi
echo "packages checked: ${debs[*]}"
