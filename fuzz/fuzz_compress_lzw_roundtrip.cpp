// Comp_LZW then UnComp_LZW on arbitrary bytes, with the documented capacities: compression
// into LzwCompressBound(n) bytes must succeed (n >= 6), and restoring into n + 6 bytes must
// give the input back.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > (1u << 20)) return 0;
    const auto n = static_cast<ULONG>(size);
    auto src = std::make_unique<BYTE[]>(n);
    std::memcpy(src.get(), data, n);
    const auto cap = static_cast<ULONG>(ACompress::LzwCompressBound(n));
    auto stream = std::make_unique<BYTE[]>(cap);
    ULONG len = 0;
    if (ACompress::Comp_LZW(src.get(), n, stream.get(), cap, len) != 1) {
        if (n >= 6) std::abort();  // only inputs of at most 5 bytes may lack code room
        return 0;
    }
    if (len == 0 || len >= cap) std::abort();
    const auto need = static_cast<ULONG>(ACompress::LzwDecompressCapacity(n));
    auto out = std::make_unique<BYTE[]>(need);
    ULONG outLen = 0;
    if (ACompress::UnComp_LZW(stream.get(), len, out.get(), need, outLen) != 1) std::abort();
    if (outLen != n || std::memcmp(out.get(), src.get(), n) != 0) std::abort();
    return 0;
}
