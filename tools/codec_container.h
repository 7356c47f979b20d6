// The container of `kxbase compress` / `kxbase decompress`.
//
// The codec streams carry no length, no line structure and no checksum, so the tool wraps them
// in a container of its own. All integers are little-endian, all sizes fixed:
//
//   offset size  field
//        0    7  magic "KXCODEC"
//        7    1  container version, 1
//        8    1  codec: 1 lzw, 2 rle, 3 rle4, 4 rle8, 5 rle24, 6 pack1, 7 pack2, 8 base64
//        9    3  zero
//       12    4  width: pixels per line for the raster codecs (rle4, rle8, rle24, pack1,
//                pack2), 0 for the byte codecs (lzw, rle, base64)
//       16    4  block length: original bytes per block, 1 .. 64 MiB (a raster line holds
//                width pixels of 1 byte, 3 for rle24)
//       20    8  original length in bytes
//       28    4  CRC-32 of bytes 0-27
//       32       ceil(original length / block length) block records, in order:
//                  4  bits 0-30: stream length; bit 31 set: the block is stored as is
//                  n  the stream (or the stored bytes)
//                every block holds `block length` original bytes except the last, which holds
//                the rest
//      end    4  CRC-32 of the original data (the IEEE polynomial of zlib and PNG)
//
// A block is stored as is only when its codec refuses it (an LZW block of one or two bytes,
// an 8-bit run line of one pixel); a stored block's stream length equals its block length.
// Nothing follows the final checksum.
//
// Everything here is header-only and free of the command-line layer so that the tests and
// the fuzz target use exactly the code of the tool. Failures are reported as text; nothing
// throws except std::bad_alloc.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <kxbase/compress/compress.h>

namespace kxtool::codec {

enum class Codec : std::uint8_t {
    Lzw = 1,
    Rle = 2,
    Rle4 = 3,
    Rle8 = 4,
    Rle24 = 5,
    Pack1 = 6,
    Pack2 = 7,
    Base64 = 8,
};

struct CodecInfo {
    Codec id;
    const char* name;
    int depth;               // depth given to ACompress::Pack/UnPack; 0 for the byte codecs
    std::uint32_t pixel;     // bytes per pixel of an expanded line (raster codecs)
    std::uint32_t maxValue;  // largest byte the codec restores unchanged
};

inline constexpr CodecInfo kCodecs[] = {
    {Codec::Lzw, "lzw", 0, 1, 255},      {Codec::Rle, "rle", 0, 1, 255},
    {Codec::Rle4, "rle4", 4, 1, 15},     {Codec::Rle8, "rle8", 8, 1, 255},
    {Codec::Rle24, "rle24", 24, 3, 255}, {Codec::Pack1, "pack1", 1, 1, 1},
    {Codec::Pack2, "pack2", 2, 1, 3},    {Codec::Base64, "base64", 0, 1, 255},
};

inline const CodecInfo* FindCodec(std::string_view name) {
    for (const auto& c : kCodecs)
        if (name == c.name) return &c;
    return nullptr;
}
inline const CodecInfo* FindCodec(std::uint8_t id) {
    for (const auto& c : kCodecs)
        if (static_cast<std::uint8_t>(c.id) == id) return &c;
    return nullptr;
}

inline constexpr char kMagic[7] = {'K', 'X', 'C', 'O', 'D', 'E', 'C'};
inline constexpr std::uint8_t kVersion = 1;
inline constexpr std::size_t kHeaderSize = 32;
inline constexpr std::uint32_t kStoredBit = 0x80000000u;
// Largest block: keeps every length of the codecs far inside 32 bits (Comp_LZW's working room
// wraps at 1.4 GB) and bounds what a decoder allocates for one block.
inline constexpr std::uint32_t kMaxBlock = 64u << 20;
// Block length of the byte codecs when the caller names none.
inline constexpr std::uint32_t kDefaultBlock = 1u << 20;

// ---- CRC-32 (reflected, polynomial 0xEDB88320, initial and final complement) ----------------

inline constexpr std::array<std::uint32_t, 256> kCrcTable = [] {
    std::array<std::uint32_t, 256> t{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        t[i] = c;
    }
    return t;
}();

// Continues a CRC-32: start with crc 0; Crc32(Crc32(0, a), b) == CRC-32 of a followed by b.
inline std::uint32_t Crc32(std::uint32_t crc, const std::uint8_t* p, std::size_t n) {
    crc = ~crc;
    for (std::size_t i = 0; i < n; ++i) crc = kCrcTable[(crc ^ p[i]) & 0xFF] ^ (crc >> 8);
    return ~crc;
}

// ---- little-endian fields ---------------------------------------------------------------------

inline void Put32(std::uint8_t* p, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}
inline void Put64(std::uint8_t* p, std::uint64_t v) {
    for (int i = 0; i < 8; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}
inline std::uint32_t Get32(const std::uint8_t* p) {
    return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
           std::uint32_t{p[3]} << 24;
}
inline std::uint64_t Get64(const std::uint8_t* p) {
    return std::uint64_t{Get32(p)} | std::uint64_t{Get32(p + 4)} << 32;
}

// ---- the header ---------------------------------------------------------------------------------

struct Header {
    const CodecInfo* codec = nullptr;
    std::uint32_t width = 0;  // pixels per line; 0 for the byte codecs
    std::uint32_t block = 0;  // original bytes per block
    std::uint64_t length = 0;

    std::uint64_t Blocks() const { return block ? (length + block - 1) / block : 0; }
};

// Largest stream the encoder writes for a block of n original bytes (the codec's documented
// worst case); the decoder refuses longer ones before allocating anything.
inline std::uint64_t StreamBound(const CodecInfo& c, std::uint32_t n) {
    switch (c.id) {
        case Codec::Lzw:
            return ACompress::LzwCompressBound(n);
        case Codec::Rle:
            return ACompress::RleCompressBound(n);
        case Codec::Base64:
            return (std::uint64_t{n} + 2) / 3 * 4;
        default:
            return ACompress::PackBound(n, c.depth);
    }
}

// Sets up a header for `length` original bytes. width: pixels per line for the raster codecs
// (required), block length in bytes for the byte codecs (0 picks kDefaultBlock). False with a
// message when the options do not fit the codec.
inline bool MakeHeader(const CodecInfo& c, std::uint32_t width, std::uint64_t length, Header& h,
                       std::string& error) {
    h = Header{&c, 0, 0, length};
    if (c.depth == 0) {
        h.block = width ? width : kDefaultBlock;
        if (h.block > kMaxBlock) {
            error = std::string("--width for ") + c.name + " is a block length of at most " +
                    std::to_string(kMaxBlock) + " bytes";
            return false;
        }
        return true;
    }
    if (width == 0) {
        error = std::string(c.name) + " compresses line by line: give --width PIXELS";
        return false;
    }
    if (std::uint64_t{width} * c.pixel > kMaxBlock) {
        error = "a line of " + std::to_string(width) + " pixels is longer than " +
                std::to_string(kMaxBlock) + " bytes";
        return false;
    }
    if (length % c.pixel != 0) {
        error = std::string(c.name) + " takes " + std::to_string(c.pixel) +
                " bytes per pixel, but the input length " + std::to_string(length) +
                " is not a multiple of it";
        return false;
    }
    h.width = width;
    h.block = width * c.pixel;
    return true;
}

inline std::array<std::uint8_t, kHeaderSize> WriteHeader(const Header& h) {
    std::array<std::uint8_t, kHeaderSize> b{};
    std::memcpy(b.data(), kMagic, sizeof kMagic);
    b[7] = kVersion;
    b[8] = static_cast<std::uint8_t>(h.codec->id);
    Put32(&b[12], h.width);
    Put32(&b[16], h.block);
    Put64(&b[20], h.length);
    Put32(&b[28], Crc32(0, b.data(), 28));
    return b;
}

// Reads and checks a header; false with a message for a foreign or damaged one.
inline bool ReadHeader(const std::uint8_t* b, Header& h, std::string& error) {
    if (std::memcmp(b, kMagic, sizeof kMagic) != 0) {
        error = "not a kxbase compressed file (no KXCODEC signature)";
        return false;
    }
    if (b[7] != kVersion) {
        error = "unsupported container version " + std::to_string(b[7]);
        return false;
    }
    if (Get32(&b[28]) != Crc32(0, b, 28)) {
        error = "damaged file: the header checksum does not match";
        return false;
    }
    h.codec = FindCodec(b[8]);
    h.width = Get32(&b[12]);
    h.block = Get32(&b[16]);
    h.length = Get64(&b[20]);
    const bool reserved = b[9] == 0 && b[10] == 0 && b[11] == 0;
    bool ok = h.codec && reserved && h.block >= 1 && h.block <= kMaxBlock;
    if (ok && h.codec->depth == 0) ok = h.width == 0;
    if (ok && h.codec->depth != 0)
        ok = std::uint64_t{h.width} * h.codec->pixel == h.block && h.length % h.codec->pixel == 0;
    if (!ok) error = "damaged file: the header describes no valid codec or line layout";
    return ok;
}

// ---- blocks -------------------------------------------------------------------------------------

// Checks that the block's bytes are values the codec restores unchanged (the raster codecs
// take one pixel value per byte; Base64 takes text). `offset` is the block's position in the
// input, for the message.
inline bool CheckBlock(const CodecInfo& c, const std::uint8_t* p, std::uint32_t n,
                       std::uint64_t offset, std::string& error) {
    if (c.maxValue == 255 && c.id != Codec::Base64) return true;
    for (std::uint32_t i = 0; i < n; ++i) {
        if (c.id == Codec::Base64 ? p[i] != 0 : p[i] <= c.maxValue) continue;
        char value[8];
        std::snprintf(value, sizeof value, "0x%02X", p[i]);
        if (c.id == Codec::Base64)
            error = "base64 takes text, but the input holds a zero byte at offset " +
                    std::to_string(offset + i);
        else
            error = std::string(c.name) + " takes one byte per pixel of value 0 to " +
                    std::to_string(c.maxValue) + ", but the byte at offset " +
                    std::to_string(offset + i) + " is " + value;
        return false;
    }
    return true;
}

// Appends the record of one block of n bytes (1 .. header block length) to out. The block
// must have passed CheckBlock. Returns false when the codec refused the block and it was
// stored as is.
inline bool EncodeBlock(const Header& h, const std::uint8_t* p, std::uint32_t n,
                        std::vector<std::uint8_t>& out) {
    const CodecInfo& c = *h.codec;
    const std::size_t at = out.size();
    const std::uint64_t bound = StreamBound(c, n);
    out.resize(at + 4 + bound);
    std::uint8_t* dst = out.data() + at + 4;
    ULONG len = 0;
    int ok = 0;
    switch (c.id) {
        case Codec::Lzw:
            ok = ACompress::Comp_LZW(p, n, dst, static_cast<ULONG>(bound), len);
            break;
        case Codec::Rle:
            ok = ACompress::Comp_RLE(p, n, dst, static_cast<ULONG>(bound), len);
            break;
        case Codec::Base64: {
            const std::string text(reinterpret_cast<const char*>(p), n);
            char* enc = ACompress::Base64_Encode(text.c_str());
            if (enc) {
                len = static_cast<ULONG>(std::strlen(enc));
                ok = len == bound;
                if (ok) std::memcpy(dst, enc, len);
                ACompress::Base64_Free(&enc);
            }
            break;
        }
        default:
            ok = ACompress::Pack(p, n, c.depth, dst, static_cast<ULONG>(bound), len);
            break;
    }
    if (ok && len <= bound && len < kStoredBit) {
        Put32(out.data() + at, len);
        out.resize(at + 4 + len);
        return true;
    }
    out.resize(at + 4 + n);
    Put32(out.data() + at, kStoredBit | n);
    std::memcpy(out.data() + at + 4, p, n);
    return false;
}

// Restores one block of n original bytes from its stream into out (n bytes). False when the
// stream does not decode to exactly n bytes.
inline bool DecodeBlock(const CodecInfo& c, const std::uint8_t* s, std::uint32_t len,
                        std::uint32_t n, std::uint8_t* out) {
    if (len == 0) return false;
    ULONG got = 0;
    switch (c.id) {
        case Codec::Lzw: {
            std::vector<std::uint8_t> tmp(ACompress::LzwDecompressCapacity(n));
            if (!ACompress::UnComp_LZW(s, len, tmp.data(), static_cast<ULONG>(tmp.size()), got) ||
                got != n)
                return false;
            std::memcpy(out, tmp.data(), n);
            return true;
        }
        case Codec::Rle:
            return ACompress::UnComp_RLE(s, len, out, n, got) && got == n;
        case Codec::Base64: {
            if (len != (std::uint64_t{n} + 2) / 3 * 4) return false;
            for (std::uint32_t i = 0; i < len; ++i) {
                const std::uint8_t ch = s[i];
                const bool alpha = (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z') ||
                                   (ch >= '0' && ch <= '9') || ch == '+' || ch == '/';
                if (!alpha) return false;
            }
            const std::string text(reinterpret_cast<const char*>(s), len);
            char* dec = ACompress::Base64_Decode(text.c_str());
            if (!dec) return false;
            // The decoded buffer holds 3 * len / 4 + 1 >= n bytes.
            std::memcpy(out, dec, n);
            ACompress::Base64_Free(&dec);
            return true;
        }
        default:
            // Depth 1 succeeds even when the stream ends early, so start from zeros: the
            // checksum then reports the damage instead of stale bytes going out.
            std::memset(out, 0, n);
            return ACompress::UnPack(s, len, n / c.pixel, c.depth, out) == 1;
    }
}

// ---- whole streams ------------------------------------------------------------------------------

// Byte source: fills up to n bytes and returns how many it gave (fewer only at its end).
using Read = std::function<std::size_t(std::uint8_t* p, std::size_t n)>;
// Byte sink: false when the bytes could not be written.
using Write = std::function<bool(const std::uint8_t* p, std::size_t n)>;
// Progress: original bytes done so far.
using Progress = std::function<void(std::uint64_t done)>;

enum class Result { Ok, BadInput, ReadError, WriteError };

// Compresses `length` bytes from read into a container written to write. BadInput (with a
// message) when the options or the data do not suit the codec; ReadError when read gives
// fewer than length bytes. stored, when given, receives the number of blocks stored as is.
inline Result Encode(const CodecInfo& c, std::uint32_t width, std::uint64_t length,
                     const Read& read, const Write& write, std::string& error,
                     const Progress& progress = {}, std::uint64_t* stored = nullptr) {
    Header h;
    if (stored) *stored = 0;
    if (!MakeHeader(c, width, length, h, error)) return Result::BadInput;
    const auto head = WriteHeader(h);
    if (!write(head.data(), head.size())) return Result::WriteError;
    std::vector<std::uint8_t> in(
        static_cast<std::size_t>(std::min<std::uint64_t>(h.block, length)));
    std::vector<std::uint8_t> out;
    std::uint32_t crc = 0;
    for (std::uint64_t done = 0; done < length;) {
        const auto n = static_cast<std::uint32_t>(std::min<std::uint64_t>(h.block, length - done));
        if (read(in.data(), n) != n) {
            error = "the input ended after " + std::to_string(done) + " of " +
                    std::to_string(length) + " bytes";
            return Result::ReadError;
        }
        if (!CheckBlock(c, in.data(), n, done, error)) return Result::BadInput;
        crc = Crc32(crc, in.data(), n);
        out.clear();
        if (!EncodeBlock(h, in.data(), n, out) && stored) ++*stored;
        if (!write(out.data(), out.size())) return Result::WriteError;
        done += n;
        if (progress) progress(done);
    }
    std::uint8_t tail[4];
    Put32(tail, crc);
    return write(tail, 4) ? Result::Ok : Result::WriteError;
}

// Restores a container from read, writing the original bytes to write. BadInput (with a
// message) for a foreign, damaged or cut-short container, or one whose blocks are longer than
// maxBlock (a guard for callers with little memory; the encoder never exceeds kMaxBlock).
// The bytes written before a failure are not trustworthy: callers discard them. header, when
// given, receives the header once it has been read.
inline Result Decode(const Read& read, const Write& write, std::string& error,
                     std::uint32_t maxBlock = kMaxBlock, const Progress& progress = {},
                     Header* header = nullptr) {
    std::uint8_t head[kHeaderSize];
    const std::size_t got = read(head, kHeaderSize);
    if (got < sizeof kMagic || std::memcmp(head, kMagic, sizeof kMagic) != 0) {
        error = "not a kxbase compressed file (no KXCODEC signature)";
        return Result::BadInput;
    }
    if (got < kHeaderSize) {
        error = "damaged file: cut short inside the header";
        return Result::BadInput;
    }
    Header h;
    if (!ReadHeader(head, h, error)) return Result::BadInput;
    if (header) *header = h;
    if (h.block > maxBlock) {
        error = "blocks of " + std::to_string(h.block) + " bytes exceed the limit of " +
                std::to_string(maxBlock);
        return Result::BadInput;
    }
    const CodecInfo& c = *h.codec;
    std::vector<std::uint8_t> stream,
        out(static_cast<std::size_t>(std::min<std::uint64_t>(h.block, h.length)));
    std::uint32_t crc = 0;
    std::uint64_t index = 0;
    for (std::uint64_t done = 0; done < h.length; ++index) {
        const auto n =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(h.block, h.length - done));
        const std::string where =
            "block " + std::to_string(index) + " (offset " + std::to_string(done) + ")";
        std::uint8_t word[4];
        if (read(word, 4) != 4) {
            error = "damaged file: cut short at " + where;
            return Result::BadInput;
        }
        const std::uint32_t len = Get32(word) & ~kStoredBit;
        const bool stored = (Get32(word) & kStoredBit) != 0;
        if (stored ? len != n : len > StreamBound(c, n)) {
            error =
                "damaged file: impossible stream length " + std::to_string(len) + " at " + where;
            return Result::BadInput;
        }
        stream.resize(len);
        if (read(stream.data(), len) != len) {
            error = "damaged file: cut short inside " + where;
            return Result::BadInput;
        }
        if (stored)
            std::memcpy(out.data(), stream.data(), n);
        else if (!DecodeBlock(c, stream.data(), len, n, out.data())) {
            error = std::string("damaged file: the ") + c.name + " stream of " + where +
                    " does not decode to " + std::to_string(n) + " bytes";
            return Result::BadInput;
        }
        crc = Crc32(crc, out.data(), n);
        if (!write(out.data(), n)) return Result::WriteError;
        done += n;
        if (progress) progress(done);
    }
    std::uint8_t tail[5];
    const std::size_t tailLen = read(tail, 5);
    if (tailLen < 4) {
        error = "damaged file: cut short before the checksum";
        return Result::BadInput;
    }
    if (Get32(tail) != crc) {
        error = "damaged file: the data checksum does not match";
        return Result::BadInput;
    }
    if (tailLen > 4) {
        error = "damaged file: unexpected bytes after the checksum";
        return Result::BadInput;
    }
    return Result::Ok;
}

// In-memory conveniences over Encode/Decode.
inline Read MemoryReader(const std::uint8_t* data, std::size_t size) {
    return [data, size, pos = std::size_t{0}](std::uint8_t* p, std::size_t n) mutable {
        const std::size_t k = std::min(n, size - pos);
        if (k) std::memcpy(p, data + pos, k);
        pos += k;
        return k;
    };
}
inline Write VectorWriter(std::vector<std::uint8_t>& out) {
    return [&out](const std::uint8_t* p, std::size_t n) {
        out.insert(out.end(), p, p + n);
        return true;
    };
}

}  // namespace kxtool::codec
