// Inputs of the Base64 benchmarks, the same for kxbase and every peer: the 64 KiB mixed buffer
// of rle_pages.h as text (its zero bytes turned into 1, since the codec takes zero-terminated
// text) and a short 100-byte text, with their Base64 forms (multiples of 3 bytes, so the
// padded and unpadded encodings are the same text).
#pragma once

#include <cstdint>
#include <string>

#include "rle_pages.h"

namespace kxbench {

inline const std::string& Base64Text(int which) {
    static std::string texts[2];
    std::string& t = texts[which];
    if (t.empty()) {
        const auto& m = Mixed64K();
        t.assign(m.begin(), m.begin() + (which == 0 ? 65535 : 99));
        for (char& c : t)
            if (c == 0) c = 1;
    }
    return t;
}

inline const std::string& Base64Encoded(int which) {
    static std::string enc[2];
    static const char kAlphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string& e = enc[which];
    if (e.empty()) {
        const std::string& t = Base64Text(which);
        for (std::size_t i = 0; i < t.size(); i += 3) {
            const std::uint32_t v = std::uint32_t(std::uint8_t(t[i])) << 16 |
                                    std::uint32_t(std::uint8_t(t[i + 1])) << 8 |
                                    std::uint8_t(t[i + 2]);
            for (int k = 18; k >= 0; k -= 6) e += kAlphabet[(v >> k) & 63];
        }
    }
    return e;
}

inline const char* Base64Name(int which) {
    return which == 0 ? "text64K" : "text99";
}

}  // namespace kxbench
