#!/usr/bin/env bash
# Runs every libFuzzer program in a build folder for a fixed time each, two at a time,
# starting from the seed corpus in fuzz/corpus/<name>/ (copied, so the repository is never
# written to). Fails when any target reports a crash, a leak, a sanitizer error or a timeout.
# Usage: scripts/fuzz.sh BUILD_DIR [SECONDS]
set -euo pipefail
build=$1
export FUZZ_SECONDS=${2:-20}
export FUZZ_ROOT=$(cd "$(dirname "$0")/.." && pwd)
export FUZZ_WORK=$(mktemp -d)
trap 'rm -rf "$FUZZ_WORK"' EXIT

run_one() {
    local bin=$1 name corpus seeds
    name=$(basename "$bin")
    corpus="$FUZZ_WORK/$name"
    mkdir -p "$corpus" "$FUZZ_WORK/$name.artifacts"
    seeds="$FUZZ_ROOT/fuzz/corpus/${name#fuzz_}"
    [ -d "$seeds" ] && cp -r "$seeds"/. "$corpus"/
    if "$bin" -max_total_time="$FUZZ_SECONDS" -timeout=10 -rss_limit_mb=2560 -print_final_stats=1 \
        -artifact_prefix="$FUZZ_WORK/$name.artifacts/" "$corpus" >"$FUZZ_WORK/$name.log" 2>&1; then
        echo "fuzz $name: ok, $(grep -m1 -o 'stat::number_of_executed_units: *[0-9]*' "$FUZZ_WORK/$name.log" | grep -o '[0-9]*$') runs"
    else
        echo "fuzz $name: FAILED"
        tail -n 60 "$FUZZ_WORK/$name.log"
        return 1
    fi
}
export -f run_one

shopt -s nullglob
targets=("$build"/fuzz/fuzz_*)
[ ${#targets[@]} -eq 0 ] && { echo "no fuzz targets in $build/fuzz"; exit 0; }
printf '%s\n' "${targets[@]}" | xargs -P "${KXBASE_FUZZ_JOBS:-2}" -I{} bash -c 'run_one "$@"' _ {}
