// Raster lines for the run-length and packing tests: what printers actually send.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace kxtest {

using Line = std::vector<std::uint8_t>;

/// A 1-bit print line (one byte per pixel, 0 = white): long white margins and gaps, word
/// strokes of a few pixels, an occasional rule.
inline Line PrintLine1(std::uint32_t width, std::uint32_t seed) {
    std::mt19937 rng(seed);
    Line l(width, 0);
    std::uint32_t x = width / 12;
    while (x < width - width / 12) {
        const std::uint32_t stroke = 1 + rng() % (rng() % 16 == 0 ? 400 : 6);
        for (std::uint32_t k = 0; k < stroke && x + k < width; ++k) l[x + k] = 1;
        x += stroke + 1 + rng() % (rng() % 8 == 0 ? 300 : 9);
    }
    return l;
}

/// A halftone line: an ordered-dither threshold of a slow ramp (levels 0..levels-1), so that
/// dots, runs and alternations all occur.
inline Line Halftone(std::uint32_t width, std::uint32_t levels, std::uint32_t seed) {
    static const int kBayer[8] = {0, 4, 2, 6, 1, 5, 3, 7};
    std::mt19937 rng(seed);
    Line l(width);
    for (std::uint32_t x = 0; x < width; ++x) {
        const double tone = 0.5 + 0.5 * std::sin(x / 97.0 + seed) + (rng() % 7) / 100.0;
        const double v = tone * (levels - 1) + (kBayer[x % 8] + 0.5) / 8.0 - 0.5;
        l[x] = static_cast<std::uint8_t>(std::min<double>(levels - 1, std::max(0.0, v + 0.5)));
    }
    return l;
}

/// A 24-bit photo line: smooth colour with sensor noise, flat highlights clipped to white.
inline Line Photo24(std::uint32_t pixels, std::uint32_t seed) {
    std::mt19937 rng(seed);
    Line l(3 * pixels);
    for (std::uint32_t x = 0; x < pixels; ++x)
        for (int c = 0; c < 3; ++c) {
            const double v = 128 + 150 * std::sin(x / (40.0 + 13 * c) + seed) + int(rng() % 5) - 2;
            l[3 * x + c] = static_cast<std::uint8_t>(std::min(255.0, std::max(0.0, v)));
        }
    return l;
}

/// Pixels that never repeat: the worst case of every run format (v alternates between a, b).
inline Line Alternating(std::uint32_t bytes, std::uint32_t pixelBytes, std::uint8_t a,
                        std::uint8_t b) {
    Line l(bytes);
    for (std::uint32_t i = 0; i < bytes; ++i) l[i] = (i / pixelBytes) % 2 ? b : a;
    return l;
}

}  // namespace kxtest
