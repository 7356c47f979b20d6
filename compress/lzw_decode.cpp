// LZW decompression: the bit stage (ResumeDataBit), the code stage (UnPack_LZW) and both
// chained (UnComp_LZW).
//
// Every dictionary string is a stretch of the output already written: an entry is the
// previous string followed by the first byte of the string after it, and those bytes lie
// next to each other in dst. So an entry is kept as (offset in dst, length) and copied from
// dst itself; the decoder needs no string store and no heap memory.
#include <kxbase/compress/compress.h>

#include <cstring>

#include "compress/lzw_p.h"

namespace kxbase::detail {
namespace {

// Codes from a caller's 16-bit array.
class CodeArraySource {
public:
    CodeArraySource(const WORD* codes, ULONG count) : codes_(codes), count_(count) {}
    bool Next(unsigned& code) {
        if (at_ >= count_) return false;
        code = codes_[at_++];
        return true;
    }

private:
    const WORD* codes_;
    ULONG count_;
    ULONG at_ = 0;
};

// Codes read from a packed stream, MSB first, with the width schedule of the format. Reading
// stops after an end code, when the next code would start in the last byte of the stream, or
// when it would need bits past the stream's end (a cut or foreign stream).
class BitStreamSource {
public:
    BitStreamSource(const BYTE* src, ULONG srcLen) : src_(src), len_(srcLen) {}
    bool Next(unsigned& code) {
        const UINT64 byte = pos_ >> 3;
        if (ended_ || byte + 1 >= len_) return false;
        const unsigned shift = static_cast<unsigned>(pos_ & 7);
        unsigned v;
        if (byte + 8 <= len_) {
            std::uint64_t word;
            std::memcpy(&word, src_ + byte, 8);
            word = __builtin_bswap64(word);
            v = static_cast<unsigned>((word << shift) >> (64 - width_));
        } else {
            if (pos_ + width_ > UINT64{len_} * 8) return false;
            std::uint32_t word = std::uint32_t{src_[byte]} << 24 | std::uint32_t{src_[byte + 1]}
                                                                       << 16;
            if (byte + 2 < len_) word |= std::uint32_t{src_[byte + 2]} << 8;
            v = ((word << shift) >> (32 - width_));
        }
        pos_ += width_;
        code = v;
        if (++n_ == step_) {
            ++width_;
            step_ = LzwNextWidthStep(step_);
        } else if (v == kLzwClear && width_ == 12) {
            width_ = 9;
            n_ = 1;
            step_ = kLzwFirstWidthStep;
        }
        if (v == kLzwEnd) ended_ = true;
        return true;
    }

private:
    const BYTE* src_;
    ULONG len_;
    UINT64 pos_ = 0;  // bit position of the next code
    unsigned width_ = 9;
    ULONG n_ = 0;  // codes read since the start or the last width reset
    ULONG step_ = kLzwFirstWidthStep;
    bool ended_ = false;
};

struct LzwEntry {
    ULONG offset;  // where the entry's string lies in dst
    ULONG length;
};

// Decodes the codes of `in` into dst with the rules of UnPack_LZW.
template <class Source>
int LzwUnpack(Source& in, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    unsigned c;
    if (!in.Next(c) || c > kLzwClear) return 0;
    while (c == kLzwClear || c == kLzwEnd) {
        if (!in.Next(c)) return 0;  // clear and end codes only
    }
    // The first byte is due; with no room at all it fails before writing (dstLen untouched).
    if (dstCap == 0) return 0;
    dst[0] = static_cast<BYTE>(c);
    ULONG len = 1;
    ULONG prevOff = 0, prevLen = 1;
    unsigned entries = 0;
    LzwEntry table[kLzwDecoderMaxEntries];
    int result = 1;
    while (in.Next(c)) {
        if (c == kLzwEnd) break;
        if (c == kLzwClear) {
            bool more;
            while ((more = in.Next(c)) && c == kLzwClear) {
            }
            if (!more || c == kLzwEnd) break;  // a clear code may end the codes
            if (c > kLzwEnd || UINT64{len} + 6 > dstCap) {
                result = 0;
                break;
            }
            dst[len] = static_cast<BYTE>(c);
            prevOff = len;
            prevLen = 1;
            ++len;
            entries = 0;
            continue;
        }
        // The current string: a literal, a defined entry, or (any code not yet defined) the
        // previous string followed by its own first byte.
        ULONG curLen;
        const unsigned index = c - kLzwFirstEntry;
        if (c < 256) {
            curLen = 1;
        } else if (index < entries) {
            curLen = table[index].length;
        } else {
            curLen = prevLen + 1;
        }
        // The decoder keeps 6 bytes spare behind every string.
        if (UINT64{len} + curLen + 6 > dstCap || entries >= kLzwDecoderMaxEntries) {
            result = 0;
            break;
        }
        table[entries++] = LzwEntry{prevOff, prevLen + 1};
        BYTE* out = dst + len;
        if (c < 256) {
            *out = static_cast<BYTE>(c);
        } else {
            const BYTE* from = dst + (index < entries - 1 ? table[index].offset : prevOff);
            const ULONG n = index < entries - 1 ? curLen : prevLen;
            // The source ends at or before dst + len: the ranges never overlap.
            if (n <= 16) {
                for (ULONG k = 0; k < n; ++k) out[k] = from[k];
            } else {
                std::memcpy(out, from, n);
            }
            if (n != curLen) out[n] = dst[prevOff];
        }
        prevOff = len;
        prevLen = curLen;
        len += curLen;
    }
    dstLen = len;
    return result;
}

}  // namespace
}  // namespace kxbase::detail

using namespace kxbase::detail;

int ACompress::ResumeDataBit(const BYTE* src, ULONG srcLen, WORD* codes, ULONG& codeCount) {
    if (!src || !codes || srcLen == 0) return 0;
    BitStreamSource in(src, srcLen);
    ULONG n = 0;
    unsigned c;
    while (in.Next(c)) codes[n++] = static_cast<WORD>(c);
    codeCount = n;
    return 1;
}

int ACompress::UnPack_LZW(const WORD* codes, ULONG codeCount, BYTE* dst, ULONG dstCap,
                          ULONG& dstLen) {
    if (!codes || !dst) return 0;
    CodeArraySource in(codes, codeCount);
    return LzwUnpack(in, dst, dstCap, dstLen);
}

int ACompress::UnComp_LZW(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || srcLen == 0 || !dst || dstCap == 0) return 0;
    // The codes go straight from the stream into the decoder: the same sequence the bit stage
    // would store, without a code buffer.
    BitStreamSource in(src, srcLen);
    return LzwUnpack(in, dst, dstCap, dstLen);
}
