// Bit-depth packing: the 1- and 2-bit line decoders' bounds, and the shrink/expand
// conversions between expanded and packed lines.
#include <gtest/gtest.h>

#include <kxbase/compress/compress.h>

#include "rle_testlines.h"

namespace {

using kxtest::Line;

struct Bits : ACompress {
    using ACompress::UnPack1;
    using ACompress::UnPack2;
};

Line Packed(const Line& l, int depth) {
    Line out(ACompress::PackBound(l.size(), depth));
    ULONG len = 0;
    EXPECT_EQ(ACompress::Pack(l.data(), ULONG(l.size()), depth, out.data(), ULONG(out.size()), len),
              1);
    out.resize(len);
    return out;
}

}  // namespace

// Catches: decoders that write past `pixels` when the stream holds more (a literal's unused
// places, a run longer than the rest of the line), and a 2-bit stream that runs out before
// the line is full not failing (the 1-bit one, by design, does not fail).
TEST(LineStreams, DecodersStopExactlyAtPixels) {
    const Line s1 = Packed(kxtest::Halftone(1000, 2, 4), 1);
    const Line s2 = Packed(kxtest::Halftone(1000, 4, 4), 2);
    for (ULONG n : {1u, 6u, 7u, 8u, 500u, 999u}) {
        Line out(n + 8, 0xEE);
        EXPECT_EQ(Bits::UnPack1(s1.data(), ULONG(s1.size()), n, out.data()), 1);
        EXPECT_EQ(Bits::UnPack2(s2.data(), ULONG(s2.size()), n, out.data()), 1);
        EXPECT_EQ(Line(out.begin() + n, out.end()), Line(8, 0xEE)) << n;
    }
    Line out(2000);
    EXPECT_EQ(Bits::UnPack2(s2.data(), ULONG(s2.size()), 1001, out.data()), 0);
    EXPECT_EQ(Bits::UnPack1(s1.data(), ULONG(s1.size()), 2000, out.data()), 1);
}

// Catches: ShrinkBit/ExpandBit disagreeing on pixel order, touching bits outside the range,
// or mishandling partial first/last bytes, for every depth at every alignment.
TEST(ShrinkExpand, RangesRoundTripAndKeepOtherBits) {
    std::mt19937 rng(11);
    for (int depth : {1, 2, 4})
        for (int k = 0; k < 300; ++k) {
            const ULONG n = 1 + rng() % 70, start = rng() % n, count = 1 + rng() % (n - start);
            Line pixels(n), packed((n * depth + 7) / 8), back(n), old(n);
            for (auto& p : pixels) p = static_cast<BYTE>(rng() % (1u << depth));
            for (auto& b : packed) b = static_cast<BYTE>(rng());
            ASSERT_EQ(ACompress::ExpandBit(packed.data(), 0, n, depth, old.data()), 1);
            ASSERT_EQ(ACompress::ShrinkBit(pixels.data(), start, count, depth, packed.data()), 1);
            ASSERT_EQ(ACompress::ExpandBit(packed.data(), 0, n, depth, back.data()), 1);
            // Deliberately, depth 1 skips a range that starts inside a byte and ends in it.
            const bool skip = depth == 1 && start % 8 && (start + count - 1) / 8 == start / 8;
            for (ULONG i = 0; i < n; ++i)
                ASSERT_EQ(back[i], !skip && i >= start && i < start + count ? pixels[i] : old[i])
                    << "depth " << depth << " pixel " << i;
        }
}
