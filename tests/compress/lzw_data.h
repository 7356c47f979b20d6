// Test inputs for the LZW tests: raster-like lines and adversarial byte patterns.
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

// 1-bit print lines packed 8 pixels a byte: white paper with a few strokes and a rule.
inline Bytes PrintLines1Bit(int widthBytes, int lines, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes out;
    for (int y = 0; y < lines; ++y) {
        Bytes line(widthBytes, 0x00);
        if (y % 17 == 0)
            std::fill(line.begin() + widthBytes / 8, line.end() - widthBytes / 8, 0xFF);
        for (int k = 0; k < 6; ++k) {
            const int at = static_cast<int>(rng() % widthBytes);
            for (int i = at; i < at + 3 && i < widthBytes; ++i)
                line[i] = static_cast<std::uint8_t>(rng() | 0x81);
        }
        out.insert(out.end(), line.begin(), line.end());
    }
    return out;
}

// Ordered-dither halftone of a slow ramp: short repeating patterns with noise.
inline Bytes Halftone(std::size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes out(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint8_t pattern = (i / 7) % 2 ? 0xAA : 0x55;
        out[i] = rng() % 16 == 0 ? static_cast<std::uint8_t>(rng()) : pattern;
    }
    return out;
}

// 24-bit RGB "photo": smooth gradients with sensor noise.
inline Bytes Photo24(int width, int lines, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes out;
    for (int y = 0; y < lines; ++y)
        for (int x = 0; x < width; ++x) {
            out.push_back(static_cast<std::uint8_t>(x * 255 / width + rng() % 4));
            out.push_back(static_cast<std::uint8_t>(y * 3 + rng() % 3));
            out.push_back(static_cast<std::uint8_t>(128 + (x ^ y) % 32));
        }
    return out;
}

inline Bytes Random(std::size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes out(n);
    for (auto& b : out) b = static_cast<std::uint8_t>(rng());
    return out;
}

inline Bytes Run(std::size_t n, std::uint8_t v) {
    return Bytes(n, v);
}

inline Bytes Alternating(std::size_t n) {
    Bytes out(n);
    for (std::size_t i = 0; i < n; ++i) out[i] = i % 2 ? 0xFF : 0x00;
    return out;
}

// Every byte value in turn, repeated: no two-byte string repeats within 65536 bytes.
inline Bytes AllValues(std::size_t n) {
    Bytes out(n);
    for (std::size_t i = 0; i < n; ++i) out[i] = static_cast<std::uint8_t>(i + i / 256);
    return out;
}

inline Bytes Text(std::size_t n) {
    static const char kWords[] = "colour printer job dots halftone raster page band 720 dpi ";
    Bytes out;
    while (out.size() < n) out.insert(out.end(), kWords, kWords + sizeof(kWords) - 1);
    out.resize(n);
    return out;
}

// The inputs every round-trip and bound test runs over.
inline std::vector<Sample> Samples() {
    return {
        {"print 1-bit, 6 lines of 7016 px", PrintLines1Bit(877, 6, 1)},
        {"halftone noise 20000", Halftone(20000, 2)},
        {"24-bit photo 300x20", Photo24(300, 20, 3)},
        {"random 6 bytes", Random(6, 4)},
        {"random 70000 (clear codes)", Random(70000, 5)},
        {"run of 100000 zeros", Run(100000, 0)},
        {"run of 9 ones", Run(9, 1)},
        {"alternating 30000", Alternating(30000)},
        {"all byte values 70000", AllValues(70000)},
        {"text 65536", Text(65536)},
    };
}

}  // namespace lzwtest
