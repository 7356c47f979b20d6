// UnComp_LZW on arbitrary streams: it must read only the stream and write only dst[0, dstCap),
// and a success must report a length of 1 (the first byte needs no spare room) or at most
// dstCap - 5 (strings keep 6 bytes spare; the literal after a clear code is tested for 6
// spare bytes before it is written, so it keeps 5).
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    // The first two bytes choose the capacity (up to 64 KiB), the rest is the stream.
    const ULONG cap = static_cast<ULONG>(data[0] | (data[1] << 8));
    const auto n = static_cast<ULONG>(size - 2);
    auto src = std::make_unique<BYTE[]>(n);  // exact size: ASan sees any over-read
    std::copy(data + 2, data + size, src.get());
    auto dst = std::make_unique<BYTE[]>(cap);
    ULONG len = 0xFFFFFFFFu;
    const int r = ACompress::UnComp_LZW(src.get(), n, dst.get(), cap, len);
    if (r == 1 && !(len <= cap && (len == 1 || len + 5 <= cap))) std::abort();
    return 0;
}
