// The packed 1- and 2-bit line formats: compressors, decoders, element lookup and run reading.
#include <algorithm>
#include <cstring>

#include <kxbase/compress/compress.h>

#include "compress/bitpack_p.h"

using kxbase::detail::IsLiteral;
using kxbase::detail::LineFormat1;
using kxbase::detail::LineFormat2;
using kxbase::detail::ReadRun;

namespace {

inline bool HasZeroByte(UINT64 w) {
    return ((w - 0x0101010101010101ull) & ~w & 0x8080808080808080ull) != 0;
}

// Length of the run of pixels at p (n of them) whose truth value is v.
ULONG TruthRun(const BYTE* p, ULONG n, bool v) {
    ULONG r = 0;
    UINT64 w;
    if (!v) {
        while (n - r >= 8 && (std::memcpy(&w, p + r, 8), w == 0)) r += 8;
        while (r < n && p[r] == 0) ++r;
    } else {
        while (n - r >= 8 && (std::memcpy(&w, p + r, 8), !HasZeroByte(w))) r += 8;
        while (r < n && p[r] != 0) ++r;
    }
    return r;
}

// Length of the run of 2-bit pixels at p whose low two bits equal v.
ULONG Run2(const BYTE* p, ULONG n, BYTE v) {
    ULONG r = 0;
    while (r < n && (p[r] & 3) == v) ++r;
    return r;
}

// Appends the digits of a run; every byte is written only at positions below lim.
template <unsigned DigitBits>
bool PutDigits(BYTE top, ULONG count, BYTE* dst, ULONG& o, ULONG lim) {
    constexpr ULONG mask = (1u << DigitBits) - 1;
    do {
        if (o >= lim) return false;
        dst[o++] = static_cast<BYTE>(top | (count & mask));
        count >>= DigitBits;
    } while (count != 0);
    return true;
}

// Element lookup shared by the two formats (see GetLoc_RLE1 in the public header).
template <class F>
int Locate(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset, ULONG* bytes,
           ULONG* inside, ULONG* pixels) {
    if (!src || !offset || pos >= total || srcLen == 0) return 0;
    const ULONG end = srcLen - 1;  // the closing byte is not an element
    ULONG o = 0;
    UINT64 before = 0;
    while (o < end) {
        ULONG nb = 1;
        UINT64 px;
        if (IsLiteral(src[o]))
            px = o + 1 == end ? src[end] : F::kLiteralPixels;
        else
            nb = ReadRun<F>(src, o, end, px);
        if (before + px > pos) {
            *offset = o;
            if (bytes) *bytes = nb;
            if (inside) *inside = static_cast<ULONG>(pos - before);
            if (pixels) *pixels = static_cast<ULONG>(std::min<UINT64>(px, 0xFFFFFFFFu));
            return 1;
        }
        before += px;
        o += nb;
    }
    return 0;
}

template <class F>
ULONG ReadSeg(const BYTE* src, ULONG offset, ULONG bytes, BYTE& value, ULONG& count, int whole) {
    if (!src || bytes == 0 || IsLiteral(src[offset])) return 0;
    const BYTE top = src[offset] & F::kTopMask;
    ULONG first = offset;
    if (!whole)
        for (ULONG k = 0; k + 1 < bytes && first > 0 && (src[first - 1] & F::kTopMask) == top; ++k)
            --first;
    value = F::RunValue(src[first]);
    UINT64 c = 0;
    const ULONG n = ReadRun<F>(src, first, first + bytes, c);
    count = static_cast<ULONG>(std::min<UINT64>(c, 0xFFFFFFFFu));
    return n;
}

// Decodes elements from src[o] on (before `end`), leaving out the first `skip` pixels, into
// dst until `want` pixels are written. Literals are expanded by `lit` (kLiteralPixels bytes).
// Returns the pixels written; `full` tells whether decoding stopped because dst was full.
template <class F, class Lit>
UINT64 DecodeLine(const BYTE* src, ULONG o, ULONG end, UINT64 skip, BYTE* dst, ULONG want,
                  Lit lit) {
    UINT64 w = 0;
    while (o < end && w < want) {
        const BYTE b = src[o];
        if (IsLiteral(b)) {
            BYTE px[8];
            lit(b, px);
            // skip can pass the literal's 7 (3) pixels when a malformed closing byte made
            // the lookup count more for the last literal: nothing of it is then written.
            const UINT64 avail = skip < F::kLiteralPixels ? F::kLiteralPixels - skip : 0;
            const UINT64 n = std::min<UINT64>(avail, want - w);
            if (n) std::memcpy(dst + w, px + skip, n);
            w += n;
            ++o;
        } else {
            UINT64 c;
            o += ReadRun<F>(src, o, end, c);
            const UINT64 n = std::min<UINT64>(c - std::min(c, skip), want - w);
            std::memset(dst + w, F::RunValue(b), n);
            w += n;
        }
        skip = 0;
    }
    return w;
}

struct Lit2 {
    void operator()(BYTE b, BYTE* px) const {
        px[0] = (b >> 4) & 3;
        px[1] = (b >> 2) & 3;
        px[2] = b & 3;
    }
};

}  // namespace

int ACompress::Pack_Value(BYTE value, ULONG count, int depth, BYTE* dst, ULONG& dstLen) {
    if (depth != 1 && depth != 2) return 0;
    dstLen = 0;
    if (count == 0) return 1;
    if (!dst) return 0;
    ULONG o = 0;
    const bool ok = depth == 1 ? PutDigits<6>(value ? 0x40 : 0, count, dst, o, kPackValueMaxBytes)
                               : PutDigits<5>(static_cast<BYTE>((value & 7) << 5), count, dst, o,
                                              kPackValueMaxBytes);
    dstLen = o;
    return ok ? 1 : 0;
}

int ACompress::Pack1(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || srcLen == 0 || !dst || dstCap == 0) return 0;
    const ULONG lim = dstCap - 1;  // the last byte is kept for the closing byte
    ULONG o = 0;
    ULONG i = 0;
    while (srcLen - i > 7) {
        const bool v = src[i] != 0;
        UINT64 w8;
        std::memcpy(&w8, src + i, 8);
        const bool run8 = v ? !HasZeroByte(w8) : w8 == 0;
        if (run8) {
            const ULONG r = 8 + TruthRun(src + i + 8, srcLen - i - 8, v);
            if (!PutDigits<6>(v ? 0x40 : 0, r, dst, o, lim)) return 0;
            i += r;
        } else {
            if (o >= lim) return 0;
            const BYTE* p = src + i;
            dst[o++] = static_cast<BYTE>(0x80 | (p[0] != 0) << 6 | (p[1] != 0) << 5 |
                                         (p[2] != 0) << 4 | (p[3] != 0) << 3 | (p[4] != 0) << 2 |
                                         (p[5] != 0) << 1 | (p[6] != 0));
            i += 7;
        }
    }
    const ULONG rem = srcLen - i;
    if (rem > 0) {
        if (o >= lim) return 0;
        BYTE lit = 0x80;
        for (ULONG k = 0; k < rem; ++k)
            if (src[i + k]) lit |= static_cast<BYTE>(0x40 >> k);
        dst[o++] = lit;
    }
    dst[o++] = static_cast<BYTE>(rem);
    dstLen = o;
    return 1;
}

int ACompress::Pack2(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || srcLen == 0 || !dst || dstCap == 0) return 0;
    // Every byte must leave the length below dstCap - 1: a byte goes at o only if o + 2 < dstCap.
    const ULONG lim = dstCap < 2 ? 0 : dstCap - 2;
    ULONG o = 0;
    ULONG i = 0;
    while (srcLen - i > 3) {
        const BYTE v = src[i] & 3;
        const ULONG r = Run2(src + i, srcLen - i, v);
        if (r >= 4) {
            if (!PutDigits<5>(static_cast<BYTE>(v << 5), r, dst, o, lim)) return 0;
            i += r;
        } else {
            if (o >= lim) return 0;
            dst[o++] = static_cast<BYTE>(0x80 | (src[i] & 3) << 4 | (src[i + 1] & 3) << 2 |
                                         (src[i + 2] & 3));
            i += 3;
        }
    }
    const ULONG rem = srcLen - i;
    if (rem > 0) {
        // Three pixel places; those past the line are written as 0.
        if (o >= lim) return 0;
        BYTE lit = 0x80;
        for (ULONG k = 0; k < rem; ++k) lit |= static_cast<BYTE>((src[i + k] & 3) << (4 - 2 * k));
        dst[o++] = lit;
    }
    if (o >= lim) return 0;
    dst[o++] = static_cast<BYTE>(rem);
    dstLen = o;
    return 1;
}

int ACompress::UnPack1(const BYTE* src, ULONG srcLen, ULONG pixels, BYTE* dst) {
    if (!src || srcLen == 0 || pixels == 0 || !dst) return 0;
    // The closing byte is not decoded; the output is bounded by pixels.
    DecodeLine<LineFormat1>(src, 0, srcLen - 1, 0, dst, pixels,
                            [](BYTE b, BYTE* px) { std::memcpy(px, m_pRowTable[b & 0x7F], 7); });
    return 1;
}

int ACompress::UnPack2(const BYTE* src, ULONG srcLen, ULONG pixels, BYTE* dst) {
    if (!src || srcLen == 0 || pixels == 0 || !dst) return 0;
    if (srcLen == 1 || src[srcLen - 1] > 3) return 0;
    // Success when dst was filled, also by the last element of the stream.
    return DecodeLine<LineFormat2>(src, 0, srcLen - 1, 0, dst, pixels, Lit2{}) == pixels ? 1 : 0;
}

int ACompress::GetLoc_RLE1(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* bytes, ULONG* inside, ULONG* pixels) {
    return Locate<LineFormat1>(pos, total, src, srcLen, offset, bytes, inside, pixels);
}

int ACompress::GetLoc_RLE2(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* bytes, ULONG* inside, ULONG* pixels) {
    return Locate<LineFormat2>(pos, total, src, srcLen, offset, bytes, inside, pixels);
}

ULONG ACompress::UnPackSeg1(const BYTE* src, ULONG offset, ULONG bytes, BYTE& value, ULONG& count,
                            int whole) {
    return ReadSeg<LineFormat1>(src, offset, bytes, value, count, whole);
}

ULONG ACompress::UnPackSeg2(const BYTE* src, ULONG offset, ULONG bytes, BYTE& value, ULONG& count,
                            int whole) {
    return ReadSeg<LineFormat2>(src, offset, bytes, value, count, whole);
}

// The windowed 1- and 2-bit restores: locate the element holding pixel start, then decode from
// inside it exactly as the whole-line decoders do.
int kxbase::detail::UnPackWindow12(const BYTE* const* rows, const BYTE* src, ULONG srcLen,
                                   ULONG total, int depth, ULONG start, ULONG count, BYTE* dst) {
    if (!src || !dst || srcLen == 0 || count == 0 || start >= total ||
        UINT64{start} + count > total)
        return 0;
    ULONG o = 0, inside = 0;
    if (depth == 1) {
        if (!Locate<LineFormat1>(start, total, src, srcLen, &o, nullptr, &inside, nullptr))
            return 0;
        const auto lit = [rows](BYTE b, BYTE* px) { std::memcpy(px, rows[b & 0x7F], 7); };
        return DecodeLine<LineFormat1>(src, o, srcLen - 1, inside, dst, count, lit) == count;
    }
    if (srcLen == 1 || src[srcLen - 1] > 3) return 0;  // as the whole-line decoder refuses
    if (!Locate<LineFormat2>(start, total, src, srcLen, &o, nullptr, &inside, nullptr)) return 0;
    return DecodeLine<LineFormat2>(src, o, srcLen - 1, inside, dst, count, Lit2{}) == count;
}
