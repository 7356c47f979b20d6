// One raster row on its way through `kxbase print`: the expanded row (one byte per sample)
// becomes the packed row (the PNG/TIFF layout, whose CRC-32 travels with the row) and the
// row's stream, coded with the run-length format of its depth (ACompress::Pack) or with LZW
// over the packed row (ACompress::Comp_LZW, which is also what a TIFF LZW strip holds).
// The decoder turns a stream back into the packed row.
//
// Thread-safety: one coder per thread; each owns its scratch rows, sized once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kxprint {

enum class Codec : std::uint32_t { Pack = 1, Lzw = 2 };

/// "pack" or "lzw"; false for anything else.
bool ParseCodec(const std::string& text, Codec& codec);
/// "pack1".."pack24" (the run-length format of the depth) or "lzw".
std::string CodecName(Codec codec, int depth);

/// CRC-32 (the zlib/PNG polynomial) of n bytes.
std::uint32_t Crc32(const std::uint8_t* data, std::size_t n);

class LineEncoder {
public:
    LineEncoder(std::uint32_t width, int depth, Codec codec);

    std::uint32_t PackedBytes() const { return m_packedBytes; }
    /// Room one row's stream may need at most.
    std::uint32_t StreamBound() const { return m_bound; }

    /// Codes the expanded row into dst (StreamBound() bytes of room): sets len to the stream
    /// length and crc to the CRC-32 of the packed row. False when the codec refuses the row
    /// (not for rows of a valid page).
    bool Encode(const std::uint8_t* expanded, std::uint8_t* dst, std::uint32_t& len,
                std::uint32_t& crc);
    /// The packed row of the last Encode.
    const std::uint8_t* Packed() const { return m_packed; }

private:
    std::uint32_t m_width, m_expandedBytes, m_packedBytes, m_bound;
    int m_depth;
    Codec m_codec;
    std::vector<std::uint8_t> m_scratch;
    const std::uint8_t* m_packed = nullptr;
};

class LineDecoder {
public:
    LineDecoder(std::uint32_t width, int depth, Codec codec);

    std::uint32_t PackedBytes() const { return m_packedBytes; }
    /// Restores the packed row of a stream. Returns nullptr with a reason in `error` when the
    /// stream does not decode to exactly one row; the row stays valid until the next call.
    const std::uint8_t* Decode(const std::uint8_t* stream, std::uint32_t len, std::string& error);

private:
    std::uint32_t m_width, m_expandedBytes, m_packedBytes;
    int m_depth;
    Codec m_codec;
    std::vector<std::uint8_t> m_expanded, m_packed;
};

}  // namespace kxprint
