// The search strategies behind AMathOpt::FindData / ReverseFindData, exposed to the tests so
// that each one can be checked against a naive oracle whichever the public functions pick.
#pragma once

#include <kxbase/platform/types.h>

namespace kxbase::detail {

// All take a non-null buffer and pattern with 1 <= patLen <= len and return the start index of the
// first (Forward*) or last (Backward*) occurrence, or 0xFFFFFFFF.

/// Candidates from memchr on the first byte, verified with memcmp.
ULONG ForwardScan(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);
/// Horspool: the window's last byte decides the shift.
ULONG ForwardHorspool(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);
/// Candidates from memrchr on the last byte, verified with memcmp.
ULONG BackwardScan(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);
/// Horspool from the right: the window's first byte decides the shift.
ULONG BackwardHorspool(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);
#if defined(__GLIBC__)
/// Windows from the end, each searched forwards with memmem for its last hit.
ULONG BackwardChunked(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);
#endif

}  // namespace kxbase::detail
