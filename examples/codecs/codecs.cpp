// The raster codecs with their worst-case bounds: size every buffer from the bound the
// header gives, and compression and decompression never fail for lack of room.
#include <cstdio>
#include <cstring>
#include <vector>

#include <kxbase/compress.h>

int main() {
    // A raster line with long runs and some noise.
    std::vector<BYTE> line(4000);
    for (std::size_t i = 0; i < line.size(); ++i)
        line[i] = static_cast<BYTE>(i < 3000 ? (i / 500) * 40 : (i * 7919) % 251);
    const ULONG n = static_cast<ULONG>(line.size());

    // LZW: LzwCompressBound(n) bytes always hold the stream (inputs of at least 6 bytes);
    // the decoder needs LzwDecompressCapacity(n), a few bytes more than the original.
    std::vector<BYTE> lzw(ACompress::LzwCompressBound(n));
    ULONG lzwLen = 0;
    if (!ACompress::Comp_LZW(line.data(), n, lzw.data(), static_cast<ULONG>(lzw.size()), lzwLen))
        return 1;
    std::vector<BYTE> back(ACompress::LzwDecompressCapacity(n));
    ULONG backLen = 0;
    if (!ACompress::UnComp_LZW(lzw.data(), lzwLen, back.data(), static_cast<ULONG>(back.size()),
                               backLen) ||
        backLen != n || std::memcmp(back.data(), line.data(), n) != 0)
        return 1;
    std::printf("LZW: %u -> %u bytes (bound %zu)\n", n, lzwLen, lzw.size());

    // General run-length: RleCompressBound for the stream, RleExpandBound (or the known
    // original length) for the way back.
    std::vector<BYTE> rle(ACompress::RleCompressBound(n));
    ULONG rleLen = 0;
    if (!ACompress::Comp_RLE(line.data(), n, rle.data(), static_cast<ULONG>(rle.size()), rleLen))
        return 1;
    std::vector<BYTE> restored(n);
    ULONG restoredLen = 0;
    if (!ACompress::UnComp_RLE(rle.data(), rleLen, restored.data(), n, restoredLen) ||
        restored != line)
        return 1;
    std::printf("RLE: %u -> %u bytes (bound %zu)\n", n, rleLen, rle.size());

    // A 1-bit line (one byte per pixel, 0 or 1) in the packed line format: PackBound gives
    // the capacity per depth; UnPack restores the whole line of n pixels.
    std::vector<BYTE> bits(n);
    for (ULONG i = 0; i < n; ++i) bits[i] = line[i] > 100 ? 1 : 0;
    std::vector<BYTE> packed(ACompress::PackBound(n, 1));
    ULONG packedLen = 0;
    std::vector<BYTE> pixels(n);
    if (!ACompress::Pack(bits.data(), n, 1, packed.data(), static_cast<ULONG>(packed.size()),
                         packedLen) ||
        !ACompress::UnPack(packed.data(), packedLen, n, 1, pixels.data()) || pixels != bits)
        return 1;
    std::printf("1-bit pack: %u pixels -> %u bytes (bound %zu)\n", n, packedLen, packed.size());

    // Base64: the result is allocated by the library and released with Base64_Free.
    char* text = ACompress::Base64_Encode("kxBaseCommon");
    if (!text) return 1;
    std::printf("Base64: %s\n", text);
    const bool ok = std::strcmp(text, "a3hCYXNlQ29tbW9u") == 0;
    ACompress::Base64_Free(&text);
    return ok ? 0 : 1;
}
