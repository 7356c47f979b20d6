// Base64_Decode on arbitrary text: it may read only up to the terminating zero and write only
// its 3n/4 + 1 result bytes.
#include <cstdint>
#include <cstring>
#include <memory>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto text = std::make_unique<char[]>(size + 1);
    std::memcpy(text.get(), data, size);
    text[size] = '\0';
    char* r = ACompress::Base64_Decode(text.get());
    const std::size_t n = std::strlen(text.get());
    // Touch every byte of the promised size, so a short allocation shows.
    volatile char sink = 0;
    for (std::size_t i = 0; i < 3 * n / 4 + 1; ++i) sink = static_cast<char>(sink ^ r[i]);
    ACompress::Base64_Free(&r);
    return 0;
}
