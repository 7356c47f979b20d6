// Byte searches over caller buffers: a byte or a pattern, forwards and backwards.
//
// The forward pattern search stops at the first occurrence of the pattern's first byte that
// leaves too little room for the pattern, and the backward one likewise at the last byte;
// any match would have to lie before that point, so both are plain first / last occurrence
// searches and are implemented as such: memchr / memrchr for single bytes and short
// buffers; memmem (forwards, and over windows from the end backwards) where the C library
// has it; otherwise a Horspool skip loop for longer patterns in longer buffers.
#include <kxbase/mathopt/amathopt.h>

#include <cstring>

#include "mathopt/byte_search_p.h"

namespace {

constexpr ULONG kNone = AMathOpt::kNotFound;

// Below this buffer length, or for patterns shorter than this, the first/last-byte scan
// beats building a skip table.
constexpr ULONG kSkipTableMinLen = 256;
[[maybe_unused]] constexpr ULONG kSkipTableMinPat = 4;  // without memmem only

const BYTE* FindByte(const BYTE* p, size_t n, BYTE b) {
    return static_cast<const BYTE*>(std::memchr(p, b, n));
}

const BYTE* FindLastByte(const BYTE* p, size_t n, BYTE b) {
#if defined(__GLIBC__)
    return static_cast<const BYTE*>(memrchr(p, b, n));
#else
    while (n > 0) {
        if (p[--n] == b) return p + n;
    }
    return nullptr;
#endif
}

}  // namespace

namespace kxbase::detail {

ULONG ForwardScan(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    const BYTE first = pat[0];
    const ULONG lastStart = len - patLen;
    ULONG i = 0;
    while (i <= lastStart) {
        const BYTE* hit = FindByte(buf + i, lastStart - i + 1, first);
        if (!hit) return kNone;
        i = static_cast<ULONG>(hit - buf);
        if (std::memcmp(hit + 1, pat + 1, patLen - 1) == 0) return i;
        ++i;
    }
    return kNone;
}

ULONG ForwardHorspool(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    ULONG shift[256];
    for (ULONG& s : shift) s = patLen;
    for (ULONG i = 0; i + 1 < patLen; ++i) shift[pat[i]] = patLen - 1 - i;
    const BYTE last = pat[patLen - 1];
    const ULONG lastStart = len - patLen;
    ULONG i = 0;
    while (i <= lastStart) {
        const BYTE c = buf[i + patLen - 1];
        if (c == last && buf[i] == pat[0] && std::memcmp(buf + i, pat, patLen - 1) == 0) return i;
        i += shift[c];
    }
    return kNone;
}

ULONG BackwardScan(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    const BYTE last = pat[patLen - 1];
    // Candidate end positions are patLen - 1 .. len - 1.
    size_t end = len;  // search buf[patLen - 1 .. end - 1]
    while (end >= patLen) {
        const BYTE* hit = FindLastByte(buf + patLen - 1, end - (patLen - 1), last);
        if (!hit) return kNone;
        const size_t e = static_cast<size_t>(hit - buf);
        const size_t s = e + 1 - patLen;
        if (std::memcmp(buf + s, pat, patLen - 1) == 0) return static_cast<ULONG>(s);
        end = e;
    }
    return kNone;
}

ULONG BackwardHorspool(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    ULONG shift[256];
    for (ULONG& s : shift) s = patLen;
    for (ULONG i = patLen - 1; i > 0; --i) shift[pat[i]] = i;
    const BYTE first = pat[0];
    INT64 s = static_cast<INT64>(len - patLen);
    while (s >= 0) {
        const BYTE c = buf[s];
        if (c == first && buf[s + patLen - 1] == pat[patLen - 1] &&
            std::memcmp(buf + s + 1, pat + 1, patLen - 1) == 0)
            return static_cast<ULONG>(s);
        s -= shift[c];
    }
    return kNone;
}

#if defined(__GLIBC__)
ULONG BackwardChunked(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    // Windows of candidate starts, last window first; each window is searched forwards with
    // memmem, keeping its last hit. Windows start small (a match near the end is found
    // quickly) and double up to 4 MiB, so the set-up of each memmem call stays negligible and no
    // byte is scanned more than about twice.
    INT64 hiStart = static_cast<INT64>(len) - static_cast<INT64>(patLen);
    INT64 window = 256;
    while (hiStart >= 0) {
        const INT64 loStart = hiStart >= window - 1 ? hiStart - (window - 1) : 0;
        const BYTE* p = buf + loStart;
        const BYTE* const regionEnd = buf + hiStart + patLen;
        const BYTE* last = nullptr;
        while (static_cast<ULONG>(regionEnd - p) >= patLen) {
            const void* hit = memmem(p, static_cast<size_t>(regionEnd - p), pat, patLen);
            if (!hit) break;
            last = static_cast<const BYTE*>(hit);
            p = last + 1;
        }
        if (last) return static_cast<ULONG>(last - buf);
        hiStart = loStart - 1;
        if (window < (INT64{1} << 22)) window *= 2;
    }
    return kNone;
}
#endif

}  // namespace kxbase::detail

namespace {

using namespace kxbase::detail;

bool BadPattern(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    return !buf || !pat || len == 0 || patLen == 0 || patLen > len;
}

}  // namespace

ULONG AMathOpt::FindData(const BYTE* buf, ULONG len, BYTE b) {
    if (!buf || len == 0) return kNone;
    const BYTE* hit = FindByte(buf, len, b);
    return hit ? static_cast<ULONG>(hit - buf) : kNone;
}

ULONG AMathOpt::FindData(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    if (BadPattern(buf, len, pat, patLen)) return kNone;
    if (patLen == 1) return FindData(buf, len, pat[0]);
#if defined(__GLIBC__)
    // glibc's memmem (two-way with a hashed shift table) is the fastest first-occurrence
    // search available; the result is the same.
    const void* hit = memmem(buf, len, pat, patLen);
    return hit ? static_cast<ULONG>(static_cast<const BYTE*>(hit) - buf) : kNone;
#else
    if (len >= kSkipTableMinLen && patLen >= kSkipTableMinPat)
        return ForwardHorspool(buf, len, pat, patLen);
    return ForwardScan(buf, len, pat, patLen);
#endif
}

ULONG AMathOpt::FindData_Int(const BYTE* buf, ULONG len, BYTE b) {
    if (!buf || len == 0) return kNone;
    ULONG i = 0;
    while (i < len && buf[i] >= '0' && buf[i] <= '9') ++i;
    if (i < len && buf[i] == b) return i;
    return kNone;
}

ULONG AMathOpt::ReverseFindData(const BYTE* buf, ULONG len, BYTE b) {
    if (!buf || len == 0) return kNone;
    const BYTE* hit = FindLastByte(buf, len, b);
    return hit ? static_cast<ULONG>(len - 1 - (hit - buf)) : kNone;
}

ULONG AMathOpt::ReverseFindData(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen) {
    if (BadPattern(buf, len, pat, patLen)) return kNone;
    ULONG start;
    if (patLen == 1 || len < kSkipTableMinLen) start = BackwardScan(buf, len, pat, patLen);
#if defined(__GLIBC__)
    else
        start = BackwardChunked(buf, len, pat, patLen);
#else
    else if (patLen >= kSkipTableMinPat)
        start = BackwardHorspool(buf, len, pat, patLen);
    else
        start = BackwardScan(buf, len, pat, patLen);
#endif
    // Reported as the distance from the end of the buffer to the start of the match.
    return start == kNone ? kNone : len - start;
}
