/// \file
/// AMathOpt: the numeric toolkit.
///
/// A class of static operations used by the rasteriser, the print-geometry code, the file
/// code and the settings screens:
///   - resampling maps between pixel grids (nearest-neighbour runs) and packed fractions;
///   - raster fraction print geometry: alternating step patterns for fractional pitches, and
///     frequency / speed / resolution conversions;
///   - byte searches, a row-rectangle copy, a patterned fill and a stable merge sort;
///   - a serialised probe of whether memory is writable;
///   - text forms of IPv4 and hardware addresses and of typed number lists and string lists.
///
/// Conventions. Every operation is static, keeps no state and is re-entrant, except that
/// MathOpt_IsBadWritePtr serialises its callers through one module-wide lock. Callers own
/// every buffer; nothing is allocated for the caller. Nothing throws. "Unsigned 32-bit
/// arithmetic" below means arithmetic modulo 2^32, exactly as written: products that exceed
/// 32 bits wrap and hosts rely on the wrapped values.
///
/// Packed fraction: an unsigned 64-bit word, numerator in the high 32 bits, denominator in
/// the low 32 bits.
///
/// Rounding to 8 decimals: the floating results of the print geometry go through
/// ZelFloatPrecision(value, 8, 1) (<kxbase/base/number_format.h>), i.e. they are the
/// nearest double to their 8-decimal text. A value that the 8-decimal text cannot carry
/// (not finite, or of magnitude 2^31 or more) is returned unrounded instead.
#pragma once

#include <mutex>

#include <kxbase/export.h>
#include <kxbase/mathopt/raster_fraction.h>
#include <kxbase/platform/carray.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

/// The numeric toolkit as static functions; see the file description for the conventions.
class KXBASE_API AMathOpt {
public:
    /// Not-found result of the byte searches.
    static constexpr ULONG kNotFound = 0xFFFFFFFFu;

    // =====================================================================================
    // Resampling maps
    //
    // A line of src pixels stretched or shrunk to dst pixels by pixel repetition: each source
    // pixel covers a run of destination pixels. The pair (src, dst) is "trivial" when
    // src == dst, src == 0 or dst == 0, and "integral" when it is not trivial and dst is a
    // multiple of src (k = dst / src). Otherwise the boundary of source position p is
    // B(p) = trunc(p * dst / src), computed in double and truncated toward zero. A boundary
    // beyond 32 bits (positions past the end of the line) is taken modulo 2^32.
    // Growing (src < dst) gives runs >= 1; shrinking gives runs of 0 for dropped pixels.
    // Output arrays must hold the number of entries stated; a null array writes nothing.
    // =====================================================================================

    /// First destination pixel of source pixel pos: pos when pos == 0 or the pair is
    /// trivial, pos * k (32-bit) when integral, else B(pos). (3, 7, 2) gives 4.
    static UINT ResamplePosition(UINT src, UINT dst, UINT pos);
    /// Run of source pixel pos: returns its length and writes its first destination pixel to
    /// *start when start is not null. Trivial: start pos, length 1. Integral: start k * pos,
    /// length k. Otherwise start B(pos) and length B(pos + 1) - B(pos) (32-bit).
    /// (3, 7, 2) gives length 3 from 4.
    static UINT ResamplePosition(UINT src, UINT dst, UINT pos, UINT* start);
    /// Run lengths of source pixels first .. last - 1 into counts[0 .. last - first - 1];
    /// nothing when last <= first. A single pixel gives exactly ResamplePosition's length.
    /// Trivial pairs give 1s, integral pairs k. Otherwise the first run is measured from
    /// dst * first / src computed in unsigned 32-bit integers (the product wraps; this is
    /// deliberately not B(first)), the others as B(p) - B(p - 1).
    static void ResampleSegCount(UINT src, UINT dst, UINT first, UINT last, UINT* counts);
    /// First destination pixel of source pixels first .. last - 1 into starts[]. A single
    /// pixel gives ResamplePosition's start; trivial pairs give first + j, integral pairs
    /// k * first + k * j, others B(first + j).
    static void ResampleSegMap(UINT src, UINT dst, UINT first, UINT last, UINT* starts);
    /// Run lengths of all src pixels of a line into counts[0 .. src - 1]. src == dst or
    /// dst == 0 give 1s; integral pairs k; others B(i) - B(i - 1). (3, 7) gives 2, 2, 3.
    static void ResampleLine(UINT src, UINT dst, UINT* counts);
    /// First destination pixel of each of the src pixels into starts[0 .. src - 1]:
    /// i when trivial, k * i when integral, else B(i). (3, 7) gives 0, 2, 4.
    static void ResampleLineMap(UINT src, UINT dst, UINT* starts);

    // =====================================================================================
    // Packed fractions
    // =====================================================================================

    /// Despite its name, the greatest common divisor of a and b (Euclid's remainder loop);
    /// b when a == 0, a when b == 0. The name is kept: callers rely on the divisor.
    static UINT64 CommonMultiple(UINT64 a, UINT64 b);
    /// f reduced by the greatest common divisor of its halves; 0 over d gives 0 over 1 and
    /// n over 0 gives 1 over 0. The all-zero word has no divisor and is returned as 0.
    static UINT64 SimpleFraction(UINT64 f);
    /// Product of two packed fractions, reduced: the halves are multiplied modulo 2^32, then
    /// divided by their common divisor (by the denominator alone when the numerator product
    /// is 0, giving 0 over 1). Both products 0 has no divisor and gives 0.
    static UINT64 ScaleMultiply(UINT64 f, UINT64 g);
    /// A fraction n / d near x, found by trying numerators n = 1, 2, ... up to a bound of
    /// trunc(limit * x) (at least 1, at most 0xFFFFFFFF) with the denominators
    /// trunc(min(n / x, 4294967295)) taken modulo 65536 (deliberately) and the next one up
    /// (a 32-bit value, so 65535 is followed by 65536). The first pair within 1e-9 of x is
    /// returned at once, else the nearest pair tried. Special words, which callers test for:
    ///   |x| < 1e-9                 -> numerator 0xFFFFFFFF, denominator 1;
    ///   x > 4294967295             -> numerator 1, denominator 0xFFFFFFFF;
    ///   x < 0 or x NaN             -> 0.
    /// A bound from a NaN or negative limit counts as 1; an infinite one as 0xFFFFFFFF.
    /// (0.5, 10) gives 1 over 2.
    static UINT64 DoubleToFraction(double x, double limit);

    // =====================================================================================
    // Raster fraction print geometry
    //
    // Lengths in millimetres, resolutions in dots per inch (25.4 mm to the inch), control
    // steps of `step` millimetres. Floating results are rounded to 8 decimals (see above).
    // =====================================================================================

    /// Highest resolution one control step allows: 25.4 / step, rounded; 0.0 when
    /// step <= 1e-10 or step is NaN. (0.0254) gives 1000.
    static double raster_control_resolution_max(double step);
    /// Builds the step pattern for printing at `resolution` with control steps of `step` mm,
    /// aligned to the control-step `position` where the line starts. All fields are zeroed
    /// first; false (fields zero) when step <= 1e-10, resolution <= 1e-10, resolution above
    /// raster_control_resolution_max(step), either value not finite, or the ideal ratio
    /// r = (25.4 / resolution) / step (rounded) above 65535.
    /// fractional == 0: both steps trunc(r + 0.5) and the counts 10000 (integer pitch).
    /// Otherwise the exact ratio N / M steps per pixel (N = 2540000, M =
    /// trunc(resolution * step * 100000), reduced) is split into y pixels of ZelCeil(r) and
    /// x of ZelFloor(r) steps per M pixels; a ratio within 1e-10 of a whole number gives the
    /// integer pitch. The rarer kind (A steps, E pixels) and the commoner (B, D) form the
    /// period P = A*E + B*D steps (32-bit); r0 = position mod P places the pattern:
    ///   roundUp == 0, r0 >= A*E: t = ZelFloor((r0 - A*E) / B); (B, A, D - t, E, D)
    ///   roundUp == 0, r0 <  A*E: t = ZelFloor(r0 / A);         (A, B, E - t, D, E)
    ///   roundUp != 0, r0 >  A*E: t = ZelCeil((r0 - A*E) / B);  (B, A, t, E, D)
    ///   roundUp != 0, r0 <= A*E: t = ZelCeil(r0 / A);          (A, B, t, D, E)
    /// as (stepFirst, stepSecond, leadCount, secondCount, firstCount). The boundary r0 == A*E
    /// deliberately falls on different sides for the two roundings. Counts are unsigned
    /// 32-bit (D - t wraps when t > D). The result is IsValid() of the pattern; a pattern
    /// with a zero step or a zero period is refused (false, fields zero) before it is placed.
    /// (600 dpi, 0.0254 mm, position 0, fractional) gives (1, 2, 1, 2, 1): 5 steps per 3
    /// pixels.
    static bool raster_fraction_printinfo(RASTER_FRACTION_PRINTINFO& info, ULONG position,
                                          double resolution, double step, int roundUp,
                                          int fractional);
    /// The resolution the pattern really prints: 0.0 when info is not valid; otherwise with
    /// the average pitch a = (stepFirst*firstCount + stepSecond*secondCount) / (secondCount +
    /// firstCount) (numerator in unsigned 32-bit arithmetic, the rest in double),
    /// 1 / (a * step) * 25.4, rounded. A numerator that wraps to 0 gives +infinity.
    static double raster_fraction_correct_resolution(const RASTER_FRACTION_PRINTINFO& info,
                                                     double step);
    /// Control steps that `pixels` image pixels occupy under the pattern (unsigned 32-bit
    /// arithmetic): the lead run, whole periods, then the partial period (its stepSecond run
    /// first). Equal steps give stepFirst * pixels. A period whose length
    /// secondCount + firstCount wraps to 0 counts as never completed.
    static ULONG raster_width_from_image(const RASTER_FRACTION_PRINTINFO& info, ULONG pixels);
    /// Carriage speed in mm/s: frequency / (resolution / 25.4), rounded. No checks: a zero
    /// resolution gives an infinity or NaN, returned as it is.
    static double FrequencyToSpeed(double resolution, double frequency);
    /// Firing frequency in Hz: resolution / 25.4 * speed, rounded. No checks.
    static double SpeedToFrequency(double resolution, double speed);
    /// Resolution in dpi: frequency / speed * 25.4, rounded. No checks: a zero speed gives
    /// an infinity or NaN, returned as it is.
    static double FrequencyToResolution(double frequency, double speed);

    // =====================================================================================
    // Byte search, patterned copy, merge sort
    //
    // Lengths and positions are unsigned 32-bit; kNotFound (0xFFFFFFFF) means not found,
    // also for a null buffer or pattern, a zero length, or a pattern longer than the buffer.
    // =====================================================================================

    /// Index of the first byte equal to b.
    static ULONG FindData(const BYTE* buf, ULONG len, BYTE b);
    /// Index of the first occurrence of pat[0 .. patLen - 1] in buf.
    static ULONG FindData(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);
    /// Does the text start with a run of decimal digits terminated by b, and where: skips the
    /// leading digits '0'..'9' and returns the index of the first non-digit when it equals b,
    /// else kNotFound (also when every byte is a digit). An empty run counts: ";12" with
    /// b = ';' gives 0.
    static ULONG FindData_Int(const BYTE* buf, ULONG len, BYTE b);
    /// Last byte equal to b, counted backwards from the last byte: returns k with
    /// buf[len - 1 - k] == b (0 means the last byte).
    static ULONG ReverseFindData(const BYTE* buf, ULONG len, BYTE b);
    /// Last occurrence of the pattern, reported as its distance from the end of the buffer:
    /// returns r with the occurrence starting at buf[len - r]. Note the deliberate difference
    /// from the single-byte form: a one-byte pattern found at the last byte gives 1, not 0.
    static ULONG ReverseFindData(const BYTE* buf, ULONG len, const BYTE* pat, ULONG patLen);

    /// Copies `rows` rows of a pixel rectangle between buffers of different row pitch (bytes,
    /// successive rows at dst + i * dstPitch and src + i * srcPitch). Bytes per row are
    /// width * (bits <= 8 ? 1 : bits / 8 rounded down after adding 7); for depths below 8
    /// bits width therefore counts bytes, not pixels. Returns 0 and copies nothing for a null
    /// pointer, width <= 0, rows <= 0, or a row wider than either pitch; else 1.
    static int myMemcpy(BYTE* dst, INT64 dstPitch, BYTE bits, const BYTE* src, INT64 srcPitch,
                        INT64 width, INT64 rows);
    /// Writes `count` copies of the patternSize-byte pattern one after another at dst
    /// (count * patternSize bytes). Nothing for null pointers, count <= 0 or patternSize 0.
    /// Patterns of at most 10 bytes with count >= 121 are written as blocks of 60 copies
    /// built once, then the remainder from the start of the block; the bytes written are the
    /// same either way.
    static void myMemset(BYTE* dst, const BYTE* pattern, UINT64 patternSize, INT64 count);
    /// Stable ascending merge sort of count records of size bytes at base. temp must provide
    /// count * size bytes of scratch space (its content afterwards is unspecified). The
    /// structure is fixed: top-down over [lo, hi), split at mid = (lo + hi) / 2, merge taking
    /// the left record while compare(left, right) < 1, so a comparison that is not a
    /// consistent order still gives a defined, repeatable result. Nothing for null pointers,
    /// count < 2 or size < 1. compare is called only with pointers into base or temp.
    static void merger_sort(void* base, LONG count, LONG size, void* temp,
                            LONG (*compare)(const void*, const void*));

    /// Nonzero when any byte of [p, p + size) is not writable by this process (including a
    /// null p, or a range that wraps around the address space); 0 when all are, and 0 for
    /// size 0. The probe reads the process's mapping table: it never writes to the range and
    /// never faults. Callers are serialised by the module-wide lock m_section_IsBadWritePtr
    /// when it exists; before Init() or after Exit() the probe still works, unserialised
    /// (it keeps no shared state). When the mapping table cannot be read the answer is
    /// "not writable".
    static int MathOpt_IsBadWritePtr(void* p, UINT64 size);

    /// Creates the module-wide lock of MathOpt_IsBadWritePtr. Called once by the module
    /// start-up; a second call keeps the existing lock. Not thread-safe against probes.
    static void Init();
    /// Deletes the lock. Called once at unload, when no probe is running.
    static void Exit();

    // =====================================================================================
    // Address texts
    //
    // IPv4: four bytes in text order. Hardware (MAC) address: six bytes in text order.
    // Numbers are scanned as the C library's "%d" / "%x" do (leading white space, an optional
    // sign, at least one digit; "%x" also takes a "0x" prefix), except that a number beyond
    // the 32-bit range saturates instead of being undefined. Text after the last number is
    // ignored.
    // =====================================================================================

    /// Zeroes the four bytes, then parses "%d.%d.%d.%d": false for a null or empty text,
    /// fewer than four numbers, a first or last number below 1, or any number of 255 or more.
    /// A negative second or third number is accepted and stored as its low 8 bits
    /// ("1.-1.2.3" stores 255, which IsValid then refuses). Otherwise stores and returns true.
    static bool ipaddress_TransFromString(BYTE* ip, const char* text);
    /// Empties text; false when ip is null, its first or last byte is 0 or any byte is 255;
    /// otherwise text = "%d.%d.%d.%d" and true.
    static bool ipaddress_TransToString(CString& text, const BYTE* ip);
    /// The text parses and the resulting bytes are valid (below).
    static bool ipaddress_IsValid(const char* text);
    /// Not null, first and last bytes non-zero, no byte 255: 0 is allowed only in the middle
    /// two places and 255 nowhere (network and broadcast forms are refused).
    static bool ipaddress_IsValid(const BYTE* ip);

    /// Zeroes the six bytes, then parses "%x-%x-%x-%x-%x-%x": false for a null or empty text,
    /// fewer than six numbers or any number above 254 (so a byte 0xFF is deliberately
    /// refused; the numbers are unsigned, so a negative one wraps and is refused too) with
    /// the bytes left zero. Otherwise stores the six bytes and returns false when all are
    /// zero, else true.
    static bool macaddress_TransFromString(BYTE* mac, const char* text);
    /// text = "%x-%x-%x-%x-%x-%x" (lower case, no leading zeros: 0A becomes "a"); true.
    /// A null mac, or no memory for the text, gives an empty text and false.
    static bool macaddress_TransToString(CString& text, const BYTE* mac);
    /// The text parses (which implies a non-zero byte).
    static bool macaddress_IsValid(const char* text);
    /// Not null and any of the six bytes non-zero.
    static bool macaddress_IsValid(const BYTE* mac);

    // =====================================================================================
    // Typed lists
    //
    // Element types: 1 signed 32-bit, 2 unsigned 32-bit, 3 signed 64-bit, 4 unsigned 64-bit,
    // 5 double, any other value unsigned 8-bit. Lists are raw arrays of that element type (no
    // alignment required).
    // =====================================================================================

    /// Empties text and formats count elements, each followed by a blank and separated by
    /// ", ": the list 1, 2, 3 gives "1 , 2 , 3 ". Items: types 1 "%d", 2 "%u", 3 "%I64d",
    /// 4 "%I64u", others the byte with "%d"; with hex non-zero "%X" / "%I64X" (negative
    /// values show their two's-complement bits). Type 5 is deliberately kept as the host
    /// knows it: every item prints "0.000000 " whatever the list holds and whatever hex
    /// says (the double form is write-only). Returns the text length; 0 for a null list or
    /// count < 1.
    static int TransListToString(CString& text, const void* list, int count, BYTE type, int hex);
    /// Builds the same text; when its length is at most size it is copied into buffer
    /// (followed by a terminator only when the length is below size) and the length is
    /// returned; otherwise buffer is untouched and the negated length (the room needed) is
    /// returned. A null buffer is never written and also gives the negated length.
    static int TransListToString(char* buffer, int size, const void* list, int count, BYTE type,
                                 int hex);
    /// Reads up to max comma-separated items of text into list and returns how many were
    /// stored. Leading white space before each item is skipped and empty fields are skipped
    /// (",,,4" gives one item). Items are read with ZelTextToInt64(item, hex)
    /// (<kxbase/base/int64_parse.h>: 0 when the item is not a number) and stored as 32
    /// bits (types 1, 2), 64 bits (3, 4) or the low byte (others); type 5 stores the double
    /// that the standard decimal parse gives (atof, in the "C" locale). 0 for a null list,
    /// max < 1, a null or empty text, or when memory runs out.
    static int TransListFromString(void* list, int max, BYTE type, const char* text, int hex);

    // String lists --------------------------------------------------------------------------

    /// The items joined with " , "; returns the text length.
    static int TransListToString(CString& text, const CStringArray& items);
    /// The same for count plain strings (an empty item still gets its separator); count < 1
    /// or a null array gives an empty text. Returns the length.
    static int TransListToString(CString& text, const CString* items, int count);
    /// Empties items, then splits text at commas: white space before each item is skipped,
    /// empty fields are dropped, each item is kept as it stands (trailing blanks included:
    /// "a , b" gives "a " and "b"). Returns the number of items; when memory runs out, no
    /// items and 0.
    static int TransListFromString(CStringArray& items, const char* text);

protected:
    /// The module-wide lock of MathOpt_IsBadWritePtr; null until Init() and after Exit().
    static std::mutex* m_section_IsBadWritePtr;
};
