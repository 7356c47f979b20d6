// Fuzz round trip: Comp_RLE/UnComp_RLE on arbitrary bytes, and Pack/UnPack at each depth on
// arbitrary lines. Compression into the documented bound must succeed, restore the input
// exactly, and windows must match the whole line.
#include <cstdint>
#include <cstring>
#include <vector>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    static const int kDepths[] = {1, 2, 4, 8, 24};
    const int depth = kDepths[data[0] % 5];
    std::vector<BYTE> in(data + 1, data + size);
    ULONG n = static_cast<ULONG>(in.size());

    {
        std::vector<BYTE> z(ACompress::RleCompressBound(n));
        ULONG len = 0;
        if (!ACompress::Comp_RLE(in.data(), n, z.data(), static_cast<ULONG>(z.size()), len))
            __builtin_trap();
        std::vector<BYTE> back(n);
        ULONG blen = 0;
        if (!ACompress::UnComp_RLE(z.data(), len, back.data(), n, blen) || blen != n || back != in)
            __builtin_trap();
    }

    // Pixel values in the depth's range; 24-bit lines are whole pixels.
    if (depth == 24) n -= n % 3;
    if ((depth == 8 && n < 2) || n == 0) return 0;
    in.resize(n);
    for (auto& b : in) {
        if (depth == 1) b &= 1;
        if (depth == 2) b &= 3;
        if (depth == 4) b &= 15;
    }
    std::vector<BYTE> z(ACompress::PackBound(n, depth));
    ULONG len = 0;
    if (!ACompress::Pack(in.data(), n, depth, z.data(), static_cast<ULONG>(z.size()), len))
        __builtin_trap();
    z.resize(len);
    const ULONG pb = depth == 24 ? 3 : 1, total = n / pb;
    std::vector<BYTE> back(n);
    if (!ACompress::UnPack(z.data(), len, total, depth, back.data()) || back != in)
        __builtin_trap();
    const ULONG start = data[0] % total, count = 1 + (data[size - 1] % (total - start));
    std::vector<BYTE> win(pb * count);
    if (!ACompress::UnPack(z.data(), len, total, depth, start, count, win.data()) ||
        std::memcmp(win.data(), in.data() + pb * start, pb * count) != 0)
        __builtin_trap();
    return 0;
}
