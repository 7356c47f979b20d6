// Fuzz: ExpandBit and ShrinkBit at every depth with arbitrary start and count. Buffers are
// sized exactly as the public header states (depth 1 expands from the byte of the first
// pixel into dst[0 ..]; depths 2 and 4 use absolute positions), so ASan catches any access
// outside them. Shrinking then expanding must give the pixels back.
#include <cstdint>
#include <cstring>
#include <vector>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 6) return 0;
    static const int kDepths[] = {1, 2, 4, 8, 3, 0};
    const int depth = kDepths[data[0] % 6];
    const ULONG start = (data[1] | data[2] << 8) % 4096;
    const ULONG count = (data[3] | data[4] << 8) % 4096;
    std::vector<BYTE> pixels(data + 5, data + size);
    if (count == 0) return 0;
    const ULONG bits = depth == 1 ? 1 : depth == 2 ? 2 : 4;
    const ULONG end = start + count;

    // Expand: depth 1 reads ceil((start % 8 + count) / 8) bytes and writes count.
    if (depth == 1) {
        std::vector<BYTE> src((start % 8 + count + 7) / 8, 0x5A);
        std::vector<BYTE> dst(count);
        ACompress::ExpandBit(src.data(), start, count, 1, dst.data());
    } else {
        std::vector<BYTE> src((end * bits + 7) / 8, 0x5A);
        std::vector<BYTE> dst(end);
        ACompress::ExpandBit(src.data(), start, count, depth, dst.data());
    }
    // Shrink then expand the range.
    if (depth == 1 || depth == 2 || depth == 4) {
        std::vector<BYTE> line(end);
        for (ULONG i = 0; i < end; ++i)
            line[i] = pixels.empty() ? 0 : pixels[i % pixels.size()] & ((1u << bits) - 1);
        std::vector<BYTE> packed((end * bits + 7) / 8, 0);
        ACompress::ShrinkBit(line.data(), start, count, depth, packed.data());
        const bool skipped = depth == 1 && start % 8 != 0 && start / 8 == (end - 1) / 8;
        if (!skipped) {
            std::vector<BYTE> back(end);
            if (depth == 1) {
                std::vector<BYTE> rel(count);
                ACompress::ExpandBit(packed.data() + start / 8, start, count, 1, rel.data());
                if (std::memcmp(rel.data(), line.data() + start, count) != 0) __builtin_trap();
            } else {
                ACompress::ExpandBit(packed.data(), start, count, depth, back.data());
                if (std::memcmp(back.data() + start, line.data() + start, count) != 0)
                    __builtin_trap();
            }
        }
        // In place over the expanded line itself.
        ACompress::ShrinkBit(line.data(), start, count, depth, nullptr);
    }
    return 0;
}
