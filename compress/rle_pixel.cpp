// Run-length compressors for 4-, 8- and 24-bit expanded lines.
#include <cstring>

#include <kxbase/compress/compress.h>

int ACompress::Comp_RLE8(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || !dst || srcLen < 2 || dstCap == 0) return 0;
    dstLen = 0;
    ULONG i = 0;
    while (i < srcLen) {
        const BYTE v = src[i];
        ULONG r = 1;
        while (i + r < srcLen && src[i + r] == v) ++r;
        i += r;
        while (r > 0) {
            const ULONG piece = r > 255 ? 255 : r;
            // The stream must stay strictly shorter than dstCap.
            if (UINT64{dstLen} + 2 >= dstCap) return 0;
            dst[dstLen++] = static_cast<BYTE>(piece);
            dst[dstLen++] = v;
            r -= piece;
        }
    }
    return 1;
}

int ACompress::Comp_RLE24(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    // An empty line has no first pixel to write a run of: refused.
    if (!src || !dst || srcLen == 0 || srcLen % 3 != 0 || dstCap == 0) return 0;
    ULONG len = 0;  // dstLen is set only on success
    ULONG i = 0;
    while (i < srcLen) {
        const BYTE* px = src + i;
        ULONG r = 1;
        while (i + 3 * r < srcLen && std::memcmp(src + i + 3 * r, px, 3) == 0) ++r;
        i += 3 * r;
        while (r > 0) {
            const ULONG piece = r > 255 ? 255 : r;
            if (UINT64{len} + 4 >= dstCap) return 0;
            dst[len] = static_cast<BYTE>(piece);
            std::memcpy(dst + len + 1, px, 3);
            len += 4;
            r -= piece;
        }
    }
    dstLen = len;
    return 1;
}

int ACompress::Comp_RLE4(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || !dst || dstCap == 0) return 0;
    dstLen = 0;
    // A length of 0 still writes one run of the first byte, deliberately.
    const ULONG n = srcLen == 0 ? 1 : srcLen;
    bool half = false;  // the current group holds one run; dstLen stands at its value byte
    ULONG i = 0;
    while (i < n) {
        const BYTE v = src[i];
        ULONG r = 1;
        while (i + r < n && src[i + r] == v) ++r;
        i += r;
        const bool longRun = r > 255;
        while (r > 0) {
            const ULONG piece = r > 255 ? 255 : r;
            if (!half) {
                if (UINT64{dstLen} + 1 >= dstCap) return 0;
                dst[dstLen] = static_cast<BYTE>(piece);
                dst[dstLen + 1] = static_cast<BYTE>(v << 4);
                dstLen += 1;
            } else {
                // Closing a group with a run of up to 255 asks one byte more than with a piece
                // of a longer run (every piece, the remainder included), deliberately.
                if (UINT64{dstLen} + (longRun ? 2 : 3) >= dstCap) return 0;
                dst[dstLen] = static_cast<BYTE>(dst[dstLen] | v);
                dst[dstLen + 1] = static_cast<BYTE>(piece);
                dstLen += 2;
            }
            half = !half;
            r -= piece;
        }
    }
    if (half) dstLen += 1;  // a half-filled group ends after its value byte
    return dstLen < dstCap ? 1 : 0;
}
