// LZW compression: the code stage (Pack_LZW), the bit stage (TransformDataBits), both chained
// (Comp_LZW), and the sibling-chain walk over the compressor's byte table (IsStrInList).
//
// The dictionary is a set of (prefix code, byte) -> code pairs; the code sequence depends only
// on which pairs exist, not on how they are looked up. Instead of walking a sibling chain per
// prefix, the encoder keeps the pairs in a small open-addressing hash table on the stack,
// which gives the same codes with one probe in the common case and no heap allocation.
#include <kxbase/compress/compress.h>

#include <cstring>

#include "compress/byteswap_p.h"
#include "compress/lzw_p.h"

namespace kxbase::detail {
namespace {

// (prefix, byte) -> code map. A slot holds (prefix << 20) | (byte << 12) | code; 0 is empty
// (every stored code is at least 258, so no used slot is 0).
class LzwEncoderDict {
public:
    explicit LzwEncoderDict(ULONG srcLen) {
        // At most min(srcLen - 1, 3835) entries exist at once; keep the load at or below 1/2.
        const ULONG entries =
            srcLen - 1 < kLzwEncoderEntryLimit ? srcLen - 1 : kLzwEncoderEntryLimit;
        unsigned bits = 6;
        while ((1u << bits) < 2 * entries) ++bits;
        shift_ = 32 - bits;
        mask_ = (1u << bits) - 1;
        Clear();
    }
    void Clear() { std::memset(slots_, 0, (mask_ + 1) * sizeof(slots_[0])); }

    unsigned Shift() const { return shift_; }
    unsigned Mask() const { return mask_; }

    // The code of (prefix, ch), or 0 when the pair is not in the dictionary; in that case
    // `slot` is where Add puts it. The caller passes Shift() and Mask() from its own copies
    // (the output bytes it writes could otherwise alias them and force reloads).
    unsigned Find(unsigned prefix, unsigned ch, unsigned shift, unsigned mask,
                  std::uint32_t*& slot) {
        const std::uint32_t key = (prefix << 8) | ch;
        unsigned h = (key * 0x9E3779B1u) >> shift;
        for (;;) {
            const std::uint32_t s = slots_[h];
            if (s == 0) {
                slot = &slots_[h];
                return 0;
            }
            if ((s >> 12) == key) return s & 0xFFFu;
            h = (h + 1) & mask;
        }
    }
    static void Add(std::uint32_t* slot, unsigned prefix, unsigned ch, unsigned code) {
        *slot = (((prefix << 8) | ch) << 12) | code;
    }

private:
    std::uint32_t slots_[8192];
    unsigned shift_ = 0, mask_ = 0;
};

enum class PackResult { kOk, kNoRoom };

// Runs the LZW code stage over src, handing every code to out.Put in order, with the room
// rules of Pack_LZW for a code buffer of `cap` codes (cap >= 2). count receives the number of
// codes made, as Pack_LZW reports it.
template <class Out>
PackResult LzwPack(const BYTE* src, ULONG srcLen, UINT64 cap, Out& result, ULONG& count) {
    // The writer works on a local copy, so its state stays in registers.
    Out out = result;
    auto finish = [&](PackResult r, UINT64 n) {
        result = out;
        count = static_cast<ULONG>(n);
        return r;
    };
    LzwEncoderDict dict(srcLen);
    const unsigned shift = dict.Shift(), mask = dict.Mask();
    out.Put(kLzwClear);
    UINT64 n = 1;
    unsigned prefix = src[0];
    unsigned entries = 1;  // entry count; the next entry gets code 257 + entries
    for (ULONG i = 1; i < srcLen; ++i) {
        const unsigned c = src[i];
        std::uint32_t* slot = nullptr;
        const unsigned code = dict.Find(prefix, c, shift, mask, slot);
        if (code != 0) {
            prefix = code;
            continue;
        }
        out.Put(prefix);
        ++n;
        if (entries < kLzwEncoderEntryLimit) {
            if (n >= cap) return finish(PackResult::kNoRoom, n);
            LzwEncoderDict::Add(slot, prefix, c, 257 + entries);
            ++entries;
        } else {
            if (n + 1 >= cap) return finish(PackResult::kNoRoom, n);
            out.Put(kLzwClear);
            ++n;
            dict.Clear();
            entries = 1;
        }
        prefix = c;
    }
    out.Put(prefix);
    ++n;
    if (n + 1 >= cap) return finish(PackResult::kNoRoom, n);
    out.Put(kLzwEnd);
    return finish(PackResult::kOk, n + 1);
}

// Stores codes into a caller's array (room is guaranteed by LzwPack's rules).
struct CodeArrayOut {
    WORD* codes;
    ULONG at = 0;
    void Put(unsigned code) { codes[at++] = static_cast<WORD>(code); }
};

// Packs codes into the variable-width stream, MSB first. Every byte written is checked
// against dstCap the way TransformDataBits states it: the stream must stay strictly shorter
// than dstCap, so the writer has overflowed once its length reaches dstCap (at once when
// dstCap is 0), and then writes nothing more.
class BitWriter {
public:
    BitWriter(BYTE* dst, ULONG dstCap) : dst_(dst), cap_(dstCap) {}

    void Put(unsigned code) {
        if (n_ == step_ || code == kLzwClear) {
            PutSpecial(code);
        } else {
            acc_ = (acc_ << width_) | (code & ((1u << width_) - 1));
            bits_ += width_;
        }
        ++n_;
        if (bits_ >= 32) {
            bits_ -= 32;
            const auto word = static_cast<std::uint32_t>(acc_ >> bits_);
            if (UINT64{len_} + 4 < cap_) {
                const std::uint32_t be = static_cast<std::uint32_t>(ByteSwap64(word) >> 32);
                std::memcpy(dst_ + len_, &be, 4);
                len_ += 4;
            } else {
                len_ = PutBytes(dst_, cap_, len_, word, 4);
            }
        }
    }

    // Writes the pending bits, the last byte padded with zeros. Returns false on overflow.
    bool Finish() {
        if (bits_ > 0) {
            const unsigned bytes = (bits_ + 7) / 8;
            const auto word = static_cast<std::uint32_t>(acc_ << (8 * bytes - bits_));
            len_ = PutBytes(dst_, cap_, len_, word << (32 - 8 * bytes), bytes);
            bits_ = 0;
        }
        return !Overflow();
    }
    ULONG Length() const { return len_; }
    bool Overflow() const { return len_ >= cap_; }

private:
    // A code at a width step, or a clear code (which restarts the widths when written at 12
    // bits).
    void PutSpecial(unsigned code) {
        if (n_ == step_) {
            ++width_;
            step_ = LzwNextWidthStep(step_);
        }
        acc_ = (acc_ << width_) | (code & ((1u << width_) - 1));
        bits_ += width_;
        if (code == kLzwClear && width_ == 12) {
            width_ = 9;
            n_ = 0;
            step_ = kLzwFirstWidthStep;
        }
    }

    // Writes the top `count` bytes of word one at a time until the length reaches cap;
    // returns the new length.
    [[gnu::noinline]] static ULONG PutBytes(BYTE* dst, ULONG cap, ULONG len, std::uint32_t word,
                                            unsigned count) {
        for (unsigned k = 0; k < count && len < cap; ++k)
            dst[len++] = static_cast<BYTE>(word >> (24 - 8 * k));
        return len;
    }

    BYTE* dst_;
    ULONG cap_;
    ULONG len_ = 0;
    std::uint64_t acc_ = 0;  // pending bits in the low bits_ positions
    unsigned bits_ = 0;
    unsigned width_ = 9;
    ULONG n_ = 0;  // codes since the start or the last width reset
    ULONG step_ = kLzwFirstWidthStep;
};

}  // namespace
}  // namespace kxbase::detail

using namespace kxbase::detail;

int ACompress::IsStrInList(WORD /*prefix*/, BYTE ch, const BYTE* nodes, WORD first, WORD* code,
                           WORD* last) {
    *last = 0;
    unsigned o = first;
    // A chain that is longer than the number of distinct 16-bit offsets has a loop.
    for (unsigned walked = 0; o != 0 && walked <= 0xFFFFu; ++walked) {
        if (nodes[o] == ch) {
            *code = static_cast<WORD>(o / kLzwNodeSize + 257);
            return 1;
        }
        *last = static_cast<WORD>(o);
        o = static_cast<unsigned>(nodes[o + 1] | (nodes[o + 2] << 8));
    }
    return 0;
}

int ACompress::Pack_LZW(const BYTE* src, ULONG srcLen, WORD* codes, ULONG codeCap,
                        ULONG& codeCount) {
    // The code stage writes the clear code and a first code before its first room test, so
    // a buffer of fewer than 2 codes is refused before anything is written.
    if (!src || srcLen == 0 || !codes || codeCap < 2) return 0;
    CodeArrayOut out{codes};
    return LzwPack(src, srcLen, codeCap, out, codeCount) == PackResult::kOk ? 1 : 0;
}

int ACompress::TransformDataBits(const WORD* codes, ULONG codeCount, BYTE* dst, ULONG dstCap,
                                 ULONG& dstLen) {
    dstLen = 0;
    if (!codes || codeCount == 0) return 0;
    if (!dst) return 0;
    BitWriter out(dst, dstCap);
    for (ULONG i = 0; i < codeCount && !out.Overflow(); ++i) out.Put(codes[i]);
    if (!out.Finish()) {
        dstLen = 1;  // deliberately 1 on overflow, not the count reached
        return 0;
    }
    dstLen = out.Length();
    return 1;
}

int ACompress::Comp_LZW(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen) {
    if (!src || srcLen == 0 || !dst || dstCap == 0) return 0;
    // The code stage works within srcLen * 3 / 2 codes, the product taken on 32 bits (it
    // wraps for very long inputs). The two stages run fused: codes go straight into the bit
    // writer, and the code stage's room rules are applied to the count alone, so no code
    // buffer is needed. A code-stage failure wins over an overflow of dst, as it would if
    // the stages ran one after the other.
    const ULONG codeCap = static_cast<ULONG>(srcLen * 3u) / 2u;
    if (codeCap < 2) return 0;
    BitWriter out(dst, dstCap);
    ULONG count = 0;
    if (LzwPack(src, srcLen, codeCap, out, count) != PackResult::kOk) return 0;
    if (!out.Finish()) {
        dstLen = 1;
        return 0;
    }
    dstLen = out.Length();
    return 1;
}
