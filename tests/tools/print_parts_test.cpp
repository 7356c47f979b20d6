// The parts of `kxbase print` that can be checked inside one process: the row packer, the
// row codecs with their checksums, the page-size and file-name texts and the token pipe.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "band_ring.h"
#include "image_writers.h"
#include "line_codec.h"
#include "pack_reference.h"
#include "page.h"
#include "row_bits.h"

namespace {

constexpr int kDepths[] = {1, 2, 4, 8, 24};

// An expanded row of runs of random length and value: what rasterised rows look like, with
// runs short enough to hit the literal forms of the run-length codecs as well.
std::vector<std::uint8_t> RunRow(std::uint32_t width, int depth, std::mt19937& rng) {
    const int bpp = kxprint::ExpandedBytesPerPixel(depth);
    const unsigned top = depth >= 8 ? 255u : (1u << depth) - 1;
    std::vector<std::uint8_t> row(std::size_t{width} * static_cast<unsigned>(bpp));
    std::uint32_t x = 0;
    while (x < width) {
        const std::uint32_t run =
            std::min<std::uint32_t>(width - x, 1 + rng() % (rng() % 2 ? 4 : 300));
        std::uint8_t v[3] = {static_cast<std::uint8_t>(rng() % (top + 1)),
                             static_cast<std::uint8_t>(rng()), static_cast<std::uint8_t>(rng())};
        for (std::uint32_t i = 0; i < run; ++i, ++x)
            for (int c = 0; c < bpp; ++c)
                row[std::size_t{x} * static_cast<unsigned>(bpp) + static_cast<unsigned>(c)] = v[c];
    }
    return row;
}

// The multiply trick must place every pixel right at every width, including the tail that
// is packed one pixel at a time.
TEST(PrintParts, RowPackerAgreesWithThePlainPacker) {
    std::mt19937 rng(7);
    for (const int depth : kDepths)
        for (const std::uint32_t width : {1u, 7u, 8u, 9u, 15u, 16u, 63u, 64u, 65u, 1001u}) {
            const auto row = RunRow(width, depth, rng);
            std::vector<std::uint8_t> packed(kxprint::PackedRowBytes(width, depth) + 1, 0xAB);
            kxprint::PackRowBits(row.data(), width, depth, packed.data());
            EXPECT_EQ(packed.back(), 0xAB)
                << "wrote past the row, depth " << depth << " width " << width;
            packed.pop_back();
            EXPECT_EQ(packed, kxtest::PackRow(row, width, depth))
                << "depth " << depth << " width " << width;
        }
}

// Every depth and codec: the decoder restores the packed row the encoder checksummed, and a
// stream cut short never passes for the row (the printer's checksum test depends on it:
// the 1-bit decoder itself accepts short streams).
TEST(PrintParts, RowCodecsRoundTripAndCutStreamsAreCaught) {
    std::mt19937 rng(11);
    for (const int depth : kDepths)
        for (const auto codec : {kxprint::Codec::Pack, kxprint::Codec::Lzw})
            for (const std::uint32_t width : {48u, 49u, 1000u, 5953u}) {
                SCOPED_TRACE(kxprint::CodecName(codec, depth) + " width " + std::to_string(width));
                kxprint::LineEncoder enc(width, depth, codec);
                kxprint::LineDecoder dec(width, depth, codec);
                for (int trial = 0; trial < 8; ++trial) {
                    auto row = RunRow(width, depth, rng);
                    if (trial == 0) std::fill(row.begin(), row.end(), 0);  // one run over the row
                    const auto want = kxtest::PackRow(row, width, depth);
                    std::vector<std::uint8_t> stream(enc.StreamBound());
                    std::uint32_t len = 0, crc = 0;
                    ASSERT_TRUE(enc.Encode(row.data(), stream.data(), len, crc));
                    ASSERT_LE(len, enc.StreamBound());
                    EXPECT_EQ(crc, kxprint::Crc32(want.data(), want.size()));
                    std::string error;
                    const std::uint8_t* got = dec.Decode(stream.data(), len, error);
                    ASSERT_NE(got, nullptr) << error;
                    EXPECT_EQ(std::vector<std::uint8_t>(got, got + want.size()), want);
                    if (len >= 2) {
                        const std::uint8_t* cut = dec.Decode(stream.data(), len / 2, error);
                        EXPECT_TRUE(cut == nullptr || kxprint::Crc32(cut, want.size()) != crc)
                            << "half a stream passed for the whole row";
                    }
                }
            }
}

TEST(PrintParts, Crc32IsTheZlibOne) {
    const std::string text = "123456789";
    EXPECT_EQ(kxprint::Crc32(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()),
              0xCBF43926u);
}

TEST(PrintParts, PageSizesInNamesAndMillimetres) {
    struct Row {
        const char* text;
        bool ok;
        double w, h;
    };
    const Row rows[] = {
        {"A4", true, 210, 297},
        {"a0", true, 841, 1189},
        {"Letter", true, 215.9, 279.4},
        {"100x50", true, 100, 50},
        {"100x50mm", true, 100, 50},
        {"10x20cm", true, 100, 200},
        {"8.5x11in", true, 215.9, 279.4},
        {"B9", false, 0, 0},
        {"0x10", false, 0, 0},
        {"10x", false, 0, 0},
        {"x10", false, 0, 0},
        {"10x10ft", false, 0, 0},
        {"-5x10", false, 0, 0},
        {"nanx10", false, 0, 0},
        {"infx10", false, 0, 0},
        {"", false, 0, 0},
    };
    for (const Row& r : rows) {
        kxprint::PageSetup setup;
        std::string error;
        EXPECT_EQ(kxprint::ParsePageSize(r.text, setup, error), r.ok) << r.text;
        if (r.ok) {
            EXPECT_NEAR(setup.widthMm, r.w, 1e-9) << r.text;
            EXPECT_NEAR(setup.heightMm, r.h, 1e-9) << r.text;
        } else {
            EXPECT_FALSE(error.empty()) << r.text;
        }
    }
}

TEST(PrintParts, PagePathsNumberEveryPageOfAJob) {
    struct Row {
        const char* path;
        std::uint32_t page, pages;
        const char* want;
    };
    const Row rows[] = {
        {"page.png", 0, 1, "page.png"},     {"page.png", 0, 3, "page-1.png"},
        {"page.png", 2, 3, "page-3.png"},   {"out", 1, 2, "out-2"},
        {"dir.d/out", 0, 2, "dir.d/out-1"}, {"dir.d/out.png", 0, 2, "dir.d/out-1.png"},
    };
    for (const Row& r : rows)
        EXPECT_EQ(kxprint::PagePath(r.path, r.page, r.pages), r.want) << r.path;
}

// The liveness of the ring rests on these answers: a token, then end of file once the
// writer is gone; a Ctrl-C flag or an empty look never blocks.
TEST(PrintParts, TokenPipeReportsTokensEndOfFileAndStops) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    kxprint::Token t;
    volatile int stop = 0;
    EXPECT_EQ(kxprint::ReadToken(fds[0], t, &stop, 0), kxprint::PipeResult::Interrupted);
    ASSERT_EQ(kxprint::WriteToken(fds[1], kxprint::Token{kxprint::TokenKind::Ack, 0, 42}),
              kxprint::PipeResult::Ok);
    stop = 1;
    EXPECT_EQ(kxprint::ReadToken(fds[0], t, &stop), kxprint::PipeResult::Interrupted);
    stop = 0;
    ASSERT_EQ(kxprint::ReadToken(fds[0], t, &stop), kxprint::PipeResult::Ok);
    EXPECT_EQ(t.kind, kxprint::TokenKind::Ack);
    EXPECT_EQ(t.seq, 42u);
    ::close(fds[1]);
    EXPECT_EQ(kxprint::ReadToken(fds[0], t, &stop), kxprint::PipeResult::Closed);
    ::close(fds[0]);

    ASSERT_EQ(::pipe(fds), 0);
    ::close(fds[0]);
    ::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(kxprint::WriteToken(fds[1], t), kxprint::PipeResult::Closed);
    ::close(fds[1]);
}

}  // namespace
