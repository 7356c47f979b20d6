// Line zoom and resampling: nearest-pixel picking stays inside the source, and in-place
// resampling (refusals are golden vectors).
#include <array>
#include <cstring>

#include <gtest/gtest.h>

#include <kxbase/compress/compress.h>
#include <kxbase/mathopt/amathopt.h>

namespace {

using Bytes = std::vector<BYTE>;

// Catches: reading past the source when enlarging by 2 or more (the last rounded position is
// the source width; the clamp must give the last column/row), and pixels that are not the
// source pixel at the rounded position. Heap buffers of exact size let ASan see an over-read.
TEST(ZoomBits, EnlargingStaysInsideTheSourceAndClampsToTheLastPixel) {
    for (auto [sw, sh, dw, dh, depth] :
         {std::array{3, 2, 6, 4, 8}, {1, 1, 5, 7, 8}, {4, 3, 17, 9, 24}, {5, 5, 10, 3, 1}}) {
        const size_t p = depth == 24 ? 3 : 1;
        Bytes src(p * sw * sh), dst(p * dw * dh);
        for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<BYTE>(i + 1);
        ASSERT_EQ(ACompress::ZoomBits(sw, sh, depth, src.data(), dw, dh, dst.data()), 1);
        double y = 0;
        for (int i = 0; i < dh; ++i, y += double(sh) / dh) {
            double x = 0;
            for (int j = 0; j < dw; ++j, x += double(sw) / dw) {
                const size_t r = std::min(int(y + 0.5), sh - 1), c = std::min(int(x + 0.5), sw - 1);
                ASSERT_EQ(0, std::memcmp(&dst[p * (i * dw + j)], &src[p * (r * sw + c)], p));
            }
        }
    }
}

// Catches: in-place resampling that overwrites source pixels before reading them (growing
// must go last to first, shrinking first to last), a pixel that is not the one AMathOpt's map
// names, and reads past the source (an exact-size heap copy lets ASan see them).
TEST(ResampleLine, InPlaceMatchesOutOfPlaceAndFollowsTheMap) {
    for (int depth : {8, 24})
        for (auto [sc, dc] : {std::pair{300, 777}, {777, 300}, {5, 10}, {10, 3}}) {
            const size_t p = depth == 24 ? 3 : 1;
            Bytes src(p * sc), ref(p * dc);
            for (size_t i = 0; i < src.size(); ++i) src[i] = static_cast<BYTE>(i * 7 + 3);
            ASSERT_EQ(ACompress::ResampleLine(src.data(), depth, sc, ref.data(), dc, nullptr), 1);
            Bytes buf = src;
            buf.resize(p * std::max(sc, dc));
            ASSERT_EQ(ACompress::ResampleLine(buf.data(), depth, sc, buf.data(), dc, nullptr), 1);
            EXPECT_TRUE(std::equal(ref.begin(), ref.end(), buf.begin())) << sc << "->" << dc;
            std::vector<UINT> m(dc + 2);
            AMathOpt::ResampleLineMap(dc, sc, m.data());
            for (int i = 0; i < dc; ++i) ASSERT_EQ(0, std::memcmp(&ref[p * i], &src[p * m[i]], p));
        }
}

}  // namespace
