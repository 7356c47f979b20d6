// Run-length codecs and the depth dispatchers: round trips on realistic lines, capacity
// thresholds, worst-case bounds and the windowed restores.
#include <cstring>

#include <gtest/gtest.h>

#include <kxbase/compress/compress.h>

#include "rle_testlines.h"

namespace {

using kxtest::Line;

struct Rle : ACompress {
    using ACompress::UnComp_RLE24;
    using ACompress::UnComp_RLE8;
};

// Compresses with Pack at the given capacity; returns the stream or nothing.
bool PackInto(const Line& src, int depth, ULONG cap, Line& out) {
    out.assign(cap + 16, 0xA5);
    ULONG len = 0;
    if (!ACompress::Pack(src.data(), static_cast<ULONG>(src.size()), depth, out.data(), cap, len))
        return false;
    // Nothing may be written at or past the capacity.
    for (size_t i = cap; i < out.size(); ++i) EXPECT_EQ(out[i], 0xA5) << "wrote past dstCap";
    out.resize(len);
    return true;
}

ULONG Pixels(const Line& l, int depth) {
    return static_cast<ULONG>(depth == 24 ? l.size() / 3 : l.size());
}

// The least capacity Pack accepts, found by bisection (success is monotone in dstCap).
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

struct DepthCase {
    int depth;
    Line line;
    const char* what;
};

std::vector<DepthCase> RealisticLines() {
    using namespace kxtest;
    return {
        {1, PrintLine1(5953, 1), "1-bit print line, A4 at 720 dpi"},
        {1, Halftone(5953, 2, 2), "1-bit halftone"},
        {1, Alternating(1001, 1, 0, 1), "1-bit alternating"},
        {1, Line(7016, 1), "1-bit solid black"},
        {2, Halftone(4000, 4, 3), "2-bit drop sizes"},
        {2, Alternating(998, 1, 3, 1), "2-bit alternating"},
        {4, Halftone(3001, 16, 4), "4-bit ramp"},
        {4, Alternating(777, 1, 15, 0), "4-bit alternating"},
        {4, Line(1000, 7), "4-bit flat (runs of 255 pieces)"},
        {8, Halftone(5953, 256, 5), "8-bit contone"},
        {8, Alternating(4097, 1, 0, 255), "8-bit alternating"},
        {24, Photo24(2000, 6), "24-bit photo"},
        {24, Alternating(3 * 999, 3, 0, 9), "24-bit alternating"},
    };
}

// Catches: streams that do not restore their line; a bound that is not a bound; a capacity
// test that writes past dstCap; windows that differ from the whole-line restore.
TEST(PackUnPack, RealisticLinesRoundTripWithinBoundAndWindowsMatch) {
    std::mt19937 rng(7);
    for (const auto& c : RealisticLines()) {
        SCOPED_TRACE(c.what);
        const ULONG least = LeastCapacity(c.line, c.depth);
        EXPECT_LE(least, ACompress::PackBound(c.line.size(), c.depth));
        Line stream, tooSmall;
        ASSERT_TRUE(PackInto(c.line, c.depth, least, stream));
        EXPECT_FALSE(PackInto(c.line, c.depth, least - 1, tooSmall));

        const ULONG total = Pixels(c.line, c.depth);
        const ULONG pb = c.depth == 24 ? 3 : 1;
        Line back(c.line.size() + 8, 0xEE);
        ASSERT_EQ(ACompress::UnPack(stream.data(), static_cast<ULONG>(stream.size()), total,
                                    c.depth, back.data()),
                  1);
        Line expect = c.line;
        if (c.depth == 1)
            for (auto& p : expect) p = p != 0;
        EXPECT_TRUE(std::equal(expect.begin(), expect.end(), back.begin()));
        for (size_t i = c.line.size(); i < back.size(); ++i) ASSERT_EQ(back[i], 0xEE);

        for (int k = 0; k < 60; ++k) {
            const ULONG start = rng() % total;
            const ULONG count = 1 + rng() % (total - start);
            Line win(pb * count + 4, 0xEE);
            ASSERT_EQ(ACompress::UnPack(stream.data(), static_cast<ULONG>(stream.size()), total,
                                        c.depth, start, count, win.data()),
                      1)
                << start << "+" << count;
            ASSERT_TRUE(
                std::equal(win.begin(), win.begin() + pb * count, expect.begin() + pb * start));
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
    Line src, dst(64);
    for (ULONG n = 1; n <= 10; ++n) {
        ULONG combos = 1;
        for (ULONG i = 0; i < n; ++i) combos *= 3;
        ULONG worst = 0;
        for (ULONG v = 0; v < combos; ++v) {
            src.resize(n);
            for (ULONG i = 0, x = v; i < n; ++i, x /= 3) src[i] = static_cast<BYTE>(x % 3);
            ULONG len = 0;
            ASSERT_EQ(ACompress::Comp_RLE(src.data(), n, dst.data(), 64, len), 1);
            worst = std::max(worst, len);
        }
        EXPECT_LE(worst, ACompress::RleCompressBound(n)) << n;
    }
    Line aab;
    for (int i = 0; i < 300; ++i) aab.insert(aab.end(), {'a', 'a', 'b'});
    ULONG len = 0;
    Line out(ACompress::RleCompressBound(aab.size()));
    ASSERT_EQ(ACompress::Comp_RLE(aab.data(), 900, out.data(), static_cast<ULONG>(out.size()), len),
              1);
    EXPECT_GE(len, 1500u - 1);  // 5 per 3, the last b closing as a run of one
}

// Catches: Comp_RLE capacity off by one (it may fill dst exactly), the write past the buffer a
// literal block opened with three bytes left would make, and decoder over-reads of cut
// streams.
TEST(CompRle, ExactCapacityAndCutStreams) {
    for (const Line& l : {kxtest::PrintLine1(3000, 9), kxtest::Halftone(3000, 256, 9),
                          kxtest::Alternating(600, 1, 'x', 'y')}) {
        Line out(ACompress::RleCompressBound(l.size()) + 1);
        ULONG len = 0;
        ASSERT_EQ(ACompress::Comp_RLE(l.data(), static_cast<ULONG>(l.size()), out.data(),
                                      static_cast<ULONG>(out.size()), len),
                  1);
        Line exact(len + 1, 0x5A);
        ULONG len2 = 0;
        EXPECT_EQ(
            ACompress::Comp_RLE(l.data(), static_cast<ULONG>(l.size()), exact.data(), len, len2),
            1);
        EXPECT_EQ(ACompress::Comp_RLE(l.data(), static_cast<ULONG>(l.size()), exact.data(), len - 1,
                                      len2),
                  0);
        EXPECT_EQ(exact[len], 0x5A);

        Line back(l.size());
        ULONG n = 0;
        ASSERT_EQ(
            ACompress::UnComp_RLE(out.data(), len, back.data(), static_cast<ULONG>(back.size()), n),
            1);
        EXPECT_EQ(back, l);
        EXPECT_EQ(ACompress::UnComp_RLE(out.data(), len, back.data(),
                                        static_cast<ULONG>(back.size()) - 1, n),
                  0);
        for (ULONG cut = 1; cut < std::min<ULONG>(len, 40); ++cut) {
            // A heap copy of exactly `cut` bytes: ASan reports any read past it.
            std::vector<BYTE> part(out.begin(), out.begin() + cut);
            ACompress::UnComp_RLE(part.data(), cut, back.data(), static_cast<ULONG>(back.size()),
                                  n);
        }
    }
    const BYTE abcd[] = {'a', 'b', 'c', 'd'};
    BYTE three[4] = {0, 0, 0, 0x77};
    ULONG len = 0;
    EXPECT_EQ(ACompress::Comp_RLE(abcd, 4, three, 3, len), 0);
    EXPECT_EQ(three[3], 0x77);
}

// Catches: 24-bit and 8-bit argument orders swapped (they differ on purpose).
TEST(UnCompRle, TwentyFourBitArgumentOrderDiffers) {
    const BYTE s[] = {2, 1, 2, 3, 3, 4, 5, 6};  // 2 × (1,2,3), 3 × (4,5,6)
    BYTE out[16] = {};
    EXPECT_EQ(Rle::UnComp_RLE24(s, 8, 1, 3, 5, out), 1);
    const BYTE want[] = {1, 2, 3, 4, 5, 6, 4, 5, 6};
    EXPECT_EQ(0, std::memcmp(out, want, 9));
    EXPECT_EQ(Rle::UnComp_RLE24(s, 8, 5, 1, 3, out), 0);  // the 8-bit order fails
}

}  // namespace
