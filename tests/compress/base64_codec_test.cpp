// Base64 codec: agreement with a plain bit-by-bit reference, round trips, and the decoder's
// handling of foreign characters and of texts whose length is not a multiple of 4.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <kxbase/compress/compress.h>

namespace {

const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// RFC 4648 encoding, six bits at a time, with the format's zero padding in place of "=".
std::string ReferenceEncode(const std::string& in) {
    std::string bits;
    for (unsigned char c : in)
        for (int k = 7; k >= 0; --k) bits += ((c >> k) & 1) ? '1' : '0';
    while (bits.size() % 24) bits += '0';
    std::string out;
    for (std::size_t i = 0; i < bits.size(); i += 6)
        out += kAlphabet[std::stoi(bits.substr(i, 6), nullptr, 2)];
    return out;
}

std::string RandomText(std::mt19937& rng, std::size_t n) {
    std::string s(n, ' ');
    for (auto& c : s) c = static_cast<char>(1 + rng() % 255);  // no zero byte inside
    return s;
}

// The decoded bytes: the 3n/4 + 1 bytes of the result.
std::vector<unsigned char> Decode(const std::string& text) {
    char* r = ACompress::Base64_Decode(text.c_str());
    EXPECT_NE(nullptr, r);
    if (!r) return {};
    std::vector<unsigned char> out(r, r + 3 * text.size() / 4 + 1);
    ACompress::Base64_Free(&r);
    EXPECT_EQ(nullptr, r);
    return out;
}

// Faults: the 12-bit pair table or the tail group encodes wrongly; bytes above 0x7F read as
// signed; padding written as "=" or the output length off by a group.
TEST(Base64Codec, EncodeMatchesReferenceAndDecodesBack) {
    std::mt19937 rng(5);
    for (std::size_t n = 0; n < 200; ++n) {
        const std::string text = RandomText(rng, n);
        char* enc = ACompress::Base64_Encode(text.c_str());
        ASSERT_NE(nullptr, enc);
        ASSERT_EQ(ReferenceEncode(text), enc) << n;
        const std::string encoded = enc;
        ACompress::Base64_Free(&enc);
        const auto bytes = Decode(encoded);
        ASSERT_EQ(3 * encoded.size() / 4 + 1, bytes.size());
        EXPECT_EQ(text, std::string(bytes.begin(), bytes.begin() + n)) << n;
        EXPECT_TRUE(std::all_of(bytes.begin() + n, bytes.end(), [](unsigned char b) {
            return b == 0;
        })) << "the zero padding decodes as zero bytes";
    }
}

// Faults: the fast group path skips the stop at a foreign character in the middle of a group,
// or decodes characters after it; the last partial group writes past 3n/4 + 1 bytes (ASan) or
// drops bytes that fit. A foreign character at position k must decode like "A" (value 0) from
// k to the end of the text.
TEST(Base64Codec, ForeignCharacterEndsTranslationAnywhere) {
    std::mt19937 rng(9);
    const char foreign[] = {'=', '\n', ' ', '-', '.', '\x80', '\xff'};
    for (std::size_t n = 1; n < 40; ++n) {
        std::string text;
        for (std::size_t i = 0; i < n; ++i) text += kAlphabet[rng() % 64];
        for (std::size_t k = 0; k <= n; ++k) {
            std::string cut = text, zeroed = text;
            if (k < n) cut[k] = foreign[(n + k) % sizeof(foreign)];
            for (std::size_t i = k; i < n; ++i) zeroed[i] = 'A';
            ASSERT_EQ(Decode(zeroed), Decode(cut)) << "n " << n << " k " << k;
        }
    }
}

// Fault: the vector path's nibble classifier takes a foreign byte for an alphabet character
// (or the reverse) for some byte value; every value is tried inside a 32-character block. An
// alphabet character must decode and encode back; a foreign one must decode like "A" from
// its place to the end.
TEST(Base64Codec, EveryByteValueIsClassifiedLikeTheAlphabet) {
    const std::string base = "QUJDREVGR0hJSktMTU5PUFFSU1RVVldY";  // 32 characters
    for (int b = 1; b < 256; ++b) {
        for (std::size_t at : {std::size_t{3}, std::size_t{20}}) {
            std::string text = base;
            text[at] = static_cast<char>(b);
            const auto got = Decode(text);
            if (std::strchr(kAlphabet, b)) {
                ASSERT_EQ(text, ReferenceEncode(std::string(got.begin(), got.begin() + 24))) << b;
            } else {
                std::string zeroed = base;
                for (std::size_t i = at; i < zeroed.size(); ++i) zeroed[i] = 'A';
                ASSERT_EQ(Decode(zeroed), got) << "byte " << b << " at " << at;
            }
        }
    }
}

// Fault: the last group ignores the stated buffer of 3n/4 + 1 bytes: the bytes of a partial
// group that fit are kept (with no zero after them), those past the buffer are dropped.
TEST(Base64Codec, PartialLastGroupKeepsWhatFits) {
    const struct {
        const char* text;
        std::vector<unsigned char> bytes;
    } cases[] = {
        {"", {0x00}},
        {"/", {0xFC}},
        {"//", {0xFF, 0xF0}},
        {"///", {0xFF, 0xFF, 0xC0}},
        {"////", {0xFF, 0xFF, 0xFF, 0x00}},
        {"TWFu/", {0x4D, 0x61, 0x6E, 0xFC}},
    };
    for (const auto& c : cases) EXPECT_EQ(c.bytes, Decode(c.text)) << c.text;
}

TEST(Base64Codec, NullArgumentsAreHarmless) {
    EXPECT_EQ(nullptr, ACompress::Base64_Encode(nullptr));
    EXPECT_EQ(nullptr, ACompress::Base64_Decode(nullptr));
    ACompress::Base64_Free(nullptr);
    char* none = nullptr;
    ACompress::Base64_Free(&none);
    EXPECT_EQ(nullptr, none);
}

}  // namespace
