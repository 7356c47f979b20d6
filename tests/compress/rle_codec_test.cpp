// Run-length codecs and the depth dispatchers: round trips on realistic lines, capacity
// boundaries, worst-case bounds and over-reads of cut streams.
#include <gtest/gtest.h>

#include <kxbase/compress/compress.h>

#include "rle_testlines.h"

namespace {

using kxtest::Line;

// Packs at capacity `cap` into a buffer with guard bytes behind it (nothing may be written at
// or past the capacity); false when Pack refuses.
bool PackInto(const Line& src, int depth, ULONG cap, Line& out) {
    out.assign(cap + 16, 0xA5);
    ULONG len = 0;
    const int ok =
        ACompress::Pack(src.data(), static_cast<ULONG>(src.size()), depth, out.data(), cap, len);
    for (size_t i = cap; i < out.size(); ++i) EXPECT_EQ(out[i], 0xA5) << "wrote past dstCap";
    out.resize(len);
    return ok;
}

// The least capacity Pack accepts, by bisection (success is monotone in dstCap).
ULONG LeastCapacity(const Line& src, int depth) {
    ULONG lo = 1, hi = static_cast<ULONG>(ACompress::PackBound(src.size(), depth));
    Line out;
    EXPECT_TRUE(PackInto(src, depth, hi, out)) << "PackBound too small";
    while (lo < hi) {
        const ULONG mid = lo + (hi - lo) / 2;
        if (PackInto(src, depth, mid, out))
            hi = mid;
        else
            lo = mid + 1;
    }
    return lo;
}

}  // namespace

// Catches: streams that do not restore their line, a capacity test that is off by one or
// writes past dstCap, and windows that differ from the whole-line restore or overrun.
TEST(PackUnPack, RealisticLinesRoundTripAtExactCapacityAndWindowsMatch) {
    using namespace kxtest;
    std::mt19937 rng(7);
    for (int depth : {1, 2, 4, 8, 24})
        for (int kind = 0; kind < 4; ++kind) {
            const ULONG pb = depth == 24 ? 3 : 1, levels = depth >= 8 ? 256 : 1u << depth;
            const BYTE top = static_cast<BYTE>(levels - 1);
            const Line line = kind == 0   ? (depth == 1    ? PrintLine1(5953, 1)
                                             : depth == 24 ? Photo24(2000, 6)
                                                           : Halftone(5953, levels, depth))
                              : kind == 1 ? Halftone(pb * 3001, levels, depth)
                              : kind == 2 ? Alternating(pb * 999, pb, 0, top)
                                          : Line(pb * 7016, top);
            SCOPED_TRACE(testing::Message() << "depth " << depth << ", line kind " << kind);
            const ULONG least = LeastCapacity(line, depth);
            Line stream, tooSmall;
            ASSERT_TRUE(PackInto(line, depth, least, stream));
            EXPECT_FALSE(PackInto(line, depth, least - 1, tooSmall));

            const ULONG total = ULONG(line.size()) / pb, slen = ULONG(stream.size());
            Line expect = line, back(line.size() + 8, 0xEE);
            if (depth == 1)
                for (auto& p : expect) p = p != 0;
            ASSERT_EQ(ACompress::UnPack(stream.data(), slen, total, depth, back.data()), 1);
            EXPECT_TRUE(std::equal(expect.begin(), expect.end(), back.begin()));
            EXPECT_EQ(Line(back.begin() + line.size(), back.end()), Line(8, 0xEE));
            for (int k = 0; k < 60; ++k) {
                const ULONG start = rng() % total, count = 1 + rng() % (total - start);
                Line win(pb * count + 4, 0xEE);
                ASSERT_EQ(
                    ACompress::UnPack(stream.data(), slen, total, depth, start, count, win.data()),
                    1);
                ASSERT_TRUE(std::equal(win.begin(), win.end() - 4, expect.begin() + pb * start))
                    << start << "+" << count;
                ASSERT_EQ(win[pb * count], 0xEE) << "window overrun";
            }
        }
}

// Catches: an off-by-one in PackBound for the worst inputs (alternating pixels need exactly
// the bound for the 8- and 24-bit formats).
TEST(PackUnPack, AlternatingPixelsNeedExactlyTheBound) {
    for (ULONG n : {2u, 3u, 255u, 256u, 1000u}) {
        EXPECT_EQ(LeastCapacity(kxtest::Alternating(n, 1, 1, 2), 8), ACompress::PackBound(n, 8));
        EXPECT_EQ(LeastCapacity(kxtest::Alternating(3 * n, 3, 1, 2), 24),
                  ACompress::PackBound(3 * n, 24));
    }
}

// Catches: a wrong Comp_RLE bound. Every line over three symbols up to 10 bytes is tried; the
// "aab" pattern that costs 5 bytes for 3 must reach the bound's slope.
TEST(CompRle, BoundHoldsForEveryShortLineAndAabPatternReachesIt) {
    Line src, dst(1600);
    ULONG len = 0;
    for (ULONG n = 1; n <= 10; ++n) {
        ULONG worst = 0, combos = 1;
        for (ULONG i = 0; i < n; ++i) combos *= 3;
        for (ULONG v = 0; v < combos; ++v) {
            src.resize(n);
            for (ULONG i = 0, x = v; i < n; ++i, x /= 3) src[i] = static_cast<BYTE>(x % 3);
            ASSERT_EQ(ACompress::Comp_RLE(src.data(), n, dst.data(), 64, len), 1);
            worst = std::max(worst, len);
        }
        EXPECT_LE(worst, ACompress::RleCompressBound(n)) << n;
    }
    src.clear();
    for (int i = 0; i < 300; ++i) src.insert(src.end(), {'a', 'a', 'b'});
    ASSERT_EQ(ACompress::Comp_RLE(src.data(), 900, dst.data(),
                                  static_cast<ULONG>(ACompress::RleCompressBound(900)), len),
              1);
    EXPECT_GE(len, 1500u - 1);  // 5 per 3, the last b closing as a run of one
}

// Catches: Comp_RLE/UnComp_RLE capacity off by one (they may fill dst exactly; one short
// fails), writes past a small dst (a literal block opened with three bytes left), and
// decoder over-reads of cut streams. Heap copies of exact size let ASan see any overrun.
TEST(CompRle, ExactCapacityAndCutStreams) {
    for (const Line& l : {kxtest::PrintLine1(3000, 9), kxtest::Halftone(3000, 256, 9),
                          kxtest::Alternating(600, 1, 'x', 'y'), Line{'a', 'b', 'c', 'd'}}) {
        const ULONG n = static_cast<ULONG>(l.size());
        Line out(ACompress::RleCompressBound(n)), back(n);
        ULONG len = 0, len2 = 0;
        ASSERT_EQ(ACompress::Comp_RLE(l.data(), n, out.data(), ULONG(out.size()), len), 1);
        Line exact(len), shortBy1(len - 1);
        EXPECT_EQ(ACompress::Comp_RLE(l.data(), n, exact.data(), len, len2), 1);
        EXPECT_EQ(ACompress::Comp_RLE(l.data(), n, shortBy1.data(), len - 1, len2), 0);
        ASSERT_EQ(ACompress::UnComp_RLE(out.data(), len, back.data(), n, len2), 1);
        EXPECT_EQ(back, l);
        EXPECT_EQ(ACompress::UnComp_RLE(out.data(), len, back.data(), n - 1, len2), 0);
        for (ULONG cut = 1; cut < std::min<ULONG>(len, 40); ++cut) {
            Line part(out.begin(), out.begin() + cut), small(cut);
            EXPECT_EQ(ACompress::Comp_RLE(l.data(), n, small.data(), cut, len2), 0);
            ACompress::UnComp_RLE(part.data(), cut, back.data(), n, len2);
        }
    }
}
