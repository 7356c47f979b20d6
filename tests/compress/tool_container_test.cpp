// The container of `kxbase compress` / `kxbase decompress`: round trips per codec, the fixed
// field layout, and damaged or foreign files.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tools/codec_container.h"

namespace codec = kxtool::codec;
using Bytes = std::vector<std::uint8_t>;

namespace {

codec::Result EncodeBytes(const char* name, std::uint32_t width, const Bytes& in, Bytes& out,
                          std::string& error, std::uint64_t* stored = nullptr) {
    out.clear();
    return codec::Encode(*codec::FindCodec(name), width, in.size(),
                         codec::MemoryReader(in.data(), in.size()), codec::VectorWriter(out), error,
                         {}, stored);
}

codec::Result DecodeBytes(const Bytes& in, Bytes& out, std::string& error,
                          std::uint32_t maxBlock = codec::kMaxBlock) {
    out.clear();
    return codec::Decode(codec::MemoryReader(in.data(), in.size()), codec::VectorWriter(out), error,
                         maxBlock);
}

// Print-like raster data: long runs of one value broken by short noisy stretches, every byte
// at most maxValue (one pixel per byte).
Bytes RasterData(std::size_t n, unsigned maxValue, std::uint32_t seed) {
    std::mt19937 rng(seed);
    Bytes b(n);
    for (std::size_t i = 0; i < n;) {
        const std::size_t run = std::min<std::size_t>(n - i, 1 + rng() % 300);
        const bool noisy = rng() % 3 == 0;
        const auto value = static_cast<std::uint8_t>(rng() % (maxValue + 1));
        for (std::size_t k = 0; k < run; ++k)
            b[i + k] = noisy ? static_cast<std::uint8_t>(rng() % (maxValue + 1)) : value;
        i += run;
    }
    return b;
}

Bytes Text(std::size_t n) {
    const std::string words = "The quick brown fox jumps over the lazy dog. 0123456789\n";
    Bytes b(n);
    for (std::size_t i = 0; i < n; ++i)
        b[i] = static_cast<std::uint8_t>(words[(i * 7) % words.size()]);
    return b;
}

struct RoundTrip {
    const char* codec;
    std::uint32_t width;
    Bytes data;
    std::uint64_t stored;  // blocks the codec is expected to refuse
};

}  // namespace

// Catches: a wrong capacity or line split making the codec fail (every block silently stored),
// a last short line or block decoded at the full length, and a codec restoring other bytes.
TEST(ToolContainer, RoundTripsEveryCodecWithTheExpectedStoredBlocks) {
    const std::vector<RoundTrip> cases = {
        {"lzw", 0, RasterData(200000, 255, 1), 0},
        {"lzw", 1000, RasterData(5001, 255, 2), 1},  // last block of one byte: Comp_LZW refuses it
        {"rle", 0, RasterData(100000, 255, 3), 0},
        {"rle", 777, Text(10000), 0},
        {"rle4", 5953, RasterData(5953 * 4 + 100, 15, 4), 0},
        {"rle8", 5953, RasterData(5953 * 3 + 1, 255, 5), 1},  // last line of one pixel
        {"rle24", 1000, RasterData(3000 * 5 + 30, 255, 6), 0},
        {"pack1", 5953, RasterData(5953 * 6 + 13, 1, 7), 0},
        {"pack2", 4000, RasterData(4000 * 3 + 2, 3, 8), 0},
        {"base64", 0, Text(50000), 0},
        {"base64", 100, Text(1001), 0},
        {"lzw", 0, Bytes{}, 0},
        {"pack1", 8, Bytes{}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.codec) + " width " + std::to_string(c.width) + " length " +
                     std::to_string(c.data.size()));
        Bytes packed, restored;
        std::string error;
        std::uint64_t stored = 99;
        ASSERT_EQ(EncodeBytes(c.codec, c.width, c.data, packed, error, &stored), codec::Result::Ok)
            << error;
        EXPECT_EQ(stored, c.stored);
        ASSERT_EQ(DecodeBytes(packed, restored, error), codec::Result::Ok) << error;
        EXPECT_EQ(restored, c.data);
    }
}

// Catches: fields moved, written big-endian, or a checksum other than the common CRC-32, any of
// which makes files of other builds unreadable.
TEST(ToolContainer, FieldLayoutIsFixed) {
    const std::string check = "123456789";
    EXPECT_EQ(codec::Crc32(0, reinterpret_cast<const std::uint8_t*>(check.data()), 9), 0xCBF43926u);

    const Bytes data = {5, 5, 5, 5, 9};  // rle8, two pixels per line: (2,5) (2,5) and (1,9)
    Bytes out;
    std::string error;
    ASSERT_EQ(EncodeBytes("rle8", 2, data, out, error), codec::Result::Ok) << error;
    ASSERT_GE(out.size(), codec::kHeaderSize);
    EXPECT_EQ(std::string(out.begin(), out.begin() + 7), "KXCODEC");
    EXPECT_EQ(out[7], 1);
    EXPECT_EQ(out[8], 4);                   // rle8
    EXPECT_EQ(codec::Get32(&out[12]), 2u);  // width
    EXPECT_EQ(codec::Get32(&out[16]), 2u);  // block bytes
    EXPECT_EQ(out[20], 5);                  // length, little-endian
    EXPECT_EQ(codec::Get64(&out[20]), 5u);
    EXPECT_EQ(codec::Get32(&out[28]), codec::Crc32(0, out.data(), 28));
    const Bytes blocks(out.begin() + 32, out.end() - 4);
    const Bytes expected = {2, 0, 0, 0,    2, 5,  // line 0
                            2, 0, 0, 0,    2, 5,  // line 1
                            1, 0, 0, 0x80, 9};    // one-pixel line, stored as is
    EXPECT_EQ(blocks, expected);
    EXPECT_EQ(codec::Get32(&out[out.size() - 4]), codec::Crc32(0, data.data(), data.size()));
}

// Catches: a flipped bit that decodes to wrong bytes without a complaint, a cut file read past
// its end, and stray bytes after the checksum accepted. Every damaged variant must either be
// refused or restore exactly the original (a flip in Base64 padding bits changes nothing).
TEST(ToolContainer, DamagedFilesAreRefusedNeverMisread) {
    const std::vector<RoundTrip> cases = {
        {"lzw", 64, RasterData(300, 255, 11), 0},   {"rle", 50, RasterData(200, 255, 12), 0},
        {"rle4", 40, RasterData(160, 15, 13), 0},   {"rle8", 40, RasterData(160, 255, 14), 0},
        {"rle24", 20, RasterData(180, 255, 15), 0}, {"pack1", 90, RasterData(270, 1, 16), 0},
        {"pack2", 60, RasterData(180, 3, 17), 0},   {"base64", 30, Text(100), 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codec);
        Bytes good, out;
        std::string error;
        ASSERT_EQ(EncodeBytes(c.codec, c.width, c.data, good, error), codec::Result::Ok);
        for (std::size_t i = 0; i < good.size(); ++i) {
            for (std::uint8_t mask : {0x01, 0x80, 0xFF}) {
                Bytes bad = good;
                bad[i] ^= mask;
                const auto r = DecodeBytes(bad, out, error);
                if (r == codec::Result::Ok)
                    ASSERT_EQ(out, c.data) << "byte " << i << " ^ " << int(mask);
                else
                    ASSERT_EQ(r, codec::Result::BadInput);
            }
        }
        for (std::size_t n = 0; n < good.size(); ++n) {
            const Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(n));
            ASSERT_EQ(DecodeBytes(cut, out, error), codec::Result::BadInput) << "cut at " << n;
        }
        Bytes longer = good;
        longer.push_back(0);
        EXPECT_EQ(DecodeBytes(longer, out, error), codec::Result::BadInput);
    }
}

// Catches: data the codec would change silently (a zero byte ends Base64 text, pixel values
// beyond the depth lose bits) or options that cannot describe lines being accepted.
TEST(ToolContainer, RefusesDataAndOptionsTheCodecCannotTake) {
    struct Refusal {
        const char* codec;
        std::uint32_t width;
        Bytes data;
        const char* message;
    };
    const std::vector<Refusal> cases = {
        {"base64", 0, {'a', 'b', 0, 'c'}, "zero byte at offset 2"},
        {"pack1", 4, {0, 1, 1, 0, 1, 2}, "offset 5 is 0x02"},
        {"pack2", 4, {3, 4}, "offset 1 is 0x04"},
        {"rle4", 4, {15, 16}, "offset 1 is 0x10"},
        {"rle8", 0, {1, 2, 3}, "--width"},
        {"rle24", 2, {1, 2, 3, 4}, "multiple"},
        {"rle24", codec::kMaxBlock / 3 + 1, {1, 2, 3}, "longer than"},
        {"lzw", codec::kMaxBlock + 1, {1, 2, 3}, "block length"},
    };
    for (const auto& c : cases) {
        Bytes out;
        std::string error;
        EXPECT_EQ(EncodeBytes(c.codec, c.width, c.data, out, error), codec::Result::BadInput)
            << c.codec;
        EXPECT_NE(error.find(c.message), std::string::npos) << c.codec << ": " << error;
    }
}

// Catches: a foreign file or an oversized block claim reaching the codecs or the allocator.
TEST(ToolContainer, ForeignFilesAndOversizedBlocksAreRefusedUpFront) {
    Bytes out;
    std::string error;
    const Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13};
    EXPECT_EQ(DecodeBytes(png, out, error), codec::Result::BadInput);
    EXPECT_NE(error.find("not a kxbase"), std::string::npos) << error;

    Bytes packed;
    ASSERT_EQ(EncodeBytes("rle", 4096, RasterData(10000, 255, 21), packed, error),
              codec::Result::Ok);
    EXPECT_EQ(DecodeBytes(packed, out, error, 4095), codec::Result::BadInput);
    EXPECT_TRUE(out.empty());
}
