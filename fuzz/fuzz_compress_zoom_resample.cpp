// Fuzz: ResampleLine with arbitrary counts, depths and caller maps (entries at or beyond the
// source count included), and ZoomBits with arbitrary sizes, including enlargements of 2 or
// more. Every buffer has exactly the size its dimensions give, so ASan catches any access
// outside the source or destination.
#include <cstdint>
#include <cstring>
#include <vector>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 8) return 0;
    static const int kDepths[] = {1, 2, 4, 8, 24, 16, 32, 0};
    const int depth = kDepths[data[0] % 8];
    const size_t p = depth == 24 ? 3 : 1;
    const int sc = 1 + data[1] % 200, dc = 1 + data[2] % 200;
    const bool withMap = data[3] & 1;
    const bool inPlace = data[3] & 2;
    std::vector<ULONG> map(dc);
    for (int i = 0; i < dc; ++i) map[i] = data[(4 + i) % size] % (sc + 2);  // some out of range
    {
        std::vector<BYTE> src(p * (inPlace ? std::max(sc, dc) : sc), 7);
        std::vector<BYTE> dst(p * dc);
        BYTE* d = inPlace ? src.data() : dst.data();
        const size_t eq = depth < 9 ? 1 : (depth + 7) / 8;
        // Equal counts copy eq bytes per pixel: give the buffers that much.
        if (sc == dc) {
            src.resize(eq * sc);
            dst.resize(eq * dc);
            d = inPlace ? src.data() : dst.data();
        }
        ACompress::ResampleLine(src.data(), depth, sc, d, dc, withMap ? map.data() : nullptr);
    }
    {
        const int sw = data[4] % 40, sh = data[5] % 40, dw = data[6] % 90, dh = data[7] % 90;
        const unsigned short zd = static_cast<unsigned short>(kDepths[data[1] % 8]);
        const size_t zp = zd > 8 ? (zd + 7) / 8 : 1;
        std::vector<BYTE> src(zp * sw * sh + 1), dst(zp * dw * dh + 1);
        // +1 keeps data() non-null for empty images; the sizes that matter are exact.
        std::vector<BYTE> s2(zp * sw * sh), d2(zp * dw * dh);
        ACompress::ZoomBits(sw, sh, zd, s2.empty() ? src.data() : s2.data(), dw, dh,
                            d2.empty() ? dst.data() : d2.data());
    }
    return 0;
}
