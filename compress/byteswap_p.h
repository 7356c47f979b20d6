// Byte order helper shared by the codecs, whose streams are big-endian.
#pragma once

#include <bit>
#include <cstdint>

namespace kxbase::detail {

// The codecs read and write multi-byte words with memcpy and fix the order with ByteSwap64.
static_assert(std::endian::native == std::endian::little, "the codecs assume a little-endian host");

// Byte order reversal of a 64-bit word.
inline std::uint64_t ByteSwap64(std::uint64_t v) {
#if defined(__GNUC__) || defined(__clang__)
    return __builtin_bswap64(v);
#else
    v = (v >> 32) | (v << 32);
    v = ((v & 0xFFFF0000FFFF0000ull) >> 16) | ((v & 0x0000FFFF0000FFFFull) << 16);
    return ((v & 0xFF00FF00FF00FF00ull) >> 8) | ((v & 0x00FF00FF00FF00FFull) << 8);
#endif
}

}  // namespace kxbase::detail
