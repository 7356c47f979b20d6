// LZW codec: the stages against each other, round trips at exact capacities and within
// the documented bounds, the decoder's room rules, and damaged streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include <kxbase/compress/compress.h>

#include "lzw_data.h"

using lzwtest::Bytes;
using Codes = std::vector<WORD>;

namespace {

template <class T>
struct Result {
    int r;
    ULONG len;
    std::vector<T> data;  // the first min(len, cap) elements of dst
    std::pair<int, ULONG> Status() const { return {r, len}; }
};

// Runs a stage into a dst of exactly cap elements (ASan reports any write past them).
template <class Out = BYTE, class In, class Fn>
Result<Out> Stage(Fn fn, const std::vector<In>& src, UINT64 cap) {
    std::vector<Out> dst(cap);
    ULONG len = 0;
    const int r = fn(src.data(), ULONG(src.size()), dst.data(), ULONG(cap), len);
    dst.resize(std::min<UINT64>(len, cap));
    return {r, len, dst};
}

// ResumeDataBit into exactly LzwResumeCodeBound codes (ASan reports any write past them).
Codes Resume(const Bytes& stream) {
    const auto bound = ACompress::LzwResumeCodeBound(ULONG(stream.size()));
    const auto codes = std::make_unique<WORD[]>(bound);  // never null, even for no codes
    ULONG count = 0;
    EXPECT_EQ(1, ACompress::ResumeDataBit(stream.data(), ULONG(stream.size()), codes.get(), count));
    return Codes(codes.get(), codes.get() + std::min<UINT64>(count, bound));
}

// Faults: the two stages (Pack_LZW, then TransformDataBits) and the fused encoder disagree;
// the reader loses the width schedule; the decoder loses bytes at clear codes or
// not-yet-defined entries; a capacity rule off by one (the stream must be strictly shorter than
// dstCap, overflow reports dstLen 1; the decoder keeps 6 spare bytes). The stream itself is
// checked against libtiff's encoder and decoder (lzw_tiff_oracle_test.cpp) and the golden
// vectors.
TEST(LzwCodec, StagesAgreeAndRoundTripAtExactCapacities) {
    for (const auto& s : lzwtest::Samples()) {
        SCOPED_TRACE(s.name);
        const auto n = ULONG(s.data.size());
        const Codes codes =
            Stage<WORD>(ACompress::Pack_LZW, s.data, ACompress::LzwCodeBound(n) + 1).data;
        const Bytes bits = Stage(ACompress::Comp_LZW, s.data, ACompress::LzwCompressBound(n)).data;
        ASSERT_LT(bits.size(), ACompress::LzwCompressBound(n));
        EXPECT_EQ(bits, Stage(ACompress::TransformDataBits, codes, bits.size() + 1).data);
        Bytes padded = bits;  // the reader stops before a code starting in the last byte
        padded.push_back(0);
        const Codes back = Resume(padded);
        EXPECT_EQ(codes, Codes(back.begin(), back.begin() + std::min(back.size(), codes.size())));

        EXPECT_EQ(bits, Stage(ACompress::Comp_LZW, s.data, bits.size() + 1).data);
        EXPECT_EQ(std::pair(0, ULONG{1}), Stage(ACompress::Comp_LZW, s.data, bits.size()).Status());
        const auto need = ACompress::LzwDecompressCapacity(n);
        EXPECT_EQ(s.data, Stage(ACompress::UnComp_LZW, bits, need).data);
        EXPECT_EQ(s.data, Stage(ACompress::UnComp_LZW, bits, need + 1).data);
        const auto tight = Stage(ACompress::UnComp_LZW, bits, need - 1);
        EXPECT_TRUE(tight.r == 0 && tight.len < n);
    }
}

// Faults: the room rules drift near the end of dst, where every code leaves the block-copy
// path: the literal after a clear code, an entry not yet defined and a defined string each
// need 6 spare bytes. Each case succeeds at cap and fails one byte short.
TEST(LzwCodec, UnPackRoomRulesAtTheEndOfDst) {
    // codes, least cap, length written there, length written one byte short
    const std::tuple<Codes, ULONG, ULONG, ULONG> cases[] = {
        {{256, 65, 256, 66, 257}, 7, 2, 1},
        {{256, 65, 258, 257}, 9, 3, 1},
        {{256, 65, 66, 258, 257}, 10, 4, 2},
    };
    for (const auto& [codes, cap, len, shortLen] : cases) {
        EXPECT_EQ(std::pair(1, len), Stage(ACompress::UnPack_LZW, codes, cap).Status());
        EXPECT_EQ(std::pair(0, shortLen), Stage(ACompress::UnPack_LZW, codes, cap - 1).Status());
    }
}

// Faults: the fused decoder (codes read straight from the stream) differs from the two stages
// on damaged streams (cut, bit flips, foreign bytes, room to spare or not); ResumeDataBit, which
// has no capacity argument, writes more codes than LzwResumeCodeBound promises (all-zero bytes
// give the most: 9-bit zeros that never end the stream).
TEST(LzwCodec, DamagedStreamsStayInBoundsAndBothDecodersAgree) {
    std::mt19937 rng(11);
    const auto samples = lzwtest::Samples();
    for (int trial = 0; trial < 300; ++trial) {
        const Bytes& data = samples[trial % samples.size()].data;
        const auto n = ULONG(data.size());
        Bytes stream = Stage(ACompress::Comp_LZW, data, ACompress::LzwCompressBound(n)).data;
        if (trial % 3 == 0) stream.resize(1 + rng() % stream.size());
        for (int k = trial % 4; k > 0; --k) stream[rng() % stream.size()] ^= BYTE(1 << rng() % 8);
        if (trial % 7 == 0) stream = lzwtest::Make(3, 1 + rng() % 400, trial);
        if (trial % 11 == 0) stream.assign(1 + rng() % 700, trial % 2 ? 0xFF : 0);
        const ULONG cap = n + 6 + (trial % 5 == 0 ? 100000 : 0);
        const auto staged = Stage(ACompress::UnPack_LZW, Resume(stream), cap);
        const auto fused = Stage(ACompress::UnComp_LZW, stream, cap);
        ASSERT_EQ(staged.Status(), fused.Status()) << trial;
        ASSERT_EQ(staged.data, fused.data) << trial;
    }
}

}  // namespace
