// Base64 text codec: standard alphabet, zero-byte padding (which encodes as "A"), no "="
// and no line breaks; the decoder translates up to the first foreign character.
//
// Both directions work on whole groups: with SSSE3 sixteen characters at a time, otherwise
// through lookup tables built at compile time (the encoder turns 12 input bits into two
// characters with one look-up, the decoder turns four characters into 24 bits with four
// look-ups whose OR also flags a foreign character). The tails always take the table path.
#include <kxbase/compress/compress.h>

#include <array>
#include <cstring>
#include <new>

#include "compress/byteswap_p.h"

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#endif

namespace kxbase::detail {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Two characters for each 12-bit value, first character in the low byte (memory order).
constexpr std::array<std::uint16_t, 4096> MakePairs() {
    std::array<std::uint16_t, 4096> t{};
    for (unsigned v = 0; v < 4096; ++v)
        t[v] = static_cast<std::uint16_t>(static_cast<BYTE>(kAlphabet[v >> 6]) |
                                          (static_cast<BYTE>(kAlphabet[v & 63]) << 8));
    return t;
}
constexpr auto kPairs = MakePairs();

// Character k of a group (0-3) mapped to its 6 bits at their place in the 24-bit group
// value; characters outside the alphabet map to kForeign.
constexpr std::uint32_t kForeign = 0x01000000u;
constexpr std::array<std::array<std::uint32_t, 256>, 4> MakeDecode() {
    std::array<std::array<std::uint32_t, 256>, 4> t{};
    for (auto& row : t) row.fill(kForeign);
    for (unsigned i = 0; i < 64; ++i) {
        const auto ch = static_cast<BYTE>(kAlphabet[i]);
        for (unsigned k = 0; k < 4; ++k) t[k][ch] = i << (18 - 6 * k);
    }
    return t;
}
constexpr auto kDecode = MakeDecode();

inline void PutGroup(BYTE* out, std::uint32_t v) {
    out[0] = static_cast<BYTE>(v >> 16);
    out[1] = static_cast<BYTE>(v >> 8);
    out[2] = static_cast<BYTE>(v);
}

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
// SSSE3 paths, chosen at run time: 12 bytes to 16 characters and back per step. The encoder
// spreads each 3-byte group over a 32-bit lane, cuts out the four 6-bit values with two
// multiplications and maps them to the alphabet through a 16-entry offset table; the decoder
// classifies each character by its two nibbles (any foreign character stops the vector path
// and leaves the block to the scalar code) and merges the 6-bit values with two multiply-adds.

__attribute__((target("ssse3"))) std::size_t EncodeSsse3(const BYTE* in, std::size_t n, char* out) {
    std::size_t i = 0;
    const __m128i spread = _mm_set_epi8(10, 11, 9, 10, 7, 8, 6, 7, 4, 5, 3, 4, 1, 2, 0, 1);
    const __m128i offsets =
        _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                      '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
    for (; i + 16 <= n; i += 12, out += 16) {
        __m128i v =
            _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i)), spread);
        const __m128i hi = _mm_mulhi_epu16(_mm_and_si128(v, _mm_set1_epi32(0x0fc0fc00)),
                                           _mm_set1_epi32(0x04000040));
        const __m128i lo = _mm_mullo_epi16(_mm_and_si128(v, _mm_set1_epi32(0x003f03f0)),
                                           _mm_set1_epi32(0x01000010));
        const __m128i idx = _mm_or_si128(hi, lo);  // one 6-bit value per byte
        __m128i sel = _mm_subs_epu8(idx, _mm_set1_epi8(51));
        sel = _mm_or_si128(
            sel, _mm_and_si128(_mm_cmpgt_epi8(_mm_set1_epi8(26), idx), _mm_set1_epi8(13)));
        v = _mm_add_epi8(_mm_shuffle_epi8(offsets, sel), idx);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), v);
    }
    return i;
}

// Decodes 16 characters to 12 bytes per step while the text has 16 more characters and the
// result 16 more bytes; returns the characters consumed (a multiple of 16).
__attribute__((target("ssse3"))) std::size_t DecodeSsse3(const BYTE* in, std::size_t n, BYTE* out,
                                                         const BYTE* end) {
    const __m128i lutLo = _mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
                                        0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A);
    const __m128i lutHi = _mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10,
                                        0x10, 0x10, 0x10, 0x10, 0x10, 0x10);
    const __m128i lutRoll = _mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m128i mask2F = _mm_set1_epi8(0x2f);
    const __m128i pack = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    std::size_t i = 0;
    for (; i + 16 <= n && out + 16 <= end; i += 16, out += 12) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
        const __m128i hiNibbles = _mm_and_si128(_mm_srli_epi32(v, 4), mask2F);
        const __m128i lo = _mm_shuffle_epi8(lutLo, _mm_and_si128(v, mask2F));
        const __m128i hi = _mm_shuffle_epi8(lutHi, hiNibbles);
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_and_si128(lo, hi), _mm_setzero_si128())) != 0xFFFF)
            break;  // a foreign character in this block
        const __m128i roll =
            _mm_shuffle_epi8(lutRoll, _mm_add_epi8(_mm_cmpeq_epi8(v, mask2F), hiNibbles));
        v = _mm_add_epi8(v, roll);  // 6-bit values
        v = _mm_maddubs_epi16(v, _mm_set1_epi32(0x01400140));
        v = _mm_madd_epi16(v, _mm_set1_epi32(0x00011000));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(v, pack));
    }
    return i;
}

bool HaveSsse3() {
    static const bool have = __builtin_cpu_supports("ssse3");
    return have;
}
#endif

}  // namespace
}  // namespace kxbase::detail

using namespace kxbase::detail;

char* ACompress::Base64_Encode(const char* text) {
    if (!text) return nullptr;
    const auto* in = reinterpret_cast<const BYTE*>(text);
    const std::size_t n = std::strlen(text);
    const std::size_t groups = (n + 2) / 3;
    char* result = new (std::nothrow) char[groups * 4 + 1];
    if (!result) return nullptr;
    char* out = result;
    const std::size_t whole = n / 3;
    std::size_t g = 0;
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
    if (HaveSsse3()) {
        g = EncodeSsse3(in, n, out) / 3;
        in += 3 * g;
        out += 4 * g;
    }
#endif
    // Six bytes at a time through one 8-byte load (the text's terminator and the bytes after
    // the six keep the load inside the text), eight characters through one 8-byte store.
    for (; g + 2 < whole; g += 2, in += 6, out += 8) {
        std::uint64_t w;
        std::memcpy(&w, in, 8);
        w = ByteSwap64(w);
        const auto v1 = static_cast<std::uint32_t>(w >> 40);
        const auto v2 = static_cast<std::uint32_t>(w >> 16) & 0xFFFFFFu;
        const std::uint64_t chars =
            std::uint64_t{kPairs[v1 >> 12]} | std::uint64_t{kPairs[v1 & 0xFFF]} << 16 |
            std::uint64_t{kPairs[v2 >> 12]} << 32 | std::uint64_t{kPairs[v2 & 0xFFF]} << 48;
        std::memcpy(out, &chars, 8);
    }
    for (; g < whole; ++g, in += 3, out += 4) {
        const std::uint32_t v = (std::uint32_t{in[0]} << 16) | (std::uint32_t{in[1]} << 8) | in[2];
        std::memcpy(out, &kPairs[v >> 12], 2);
        std::memcpy(out + 2, &kPairs[v & 0xFFF], 2);
    }
    if (n % 3 != 0) {
        // The text is padded with zero bytes; they encode as "A".
        std::uint32_t v = std::uint32_t{in[0]} << 16;
        if (n % 3 == 2) v |= std::uint32_t{in[1]} << 8;
        std::memcpy(out, &kPairs[v >> 12], 2);
        std::memcpy(out + 2, &kPairs[v & 0xFFF], 2);
        out += 4;
    }
    *out = '\0';
    return result;
}

char* ACompress::Base64_Decode(const char* text) {
    if (!text) return nullptr;
    const auto* in = reinterpret_cast<const BYTE*>(text);
    const std::size_t n = std::strlen(text);
    const std::size_t size = 3 * n / 4 + 1;
    char* result = new (std::nothrow) char[size];
    if (!result) return nullptr;
    auto* out = reinterpret_cast<BYTE*>(result);
    BYTE* const end = out + size;
    std::size_t i = 0;
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
    if (HaveSsse3()) {
        i = DecodeSsse3(in, n, out, end);
        out += i / 4 * 3;
    }
#endif
    // Two groups at a time: eight characters give six bytes, stored as one 8-byte word whose
    // last two bytes the next groups (or the final zero fill) overwrite.
    for (; i + 8 <= n && out + 8 <= end; i += 8, out += 6) {
        const std::uint32_t v1 = kDecode[0][in[i]] | kDecode[1][in[i + 1]] | kDecode[2][in[i + 2]] |
                                 kDecode[3][in[i + 3]];
        const std::uint32_t v2 = kDecode[0][in[i + 4]] | kDecode[1][in[i + 5]] |
                                 kDecode[2][in[i + 6]] | kDecode[3][in[i + 7]];
        if ((v1 | v2) & kForeign) break;
        const std::uint64_t w = ByteSwap64(std::uint64_t{v1} << 40 | std::uint64_t{v2} << 16);
        std::memcpy(out, &w, 8);
    }
    // Whole groups of four alphabet characters.
    for (; i + 4 <= n; i += 4, out += 3) {
        const std::uint32_t v = kDecode[0][in[i]] | kDecode[1][in[i + 1]] | kDecode[2][in[i + 2]] |
                                kDecode[3][in[i + 3]];
        if (v & kForeign) break;
        PutGroup(out, v);
    }
    // The group holding the first foreign character or the end of the text: characters from
    // there on count as zero, and bytes past the result buffer are dropped. Later groups are
    // all zero.
    std::memset(out, 0, static_cast<std::size_t>(end - out));
    if (i < n || n == 0) {
        std::uint32_t v = 0;
        for (std::size_t k = 0; k < 4 && i + k < n; ++k) {
            const std::uint32_t d = kDecode[k][in[i + k]];
            if (d & kForeign) break;
            v |= d;
        }
        BYTE group[3];
        PutGroup(group, v);
        const std::size_t at = static_cast<std::size_t>(out - reinterpret_cast<BYTE*>(result));
        for (std::size_t k = 0; k < 3 && at + k < size; ++k) out[k] = group[k];
    }
    return result;
}

void ACompress::Base64_Free(char** result) {
    if (!result || !*result) return;
    delete[] * result;
    *result = nullptr;
}
