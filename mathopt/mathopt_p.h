// Private helpers shared by the AMathOpt sources.
#pragma once

#include <kxbase/platform/types.h>

namespace kxbase::detail {

/// Greatest common divisor by Euclid's remainder loop; b when a == 0, a when b == 0.
constexpr UINT64 Gcd(UINT64 a, UINT64 b) {
    while (b != 0) {
        const UINT64 r = a % b;
        a = b;
        b = r;
    }
    return a;
}

/// The library's 8-decimal rounding (ZelFloatPrecision(v, 8, 1)) for the values its text
/// form can carry; a value that is not finite or whose magnitude reaches 2^31 is returned
/// unchanged.
double Round8(double v);

}  // namespace kxbase::detail
