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

// kind: 0 packed 1-bit print lines (white paper, sparse dots, a rule every 17 lines of 877
// bytes), 1 halftone (alternating patterns with noise), 2 24-bit photo (gradients with noise),
// 3 random, 4 the byte `seed` repeated, 5 alternating 00/FF, 6 every byte value in turn (no
// two-byte string repeats for 64 KiB), 7 text.
inline Bytes Make(int kind, std::size_t n, unsigned seed = 1) {
    static const char kWords[] = "colour printer job dots halftone raster page band 720 dpi ";
    std::mt19937 rng(seed);
    Bytes out(n);
    for (std::size_t at = 0; at < n; ++at) {
        const auto i = static_cast<unsigned>(at), r = static_cast<unsigned>(rng()), x = i % 877;
        const unsigned photo[] = {(i / 3) % 300 * 255 / 300 + r % 4, (i / 900) * 3 + r % 3,
                                  128 + (i / 3) % 32};
        const bool rule = (i / 877) % 17 == 0 && x > 100 && x < 777;
        const unsigned dots = rule ? 0xFFu : r % 97 == 0 ? 0x81u : 0u;
        const unsigned tone = r % 16 == 0 ? r >> 8 : (i / 7) % 2 ? 0xAAu : 0x55u;
        const unsigned word = static_cast<unsigned char>(kWords[i % (sizeof(kWords) - 1)]);
        const unsigned v[] = {dots,        tone, photo[i % 3], r, seed, i % 2 ? 0xFFu : 0u,
                              i + i / 256, word};
        out[at] = static_cast<std::uint8_t>(v[kind]);
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
