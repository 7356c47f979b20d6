// Locating a pixel in the 4-, 8- and 24-bit run streams, and the windowed restores.
#include <algorithm>
#include <cstring>

#include <kxbase/compress/compress.h>

namespace {

// Most records of contone lines are runs of one or two pixels: store those directly instead
// of calling memset.
inline void Fill1(BYTE* dst, BYTE v, ULONG n) {
    if (n <= 2) {
        if (n > 0) dst[0] = v;
        if (n > 1) dst[1] = v;
    } else {
        std::memset(dst, v, n);
    }
}

// The record layout of one pixel run format, as the windowed restore walks it.
struct Rle8 {
    const BYTE* s;
    ULONG len;
    bool valid(UINT64 o) const { return o + 1 < len; }
    ULONG count(UINT64 o) const { return s[o]; }
    UINT64 next(UINT64 o) const { return o + 2; }
    void fill(BYTE* dst, UINT64 o, ULONG n) const { Fill1(dst, s[o + 1], n); }
    static constexpr ULONG kPixelBytes = 1;
};

struct Rle24 {
    const BYTE* s;
    ULONG len;
    bool valid(UINT64 o) const { return o + 3 < len; }
    ULONG count(UINT64 o) const { return s[o]; }
    UINT64 next(UINT64 o) const { return o + 4; }
    void fill(BYTE* dst, UINT64 o, ULONG n) const {
        for (ULONG i = 0; i < n; ++i) std::memcpy(dst + 3 * UINT64{i}, s + o + 1, 3);
    }
    static constexpr ULONG kPixelBytes = 3;
};

// Count bytes at offsets 0 and 2 of each three-byte group; the value of the first run is the
// high nibble of byte 1, that of the second run its low nibble.
struct Rle4 {
    const BYTE* s;
    ULONG len;
    bool valid(UINT64 o) const { return o % 3 == 0 ? o + 1 < len : o < len; }
    ULONG count(UINT64 o) const { return s[o]; }
    UINT64 next(UINT64 o) const { return o % 3 == 0 ? o + 2 : o + 1; }
    BYTE value(UINT64 o) const { return o % 3 == 0 ? s[o + 1] >> 4 : s[o - 1] & 0x0F; }
    void fill(BYTE* dst, UINT64 o, ULONG n) const { Fill1(dst, value(o), n); }
    static constexpr ULONG kPixelBytes = 1;
};

// Writes the window start .. start + count - 1 from the record at offset o, which ends at
// pixel position recEnd (one past its last pixel). Returns 1 when count pixels were written.
template <class F>
int RestoreWindow(const F& f, UINT64 o, UINT64 recEnd, ULONG start, ULONG count, BYTE* dst) {
    constexpr ULONG pb = F::kPixelBytes;
    if (!f.valid(o) || recEnd <= start) return 0;  // malformed: the record misses the window
    const UINT64 end = UINT64{start} + count;
    UINT64 written = std::min<UINT64>(recEnd - start, count);
    f.fill(dst, o, static_cast<ULONG>(written));
    if (written == count) return 1;
    UINT64 pos = recEnd;
    o = f.next(o);
    // Whole records while they end inside the window ...
    while (f.valid(o) && pos + f.count(o) <= end) {
        const ULONG c = f.count(o);
        f.fill(dst + written * pb, o, c);
        written += c;
        pos += c;
        o = f.next(o);
    }
    // ... and the rest of the window from the next one.
    if (written < count && f.valid(o)) {
        f.fill(dst + written * pb, o, static_cast<ULONG>(count - written));
        written = count;
    }
    return written == count ? 1 : 0;
}

// Back or forward search of the 8- and 24-bit formats (records of rs bytes, count first).
int LocateFixed(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG rs, ULONG* offset,
                ULONG* before) {
    if (pos == 0 || srcLen == rs) {
        *offset = 0;
        *before = 0;
        return 1;
    }
    if (pos >= total / 2) {
        INT64 end = total;
        for (INT64 o = INT64{srcLen} - rs; o >= 0; o -= rs) {
            const INT64 e = end - src[o];
            if (e <= INT64{pos}) {
                *offset = static_cast<ULONG>(o);
                *before = static_cast<ULONG>(std::max<INT64>(e, 0));
                return 1;
            }
            end = e;
        }
        return 0;
    }
    UINT64 sum = 0;
    for (UINT64 o = 0; o < srcLen; o += rs) {
        if (sum + src[o] > pos) {
            *offset = static_cast<ULONG>(o);
            *before = static_cast<ULONG>(sum);
            return 1;
        }
        sum += src[o];
    }
    return 0;
}

}  // namespace

int ACompress::GetLoc_RLE8(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* before, ULONG* count) {
    if (!src || srcLen == 0 || srcLen % 2 != 0 || pos >= total) return 0;
    if (!offset || !before || !count) return 0;
    if (!LocateFixed(pos, total, src, srcLen, 2, offset, before)) return 0;
    *count = src[*offset];
    return 1;
}

int ACompress::GetLoc_RLE24(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                            ULONG* before) {
    // Only whole records are walked: where the last record of a length that is not a
    // multiple of 4 would start is not defined, so such streams are refused.
    if (!src || srcLen == 0 || srcLen % 4 != 0 || pos >= total) return 0;
    if (!offset || !before) return 0;
    return LocateFixed(pos, total, src, srcLen, 4, offset, before);
}

int ACompress::GetLoc_RLE4(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* left) {
    // A length 1 more than a multiple of 3 has a count byte without its value: refused.
    if (!src || srcLen == 0 || srcLen % 3 == 1 || pos >= total) return 0;
    if (!offset || !left) return 0;
    if (pos == 0 || srcLen == 2) {
        if (src[0] < pos) return 0;  // a single run that ends before pos
        *offset = 0;
        *left = src[0] - pos;
        return 1;
    }
    if (pos >= total / 2) {
        INT64 end = total;
        INT64 o = srcLen % 3 == 0 ? INT64{srcLen} - 1 : INT64{srcLen} - 2;
        for (;;) {
            const INT64 e = end - src[o];
            if (e <= INT64{pos}) {
                *offset = static_cast<ULONG>(o);
                *left = static_cast<ULONG>(end - pos);
                return 1;
            }
            end = e;
            if (o == 0) return 0;
            o -= o % 3 == 2 ? 2 : 1;
        }
    }
    UINT64 sum = 0;
    for (UINT64 o = 0; o < srcLen; o += o % 3 == 0 ? 2 : 1) {
        if (sum + src[o] > pos) {
            *offset = static_cast<ULONG>(o);
            *left = static_cast<ULONG>(sum + src[o] - pos);
            return 1;
        }
        sum += src[o];
    }
    return 0;
}

int ACompress::UnComp_RLE8(const BYTE* src, ULONG srcLen, ULONG total, ULONG start, ULONG count,
                           BYTE* dst) {
    if (!src || !dst || srcLen == 0 || count == 0 || UINT64{start} + count > total) return 0;
    ULONG o = 0, before = 0, c = 0;
    if (start != 0 && srcLen != 2 && !GetLoc_RLE8(start, total, src, srcLen, &o, &before, &c))
        return 0;
    const Rle8 f{src, srcLen};
    if (!f.valid(o)) return 0;
    return RestoreWindow(f, o, UINT64{before} + src[o], start, count, dst);
}

int ACompress::UnComp_RLE24(const BYTE* src, ULONG srcLen, ULONG start, ULONG count, ULONG total,
                            BYTE* dst) {
    if (!src || !dst || srcLen == 0 || count == 0 || UINT64{start} + count > total) return 0;
    ULONG o = 0, before = 0;
    if (!GetLoc_RLE24(start, total, src, srcLen, &o, &before)) return 0;
    return RestoreWindow(Rle24{src, srcLen}, o, UINT64{before} + src[o], start, count, dst);
}

int ACompress::UnComp_RLE4(const BYTE* src, ULONG srcLen, ULONG total, ULONG start, ULONG count,
                           BYTE* dst) {
    if (!src || !dst || srcLen == 0 || count == 0 || UINT64{start} + count > total) return 0;
    if (srcLen % 3 == 1) return 0;
    ULONG o = 0;
    UINT64 recEnd = 0;
    if (start == 0 || srcLen == 2) {
        recEnd = src[0];
    } else {
        ULONG left = 0;
        if (!GetLoc_RLE4(start, total, src, srcLen, &o, &left)) return 0;
        if (o % 3 == 1) return 0;
        recEnd = UINT64{start} + left;
    }
    return RestoreWindow(Rle4{src, srcLen}, o, recEnd, start, count, dst);
}
