// Private helpers shared by the AMathOpt sources.
#pragma once

#include <cmath>
#include <limits>

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

/// a / b with the IEEE result for a zero divisor (a signed infinity, or NaN for 0 / 0 and
/// NaN / 0) produced without dividing by zero, so the sanitizer builds that trap such
/// divisions stay quiet.
inline double Divide(double a, double b) {
    if (b != 0) return a / b;
    if (a == 0 || std::isnan(a)) return std::numeric_limits<double>::quiet_NaN();
    const bool negative = std::signbit(a) != std::signbit(b);
    return negative ? -std::numeric_limits<double>::infinity()
                    : std::numeric_limits<double>::infinity();
}

/// The library's 8-decimal rounding (ZelFloatPrecision(v, 8, 1)) for the values its text
/// form can carry; a value that is not finite or whose magnitude reaches 2^31 is returned
/// unchanged.
double Round8(double v);

}  // namespace kxbase::detail
