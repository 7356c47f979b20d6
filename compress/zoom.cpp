// Nearest-neighbour scaling of expanded raster data: whole images (ZoomBits) and single lines
// through a pixel map (ResampleLine).
#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include <kxbase/compress/compress.h>
#include "base/resample_p.h"

namespace {

// Source indices of n destination positions: position i rounds the accumulated sum of i steps
// (i.e. (int)(x + 0.5) with x growing by step), clamped to the last source index.
void RoundedPositions(int n, double step, int srcSize, std::vector<UINT>& out) {
    out.resize(static_cast<size_t>(n));
    double x = 0.0;
    const int last = srcSize - 1;
    for (int i = 0; i < n; ++i) {
        const double r = x + 0.5;
        // r >= 0 always; compare in double before converting so huge values cannot overflow.
        out[static_cast<size_t>(i)] =
            r >= static_cast<double>(last) ? static_cast<UINT>(last) : static_cast<UINT>(r);
        x += step;
    }
}

}  // namespace

int ACompress::ZoomBits(int srcWidth, int srcHeight, unsigned short depth, const BYTE* src,
                        int dstWidth, int dstHeight, BYTE* dst) {
    if (!src || !dst) return 0;
    const size_t p = depth > 8 ? (depth + 7u) / 8u : 1u;
    if (dstHeight < 1) return 1;
    if (p != 1 && p != 3) return 1;  // other pixel widths are left untouched, deliberately
    if (dstWidth < 1) return 1;
    if (srcWidth < 1 || srcHeight < 1) return 0;  // nothing to pick pixels from

    std::vector<UINT> cols, rows;
    try {
        RoundedPositions(dstWidth, static_cast<double>(srcWidth) / dstWidth, srcWidth, cols);
        RoundedPositions(dstHeight, static_cast<double>(srcHeight) / dstHeight, srcHeight, rows);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    const size_t srcRow = p * static_cast<size_t>(srcWidth);
    const size_t dstRow = p * static_cast<size_t>(dstWidth);
    for (size_t i = 0; i < rows.size(); ++i) {
        BYTE* d = dst + i * dstRow;
        if (i > 0 && rows[i] == rows[i - 1]) {  // the same source row again: copy the last one
            std::memcpy(d, d - dstRow, dstRow);
            continue;
        }
        const BYTE* s = src + rows[i] * srcRow;
        if (p == 1) {
            for (size_t j = 0; j < cols.size(); ++j) d[j] = s[cols[j]];
        } else {
            for (size_t j = 0; j < cols.size(); ++j)
                std::memcpy(d + 3 * j, s + 3 * size_t{cols[j]}, 3);
        }
    }
    return 1;
}

int ACompress::ResampleLine(const BYTE* src, int depth, int srcCount, BYTE* dst, int dstCount,
                            const ULONG* map) {
    if (!src || !dst || srcCount < 1 || dstCount < 1) return 0;
    if (srcCount == dstCount) {
        if (src == dst) return 1;
        const size_t bpp = depth < 9 ? 1 : (static_cast<size_t>(depth) + 7) / 8;
        std::memmove(dst, src, bpp * static_cast<size_t>(dstCount));
        return 1;
    }
    std::vector<ULONG> own;
    if (map) {
        // A caller's map is checked first, so a bad entry changes nothing.
        for (int i = 0; i < dstCount; ++i)
            if (map[i] >= static_cast<ULONG>(srcCount)) return 0;
    } else {
        try {
            own.resize(static_cast<size_t>(std::max(srcCount, dstCount)) + 2);
        } catch (const std::bad_alloc&) {
            return 0;
        }
        // ULONG and UINT are both 32 bits but distinct types on Windows: compute into UINT.
        std::vector<UINT> starts(own.size());
        kxbase::detail::ResampleLineMap(static_cast<UINT>(dstCount), static_cast<UINT>(srcCount),
                                        starts.data());
        std::copy(starts.begin(), starts.end(), own.begin());
        map = own.data();
    }
    size_t ps;
    if (depth == 1 || depth == 2 || depth == 4 || depth == 8)
        ps = 1;
    else if (depth == 24)
        ps = 3;
    else
        return 1;  // other depths write nothing
    const size_t n = static_cast<size_t>(dstCount);
    // Growing lines are written from the last pixel, shrinking ones from the first, so that a
    // line can be scaled within its own buffer.
    if (ps == 1) {
        if (dstCount > srcCount)
            for (size_t i = n; i-- > 0;) dst[i] = src[map[i]];
        else
            for (size_t i = 0; i < n; ++i) dst[i] = src[map[i]];
    } else {
        const auto put = [&](size_t i) {
            BYTE px[3];
            std::memcpy(px, src + 3 * size_t{map[i]}, 3);
            std::memcpy(dst + 3 * i, px, 3);
        };
        if (dstCount > srcCount)
            for (size_t i = n; i-- > 0;) put(i);
        else
            for (size_t i = 0; i < n; ++i) put(i);
    }
    return 1;
}
