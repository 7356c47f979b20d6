// Nearest-neighbour resampling maps: where the run of destination pixels of each source
// pixel starts when a line of src pixels is stretched to dst pixels. The numeric toolkit
// publishes these maps and the zoom of the codecs uses them, so both share this one rule.
#pragma once

#include <kxbase/platform/types.h>

namespace kxbase::detail {

/// How a (src, dst) pair is mapped: one to one, by a whole factor, or through B(p) below.
enum class ResamplePair { Trivial, Integral, General };

inline ResamplePair ClassifyResample(UINT src, UINT dst) {
    if (src == dst || src == 0 || dst == 0) return ResamplePair::Trivial;
    if (dst % src == 0) return ResamplePair::Integral;
    return ResamplePair::General;
}

/// B(p) = trunc(p * dst / src) in double. p * dst is below 2^64, so the quotient converts
/// to 64 bits exactly; positions past the end of the line may exceed 32 bits and wrap.
inline UINT ResampleBoundary(UINT src, UINT dst, UINT p) {
    const double b = static_cast<double>(p) * static_cast<double>(dst) / static_cast<double>(src);
    return static_cast<UINT>(static_cast<UINT64>(b));
}

/// First destination pixel of each of the src pixels into starts[0 .. src - 1]: i when the
/// pair is trivial, k * i when dst = k * src, else B(i). A null starts does nothing.
void ResampleLineMap(UINT src, UINT dst, UINT* starts);

}  // namespace kxbase::detail
