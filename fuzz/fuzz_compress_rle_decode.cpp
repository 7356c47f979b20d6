// Fuzz: every run-length decoder on arbitrary streams, whole and windowed, with arbitrary
// line sizes and windows. Output buffers have exactly the size the contract names, so ASan
// reports any write outside them; the source is an exact-size copy for over-reads.
#include <cstdint>
#include <cstring>
#include <vector>

#include <kxbase/compress/compress.h>

namespace {
struct Access : ACompress {
    using ACompress::GetLoc_RLE24;
    using ACompress::GetLoc_RLE4;
    using ACompress::GetLoc_RLE8;
};

ULONG Read16(const uint8_t*& p) {
    const ULONG v = p[0] | p[1] << 8;
    p += 2;
    return v;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 7) return 0;
    const uint8_t* p = data;
    const int depth = (*p++ % 3 == 0) ? 4 : (data[0] % 3 == 1 ? 8 : 24);
    const ULONG total = Read16(p) % 4096;
    const ULONG start = Read16(p) % 4097;
    const ULONG count = Read16(p) % 4097;
    std::vector<BYTE> src(p, data + size);
    const ULONG srcLen = static_cast<ULONG>(src.size());
    const ULONG pb = depth == 24 ? 3 : 1;

    // General byte format: any capacity.
    {
        std::vector<BYTE> out(total);
        ULONG len = 0;
        if (ACompress::UnComp_RLE(src.data(), srcLen, out.data(), total, len) && len > total)
            __builtin_trap();
    }
    // A buffer of the documented bound never fails for capacity: only cut records fail.
    {
        std::vector<BYTE> out(ACompress::RleExpandBound(srcLen) + 1);
        ULONG len = 0;
        const int ok = ACompress::UnComp_RLE(src.data(), srcLen, out.data(),
                                             static_cast<ULONG>(out.size()), len);
        bool cut = false;
        for (ULONG pos = 0; pos < srcLen && !cut;) {
            if (srcLen - pos < 2) {
                cut = true;
            } else if (src[pos] != 0) {
                pos += 2;
            } else {
                cut = srcLen - pos - 2 < src[pos + 1];
                pos += 2 + src[pos + 1];
            }
        }
        if (!ok && !cut && srcLen > 0) __builtin_trap();
    }
    // Whole line.
    {
        std::vector<BYTE> out(pb * total + (total == 0));
        ACompress::UnPack(src.data(), srcLen, total, depth, out.data());
    }
    // Window: the buffer holds count pixels.
    if (count > 0) {
        std::vector<BYTE> out(pb * count);
        ACompress::UnPack(src.data(), srcLen, total, depth, start, count, out.data());
    }
    // Look-ups on their own.
    ULONG a = 0, b = 0, c = 0;
    Access::GetLoc_RLE4(start, total, src.data(), srcLen, &a, &b);
    Access::GetLoc_RLE8(start, total, src.data(), srcLen, &a, &b, &c);
    Access::GetLoc_RLE24(start, total, src.data(), srcLen, &a, &b);
    return 0;
}
