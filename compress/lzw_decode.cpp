// LZW decompression: the bit stage (ResumeDataBit), the code stage (UnPack_LZW) and both
// chained (UnComp_LZW).
//
// Every dictionary string is a stretch of the output already written: an entry is the
// previous string followed by the first byte of the string after it, and those bytes lie
// next to each other in dst. So an entry is kept as (start in dst, length) and copied from
// dst itself; the decoder needs no string store and no heap memory (its tables, 44 KiB, live
// on the stack).
#include <kxbase/compress/compress.h>

#include <array>
#include <cstring>

#include "compress/byteswap_p.h"
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
            word = ByteSwap64(word);
            v = static_cast<unsigned>((word << (pos_ & 7)) >> (64 - width_));
        } else if (!ReadTail(v)) {
            return false;
        }
        pos_ += width_;
        code = v;
        if (++n_ == step_ || v - kLzwClear < 2) Special(v);
        return true;
    }

private:
    // A width step, a clear code or an end code was just read.
    void Special(unsigned v) {
        if (n_ == step_) {
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
    }

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

// Literal strings: byte k holds k, with 16 more bytes so that a 16-byte block can be read
// from any of them.
constexpr auto kLiterals = [] {
    std::array<BYTE, 272> a{};
    for (unsigned k = 0; k < 256; ++k) a[k] = static_cast<BYTE>(k);
    return a;
}();

// Copies n bytes in 16-byte blocks, writing up to 15 bytes past to + n and reading up to 15
// past from + n. The source lies before `to` in the same buffer (or in kLiterals): the bytes
// it needs are never written by the copy, and the bytes read past its end are scratch.
inline void CopyBlocks(BYTE* to, const BYTE* from, ULONG n) {
    ULONG k = 0;
    do {
        BYTE block[16];
        std::memcpy(block, from + k, 16);
        std::memcpy(to + k, block, 16);
        k += 16;
    } while (k < n);
}

// Decodes the codes of `in` into dst with the rules of UnPack_LZW.
//
// Every defined code (literal or entry) has its string's start and length in two tables; an
// entry's string is part of dst. While at least 16 bytes stay free behind a string, it is
// moved in 16-byte blocks (the bytes written past it are overwritten by the strings after it,
// or stay as scratch behind dstLen). Near the end of dst every code takes the exact path,
// which applies the capacity rule of 6 spare bytes and writes byte by byte.
template <class Source>
int LzwUnpack(Source in, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    unsigned c;
    if (!in.Next(c) || c > kLzwClear) return 0;
    while (c == kLzwClear || c == kLzwEnd) {
        if (!in.Next(c)) return 0;  // clear and end codes only
    }
    // The first byte is due; with no room at all it fails before writing (dstLen untouched).
    if (dstCap == 0) return 0;
    dst[0] = static_cast<BYTE>(c);

    constexpr unsigned kCodeLimit = kLzwFirstEntry + kLzwDecoderMaxEntries;
    const BYTE* str[kCodeLimit];
    WORD strLen[kCodeLimit];  // at most 4097: a string grows by one byte per code
    for (unsigned k = 0; k < 256; ++k) {
        str[k] = kLiterals.data() + k;
        strLen[k] = 1;
    }
    unsigned limit = kLzwFirstEntry;  // codes below it are defined (but 256 and 257)
    const BYTE* prev = dst;           // the previous string, just before dst + len
    ULONG prevLen = 1;
    ULONG len = 1;
    const UINT64 cap = dstCap;
    int result = 1;
    while (in.Next(c)) {
        const bool defined = c < limit && c - kLzwClear >= 2;
        const ULONG n = defined ? strLen[c] : prevLen + 1;
        if ((defined || c >= kLzwFirstEntry) && UINT64{len} + n + 16 <= cap && limit < kCodeLimit) {
            // A defined string, or a code not yet defined: the previous string followed by its
            // own first byte.
            BYTE* to = dst + len;
            str[limit] = prev;
            strLen[limit] = static_cast<WORD>(prevLen + 1);
            ++limit;
            if (defined) {
                CopyBlocks(to, str[c], n);
            } else {
                CopyBlocks(to, prev, prevLen);
                to[prevLen] = *prev;
            }
            prev = to;
            prevLen = n;
            len += n;
            continue;
        }
        if (c == kLzwEnd) break;
        if (c == kLzwClear) {
            // Skip repeated clear codes; an end code or the end of the codes finishes.
            bool more;
            while ((more = in.Next(c)) && c == kLzwClear) {
            }
            if (!more || c == kLzwEnd) break;
            if (c > kLzwEnd || UINT64{len} + 6 > cap) {
                result = 0;
                break;
            }
            dst[len] = static_cast<BYTE>(c);
            prev = dst + len;
            prevLen = 1;
            ++len;
            limit = kLzwFirstEntry;
            continue;
        }
        // Exact path: the decoder keeps 6 bytes spare behind every string and makes at most
        // 4095 entries.
        if (UINT64{len} + n + 6 > cap || limit >= kCodeLimit) {
            result = 0;
            break;
        }
        BYTE* to = dst + len;
        const BYTE* from = defined ? str[c] : prev;
        str[limit] = prev;
        strLen[limit] = static_cast<WORD>(prevLen + 1);
        ++limit;
        const ULONG copied = defined ? n : prevLen;
        for (ULONG k = 0; k < copied; ++k) to[k] = from[k];
        if (!defined) to[prevLen] = *prev;
        prev = to;
        prevLen = n;
        len += n;
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
