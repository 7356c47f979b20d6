// Bit-depth packing: the 1- and 2-bit line streams' element lookup, and the shrink/expand
// conversions between expanded and packed lines.
#include <cstring>

#include <gtest/gtest.h>

#include <kxbase/compress/compress.h>

#include "rle_testlines.h"

namespace {

using kxtest::Line;

struct Bits : ACompress {
    using ACompress::GetLoc_RLE1;
    using ACompress::GetLoc_RLE2;
    using ACompress::UnPack1;
    using ACompress::UnPack2;
    using ACompress::UnPackSeg1;
    using ACompress::UnPackSeg2;
};

Line Packed(const Line& l, int depth) {
    Line out(ACompress::PackBound(l.size(), depth));
    ULONG len = 0;
    EXPECT_EQ(ACompress::Pack(l.data(), static_cast<ULONG>(l.size()), depth, out.data(),
                              static_cast<ULONG>(out.size()), len),
              1);
    out.resize(len);
    return out;
}

// Catches: GetLoc/UnPackSeg disagreeing with the decoder about element boundaries (the
// windowed restore depends on them): walking every element must add up to the line, and each
// run's digits read back its pixel count.
TEST(LineStreams, ElementWalkCoversTheLineAndRunsReadBack) {
    for (int depth : {1, 2}) {
        const Line l = depth == 1 ? kxtest::PrintLine1(5953, 3) : kxtest::Halftone(3000, 4, 3);
        const Line s = Packed(l, depth);
        const ULONG total = static_cast<ULONG>(l.size());
        ULONG pos = 0, expectOffset = 0;
        while (pos < total) {
            ULONG off = 0, bytes = 0, inside = 0, pixels = 0;
            const int ok = depth == 1 ? Bits::GetLoc_RLE1(pos, total, s.data(), ULONG(s.size()),
                                                          &off, &bytes, &inside, &pixels)
                                      : Bits::GetLoc_RLE2(pos, total, s.data(), ULONG(s.size()),
                                                          &off, &bytes, &inside, &pixels);
            ASSERT_EQ(ok, 1) << pos;
            ASSERT_EQ(off, expectOffset);
            ASSERT_EQ(inside, 0u);
            if (!(s[off] & 0x80)) {
                BYTE v = 9;
                ULONG count = 0;
                // Reading from the last digit with whole = 0 steps back to the first.
                const ULONG read =
                    depth == 1 ? Bits::UnPackSeg1(s.data(), off + bytes - 1, bytes, v, count, 0)
                               : Bits::UnPackSeg2(s.data(), off + bytes - 1, bytes, v, count, 0);
                EXPECT_EQ(read, bytes);
                EXPECT_EQ(count, pixels);
                EXPECT_EQ(v, l[pos] & (depth == 1 ? 1 : 3));
            }
            pos += pixels;
            expectOffset = off + bytes;
        }
        EXPECT_EQ(pos, total);
        EXPECT_EQ(expectOffset + 1, s.size());  // only the closing byte is left
    }
}

// Catches: decoders that write past `pixels` when the stream holds more (a literal's unused
// places, a run longer than the rest of the line).
TEST(LineStreams, DecodersStopExactlyAtPixels) {
    const Line l = kxtest::Halftone(1000, 2, 4);
    const Line s1 = Packed(l, 1);
    const Line s2 = Packed(kxtest::Halftone(1000, 4, 4), 2);
    for (ULONG n : {1u, 6u, 7u, 8u, 500u, 999u}) {
        Line out(n + 8, 0xEE);
        EXPECT_EQ(Bits::UnPack1(s1.data(), ULONG(s1.size()), n, out.data()), 1);
        EXPECT_EQ(Bits::UnPack2(s2.data(), ULONG(s2.size()), n, out.data()), 1);
        for (ULONG i = n; i < out.size(); ++i) ASSERT_EQ(out[i], 0xEE) << n;
    }
    // A 2-bit stream that runs out before the line is full fails; the 1-bit one does not.
    Line out(2000);
    EXPECT_EQ(Bits::UnPack2(s2.data(), ULONG(s2.size()), 1001, out.data()), 0);
    EXPECT_EQ(Bits::UnPack1(s1.data(), ULONG(s1.size()), 2000, out.data()), 1);
}

// Catches: ShrinkBit/ExpandBit disagreeing on pixel order, touching bits outside the range,
// or mishandling partial first/last bytes, for depths 2 and 4 at every alignment.
TEST(ShrinkExpand, RangesRoundTripAndKeepOtherBits) {
    std::mt19937 rng(11);
    for (int depth : {2, 4}) {
        const ULONG ppb = 8 / depth;
        for (int k = 0; k < 300; ++k) {
            const ULONG n = 1 + rng() % 70;
            const ULONG start = rng() % n;
            const ULONG count = 1 + rng() % (n - start);
            Line pixels(n);
            for (auto& p : pixels) p = static_cast<BYTE>(rng() % (1u << depth));
            Line packed((n + ppb - 1) / ppb), before;
            for (auto& b : packed) b = static_cast<BYTE>(rng());
            before = packed;
            ASSERT_EQ(ACompress::ShrinkBit(pixels.data(), start, count, depth, packed.data()), 1);
            Line back(n, 0xEE);
            ASSERT_EQ(ACompress::ExpandBit(packed.data(), 0, n, depth, back.data()), 1);
            Line old(n);
            ACompress::ExpandBit(before.data(), 0, n, depth, old.data());
            for (ULONG i = 0; i < n; ++i)
                ASSERT_EQ(back[i], i >= start && i < start + count ? pixels[i] : old[i])
                    << "depth " << depth << " pixel " << i;
        }
    }
}

// Catches: ExpandBit1 using absolute positions (it takes the byte of the first pixel and
// writes from dst[0]), and a 1-bit ShrinkBit/ExpandBit pair that does not invert.
TEST(ShrinkExpand, OneBitLineRoundTripsAndExpandIsRelative) {
    const Line l = kxtest::Halftone(1003, 2, 5);
    Line packed((l.size() + 7) / 8, 0);
    Line work = l;
    ASSERT_EQ(ACompress::ShrinkBit(work.data(), 0, ULONG(l.size()), 1, packed.data()), 1);
    for (ULONG start : {0u, 3u, 8u, 13u, 1000u}) {
        const ULONG count = ULONG(l.size()) - start;
        Line out(count + 1, 0xEE);
        ASSERT_EQ(ACompress::ExpandBit(packed.data() + start / 8, start, count, 1, out.data()), 1);
        EXPECT_TRUE(std::equal(out.begin(), out.begin() + count, l.begin() + start)) << start;
        EXPECT_EQ(out[count], 0xEE);
    }
    // In place: the packed bytes overwrite the start of the expanded line (the last, partial
    // byte keeps whatever bits the buffer held there, so only whole bytes compare).
    ASSERT_EQ(ACompress::ShrinkBit(work.data(), 0, ULONG(l.size()), 1, nullptr), 1);
    EXPECT_TRUE(std::equal(packed.begin(), packed.end() - 1, work.begin()));
}

}  // namespace
