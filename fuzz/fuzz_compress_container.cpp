// Fuzz: the container of `kxbase compress` / `kxbase decompress`.
// 1. Arbitrary bytes as a compressed file: decoding must end with Ok or a refusal, never a
//    crash, a read outside the input or an oversized allocation (blocks capped at 4 KiB).
// 2. The same bytes as data: byte 0 picks the codec, bytes 1-2 the width, the rest (made
//    acceptable to the codec) is compressed and restored, and must come back unchanged.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tools/codec_container.h"

namespace codec = kxtool::codec;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string error;
    std::uint64_t written = 0;
    codec::Header header;
    const auto r = codec::Decode(
        codec::MemoryReader(data, size),
        [&](const std::uint8_t*, std::size_t n) {
            written += n;
            return true;
        },
        error, 4096, {}, &header);
    if (r == codec::Result::Ok && written != header.length) __builtin_trap();
    if (r != codec::Result::Ok && r != codec::Result::BadInput) __builtin_trap();
    if (r == codec::Result::BadInput && error.empty()) __builtin_trap();

    if (size < 3) return 0;
    const auto& c = codec::kCodecs[data[0] % (sizeof codec::kCodecs / sizeof codec::kCodecs[0])];
    std::uint32_t width = (data[1] | data[2] << 8) % 2048u;
    if (c.depth != 0 && width == 0) width = 1;
    std::vector<std::uint8_t> in(data + 3, data + size);
    in.resize(in.size() - in.size() % c.pixel);
    for (auto& b : in) {
        if (c.id == codec::Codec::Base64 && b == 0) b = 1;
        if (c.maxValue < 255) b = static_cast<std::uint8_t>(b % (c.maxValue + 1));
    }
    std::vector<std::uint8_t> packed, restored;
    if (codec::Encode(c, width, in.size(), codec::MemoryReader(in.data(), in.size()),
                      codec::VectorWriter(packed), error) != codec::Result::Ok)
        __builtin_trap();
    if (codec::Decode(codec::MemoryReader(packed.data(), packed.size()),
                      codec::VectorWriter(restored), error) != codec::Result::Ok ||
        restored != in)
        __builtin_trap();
    return 0;
}
