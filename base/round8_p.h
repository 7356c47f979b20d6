// The library's 8-decimal rounding (ZelFloatPrecision(v, 8, 1): the nearest double to the
// value's 8-decimal text) in the three forms its callers have contracts for. They agree on
// every finite value below 2^31 in magnitude and differ only in what passes through.
#pragma once

#include <cmath>

#include <kxbase/base/number_format.h>

namespace kxbase::detail {

/// Every value through the text: NaN gives 0 and huge values saturate as the text form
/// does. The unit conversions use it, whose results are stated as the text's value always.
inline double Round8(double v) {
    return ZelFloatPrecision(v, 8, 1);
}

/// Finite values through the text; infinities and NaN unchanged. The screen densities use
/// it: a screen without a physical size has an infinite or undefined density, and the host
/// must see that rather than a saturated number.
inline double Round8KeepNonFinite(double v) {
    return std::isfinite(v) ? ZelFloatPrecision(v, 8, 1) : v;
}

/// Values the 8-decimal text of the host format can carry (finite, magnitude below 2^31)
/// through the text; every other value unchanged. The print geometry uses it, whose results
/// beyond that range are stated as unrounded.
inline double Round8Within32(double v) {
    if (!std::isfinite(v) || std::fabs(v) >= 2147483648.0) return v;
    return ZelFloatPrecision(v, 8, 1);
}

}  // namespace kxbase::detail
