// Packing an expanded row into bits by hand, independently of the tool and the library.
#pragma once

#include <cstdint>
#include <vector>

namespace kxtest {

inline std::vector<std::uint8_t> PackRow(const std::vector<std::uint8_t>& expanded,
                                         std::uint32_t width, int depth) {
    if (depth >= 8) return expanded;
    std::vector<std::uint8_t> out((width * static_cast<std::uint32_t>(depth) + 7) / 8, 0);
    const int perByte = 8 / depth;
    for (std::uint32_t x = 0; x < width; ++x) {
        const int shift =
            8 - depth * (static_cast<int>(x % static_cast<std::uint32_t>(perByte)) + 1);
        out[x / static_cast<std::uint32_t>(perByte)] |=
            static_cast<std::uint8_t>(expanded[x] << shift);
    }
    return out;
}

}  // namespace kxtest
