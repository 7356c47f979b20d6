// Inputs of the LZW tests: raster-like lines and adversarial byte patterns.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace lzwtest {

using Bytes = std::vector<std::uint8_t>;

struct Sample {
    std::string name;
    Bytes data;
};

// kind: 0 packed 1-bit print lines (white paper, short strokes, a rule every 17 lines of
// 877 bytes), 1 halftone (alternating patterns with noise), 2 24-bit photo (gradients with
// noise), 3 random, 4 one repeated byte, 5 alternating 00/FF, 6 every byte value in turn
// (no two-byte string repeats for 64 KiB), 7 text.
inline Bytes Make(int kind, std::size_t n, unsigned seed = 1) {
    static const char kWords[] = "colour printer job dots halftone raster page band 720 dpi ";
    std::mt19937 rng(seed);
    Bytes out(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t x = i % 877;
        switch (kind) {
            case 0:
                out[i] = (i / 877) % 17 == 0 && x > 100 && x < 777 ? 0xFF
                         : rng() % 97 == 0                         ? 0x81
                                                                   : 0;
                break;
            case 1:
                out[i] = rng() % 16 == 0 ? static_cast<std::uint8_t>(rng())
                         : (i / 7) % 2   ? 0xAA
                                         : 0x55;
                break;
            case 2:
                out[i] =
                    static_cast<std::uint8_t>(i % 3 == 0   ? (i / 3) % 300 * 255 / 300 + rng() % 4
                                              : i % 3 == 1 ? (i / 900) * 3 + rng() % 3
                                                           : 128 + (i / 3) % 32);
                break;
            case 3:
                out[i] = static_cast<std::uint8_t>(rng());
                break;
            case 4:
                out[i] = static_cast<std::uint8_t>(seed);
                break;
            case 5:
                out[i] = i % 2 ? 0xFF : 0x00;
                break;
            case 6:
                out[i] = static_cast<std::uint8_t>(i + i / 256);
                break;
            default:
                out[i] = static_cast<std::uint8_t>(kWords[i % (sizeof(kWords) - 1)]);
                break;
        }
    }
    return out;
}

// The inputs every round-trip and bound test runs over.
inline std::vector<Sample> Samples() {
    return {
        {"print 1-bit, 6 lines of 7016 px", Make(0, 877 * 6)},
        {"halftone noise 20000", Make(1, 20000, 2)},
        {"24-bit photo 300x20", Make(2, 18000, 3)},
        {"random 6 bytes", Make(3, 6, 4)},
        {"random 70000 (clear codes)", Make(3, 70000, 5)},
        {"run of 100000 zeros", Make(4, 100000, 0)},
        {"run of 9 ones", Make(4, 9, 1)},
        {"alternating 30000", Make(5, 30000)},
        {"all byte values 70000", Make(6, 70000)},
        {"text 65536", Make(7, 65536)},
    };
}

}  // namespace lzwtest
