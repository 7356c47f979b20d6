// Conversion between expanded lines (one byte per pixel) and packed 1-, 2- and 4-bit lines.
#include <cstring>

#include <kxbase/compress/compress.h>

namespace {

// Packs pixels start .. start + count - 1 (absolute positions in both buffers) at B bits per
// pixel, most significant first. Bits of partial bytes outside the range are kept. out may be
// buf itself: each byte's pixels are read before the byte is written, and byte k is only
// written after the pixels at positions k and below were read.
template <unsigned B>
void ShrinkRange(const BYTE* buf, UINT64 start, UINT64 count, BYTE* out) {
    constexpr unsigned ppb = 8 / B;  // pixels per byte
    constexpr BYTE pixMask = (1u << B) - 1;
    const auto pixel = [](BYTE p) -> unsigned {
        if constexpr (B == 1)
            return p != 0;
        else
            return p & pixMask;
    };
    const UINT64 end = start + count;  // one past the last pixel
    const UINT64 firstByte = start / ppb, lastByte = (end - 1) / ppb;
    for (UINT64 k = firstByte; k <= lastByte; ++k) {
        const UINT64 p0 = k * ppb;
        const BYTE* px = buf + p0;
        if (p0 >= start && p0 + ppb <= end) {
            unsigned v = 0;
            for (unsigned j = 0; j < ppb; ++j) v = (v << B) | pixel(px[j]);
            out[k] = static_cast<BYTE>(v);
            continue;
        }
        unsigned mask = 0, v = 0;
        for (unsigned j = 0; j < ppb; ++j) {
            if (p0 + j < start || p0 + j >= end) continue;
            const unsigned shift = 8 - B * (j + 1);
            mask |= unsigned{pixMask} << shift;
            v |= pixel(px[j]) << shift;
        }
        out[k] = static_cast<BYTE>((out[k] & ~mask) | v);
    }
}

}  // namespace

int ACompress::ShrinkBit(BYTE* buf, ULONG start, ULONG count, int depth, BYTE* dst) {
    if (!buf || count == 0) return 0;
    switch (depth) {
        case 1:
            return ShrinkBit1(buf, start, count, dst);
        case 2:
            return ShrinkBit2(buf, start, count, dst);
        case 4:
            return ShrinkBit4(buf, start, count, dst);
        default:
            return depth >= 8 ? 1 : 0;
    }
}

int ACompress::ShrinkBit1(BYTE* buf, ULONG start, ULONG count, BYTE* dst) {
    if (!buf || count == 0) return 0;
    // A range that starts inside a byte and ends in that same byte is left alone, deliberately.
    if (start % 8 != 0 && start / 8 == (UINT64{start} + count - 1) / 8) return 1;
    ShrinkRange<1>(buf, start, count, dst ? dst : buf);
    return 1;
}

int ACompress::ShrinkBit2(BYTE* buf, ULONG start, ULONG count, BYTE* dst) {
    if (!buf || count == 0) return 0;
    ShrinkRange<2>(buf, start, count, dst ? dst : buf);
    return 1;
}

int ACompress::ShrinkBit4(BYTE* buf, ULONG start, ULONG count, BYTE* dst) {
    if (!buf || count == 0) return 0;
    ShrinkRange<4>(buf, start, count, dst ? dst : buf);
    return 1;
}

int ACompress::ExpandBit(const BYTE* src, ULONG start, ULONG count, int depth, BYTE* dst) {
    if (!src || !dst || count == 0) return 0;
    switch (depth) {
        case 1:
            return ExpandBit1(src, start, count, dst);
        case 2:
            return ExpandBit2(src, start, count, dst);
        case 4:
            return ExpandBit4(src, start, count, dst);
        default:
            return depth >= 8 ? 1 : 0;
    }
}

int ACompress::ExpandBit1(const BYTE* src, ULONG start, ULONG count, BYTE* dst) {
    if (!src || !dst || count == 0) return 0;
    // src holds the byte of the first pixel; only start % 8 matters and the pixels go to
    // dst[0 ..], whole bytes by one copy from the bit table.
    const ULONG s = start % 8;
    ULONG n = 8 - s < count ? 8 - s : count;
    std::memcpy(dst, m_byBitTable[src[0]] + s, n);
    ULONG w = n;
    const BYTE* p = src + 1;
    while (count - w >= 8) {
        std::memcpy(dst + w, m_byBitTable[*p++], 8);
        w += 8;
    }
    if (w < count) std::memcpy(dst + w, m_byBitTable[*p], count - w);
    return 1;
}

int ACompress::ExpandBit2(const BYTE* src, ULONG start, ULONG count, BYTE* dst) {
    if (!src || !dst || count == 0) return 0;
    const UINT64 end = UINT64{start} + count;
    for (UINT64 p = start; p < end; ++p) dst[p] = (src[p / 4] >> (6 - 2 * (p % 4))) & 3;
    return 1;
}

int ACompress::ExpandBit4(const BYTE* src, ULONG start, ULONG count, BYTE* dst) {
    if (!src || !dst || count == 0) return 0;
    const UINT64 end = UINT64{start} + count;
    for (UINT64 p = start; p < end; ++p) dst[p] = p % 2 == 0 ? src[p / 2] >> 4 : src[p / 2] & 15;
    return 1;
}
