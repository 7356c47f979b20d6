// Packing an expanded row (one byte per pixel) into the bits PNG and TIFF store, most
// significant bits first, the last byte padded with zero bits. The 1-bit case moves eight
// pixels per multiplication: it is the hot step of a 1-bit page on both sides of the ring.
#pragma once

#include <cstdint>
#include <cstring>

namespace kxprint {

/// expanded: width bytes, each below 1 << depth (for depth 1: 0 or 1 only); packed: room for
/// (width * depth + 7) / 8 bytes. Depths 8 and 24 are copied as they are (3 bytes a pixel).
inline void PackRowBits(const std::uint8_t* expanded, std::uint32_t width, int depth,
                        std::uint8_t* packed) {
    if (depth >= 8) {
        std::memcpy(packed, expanded, std::size_t{width} * (depth == 24 ? 3u : 1u));
        return;
    }
    std::uint32_t x = 0, o = 0;
    if (depth == 1) {
        // Byte i of the little-endian word lands in bit 7 - i of the top byte of the product;
        // with 0/1 bytes no two partial products meet, so there are no carries.
        for (; x + 8 <= width; x += 8, ++o) {
            std::uint64_t v;
            std::memcpy(&v, expanded + x, 8);
            packed[o] = static_cast<std::uint8_t>((v * 0x8040201008040201ull) >> 56);
        }
    }
    const std::uint32_t perByte = 8u / static_cast<std::uint32_t>(depth);
    for (; x < width; x += perByte, ++o) {
        unsigned byte = 0;
        for (std::uint32_t k = 0; k < perByte; ++k) {
            byte <<= depth;
            if (x + k < width) byte |= expanded[x + k];
        }
        packed[o] = static_cast<std::uint8_t>(byte);
    }
}

}  // namespace kxprint
