// Inputs of the LZW benchmarks, the same for kxbase and every peer: the A4 band at 720 DPI of
// rle_pages.h as packed 1-bit print lines (8 pixels a byte, as a printer stores them), 8-bit
// contone and 24-bit photo lines, and the 64 KiB mixed buffer. Each is compressed as one
// buffer (one TIFF strip for libtiff).
#pragma once

#include <cstdint>
#include <vector>

#include "rle_pages.h"

namespace kxbench {

enum LzwInput { kLzw1Bit, kLzw8Bit, kLzw24Bit, kLzwMixed };

inline const std::vector<std::uint8_t>& LzwData(int which) {
    static std::vector<std::uint8_t> packed;
    switch (which) {
        case kLzw1Bit:
            if (packed.empty()) {
                const auto& b = Band(1);
                packed.assign((b.size() + 7) / 8, 0);
                for (std::size_t i = 0; i < b.size(); ++i)
                    if (b[i]) packed[i / 8] |= static_cast<std::uint8_t>(0x80 >> (i % 8));
            }
            return packed;
        case kLzw8Bit:
            return Band(8);
        case kLzw24Bit:
            return Band(24);
        default:
            return Mixed64K();
    }
}

inline const char* LzwName(int which) {
    static const char* names[] = {"1bit_band", "8bit_band", "24bit_band", "mixed64K"};
    return names[which];
}

}  // namespace kxbench
