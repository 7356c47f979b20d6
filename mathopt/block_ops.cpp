// Row-rectangle copy and patterned fill.
#include <kxbase/mathopt/amathopt.h>

#include <cstring>

int AMathOpt::myMemcpy(BYTE* dst, INT64 dstPitch, BYTE bits, const BYTE* src, INT64 srcPitch,
                       INT64 width, INT64 rows) {
    if (!dst || !src || width <= 0 || rows <= 0) return 0;
    const INT64 bytesPerPixel = bits <= 8 ? 1 : (INT64{bits} + 7) / 8;
    // width * bytesPerPixel > pitch, tested without forming a product that could overflow.
    if (width > srcPitch / bytesPerPixel || width > dstPitch / bytesPerPixel) return 0;
    const size_t rowBytes = static_cast<size_t>(width * bytesPerPixel);
    for (INT64 row = 0; row < rows; ++row) {
        std::memcpy(dst, src, rowBytes);
        dst += dstPitch;
        src += srcPitch;
    }
    return 1;
}

void AMathOpt::myMemset(BYTE* dst, const BYTE* pattern, UINT64 patternSize, INT64 count) {
    if (!dst || !pattern || patternSize == 0 || count <= 0) return;
    const UINT64 n = static_cast<UINT64>(count);
    if (patternSize == 1) {
        std::memset(dst, pattern[0], n);
        return;
    }
    constexpr UINT64 kCopies = 60;  // copies per block
    constexpr UINT64 kMaxBlockPattern = 10;
    if (count >= 121 && patternSize <= kMaxBlockPattern) {
        BYTE block[kCopies * kMaxBlockPattern];
        const UINT64 blockBytes = kCopies * patternSize;
        for (UINT64 i = 0; i < kCopies; ++i)
            std::memcpy(block + i * patternSize, pattern, patternSize);
        const UINT64 blocks = n / kCopies;
        for (UINT64 i = 0; i < blocks; ++i, dst += blockBytes) std::memcpy(dst, block, blockBytes);
        std::memcpy(dst, block, (n - blocks * kCopies) * patternSize);
        return;
    }
    for (UINT64 i = 0; i < n; ++i, dst += patternSize) std::memcpy(dst, pattern, patternSize);
}
