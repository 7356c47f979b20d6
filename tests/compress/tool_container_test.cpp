// The container of `kxbase compress` / `kxbase decompress`: round trips per codec, the fixed
// file layout, and damaged or foreign files.
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

// Print-like raster data: runs of one value, and a noisy stretch in every fifth 64 bytes;
// every byte in lowest..highest (one pixel per byte; Base64 takes any byte but zero).
Bytes RasterData(std::size_t n, unsigned highest, std::uint32_t seed, unsigned lowest = 0) {
    std::mt19937 rng(seed);
    Bytes b(n, static_cast<std::uint8_t>(lowest));
    for (std::size_t i = 1; i < n; ++i) {
        const auto any = static_cast<std::uint8_t>(lowest + rng() % (highest + 1 - lowest));
        b[i] = rng() % 150 == 0 || i / 64 % 5 == 0 ? any : b[i - 1];
    }
    return b;
}

}  // namespace

// Catches: a wrong capacity or line split making the codec fail (every block silently stored),
// a last short line or block decoded at the full length, a codec restoring other bytes, a file
// layout that moved (files of other builds unreadable: the rle8 case below is pinned byte for
// byte), and data or options the codec cannot take (a zero byte ends Base64 text, values
// beyond the depth lose bits, a width that cannot describe lines) accepted instead of refused.
TEST(ToolContainer, RoundTripsEveryCodecOrRefusesWhatItCannotTake) {
    const struct {
        const char* codec;
        std::uint32_t width;
        Bytes data;
        std::uint64_t stored;           // blocks the codec is expected to refuse and store as is
        const char* refused = nullptr;  // the reason Encode must give instead
    } cases[] = {
        {"lzw", 1000, RasterData(5001, 255, 2), 1},  // last block of one byte: LZW refuses it
        {"rle", 0, RasterData(200000, 255, 3), 0},
        {"rle4", 5953, RasterData(5953 * 4 + 100, 15, 4), 0},
        {"rle8", 2, {5, 5, 5, 5, 9}, 1},  // lines (2,5) (2,5), then a one-pixel line stored as is
        {"rle24", 1000, RasterData(3000 * 5 + 30, 255, 6), 0},
        {"pack1", 5953, RasterData(5953 * 6 + 13, 1, 7), 0},
        {"pack2", 4000, RasterData(4000 * 3 + 2, 3, 8), 0},
        {"base64", 100, RasterData(50001, 255, 9, 1), 0},
        {"pack1", 8, Bytes{}, 0},
        {"base64", 0, {'a', 'b', 0, 'c'}, 0, "zero byte at offset 2"},
        {"pack2", 4, {3, 4}, 0, "offset 1 is 0x04"},
        {"rle24", 2, {1, 2, 3, 4}, 0, "multiple"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.codec) + " width " + std::to_string(c.width));
        Bytes packed, restored;
        std::string error;
        std::uint64_t stored = 99;
        const codec::Result r = EncodeBytes(c.codec, c.width, c.data, packed, error, &stored);
        EXPECT_EQ(r, c.refused ? codec::Result::BadInput : codec::Result::Ok) << error;
        // A refusal names its reason.
        EXPECT_NE(error.find(c.refused ? c.refused : ""), std::string::npos) << error;
        if (c.refused) continue;
        EXPECT_EQ(stored, c.stored);
        ASSERT_EQ(DecodeBytes(packed, restored, error), codec::Result::Ok) << error;
        EXPECT_EQ(restored, c.data);
        if (c.width == 2) {  // pinned byte for byte
            const char* file =
                "KXCODEC\1\4\0\0\0\2\0\0\0\2\0\0\0\5\0\0\0\0\0\0\0\xD4\x12\x95\x63"
                "\2\0\0\0\2\5\2\0\0\0\2\5\1\0\0\x80\t\x55\6\x7C\x3B";
            EXPECT_EQ(packed, Bytes(file, file + 53));
        }
    }
}

// Catches: a flipped bit that decodes to wrong bytes without a complaint, a cut file read past
// its end, stray bytes after the checksum accepted, and a foreign file or an oversized block
// claim reaching the codecs or the allocator. A damaged file must be refused or restore
// exactly the original (a flip in Base64 padding bits changes nothing).
TEST(ToolContainer, DamagedCutAndForeignFilesAreRefusedNeverMisread) {
    Bytes out;
    std::string error;
    for (const char* name : {"lzw", "rle", "rle4", "rle8", "rle24", "pack1", "pack2", "base64"}) {
        SCOPED_TRACE(name);
        const codec::CodecInfo& info = *codec::FindCodec(name);
        const Bytes data = RasterData(180, info.maxValue, 11, info.id == codec::Codec::Base64);
        Bytes good;
        ASSERT_EQ(EncodeBytes(name, 60, data, good, error), codec::Result::Ok) << error;
        for (std::size_t i = 0; i < good.size(); ++i)
            for (const std::uint8_t mask : {0x01, 0x80, 0xFF}) {
                good[i] ^= mask;
                const codec::Result r = DecodeBytes(good, out, error);
                good[i] ^= mask;
                ASSERT_TRUE(r == codec::Result::BadInput || (r == codec::Result::Ok && out == data))
                    << "byte " << i << " ^ " << int(mask);
            }
        for (std::size_t n = 0; n <= good.size(); ++n) {  // cut short, or one byte too long
            Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(n));
            if (n == good.size()) cut.push_back(0);
            ASSERT_EQ(DecodeBytes(cut, out, error), codec::Result::BadInput) << "length " << n;
        }
        EXPECT_EQ(DecodeBytes(good, out, error, 59), codec::Result::BadInput);  // block > limit
    }
    const Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13};
    EXPECT_EQ(DecodeBytes(png, out, error), codec::Result::BadInput);
    EXPECT_NE(error.find("not a kxbase"), std::string::npos) << error;
}
