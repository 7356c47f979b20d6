// Base64_Encode then Base64_Decode on arbitrary text (up to its first zero byte): the encoded
// text has 4 * ceil(n / 3) alphabet characters, and decoding gives the text back followed by
// zero bytes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <kxbase/compress/compress.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto text = std::make_unique<char[]>(size + 1);
    std::memcpy(text.get(), data, size);
    text[size] = '\0';
    const std::size_t n = std::strlen(text.get());
    char* enc = ACompress::Base64_Encode(text.get());
    if (!enc) std::abort();
    const std::size_t m = std::strlen(enc);
    if (m != (n + 2) / 3 * 4 ||
        std::strspn(enc, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/") != m)
        std::abort();
    char* dec = ACompress::Base64_Decode(enc);
    if (!dec || std::memcmp(dec, text.get(), n) != 0) std::abort();
    for (std::size_t i = n; i < 3 * m / 4 + 1; ++i)
        if (dec[i] != 0) std::abort();
    ACompress::Base64_Free(&enc);
    ACompress::Base64_Free(&dec);
    return 0;
}
