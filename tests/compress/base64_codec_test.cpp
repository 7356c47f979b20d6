// Base64 codec against a plain bit-by-bit reference decoder: random round trips, and every byte
// value at every place of texts of many lengths (the vector path classifies characters in blocks).
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <kxbase/compress/compress.h>

namespace {

const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
using Decoded = std::vector<unsigned char>;

// 3n/4 + 1 bytes: six bits per character up to the first one outside the alphabet, zeros from
// there on; bits past the buffer are dropped. (Texts here hold no zero byte.)
Decoded ReferenceDecode(const std::string& text) {
    Decoded out(3 * text.size() / 4 + 1);
    for (std::size_t i = 0, bit = 0; i < text.size(); ++i) {
        const char* p = std::strchr(kAlphabet, text[i]);
        if (!p) break;
        for (int k = 5; k >= 0; --k, ++bit)
            if ((p - kAlphabet) >> k & 1 && bit / 8 < out.size()) out[bit / 8] |= 0x80 >> bit % 8;
    }
    return out;
}

Decoded Decode(const std::string& text) {
    char* r = ACompress::Base64_Decode(text.c_str());
    if (!r) return {};
    Decoded out(r, r + 3 * text.size() / 4 + 1);
    ACompress::Base64_Free(&r);
    EXPECT_EQ(nullptr, r);
    return out;
}

// Faults: the 12-bit pair table or the tail group encodes wrongly, so that the reference
// decoder does not restore the text; bytes above 0x7F read as signed; a length off by a group;
// a null argument crashes. (The golden vectors pin the encoded texts themselves.)
TEST(Base64Codec, EncodesWhatTheReferenceDecodesBack) {
    EXPECT_EQ(nullptr, ACompress::Base64_Encode(nullptr));
    EXPECT_EQ(nullptr, ACompress::Base64_Decode(nullptr));
    ACompress::Base64_Free(nullptr);
    std::mt19937 rng(5);
    for (std::size_t n = 0; n < 200; ++n) {
        std::string text(n, ' ');
        for (auto& c : text) c = static_cast<char>(1 + rng() % 255);  // no zero byte inside
        char* enc = ACompress::Base64_Encode(text.c_str());
        ASSERT_NE(nullptr, enc);
        const std::string encoded = enc;
        ACompress::Base64_Free(&enc);
        ASSERT_EQ(encoded.size(), (n + 2) / 3 * 4) << n;
        const Decoded bytes = Decode(encoded);
        ASSERT_EQ(ReferenceDecode(encoded), bytes) << n;
        EXPECT_EQ(text, std::string(bytes.begin(), bytes.begin() + n));
    }
}

// Faults: the vector path's classifier takes some byte value for an alphabet character or
// the reverse; the group path misses a foreign character inside a group or decodes past it;
// the last partial group writes past 3n/4 + 1 bytes (ASan) or drops bytes that fit.
TEST(Base64Codec, EveryByteValueAtEveryPlaceDecodesLikeTheReference) {
    std::mt19937 rng(9);
    for (std::size_t n : {1, 2, 3, 4, 5, 6, 7, 9, 15, 16, 17, 31, 32, 33, 35, 48, 63, 64, 67}) {
        std::string base(n, 'A');
        for (auto& c : base) c = kAlphabet[rng() % 64];
        for (std::size_t k = 0; k < n; ++k)
            for (int b = 1; b < 256; ++b) {
                std::string text = base;
                text[k] = static_cast<char>(b);
                ASSERT_EQ(ReferenceDecode(text), Decode(text)) << n << " byte " << b << " at " << k;
            }
    }
}

}  // namespace
