// Line zoom and resampling: nearest-pixel picking stays inside the source, in-place
// resampling, map refusal.
#include <cstring>

#include <gtest/gtest.h>

#include <kxbase/compress/compress.h>
#include <kxbase/mathopt/amathopt.h>

namespace {

using Bytes = std::vector<BYTE>;

// Catches: reading past the source when enlarging by 2 or more (the last rounded position is
// the source width); the clamp must give the last column/row. Heap buffers of exact size let
// ASan catch any over-read.
TEST(ZoomBits, EnlargingStaysInsideTheSourceAndClampsToTheLastPixel) {
    struct Case {
        int sw, sh, dw, dh;
        unsigned short depth;
    };
    for (const Case c :
         {Case{3, 2, 6, 4, 8}, Case{1, 1, 5, 7, 8}, Case{4, 3, 17, 9, 24}, Case{5, 5, 10, 3, 1}}) {
        const size_t p = c.depth == 24 ? 3 : 1;
        Bytes src(p * c.sw * c.sh);
        for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<BYTE>(i + 1);
        Bytes dst(p * c.dw * c.dh, 0);
        ASSERT_EQ(ACompress::ZoomBits(c.sw, c.sh, c.depth, src.data(), c.dw, c.dh, dst.data()), 1);
        // Enlarging by 2 or more: the bottom-right pixel is the source's bottom-right one.
        if (c.dw >= 2 * c.sw && c.dh >= 2 * c.sh) {
            EXPECT_EQ(0, std::memcmp(&dst[dst.size() - p], &src[src.size() - p], p));
        }
        // Every pixel is some source pixel of the rounded row.
        const double ys = double(c.sh) / c.dh, xs = double(c.sw) / c.dw;
        double y = 0;
        for (int i = 0; i < c.dh; ++i, y += ys) {
            const int r = std::min(int(y + 0.5), c.sh - 1);
            double x = 0;
            for (int j = 0; j < c.dw; ++j, x += xs) {
                const int col = std::min(int(x + 0.5), c.sw - 1);
                ASSERT_EQ(0, std::memcmp(&dst[p * (size_t(i) * c.dw + j)],
                                         &src[p * (size_t(r) * c.sw + col)], p));
            }
        }
    }
    BYTE one = 1, out[4] = {};
    EXPECT_EQ(ACompress::ZoomBits(0, 1, 8, &one, 2, 2, out), 0);  // no source column
}

// Catches: in-place resampling that overwrites source pixels before reading them (growing
// must go last to first, shrinking first to last), for 8- and 24-bit lines.
TEST(ResampleLine, InPlaceMatchesOutOfPlace) {
    for (int depth : {8, 24}) {
        const size_t p = depth == 24 ? 3 : 1;
        for (auto [sc, dc] : {std::pair{300, 777}, {777, 300}, {5, 10}, {10, 3}}) {
            Bytes src(p * std::max(sc, dc));
            for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<BYTE>(i * 7 + 3);
            Bytes ref(p * dc);
            ASSERT_EQ(ACompress::ResampleLine(src.data(), depth, sc, ref.data(), dc, nullptr), 1);
            Bytes buf = src;
            ASSERT_EQ(ACompress::ResampleLine(buf.data(), depth, sc, buf.data(), dc, nullptr), 1);
            EXPECT_TRUE(std::equal(ref.begin(), ref.end(), buf.begin())) << sc << "->" << dc;
            // The computed map is AMathOpt's: destination i takes source B(i).
            std::vector<UINT> m(dc + 2);
            AMathOpt::ResampleLineMap(dc, sc, m.data());
            for (int i = 0; i < dc; ++i) ASSERT_EQ(0, std::memcmp(&ref[p * i], &src[p * m[i]], p));
        }
    }
}

// Catches: a caller's map entry at or beyond the source count being used (an out-of-bounds
// read); the call must fail before writing anything.
TEST(ResampleLine, MapEntryOutsideTheSourceIsRefusedUntouched) {
    const Bytes src = {1, 2, 3, 4};
    Bytes dst(8, 0xEE);
    const ULONG bad[8] = {0, 1, 2, 3, 3, 2, 1, 4};
    EXPECT_EQ(ACompress::ResampleLine(src.data(), 8, 4, dst.data(), 8, bad), 0);
    EXPECT_EQ(dst, Bytes(8, 0xEE));
    const ULONG good[8] = {3, 3, 2, 2, 1, 1, 0, 0};
    EXPECT_EQ(ACompress::ResampleLine(src.data(), 8, 4, dst.data(), 8, good), 1);
    EXPECT_EQ(dst, (Bytes{4, 4, 3, 3, 2, 2, 1, 1}));
}

}  // namespace
