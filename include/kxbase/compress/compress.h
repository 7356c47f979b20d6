// ACompress: the raster codecs (LZW, run-length per bit depth, bit-depth packing, line zoom,
// Base64). Every operation is static and re-entrant once Init() has built the shared tables.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

class KXBASE_API ACompress {
public:
    // ---- LZW and Base64 -------------------------------------------------------------------
    //
    // LZW stream format. A stream is the code sequence 256 (clear), data codes, 257 (end),
    // packed as variable-width codes, most significant bit first (bit 7 of a byte comes
    // first), the last byte padded with zero bits. Codes 0-255 are literal bytes, 256 empties
    // the dictionary, 257 ends the stream, 258 and up are dictionary entries in the order they
    // are made. The width starts at 9 bits; counting the codes since the stream start (the
    // opening clear code is number 0), it becomes 10 bits for code number 255, 11 for 767 and
    // 12 for 1791 (one code earlier than a plain power-of-two rule; there is deliberately no
    // step at 1279). A clear code written at 12 bits returns the width to 9 and counts as code
    // number 0 again. The compressor makes at most 3835 entries (codes 258-4092) before it
    // clears; the decompressor accepts up to 4095. There is no header, length or checksum:
    // the caller keeps the decoded length. The width timing equals that of TIFF's LZW
    // (compression 5, widths change when the next entry would be 512, 1024, 2048), so TIFF
    // LZW decoders read these streams.
    //
    // Lengths are 32-bit (ULONG). Every LZW function returns 1 on success and 0 on failure and
    // leaves no state behind; all are re-entrant and thread-safe. Their work tables (at most
    // 32 KiB) live on the stack of the call: none of them allocates on the heap. No function
    // reads or writes outside [ptr, ptr + stated length), whatever the input bytes.

    /// Worst-case number of 16-bit codes Pack_LZW makes from srcLen bytes (clear code, one code
    /// per input byte at most, one clear code per 3835 entries, end code). Pack_LZW always
    /// succeeds with codeCap >= LzwCodeBound(srcLen) + 1 (it needs one slot more than it uses).
    static constexpr UINT64 LzwCodeBound(ULONG srcLen) {
        return UINT64{srcLen} + 2 + UINT64{srcLen} / 3835;
    }
    /// Worst-case byte length of the stream Comp_LZW writes for srcLen bytes, plus the one
    /// byte that the "strictly shorter than dstCap" rule keeps free: a dstCap of at least this
    /// never fails for lack of room. Every code is at most 12 bits, so the stream is at most
    /// 1.5 bytes per code. (Inputs of 1 to 5 bytes can still fail: see Comp_LZW.)
    static constexpr UINT64 LzwCompressBound(ULONG srcLen) {
        return (LzwCodeBound(srcLen) * 12 + 7) / 8 + 1;
    }
    /// Capacity UnPack_LZW / UnComp_LZW need to restore originalLen bytes: the decoder keeps 6
    /// bytes spare behind every string it writes (a one-byte stream needs only 1).
    static constexpr UINT64 LzwDecompressCapacity(UINT64 originalLen) { return originalLen + 6; }
    /// Size, in 16-bit codes, of the code buffer ResumeDataBit may fill from srcLen stream
    /// bytes: it only reads codes that start before the last byte, each at least 9 bits wide,
    /// so at most ceil(8 * (srcLen - 1) / 9) codes. srcLen itself is always enough.
    static constexpr UINT64 LzwResumeCodeBound(ULONG srcLen) {
        return srcLen < 2 ? 0 : (UINT64{srcLen - 1} * 8 + 8) / 9;
    }

    /// Compresses srcLen bytes of src into the LZW stream described above. dstLen receives the
    /// stream's byte length. Fails (0) when src/dst is null or srcLen/dstCap is 0 (dstLen
    /// untouched); when the stream would not be strictly shorter than dstCap (dstLen is then
    /// set to 1, deliberately, not to the count reached); and when the code stage runs out of
    /// its working room of srcLen * 3 / 2 codes (computed on 32 bits), which happens for inputs
    /// of at most 5 bytes with no repeated two-byte string, e.g. every 1- or 2-byte input, and
    /// can happen for inputs of 1431655766 bytes or more, where that product wraps (dstLen
    /// untouched). A dstCap of LzwCompressBound(srcLen) always suffices otherwise. The codes
    /// go straight into the bit stage, so no work buffer is allocated. dst is caller-owned;
    /// after a failure its bytes are unspecified.
    static int Comp_LZW(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);

    /// Restores the bytes of an LZW stream of srcLen bytes into dst (dstCap bytes); dstLen
    /// receives the number of bytes restored. Fails (0) when src/dst is null or srcLen/dstCap
    /// is 0 (dstLen untouched), when the stream holds no data code (a one-byte stream, or clear
    /// and end codes only), and where UnPack_LZW fails (too little room, more than 4095
    /// entries, an entry code directly after a clear code). A stream cut short decodes the
    /// codes it holds and succeeds. Needs dstCap >= LzwDecompressCapacity(original length).
    /// Only dst[0, dstLen) is written. The codes go straight from the stream into the decoder,
    /// so no work buffer is allocated.
    static int UnComp_LZW(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);

    /// The code stage of Comp_LZW: turns srcLen bytes into 16-bit codes (clear code first, end
    /// code last) and sets codeCount. One byte gives the codes 256, byte, 257. Fails (0) when
    /// src or codes is null, srcLen is 0 or codeCap is below 2 (codeCount untouched: nothing
    /// is written); when a data code leaves no room for its dictionary entry (codeCount >=
    /// codeCap after it), when a clear code would not fit (codeCount + 1 >= codeCap), or when
    /// the end code would not (it needs codeCount + 1 < codeCap): codeCount then holds the
    /// count reached. So it succeeds exactly when codeCap > the code count it makes;
    /// LzwCodeBound(srcLen) + 1 is always enough. codes[0, codeCap) is caller-owned.
    static int Pack_LZW(const BYTE* src, ULONG srcLen, WORD* codes, ULONG codeCap,
                        ULONG& codeCount);

    /// Decodes codeCount 16-bit codes into bytes at dst; dstLen receives the count written.
    /// Leading clear and end codes are skipped and the first remaining code is written as its
    /// low byte (even an entry code). Any entry code at or beyond the next one to be made is
    /// read as "the previous string followed by its own first byte". Repeated clear codes are
    /// skipped; an end code, or running out of codes, ends with success.
    /// Fails (0) when codes/dst is null or codeCount is 0, when the first code is above 256,
    /// when only clear/end codes are present, when a code above 257 directly follows a clear
    /// code, when more than 4095 entries would be made, and when the room is short: every
    /// string after the first byte needs dstLen + its length + 6 <= dstCap (the decoder
    /// deliberately keeps 6 bytes spare), while the very first byte needs only dstCap >= 1.
    /// On failure dstLen holds the count reached (untouched when nothing was written). Writes
    /// only dst[0, dstLen).
    static int UnPack_LZW(const WORD* codes, ULONG codeCount, BYTE* dst, ULONG dstCap,
                          ULONG& dstLen);

    /// The bit stage of Comp_LZW: packs codeCount codes into the variable-width stream and
    /// sets dstLen to its byte length. Each code is written at the current width (bits of a
    /// code above that width are dropped). Fails (0) with dstLen 0 when codes or dst is null
    /// or codeCount is 0, and with dstLen set to 1 (deliberately) as soon as the written length
    /// reaches dstCap: a successful stream is always strictly shorter than dstCap. The width
    /// counter is 32 bits, so the width never exceeds 12.
    static int TransformDataBits(const WORD* codes, ULONG codeCount, BYTE* dst, ULONG dstCap,
                                 ULONG& dstLen);

    /// Unpacks an LZW byte stream into 16-bit codes (the end code included) and sets
    /// codeCount. Reading stops after an end code, or when the next code would start in the
    /// last byte of src (so a one-byte stream gives no codes), or when it would need bits past
    /// the end of src (only cut or foreign streams do that). There is no capacity argument:
    /// codes must have room for LzwResumeCodeBound(srcLen) codes. Fails (0) only when src or
    /// codes is null or srcLen is 0 (codeCount untouched).
    static int ResumeDataBit(const BYTE* src, ULONG srcLen, WORD* codes, ULONG& codeCount);

    /// Base64 of a zero-terminated text, standard alphabet (A-Z a-z 0-9 + /), without "="
    /// padding and line breaks: the text is padded with zero bytes to a multiple of 3, and
    /// those pad bytes encode as "A" (deliberately: "a" gives "YQAA", "ab" gives "YWIA").
    /// Bytes are read as unsigned. Returns a new zero-terminated string of 4 * ceil(n / 3)
    /// characters, owned by the caller and released with Base64_Free, or null when text is
    /// null or memory is short. Thread-safe.
    static char* Base64_Encode(const char* text);

    /// Decodes Base64 text (zero-terminated, length n) into a new zero-filled buffer of
    /// 3 * n / 4 + 1 bytes, owned by the caller and released with Base64_Free; null when
    /// memory is short. Characters are translated from the start up to the first one outside
    /// the alphabet ("=", a line break, a space...); it and everything after it count as zero
    /// values, so foreign text is never rejected. Each started group of four characters gives
    /// three bytes; bytes that would fall past the buffer are dropped. The decoded length is
    /// not returned: the result is meant to be read as a zero-terminated string, and it is one
    /// whenever n is a multiple of 4; otherwise the last byte can be nonzero (for instance
    /// "QUFBY" gives exactly the bytes 41 41 41 60), so read at most 3 * n / 4 + 1 bytes.
    /// A null text gives null. Thread-safe.
    static char* Base64_Decode(const char* text);

    /// Releases a result of Base64_Encode/Base64_Decode and sets *result to null; does nothing
    /// when result or *result is null.
    static void Base64_Free(char** result);

    // ---- run-length, bit-depth packing and line zoom --------------------------------------
    // (declarations of the run-length codecs, packing dispatchers and line zoom go here)

protected:
    // ---- LZW and Base64: protected helpers --------------------------------------------------

    /// Builds the shared bit tables used by the 1-bit unpackers. The tables are constant data
    /// built at compile time, so they are ready before any code of the library runs and Init
    /// only has to exist for the module start-up: it is idempotent, thread-safe and returns 1.
    static int Init();
    /// Counterpart of Init at module exit: does nothing and returns 1.
    static int Exit();

    /// Bit table: for each byte value v, 8 bytes holding the bits of v from the most to the
    /// least significant, each as 0 or 1.
    static const BYTE m_byBitTable[256][8];
    /// Row table: entry k (0-127) points at m_byBitTable[k][1], that is at the 7 bits 6..0 of
    /// k (bit 7 is 0 for these values).
    static const BYTE* const m_pRowTable[128];

    /// Size of one node of the LZW compressor's byte table: the byte that extends the node's
    /// prefix at offset 0, then the offset of its next sibling (0 = none) as a 16-bit
    /// little-endian value at offsets 1 and 2. Nodes lie at offsets 3, 6, 9, ...; the node at
    /// offset o stands for code o / 3 + 257.
    static constexpr int kLzwNodeSize = 3;

    /// Walks one sibling chain of an LZW compressor byte table from node offset `first`,
    /// looking for a node whose byte is ch. Sets *last to 0 first and then to every node passed
    /// over that does not match; on a match sets *code to the node's code (offset / 3 + 257)
    /// and returns 1. At the chain's end, or when first is 0, returns 0 with *last at the
    /// chain's last node and *code untouched. prefix is not used (the chain already belongs to
    /// one prefix). nodes must hold every node of the chain; a chain that loops is cut after
    /// 65536 nodes (no valid table has that many). code and last must not be null.
    static int IsStrInList(WORD prefix, BYTE ch, const BYTE* nodes, WORD first, WORD* code,
                           WORD* last);

    // The module's application object runs Init at load and Exit at unload.
    friend class CkxBaseCommonApp;

    // ---- run-length and bit packing: protected helpers --------------------------------------
};
