#!/usr/bin/env bash
# Runs every libFuzzer program in a build folder for a fixed time each, starting from the
# seed corpus in fuzz/corpus/<name>/ (copied, so the repository is never written to).
# Usage: scripts/fuzz.sh BUILD_DIR [SECONDS]
set -euo pipefail
build=$1
seconds=${2:-20}
root=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
for bin in "$build"/fuzz/fuzz_*; do
    [ -x "$bin" ] || continue
    name=$(basename "$bin")
    corpus="$work/$name"
    mkdir -p "$corpus"
    seeds="$root/fuzz/corpus/${name#fuzz_}"
    [ -d "$seeds" ] && cp -r "$seeds"/. "$corpus"/
    if "$bin" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2560 -print_final_stats=0 \
        -artifact_prefix="$work/" "$corpus" >"$work/$name.log" 2>&1; then
        echo "fuzz $name: ok ($(grep -c . "$work/$name.log") log lines)"
    else
        echo "fuzz $name: FAILED"
        tail -n 60 "$work/$name.log"
        status=1
    fi
done
exit $status
