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
    BitStreamSource(const BYTE* src, ULONG srcLen)
        : src_(src), len_(srcLen), fastLimit_(srcLen >= 8 ? (UINT64{srcLen} - 7) * 8 : 0) {}

    bool Next(unsigned& code) {
        unsigned v;
        if (pos_ < fastLimit_) {
            // At least 8 bytes from the code's first byte on: one big-endian word holds it.
            std::uint64_t word;
            std::memcpy(&word, src_ + (pos_ >> 3), 8);
            word = __builtin_bswap64(word);
            v = static_cast<unsigned>((word << (pos_ & 7)) >> (64 - width_));
        } else if (!ReadTail(v)) {
            return false;
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
        } else if (v == kLzwEnd) {
            fastLimit_ = 0;  // nothing is read after an end code
            len_ = 0;
        }
        return true;
    }

private:
    // A code near the end of the stream, read byte by byte.
    bool ReadTail(unsigned& v) const {
        const UINT64 byte = pos_ >> 3;
        if (byte + 1 >= len_ || pos_ + width_ > UINT64{len_} * 8) return false;
        std::uint32_t word = std::uint32_t{src_[byte]} << 24 | std::uint32_t{src_[byte + 1]} << 16;
        if (byte + 2 < len_) word |= std::uint32_t{src_[byte + 2]} << 8;
        v = (word << (pos_ & 7)) >> (32 - width_);
        return true;
    }

    const BYTE* src_;
    ULONG len_;
    UINT64 fastLimit_;  // bit positions below this can be read with one 8-byte load
    UINT64 pos_ = 0;    // bit position of the next code
    unsigned width_ = 9;
    ULONG n_ = 0;  // codes read since the start or the last width reset
    ULONG step_ = kLzwFirstWidthStep;
};

struct LzwEntry {
    ULONG offset;  // where the entry's string lies in dst
    ULONG length;
};

// Copies a string of n >= 2 bytes that lies before `to` in the same buffer (the source ends at
// or before `to`, so the ranges never overlap). Strings shorter than 8 bytes are moved as one
// 8-byte word: that writes up to 6 bytes past the string, which the decoder's rule of 6 spare
// bytes behind every string leaves free; longer ones are copied exactly, the last word
// overlapping the one before.
inline void CopyString(BYTE* to, const BYTE* from, ULONG n) {
    std::uint64_t w;
    if (n < 8) {
        std::memcpy(&w, from, 8);
        std::memcpy(to, &w, 8);
        return;
    }
    ULONG k = 0;
    for (; k + 8 < n; k += 8) {
        std::memcpy(&w, from + k, 8);
        std::memcpy(to + k, &w, 8);
    }
    std::memcpy(&w, from + n - 8, 8);
    std::memcpy(to + n - 8, &w, 8);
}

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
    // Every string needs len + its length + 6 <= dstCap (the decoder keeps 6 bytes spare), and
    // every code after the first makes an entry, at most 4095 of them.
    const UINT64 cap = dstCap;
    int result = 1;
    while (in.Next(c)) {
        if (c < 256) {
            if (UINT64{len} + 1 + 6 > cap || entries >= kLzwDecoderMaxEntries) {
                result = 0;
                break;
            }
            table[entries++] = LzwEntry{prevOff, prevLen + 1};
            dst[len] = static_cast<BYTE>(c);
            prevOff = len;
            prevLen = 1;
            ++len;
            continue;
        }
        const unsigned index = c - kLzwFirstEntry;  // wraps for 256 and 257
        if (index < entries) {
            const LzwEntry e = table[index];
            if (UINT64{len} + e.length + 6 > cap || entries >= kLzwDecoderMaxEntries) {
                result = 0;
                break;
            }
            table[entries++] = LzwEntry{prevOff, prevLen + 1};
            CopyString(dst + len, dst + e.offset, e.length);
            prevOff = len;
            prevLen = e.length;
            len += e.length;
            continue;
        }
        if (c >= kLzwFirstEntry) {
            // Any code not yet defined: the previous string followed by its own first byte.
            const ULONG curLen = prevLen + 1;
            if (UINT64{len} + curLen + 6 > cap || entries >= kLzwDecoderMaxEntries) {
                result = 0;
                break;
            }
            table[entries++] = LzwEntry{prevOff, curLen};
            CopyString(dst + len, dst + prevOff, curLen);  // the byte after prev is overwritten
            dst[len + prevLen] = dst[prevOff];
            prevOff = len;
            prevLen = curLen;
            len += curLen;
            continue;
        }
        if (c == kLzwEnd) break;
        // A clear code: skip repeated ones; an end code or the end of the codes finishes.
        bool more;
        while ((more = in.Next(c)) && c == kLzwClear) {
        }
        if (!more || c == kLzwEnd) break;
        if (c > kLzwEnd || UINT64{len} + 6 > cap) {
            result = 0;
            break;
        }
        dst[len] = static_cast<BYTE>(c);
        prevOff = len;
        prevLen = 1;
        ++len;
        entries = 0;
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
