// Bench data for the run-length, packing and zoom benchmarks: a band of an A4 page at 720 DPI
// (5953 pixels per line) as 1-bit print lines, 8-bit contone and 24-bit photo lines. Every
// benchmark of these codecs, ours and the peers', runs on exactly these lines.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace kxbench {

constexpr std::uint32_t kA4Width720 = 5953;  // 8.27 in × 720 dpi
constexpr std::uint32_t kBandLines = 64;

/// kBandLines expanded lines of the given depth (1, 8 or 24), one after another; each line
/// is kA4Width720 pixels (three bytes each for 24-bit).
inline const std::vector<std::uint8_t>& Band(int depth) {
    static std::vector<std::uint8_t> bands[25];
    auto& b = bands[depth];
    if (!b.empty()) return b;
    std::mt19937 rng(720);
    const std::uint32_t w = kA4Width720, pb = depth == 24 ? 3 : 1;
    b.resize(std::size_t{w} * pb * kBandLines);
    for (std::uint32_t y = 0; y < kBandLines; ++y) {
        std::uint8_t* l = &b[std::size_t{y} * w * pb];
        if (depth == 1) {  // text: margins, word strokes, gaps, a rule every 16 lines
            std::uint32_t x = w / 12;
            while (x < w - w / 12) {
                const std::uint32_t stroke = y % 16 == 0 ? 3000 : 1 + rng() % 7;
                for (std::uint32_t k = 0; k < stroke && x + k < w; ++k) l[x + k] = 1;
                x += stroke + 1 + rng() % (rng() % 8 == 0 ? 200 : 10);
            }
        } else {
            for (std::uint32_t x = 0; x < w; ++x)
                for (std::uint32_t c = 0; c < pb; ++c) {
                    const double v =
                        128 + 140 * std::sin(x / (60.0 + 17 * c) + y / 9.0) + int(rng() % 3) - 1;
                    // Flat highlights and shadows give the runs a photo has.
                    l[x * pb + c] = static_cast<std::uint8_t>(std::clamp(v, 0.0, 255.0));
                }
        }
    }
    return b;
}

/// 64 KiB of mixed bytes: text, a run-heavy raster stretch and noise.
inline const std::vector<std::uint8_t>& Mixed64K() {
    static std::vector<std::uint8_t> m;
    if (!m.empty()) return m;
    std::mt19937 rng(64);
    const char* text = "The quick brown fox jumps over the lazy dog. 0123456789\n";
    while (m.size() < 65536) {
        switch (rng() % 3) {
            case 0:
                for (const char* t = text; *t; ++t) m.push_back(static_cast<std::uint8_t>(*t));
                break;
            case 1:
                m.insert(m.end(), 50 + rng() % 400, static_cast<std::uint8_t>(rng() % 4));
                break;
            default:
                for (int i = 0; i < 64; ++i) m.push_back(static_cast<std::uint8_t>(rng()));
        }
    }
    m.resize(65536);
    return m;
}

}  // namespace kxbench
