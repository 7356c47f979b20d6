/// \file
/// ACompress: the raster codecs (LZW, run-length per bit depth, bit-depth packing, line zoom,
/// Base64). Every operation is static and re-entrant once Init() has built the shared tables.
///
/// Thread-safety: every function may be called from any thread at the same time.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// The raster codecs as static functions. Callers own every buffer; each function states the
/// capacity it needs (the ...Bound functions give worst cases) and returns 0 when it is short.
class KXBASE_API ACompress {
public:
    /// Builds the shared bit tables used by the 1-bit unpackers. The tables are constant data
    /// built at compile time, so they are ready before any code of the library runs; Init
    /// exists for the start-up of the module (which calls it) and of hosts that call it
    /// themselves. Idempotent, thread-safe, returns 1.
    static int Init();
    /// Counterpart of Init at exit: does nothing and returns 1. Safe to call any number of times.
    static int Exit();

    // ---- LZW and Base64 -------------------------------------------------------------------
    //
    // LZW stream format. A stream is the code sequence 256 (clear), data codes, 257 (end),
    // packed as variable-width codes, most significant bit first (bit 7 of a byte comes
    // first), the last byte padded with zero bits. Codes 0-255 are literal bytes, 256 empties
    // the dictionary, 257 ends the stream, 258 and up are dictionary entries in the order they
    // are made. The width starts at 9 bits; counting the codes since the stream start (the
    // opening clear code is number 0), it becomes 10 bits for code number 255, 11 for 767 and
    // 12 for 1791 (there is deliberately no step at 1279). A clear code written at 12 bits
    // returns the width to 9 and counts as code number 0 again. The compressor makes at most
    // 3835 entries (codes 258-4092) before it clears; the decompressor accepts up to 4095.
    // There is no header, length or checksum: the caller keeps the decoded length. The width
    // timing equals that of TIFF's LZW (compression 5: widths change when the next entry would
    // be 512, 1024, 2048), so TIFF LZW decoders read these streams.
    //
    // Lengths are 32-bit (ULONG). Every LZW function returns 1 on success and 0 on failure and
    // leaves no state behind; all are re-entrant and thread-safe. Their work tables (at most
    // 44 KiB) live on the stack of the call: none of them allocates on the heap. No public
    // function reads or writes outside [ptr, ptr + stated length), whatever the input bytes.
    // A TIFF LZW strip decodes with UnComp_LZW unless its writer started over with a clear
    // code below 12 bits (libtiff does when its compression ratio drops): TIFF resets the
    // width after any clear code, this format only after one written at 12 bits.

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
    /// bytes spare behind every string it writes (a one-byte output needs only 1).
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
    /// Writes inside dst[0, dstCap) only; the bytes after dstLen are unspecified (see
    /// UnPack_LZW). The codes go straight from the stream into the decoder, so no work buffer
    /// is allocated.
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
    /// deliberately keeps 6 bytes spare), the literal after a clear code needs dstLen + 6 <=
    /// dstCap before it is written (so it leaves 5 spare), and the very first byte needs only
    /// dstCap >= 1. LzwDecompressCapacity(n) is therefore always enough for n bytes.
    /// On failure dstLen holds the count reached (untouched when nothing was written). Writes
    /// only inside dst[0, dstCap): away from the end of dst, strings are moved in 16-byte
    /// blocks, so the bytes after dstLen are unspecified (scratch).
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
    //
    // Stream formats (no header, no length field, no checksum; the caller keeps the lengths):
    //
    //  general bytes (Comp_RLE)   records: run = (count 1..255, value);
    //                             literal block = (0, n 1..255, n bytes).
    //  8-bit pixels (depth 8)     records of (count 1..255, pixel). Always an even length.
    //  24-bit pixels (depth 24)   records of (count 1..255, three pixel bytes in line order).
    //  4-bit pixels (depth 4)     two runs per three-byte group: (count A, valueA << 4 | valueB,
    //                             count B); a final group holding one run stops after its value
    //                             byte, so a length is never 1 more than a multiple of 3.
    //  1-bit pixels (depth 1)     literal byte 1ppppppp (seven pixels, first in bit 6), run
    //                             digit 0vcccccc (value v, six bits of the run length, least
    //                             significant digit first; consecutive digits with the same top
    //                             two bits form one run; runs only for 8 or more pixels), then
    //                             one closing byte: how many pixels (0..7) of the last literal
    //                             belong to the line.
    //  2-bit pixels (depth 2)     literal 10aabbcc (three pixels), run digit 0vvccccc (five bits
    //                             of the length, runs only for 4 or more pixels), closing byte
    //                             0..3.
    //  Runs longer than 255 (pixel formats) are written as records of 255 and a remainder.
    //
    // Expanded lines hold one byte per pixel (three for 24-bit). Every function returns 1 on
    // success and 0 on failure, never throws, and never reads or writes outside the lengths it
    // is given; bytes written before a failure stay in dst. All are re-entrant and thread-safe
    // (the 1-bit decoders read the constant bit tables described under Init()).

    /// Worst-case length of a Comp_RLE stream for srcLen input bytes: a run of two followed by
    /// a one-byte literal block ("aab" repeated) costs five bytes for three. Comp_RLE may fill
    /// its buffer exactly, so a dst of this many bytes always suffices.
    static constexpr UINT64 RleCompressBound(UINT64 srcLen) { return (5 * srcLen + 2) / 3 + 2; }

    /// Compresses srcLen bytes into the general run-length format. dstLen receives the stream
    /// length (the stream may fill dst exactly). Fails (0) on a null pointer or zero length, or
    /// when dstCap is too small; then dstLen holds the length reached.
    static int Comp_RLE(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);

    /// Restores a Comp_RLE stream; dstLen receives the restored length (each two stream bytes
    /// can stand for up to 255 output bytes). Fails (0) on null/zero arguments, when the output
    /// would pass dstCap, and on a stream whose last record is cut short (a count without its
    /// value, a literal block longer than what is left); dstLen then holds the length reached.
    static int UnComp_RLE(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);

    /// Largest output UnComp_RLE can restore from srcLen stream bytes (all runs of 255): a dst
    /// of this size never fails for capacity.
    static constexpr UINT64 RleExpandBound(UINT64 srcLen) { return srcLen / 2 * 255; }

    /// Capacity Pack() needs so that a line of srcLen pixel bytes (three per pixel for depth 24)
    /// always compresses, for depth 1, 2, 4, 8 or 24 (0 for other depths). The 4-, 8- and
    /// 24-bit formats and Pack2 insist on spare bytes behind the stream, which this includes.
    static constexpr UINT64 PackBound(UINT64 srcLen, int depth) {
        switch (depth) {
            case 1: return (srcLen + 6) / 7 + 1;      // literals of 7 + closing byte
            case 2: return (srcLen + 2) / 3 + 1 + 2;  // literals of 3 + closing + 2 spare
            case 4: return 3 * ((srcLen + 1) / 2) + 2 + (srcLen == 0 ? 2 : 0);  // 3 per 2 + 2
            case 8: return 2 * srcLen + 1;            // (1, v) per pixel + 1 spare
            case 24: return srcLen / 3 * 4 + 1;       // (1, rgb) per pixel + 1 spare
            default: return 0;
        }
    }

    /// Compresses one expanded line of srcLen pixel bytes with the stream format of its depth:
    /// 1 and 2 (packed line formats), 4, 8, 24 (run formats); any other depth fails (0).
    /// dstLen receives the stream length. Capacity rules differ per format (deliberately): the
    /// 1-bit stream may fill dst exactly, the 2-bit stream needs two bytes to spare, the 4-bit
    /// stream one or two, the 8- and 24-bit streams one. PackBound() covers them all.
    /// Depth 1 treats any nonzero byte as 1; depth 2 uses the low two bits of each byte; depth
    /// 4 does not check bytes above 15 (their high bits spill into the neighbouring nibble).
    /// Depth 8 needs at least 2 pixels; depth 24 a multiple of 3 bytes, at least one pixel.
    static int Pack(const BYTE* src, ULONG srcLen, int depth, BYTE* dst, ULONG dstCap,
                    ULONG& dstLen);

    /// Restores a whole line of `total` pixels from a Pack() stream of the given depth into dst
    /// (total bytes, 3 × total for depth 24). Depth 1 writes 0/1; it returns 1 even when the
    /// stream ends before the line is full. Depth 2 fails on a closing byte above 3, on a
    /// one-byte stream, and when the stream ends before total pixels were written. Depths 4, 8
    /// and 24 succeed only when exactly total pixels were written. Other depths fail (0).
    static int UnPack(const BYTE* src, ULONG srcLen, ULONG total, int depth, BYTE* dst);

    /// Windowed restore: writes pixels start .. start + count - 1 of a line of `total` pixels
    /// to dst[0 ..] (count bytes, 3 × count for depth 24); the pixels are those the whole-line
    /// UnPack gives at those positions. Fails (0) on a null pointer, count 0, start >= total,
    /// start + count > total, an unknown depth, a stream that does not reach the end of the
    /// window, or a stream whose records cannot be located (a malformed stream whose located
    /// record ends before start).
    static int UnPack(const BYTE* src, ULONG srcLen, ULONG total, int depth, ULONG start,
                      ULONG count, BYTE* dst);

    /// Packs pixels start .. start + count - 1 of the expanded line buf (pixel i at buf[i]) into
    /// the packed line dst at the same pixel positions (depth 1: bit 7 - i % 8 of byte i / 8;
    /// depth 2: two bits, pixel 0 in bits 7-6; depth 4: high nibble for even i). Bits of dst
    /// outside the range are kept. dst null packs over buf itself, byte by byte from the first
    /// (a partial first or last byte then keeps whatever buf holds there). Depth 1 treats any
    /// nonzero pixel as 1, depths 2 and 4 use the low bits. Deliberately, depth 1 writes
    /// nothing and returns 1 when start is not a multiple of 8 and the range ends in the byte
    /// where it starts. Depth 8 or more returns 1 without work, other depths 0; a null buf or
    /// count 0 returns 0 (tested before the depth).
    static int ShrinkBit(BYTE* buf, ULONG start, ULONG count, int depth, BYTE* dst);

    /// Expands packed pixels to one byte per pixel. Depths 2 and 4 read positions start ..
    /// start + count - 1 of the packed line src and write them to dst[start ..]. Depth 1
    /// differs deliberately: src points at the byte that holds the first pixel, only start % 8
    /// is used, and the count pixels go to dst[0 ..]. Depth 8 or more returns 1 without work,
    /// other depths 0; a null src or dst or count 0 returns 0 (tested before the depth).
    static int ExpandBit(const BYTE* src, ULONG start, ULONG count, int depth, BYTE* dst);

    /// Scales an image of srcWidth × srcHeight pixels to dstWidth × dstHeight by nearest pixel
    /// picking. Pixels are one byte for depth up to 8, (depth + 7) / 8 bytes above; rows have
    /// no padding. The source column of destination column j is (int)(x + 0.5) where x starts
    /// at 0.0 and grows by srcWidth / dstWidth per column (accumulated in double, not
    /// multiplied); rows likewise. Only 1- and 3-byte pixels are copied: for depths 9 to 16 and
    /// 25 and above dst is left untouched, deliberately, and the result is still 1.
    /// Enlarging by 2 or more rounds the last positions to srcWidth (srcHeight); such
    /// positions are clamped to the last source column (row), so no byte outside the source is
    /// read. Returns 0 when src or dst is null, or when pixels are due from a source with no
    /// column or row (srcWidth or srcHeight below 1); 1 with nothing written when dstHeight or
    /// dstWidth is below 1.
    static int ZoomBits(int srcWidth, int srcHeight, unsigned short depth, const BYTE* src,
                        int dstWidth, int dstHeight, BYTE* dst);

    /// Scales one expanded line of srcCount pixels to dstCount pixels: destination pixel i is
    /// source pixel map[i]. Pixels are one byte for depths 1, 2, 4 and 8, three for 24; other
    /// depths write nothing and return 1. Equal counts copy dstCount pixels (one byte each
    /// below depth 9, (depth + 7) / 8 above) and ignore the map; src == dst then returns 1 at
    /// once. A null map is computed as AMathOpt::ResampleLineMap(dstCount, srcCount) (entry i
    /// = the source index of destination pixel i). A growing line is written from the last
    /// pixel to the first, a shrinking one from the first to the last, so src and dst may be
    /// the same buffer when the map keeps each entry at most (growing) or at least (shrinking)
    /// its own index. Returns 0, writing nothing, when src or dst is null, a count is below 1,
    /// the computed map cannot be allocated, or a caller's map holds an entry at or beyond
    /// srcCount (the map is checked before any pixel is written).
    static int ResampleLine(const BYTE* src, int depth, int srcCount, BYTE* dst, int dstCount,
                            const ULONG* map);

protected:
    // ---- LZW and Base64: protected helpers --------------------------------------------------

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

    // ---- run-length and bit packing: protected helpers --------------------------------------
    //
    // The per-depth codecs behind Pack()/UnPack(). Arguments and results as for the public
    // functions; lengths are 32-bit.

    /// 4-bit run stream of an expanded line. srcLen 0 still writes one run of src[0]
    /// (deliberately). Capacity: opening a group needs dstLen + 1 < dstCap, closing one with a
    /// run of up to 255 needs dstLen + 3 < dstCap, with a piece of a longer run dstLen + 2 <
    /// dstCap, where dstLen stands at the value byte of a half-filled group; the final length
    /// must stay below dstCap. dstLen is not meaningful after a capacity failure.
    static int Comp_RLE4(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);
    /// 8-bit run stream; needs srcLen >= 2; each record needs dstLen + 2 < dstCap.
    static int Comp_RLE8(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);
    /// 24-bit run stream; srcLen a nonzero multiple of 3; each record needs dstLen + 4 < dstCap.
    /// dstLen is set only on success.
    static int Comp_RLE24(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap,
                          ULONG& dstLen);

    ///@{
    /// Windowed restores: pixels start .. start + count - 1 of a line of total pixels go to
    /// dst[0 ..]; 1 exactly when count pixels were written. The 4-bit one also fails on srcLen
    /// 1 more than a multiple of 3. Note the different argument order of the 24-bit one
    /// (start, count, total), deliberately.
    static int UnComp_RLE4(const BYTE* src, ULONG srcLen, ULONG total, ULONG start, ULONG count,
                           BYTE* dst);
    static int UnComp_RLE8(const BYTE* src, ULONG srcLen, ULONG total, ULONG start, ULONG count,
                           BYTE* dst);
    static int UnComp_RLE24(const BYTE* src, ULONG srcLen, ULONG start, ULONG count,
                            ULONG total, BYTE* dst);
    ///@}

    ///@{
    /// Locate the run holding pixel pos of a line of total pixels. pos 0, or a stream of one
    /// record, answers the first record; pos >= total / 2 searches back from the last record
    /// (starting from a running end of total), else forward from the first. offset receives
    /// the offset of the record (4-bit: of its count byte); before the pixels in front of it
    /// (clamped at 0 when a malformed stream holds more pixels than total); count (8-bit) its
    /// count byte; left (4-bit) the pixels of the run from pos to its end. All pointers must be
    /// valid. Fail on null src, srcLen 0, pos >= total, running off either end, an odd 8-bit
    /// length, a 4-bit length 1 more than a multiple of 3, a 24-bit length not a multiple of 4,
    /// and a 4-bit single run that ends before pos (left would be negative).
    static int GetLoc_RLE4(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* left);
    static int GetLoc_RLE8(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* before, ULONG* count);
    static int GetLoc_RLE24(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen,
                            ULONG* offset, ULONG* before);
    ///@}

    ///@{
    /// 1- and 2-bit line compressors. Pack1 reserves the last byte of dst for the closing byte
    /// (the stream may fill dst exactly); Pack2 keeps every length below dstCap - 1, so it
    /// needs two spare bytes. The last literal of Pack2 takes three pixel places; places past
    /// the line are written as 0 bits. dstLen is set on success only.
    static int Pack1(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);
    static int Pack2(const BYTE* src, ULONG srcLen, BYTE* dst, ULONG dstCap, ULONG& dstLen);
    ///@}

    ///@{
    /// Restore exactly `pixels` pixels (dst holds that many bytes). The closing byte is not
    /// decoded; a literal writes 7 (3) pixels, or fewer where dst ends; a run that reaches the
    /// end of dst fills it. UnPack1 returns 1 also when the stream ends early. UnPack2 fails
    /// on a closing byte above 3, on a one-byte stream, and when the stream ends with fewer
    /// than pixels pixels written.
    static int UnPack1(const BYTE* src, ULONG srcLen, ULONG pixels, BYTE* dst);
    static int UnPack2(const BYTE* src, ULONG srcLen, ULONG pixels, BYTE* dst);
    ///@}

    /// Largest output of Pack_Value: a 32-bit count needs at most 6 six-bit or 7 five-bit
    /// digits, so a dst of 10 bytes always suffices.
    static constexpr ULONG kPackValueMaxBytes = 10;
    /// Writes one run of count pixels of value as run digits, least significant first:
    /// depth 1 six-bit digits with bit 6 = (value != 0); depth 2 five-bit digits with bits 7-5
    /// = value & 7. dstLen = bytes written. Count 0 writes nothing and returns 1; other depths
    /// return 0.
    static int Pack_Value(BYTE value, ULONG count, int depth, BYTE* dst, ULONG& dstLen);

    ///@{
    /// Finds the element of a 1-bit (2-bit) stream holding pixel pos: a literal byte, or a run
    /// with all its digits. The closing byte is left out of the walk; a literal counts 7 (3)
    /// pixels, except the one just before the closing byte, which counts the closing byte's
    /// value. offset = the element's first byte, bytes = its length, inside = pos minus the
    /// pixels before it, pixels = its pixel count; any pointer but offset may be null. Fails
    /// on null src or offset, pos >= total, or a stream that ends before pos.
    static int GetLoc_RLE1(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* bytes, ULONG* inside, ULONG* pixels);
    static int GetLoc_RLE2(ULONG pos, ULONG total, const BYTE* src, ULONG srcLen, ULONG* offset,
                           ULONG* bytes, ULONG* inside, ULONG* pixels);
    ///@}

    ///@{
    /// Reads the run whose digit lies at src[offset] and returns the number of digit bytes
    /// read, 0 when that byte is a literal (or src is null, or bytes is 0). With whole == 0 it
    /// first steps back over at most bytes - 1 earlier digits of the same run. value = the run
    /// value (1-bit: bit 6; 2-bit: bits 6-5), count = the sum of the digits, read forward over
    /// at most `bytes` bytes that carry the run's top bits (two for 1-bit, three for 2-bit).
    /// src must hold offset + bytes bytes; digits beyond the 32nd bit of count are ignored.
    static ULONG UnPackSeg1(const BYTE* src, ULONG offset, ULONG bytes, BYTE& value,
                            ULONG& count, int whole);
    static ULONG UnPackSeg2(const BYTE* src, ULONG offset, ULONG bytes, BYTE& value,
                            ULONG& count, int whole);
    ///@}

    ///@{
    /// Per-depth members of ShrinkBit/ExpandBit (no argument checks of their own).
    static int ShrinkBit1(BYTE* buf, ULONG start, ULONG count, BYTE* dst);
    static int ShrinkBit2(BYTE* buf, ULONG start, ULONG count, BYTE* dst);
    static int ShrinkBit4(BYTE* buf, ULONG start, ULONG count, BYTE* dst);
    static int ExpandBit1(const BYTE* src, ULONG start, ULONG count, BYTE* dst);
    static int ExpandBit2(const BYTE* src, ULONG start, ULONG count, BYTE* dst);
    static int ExpandBit4(const BYTE* src, ULONG start, ULONG count, BYTE* dst);
    ///@}
};
