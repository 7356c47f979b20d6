// LZW codec: round trips, exact capacities, the documented buffer bounds, the width schedule,
// and agreement of the fast paths with straightforward references.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include <kxbase/compress/compress.h>

#include "lzw_data.h"

using lzwtest::Bytes;

namespace {

struct Probe : ACompress {
    using ACompress::IsStrInList;
};

// The dictionary walk as the format describes it: a growing byte table of 3-byte nodes, a head
// table per prefix, and IsStrInList on each chain. The fast encoder must make the same codes.
std::vector<WORD> ReferencePack(const Bytes& src) {
    std::vector<BYTE> nodes(6144);
    std::vector<WORD> head(4096, 0);
    std::vector<WORD> codes{256};
    unsigned prefix = src[0], offset = 3, entries = 1;
    for (std::size_t i = 1; i < src.size(); ++i) {
        const BYTE c = src[i];
        WORD code = 0, last = 0;
        if (Probe::IsStrInList(static_cast<WORD>(prefix), c, nodes.data(), head[prefix], &code,
                               &last)) {
            prefix = code;
            continue;
        }
        codes.push_back(static_cast<WORD>(prefix));
        if (entries < 3836) {
            if (offset + 3 > nodes.size()) nodes.resize(nodes.size() * 2);
            nodes[offset] = c;
            nodes[offset + 1] = nodes[offset + 2] = 0;
            if (head[prefix] == 0) {
                head[prefix] = static_cast<WORD>(offset);
            } else {
                nodes[last + 1] = static_cast<BYTE>(offset);
                nodes[last + 2] = static_cast<BYTE>(offset >> 8);
            }
            offset += 3;
            ++entries;
        } else {
            codes.push_back(256);
            std::fill(head.begin(), head.end(), 0);
            offset = 3;
            entries = 1;
        }
        prefix = c;
    }
    codes.push_back(static_cast<WORD>(prefix));
    codes.push_back(257);
    return codes;
}

// Bit-at-a-time packer with the stated width rule.
Bytes ReferenceBits(const std::vector<WORD>& codes) {
    Bytes out;
    unsigned width = 9, n = 0, bit = 0;
    for (WORD code : codes) {
        if (n == 255 || n == 767 || n == 1791) ++width;
        for (int k = static_cast<int>(width) - 1; k >= 0; --k, ++bit) {
            if (bit % 8 == 0) out.push_back(0);
            if ((code >> k) & 1) out.back() |= static_cast<BYTE>(0x80 >> (bit % 8));
        }
        if (width == 12 && code == 256) width = 9, n = 0;
        ++n;
    }
    return out;
}

Bytes Compress(const Bytes& src, ULONG cap, int& result, ULONG& len) {
    Bytes dst(cap);
    len = 0xDEAD;
    result = ACompress::Comp_LZW(src.data(), static_cast<ULONG>(src.size()), dst.data(), cap, len);
    if (result == 1) dst.resize(len);
    return dst;
}

Bytes Decompress(const Bytes& stream, ULONG cap, int& result, ULONG& len) {
    Bytes dst(cap);  // exactly cap bytes: ASan reports any write past it
    len = 0xDEAD;
    result = ACompress::UnComp_LZW(stream.data(), static_cast<ULONG>(stream.size()), dst.data(),
                                   cap, len);
    dst.resize(result == 1 ? len : 0);
    return dst;
}

// Fault: the hash dictionary or the fused bit writer gives a different stream than the stated
// sibling-chain walk and bit packing (a missed clear, a wrong entry code, a bad flush).
TEST(LzwCodec, FastEncoderMatchesTheSiblingChainWalkAndBitPacking) {
    for (const auto& s : lzwtest::Samples()) {
        SCOPED_TRACE(s.name);
        const auto codes = ReferencePack(s.data);
        const auto n = static_cast<ULONG>(s.data.size());
        std::vector<WORD> got(codes.size() + 1);
        ULONG count = 0;
        ASSERT_EQ(1, ACompress::Pack_LZW(s.data.data(), n, got.data(),
                                         static_cast<ULONG>(got.size()), count));
        got.resize(count);
        ASSERT_EQ(codes, got);
        int r;
        ULONG len;
        const Bytes stream =
            Compress(s.data, static_cast<ULONG>(ACompress::LzwCompressBound(n)), r, len);
        ASSERT_EQ(1, r);
        EXPECT_EQ(ReferenceBits(codes), stream);
    }
}

// Faults: a decoder that loses bytes at clear codes or not-yet-defined entries; a capacity
// rule off by one (the stream must be strictly shorter than dstCap; the decoder keeps 6 spare
// bytes; Pack_LZW needs one code slot more than it uses); a worst-case bound that is too
// small for adversarial input.
TEST(LzwCodec, RoundTripAtExactCapacitiesAndWithinTheBounds) {
    for (const auto& s : lzwtest::Samples()) {
        SCOPED_TRACE(s.name);
        const auto n = static_cast<ULONG>(s.data.size());
        int r;
        ULONG len;
        const auto bound = static_cast<ULONG>(ACompress::LzwCompressBound(n));
        const Bytes stream = Compress(s.data, bound, r, len);
        ASSERT_EQ(1, r);
        EXPECT_LE(len + 1, bound);

        const auto exact = static_cast<ULONG>(stream.size() + 1);
        EXPECT_EQ(stream, Compress(s.data, exact, r, len));
        Compress(s.data, exact - 1, r, len);
        EXPECT_EQ(0, r);
        EXPECT_EQ(1u, len) << "overflow reports dstLen 1";

        const auto need = static_cast<ULONG>(ACompress::LzwDecompressCapacity(n));
        EXPECT_EQ(s.data, Decompress(stream, need, r, len));
        EXPECT_EQ(1, r);
        EXPECT_EQ(s.data, Decompress(stream, need + 1, r, len));
        Decompress(stream, need - 1, r, len);
        EXPECT_EQ(0, r);
        EXPECT_LT(len, n);

        // Pack_LZW needs one slot more than the codes it makes, never more than the bound.
        std::vector<WORD> codes(ACompress::LzwCodeBound(n) + 1);
        ULONG count = 0;
        ASSERT_EQ(1, ACompress::Pack_LZW(s.data.data(), n, codes.data(),
                                         static_cast<ULONG>(codes.size()), count));
        EXPECT_EQ(1, ACompress::Pack_LZW(s.data.data(), n, codes.data(), count + 1, count));
        EXPECT_EQ(0, ACompress::Pack_LZW(s.data.data(), n, codes.data(), count, count));
    }
}

// Faults: the decoder's room rules drift near the end of dst, where every code leaves the
// block-copy path: the first byte needs no spare room, strings need 6 spare bytes, and the
// literal after a clear code is tested for 6 spare bytes before it is written.
TEST(LzwCodec, UnPackRoomRulesAtTheEndOfDst) {
    const struct {
        std::vector<WORD> codes;
        ULONG cap;
        int result;
        ULONG len;
    } cases[] = {
        {{256, 65, 257}, 1, 1, 1},
        {{256, 65, 66, 257}, 8, 1, 2},
        {{256, 65, 66, 257}, 7, 0, 1},
        {{256, 65, 256, 66, 257}, 7, 1, 2},
        {{256, 65, 256, 66, 257}, 6, 0, 1},
        {{256, 65, 258, 257}, 9, 1, 3},  // "A" then "AA", an entry not yet defined
        {{256, 65, 258, 257}, 8, 0, 1},
        {{256, 65, 66, 258, 257}, 10, 1, 4},  // "AB" defined, copied near the end
        {{256, 65, 66, 258, 257}, 9, 0, 2},
    };
    for (const auto& c : cases) {
        Bytes dst(c.cap);
        ULONG len = 0;
        EXPECT_EQ(c.result,
                  ACompress::UnPack_LZW(c.codes.data(), static_cast<ULONG>(c.codes.size()),
                                        dst.data(), c.cap, len))
            << c.cap;
        EXPECT_EQ(c.len, len) << c.cap;
    }
}

// Fault: ResumeDataBit writes more codes than LzwResumeCodeBound promises (it has no capacity
// argument). All-zero bytes give the most codes: 9-bit zeros that never end the stream.
TEST(LzwCodec, ResumeDataBitFillsAtMostTheDocumentedCodeBuffer) {
    std::mt19937 rng(7);
    for (ULONG n = 1; n < 700; n += 1 + n / 8) {
        for (int kind = 0; kind < 3; ++kind) {
            Bytes src(n, kind == 0 ? 0x00 : 0xFF);
            if (kind == 2)
                for (auto& b : src) b = static_cast<BYTE>(rng());
            const auto bound = ACompress::LzwResumeCodeBound(n);
            auto codes = std::make_unique<WORD[]>(bound);
            ULONG count = 0;
            ASSERT_EQ(1, ACompress::ResumeDataBit(src.data(), n, codes.get(), count));
            ASSERT_LE(count, bound) << n;
            if (kind == 0 && n < 280) {
                EXPECT_EQ(bound, count) << "the bound is tight for short zero streams";
            }
        }
    }
}

// Faults: a width step at 1279, a missing or early step, or a clear code that resets the width
// below 12 bits. Lengths are the bit totals of the stated schedule, worked out by hand.
TEST(LzwCodec, WidthStepsAt255_767_1791AndClearResetsOnlyAt12Bits) {
    struct Case {
        const char* name;
        std::vector<WORD> codes;
        unsigned bits;
    };
    auto literals = [](std::size_t n) { return std::vector<WORD>(n, 0x41); };
    auto join = [](std::vector<std::vector<WORD>> parts) {
        std::vector<WORD> out;
        for (auto& p : parts) out.insert(out.end(), p.begin(), p.end());
        return out;
    };
    const std::vector<Case> cases = {
        {"255 codes", literals(255), 2295},
        {"256 codes", literals(256), 2305},
        {"767 codes", literals(767), 7415},
        {"768 codes", literals(768), 7426},
        {"1279 codes", literals(1279), 13047},
        {"1280 codes: still 11 bits", literals(1280), 13058},
        {"1791 codes", literals(1791), 18679},
        {"1792 codes", literals(1792), 18691},
        {"clear at 12 bits restarts at 9", join({{256}, literals(1800), {256}, literals(255)}),
         21107},
        {"clear at 10 bits changes nothing", join({{256}, literals(300), {256}, literals(300)}),
         5765},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto count = static_cast<ULONG>(c.codes.size());
        Bytes dst((c.bits + 7) / 8 + 1);
        ULONG len = 0;
        ASSERT_EQ(1, ACompress::TransformDataBits(c.codes.data(), count, dst.data(),
                                                  static_cast<ULONG>(dst.size()), len));
        EXPECT_EQ((c.bits + 7) / 8, len);
        dst.resize(len);
        EXPECT_EQ(ReferenceBits(c.codes), dst);
        // The reader follows the same schedule. It stops before a code starting in the last
        // byte, so pad the stream with one byte to read every code back.
        dst.push_back(0);
        std::vector<WORD> back(ACompress::LzwResumeCodeBound(len + 1));
        ULONG got = 0;
        ASSERT_EQ(1, ACompress::ResumeDataBit(dst.data(), len + 1, back.data(), got));
        ASSERT_GE(got, count);
        back.resize(count);
        EXPECT_EQ(c.codes, back);
    }
}

// Fault: the fused decoder (codes read straight from the stream) differs from the two stated
// stages on damaged streams: cut, bit flips, foreign bytes.
TEST(LzwCodec, FusedDecoderMatchesTheTwoStagesOnDamagedStreams) {
    std::mt19937 rng(11);
    const auto samples = lzwtest::Samples();
    for (int trial = 0; trial < 300; ++trial) {
        const auto& s = samples[trial % samples.size()];
        int r;
        ULONG len;
        Bytes stream = Compress(
            s.data,
            static_cast<ULONG>(ACompress::LzwCompressBound(static_cast<ULONG>(s.data.size()))), r,
            len);
        ASSERT_EQ(1, r);
        if (trial % 3 == 0) stream.resize(1 + rng() % stream.size());
        for (int k = trial % 4; k > 0; --k)
            stream[rng() % stream.size()] ^= static_cast<BYTE>(1 << (rng() % 8));
        if (trial % 7 == 0) stream = lzwtest::Make(3, 1 + rng() % 400, trial);
        const auto n = static_cast<ULONG>(stream.size());
        const ULONG cap = static_cast<ULONG>(s.data.size()) + 6 + (trial % 5 == 0 ? 100000 : 0);

        Bytes fused(cap), staged(cap);
        ULONG fusedLen = 77, stagedLen = 77, codeCount = 0;
        const int rf = ACompress::UnComp_LZW(stream.data(), n, fused.data(), cap, fusedLen);
        std::vector<WORD> codes(ACompress::LzwResumeCodeBound(n) + 1);
        ASSERT_EQ(1, ACompress::ResumeDataBit(stream.data(), n, codes.data(), codeCount));
        const int rs =
            ACompress::UnPack_LZW(codes.data(), codeCount, staged.data(), cap, stagedLen);
        ASSERT_EQ(rs, rf) << trial;
        ASSERT_EQ(stagedLen, fusedLen) << trial;
        fused.resize(fusedLen == 77 ? 0 : fusedLen);
        staged.resize(stagedLen == 77 ? 0 : stagedLen);
        ASSERT_EQ(staged, fused) << trial;
    }
}

}  // namespace
