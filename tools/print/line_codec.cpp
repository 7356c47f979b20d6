#include "line_codec.h"

#include <cstring>

#include <zlib.h>

#include <kxbase/compress/compress.h>

#include "page.h"
#include "row_bits.h"

namespace kxprint {

bool ParseCodec(const std::string& text, Codec& codec) {
    if (text == "pack") {
        codec = Codec::Pack;
        return true;
    }
    if (text == "lzw") {
        codec = Codec::Lzw;
        return true;
    }
    return false;
}

std::string CodecName(Codec codec, int depth) {
    return codec == Codec::Lzw ? std::string("lzw") : "pack" + std::to_string(depth);
}

std::uint32_t Crc32(const std::uint8_t* data, std::size_t n) {
    uLong crc = crc32(0L, Z_NULL, 0);
    while (n > 0) {
        const auto chunk = static_cast<uInt>(n > (1u << 30) ? (1u << 30) : n);
        crc = crc32(crc, data, chunk);
        data += chunk;
        n -= chunk;
    }
    return static_cast<std::uint32_t>(crc);
}

LineEncoder::LineEncoder(std::uint32_t width, int depth, Codec codec)
    : m_width(width),
      m_expandedBytes(width * static_cast<std::uint32_t>(ExpandedBytesPerPixel(depth))),
      m_packedBytes(PackedRowBytes(width, depth)),
      m_depth(depth),
      m_codec(codec) {
    m_bound = static_cast<std::uint32_t>(codec == Codec::Lzw
                                             ? ACompress::LzwCompressBound(m_packedBytes)
                                             : ACompress::PackBound(m_expandedBytes, depth));
    if (depth < 8) m_scratch.resize(m_packedBytes);
}

bool LineEncoder::Encode(const std::uint8_t* expanded, std::uint8_t* dst, std::uint32_t& len,
                         std::uint32_t& crc) {
    ULONG n = 0;
    if (m_codec == Codec::Pack &&
        !ACompress::Pack(expanded, m_expandedBytes, m_depth, dst, m_bound, n))
        return false;
    if (m_depth < 8) {
        PackRowBits(expanded, m_width, m_depth, m_scratch.data());
        m_packed = m_scratch.data();
    } else {
        m_packed = expanded;
    }
    if (m_codec == Codec::Lzw && !ACompress::Comp_LZW(m_packed, m_packedBytes, dst, m_bound, n))
        return false;
    len = n;
    crc = Crc32(m_packed, m_packedBytes);
    return true;
}

LineDecoder::LineDecoder(std::uint32_t width, int depth, Codec codec)
    : m_width(width),
      m_expandedBytes(width * static_cast<std::uint32_t>(ExpandedBytesPerPixel(depth))),
      m_packedBytes(PackedRowBytes(width, depth)),
      m_depth(depth),
      m_codec(codec) {
    // The LZW decoder keeps a few bytes spare behind what it writes.
    m_packed.resize(static_cast<std::size_t>(ACompress::LzwDecompressCapacity(m_packedBytes)));
    if (codec == Codec::Pack && depth < 8) m_expanded.resize(m_expandedBytes);
}

const std::uint8_t* LineDecoder::Decode(const std::uint8_t* stream, std::uint32_t len,
                                        std::string& error) {
    if (len == 0) {
        error = "empty line stream";
        return nullptr;
    }
    if (m_codec == Codec::Lzw) {
        ULONG n = 0;
        if (!ACompress::UnComp_LZW(stream, len, m_packed.data(),
                                   static_cast<ULONG>(m_packed.size()), n)) {
            error = "the LZW stream does not decode";
            return nullptr;
        }
        if (n != m_packedBytes) {
            error = "the LZW stream holds " + std::to_string(n) + " bytes, the row " +
                    std::to_string(m_packedBytes);
            return nullptr;
        }
        return m_packed.data();
    }
    if (m_depth >= 8) {
        if (!ACompress::UnPack(stream, len, m_width, m_depth, m_packed.data())) {
            error = "the run-length stream does not decode to one row";
            return nullptr;
        }
        return m_packed.data();
    }
    // The 1-bit decoder also accepts a stream that ends before the row does and leaves the
    // rest of the row as it was. It writes only 0 and 1, and left to right, so a 2 in the
    // last pixel that survives the call marks a stream cut short.
    if (m_depth == 1) m_expanded[m_width - 1] = 2;
    if (!ACompress::UnPack(stream, len, m_width, m_depth, m_expanded.data()) ||
        (m_depth == 1 && m_expanded[m_width - 1] == 2)) {
        error = "the packed stream does not decode to one row";
        return nullptr;
    }
    PackRowBits(m_expanded.data(), m_width, m_depth, m_packed.data());
    return m_packed.data();
}

}  // namespace kxprint
