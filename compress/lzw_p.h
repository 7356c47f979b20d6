// Internals shared by the LZW encoder and decoder: code values and the width schedule.
#pragma once

#include <kxbase/platform/types.h>

namespace kxbase::detail {

inline constexpr unsigned kLzwClear = 256;       // empties the dictionary
inline constexpr unsigned kLzwEnd = 257;         // last code of a stream
inline constexpr unsigned kLzwFirstEntry = 258;  // first dictionary code
// The encoder's entry count starts at 1 after a clear; it adds entries while the count is
// below this, so its codes stop at 4092 and never need more than 12 bits.
inline constexpr unsigned kLzwEncoderEntryLimit = 3836;
// The decoder accepts this many entries after a clear (codes 258 to 4352 would be needed for
// more; a 16-bit code array may hold them, a 12-bit stream cannot).
inline constexpr unsigned kLzwDecoderMaxEntries = 4095;

// Width schedule: the width is 9 bits after a (re)start and grows by one bit at the code
// numbers 255, 767 and 1791 counted from the start; 1279 is deliberately not a step.
// Returns the next step after `step`, or a count that is never reached.
constexpr ULONG LzwNextWidthStep(ULONG step) {
    return step == 255 ? 767 : step == 767 ? 1791 : 0xFFFFFFFFu;
}
inline constexpr ULONG kLzwFirstWidthStep = 255;

}  // namespace kxbase::detail
