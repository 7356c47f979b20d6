// ResumeDataBit + UnPack_LZW on arbitrary streams, and UnPack_LZW on arbitrary 16-bit codes.
// ResumeDataBit has no capacity argument: the code buffer is exactly the documented
// LzwResumeCodeBound(srcLen) codes, so ASan reports any code written past it.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const ULONG cap = static_cast<ULONG>(data[0] | (data[1] << 8));
    const bool rawCodes = data[2] & 1;
    data += 3;
    size -= 3;
    auto dst = std::make_unique<BYTE[]>(cap);
    ULONG len = 0;
    if (rawCodes) {
        const auto count = static_cast<ULONG>(size / 2);
        auto codes = std::make_unique<WORD[]>(count);
        std::memcpy(codes.get(), data, count * 2);
        ACompress::UnPack_LZW(codes.get(), count, dst.get(), cap, len);
        return 0;
    }
    const auto n = static_cast<ULONG>(size);
    if (n == 0) return 0;
    auto src = std::make_unique<BYTE[]>(n);
    std::memcpy(src.get(), data, n);
    const auto bound = ACompress::LzwResumeCodeBound(n);
    auto codes = std::make_unique<WORD[]>(bound);
    ULONG count = 0;
    if (ACompress::ResumeDataBit(src.get(), n, codes.get(), count) != 1 || count > bound)
        std::abort();
    ACompress::UnPack_LZW(codes.get(), count, dst.get(), cap, len);
    return 0;
}
