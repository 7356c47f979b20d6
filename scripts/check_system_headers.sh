#!/usr/bin/env bash
# Fails when a library file outside the operating-system backend folders (platform/posix/,
# platform/win32/) includes a system header: every system call must go through the backend.
# The public type header may take the Windows vocabulary from <windows.h> on Windows.
set -euo pipefail
cd "$(dirname "$0")/.."
layers="platform base geometry units mathopt compress ellipse separate runtime module"
pattern='^[[:space:]]*#[[:space:]]*include[[:space:]]*<(unistd\.h|sys/|pthread\.h|sched\.h|dlfcn\.h|cxxabi\.h|fcntl\.h|time\.h|locale\.h|xlocale\.h|strings\.h|signal\.h|dirent\.h|link\.h|elf\.h|malloc\.h|semaphore\.h|poll\.h|termios\.h|execinfo\.h|netinet/|arpa/|linux/|windows\.h|winbase\.h|io\.h|direct\.h|process\.h)'
files=$(find $layers include/kxbase -type f \( -name '*.cpp' -o -name '*.h' \) \
            -not -path 'platform/posix/*' -not -path 'platform/win32/*' | sort)
# shellcheck disable=SC2086
hits=$(grep -HnE "$pattern" $files | grep -vE '^include/kxbase/platform/types\.h:[0-9]+:#include <windows\.h>' || true)
if [ -n "$hits" ]; then
    echo "system headers outside the platform backend:" >&2
    echo "$hits" >&2
    exit 1
fi
echo "system headers: only in the platform backend"
