#!/bin/sh
# Checks DoxygenSummary.cmake, the step that makes the docs target fail on warnings: each case
# is a Doxygen log and a header folder, run with and without FAIL, and the exit status and
# output it must give. Usage: test-doxygen-summary.sh CMAKE
set -eu
cmake=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/documented/sub" "$work/bare"
printf '/// \\file\n/// A header.\n' >"$work/documented/a.h"
printf '/// @file\n/// Another.\n' >"$work/documented/sub/b.h"
printf '// no file block\n' >"$work/bare/c.h"
: >"$work/clean.log"
printf '%s\n' "/x/a.h:3: warning: Member Foo() (function) of class Bar is not documented." \
    "/x/a.h:9: warning: unable to resolve reference to 'Baz' for \\ref command" >"$work/two.log"

failed=0
# case: log, headers, FAIL, expected status, text the output must hold
check() {
    if out=$("$cmake" -DLOG="$work/$1" -DHEADERS="$work/$2" -DFAIL="$3" -P "$here/DoxygenSummary.cmake" 2>&1); then
        status=0
    else
        status=1
    fi
    if [ "$status" != "$4" ] || ! printf '%s\n' "$out" | grep -Fq -- "$5"; then
        echo "case $1 $2 FAIL=$3: status $status (want $4), output:"
        printf '%s\n' "$out"
        failed=1
    fi
}
check clean.log documented ON 0 "Doxygen: 0 warnings"
check two.log documented OFF 0 "1 undocumented member"
check two.log documented OFF 0 "1 unresolved reference"
check two.log documented ON 1 "Member Foo() (function) of class Bar is not documented."
check two.log documented ON 1 "must be warning-free"
check clean.log bare OFF 0 "1 headers without a file comment"
check clean.log bare ON 1 "c.h"
check missing.log documented OFF 1 "no Doxygen log"
exit $failed
