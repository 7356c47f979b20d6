// Shared pieces of the packed 1- and 2-bit line formats (private to the compress folder).
//
// Both formats are a sequence of elements and a closing byte. An element is a literal byte
// (bit 7 set) or a run: one or more consecutive digit bytes with the same top bits (bit 7
// clear plus the value bits), least significant digit first.
#pragma once

#include <cstring>

#include <kxbase/platform/types.h>

namespace kxbase::detail {

struct LineFormat1 {
    static constexpr BYTE kTopMask = 0xC0;  // bit 7 clear + the value bit 6
    static constexpr unsigned kDigitBits = 6;
    static constexpr ULONG kLiteralPixels = 7;
    static constexpr ULONG kMinRun = 8;
    static BYTE RunValue(BYTE digit) { return (digit >> 6) & 1; }
};

struct LineFormat2 {
    static constexpr BYTE kTopMask = 0xE0;  // bit 7 clear + the value bits 6-5
    static constexpr unsigned kDigitBits = 5;
    static constexpr ULONG kLiteralPixels = 3;
    static constexpr ULONG kMinRun = 4;
    static BYTE RunValue(BYTE digit) { return (digit >> 5) & 3; }
};

inline bool IsLiteral(BYTE b) {
    return (b & 0x80) != 0;
}

// Run counts are added up in 64 bits; a digit whose bits would land beyond bit 40 saturates
// the count (no line is that long), so any digit sequence is read without overflow.
constexpr UINT64 kRunSaturated = UINT64{1} << 40;

/// Reads the run whose first digit is at s[o]: its digits are the bytes before `end` with the
/// same top bits. Returns the number of digit bytes and sets count.
template <class F>
ULONG ReadRun(const BYTE* s, ULONG o, ULONG end, UINT64& count) {
    const BYTE top = s[o] & F::kTopMask;
    constexpr BYTE digitMask = (1u << F::kDigitBits) - 1;
    UINT64 c = 0;
    unsigned shift = 0;
    ULONG n = 0;
    while (o + n < end && (s[o + n] & F::kTopMask) == top) {
        const UINT64 d = s[o + n] & digitMask;
        if (shift < 40)
            c += d << shift;
        else if (d != 0)
            c = kRunSaturated;
        if (c > kRunSaturated) c = kRunSaturated;
        shift += F::kDigitBits;
        ++n;
    }
    count = c;
    return n;
}

}  // namespace kxbase::detail

namespace kxbase::detail {

/// Windowed restore of a 1-bit (depth 1) or 2-bit (depth 2) line stream: pixels start ..
/// start + count - 1 to dst[0 ..]; 1 when all count pixels were decoded. rows is the row
/// table of the 1-bit literals.
int UnPackWindow12(const BYTE* const* rows, const BYTE* src, ULONG srcLen, ULONG total, int depth,
                   ULONG start, ULONG count, BYTE* dst);

}  // namespace kxbase::detail
