// Fuzz: the 1- and 2-bit line decoders (UnPack whole and windowed, with arbitrary total,
// start and count), the element lookup and the run reader on arbitrary streams. A windowed
// restore that succeeds must agree with the whole-line restore.
#include <cstdint>
#include <cstring>
#include <vector>

#include <kxbase/compress/compress.h>

namespace {
struct Access : ACompress {
    using ACompress::GetLoc_RLE1;
    using ACompress::GetLoc_RLE2;
    using ACompress::UnPackSeg1;
    using ACompress::UnPackSeg2;
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 7) return 0;
    const int depth = data[0] & 1 ? 2 : 1;
    const ULONG total = (data[1] | data[2] << 8) % 8192;
    const ULONG start = (data[3] | data[4] << 8) % 8193;
    const ULONG count = (data[5] | data[6] << 8) % 8193;
    std::vector<BYTE> src(data + 7, data + size);
    const ULONG srcLen = static_cast<ULONG>(src.size());

    std::vector<BYTE> whole(total + (total == 0));
    const int wok = ACompress::UnPack(src.data(), srcLen, total, depth, whole.data());
    if (count > 0) {
        std::vector<BYTE> win(count);
        const int ok =
            ACompress::UnPack(src.data(), srcLen, total, depth, start, count, win.data());
        // Both decoders agree wherever the whole line was decoded in full.
        if (ok && wok && depth == 2 && std::memcmp(win.data(), whole.data() + start, count) != 0)
            __builtin_trap();
    }
    ULONG off = 0, bytes = 0, inside = 0, pixels = 0;
    const int found =
        depth == 1
            ? Access::GetLoc_RLE1(start, total, src.data(), srcLen, &off, &bytes, &inside, &pixels)
            : Access::GetLoc_RLE2(start, total, src.data(), srcLen, &off, &bytes, &inside, &pixels);
    if (found) {
        if (off + bytes > srcLen) __builtin_trap();
        BYTE v = 0;
        ULONG c = 0;
        if (depth == 1)
            Access::UnPackSeg1(src.data(), off, bytes, v, c, data[0] & 2);
        else
            Access::UnPackSeg2(src.data(), off, bytes, v, c, data[0] & 2);
    }
    return 0;
}
