// Saturating double-to-integer conversions, the library's rounding rules, its one tolerance
// and its one IEEE division.
//
// A C++ conversion of a double outside the target's range (or of NaN) is undefined; these
// helpers clamp to the range instead and map NaN to 0, and are exact truncations otherwise.
// (The integer B-spline form keeps a rounding of its own, RoundHalfAwayNoEpsilon in
// separate/point_lanes_p.h: half away from zero without the epsilon step, as its contract
// states.)
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace kxbase::detail {

/// The library's one tolerance: the zero test of geometry (a difference strictly within
/// +-1e-10 is none) and the epsilon step of the rounding rules below.
inline constexpr double kTolerance = 1e-10;

inline std::int32_t TruncI32(double v) {
    if (v >= 2147483648.0) return std::numeric_limits<std::int32_t>::max();
    if (v <= -2147483649.0) return std::numeric_limits<std::int32_t>::min();
    if (v != v) return 0;
    return static_cast<std::int32_t>(v);
}

inline std::int64_t TruncI64(double v) {
    if (v >= 9223372036854775808.0) return std::numeric_limits<std::int64_t>::max();
    if (v < -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
    if (v != v) return 0;
    return static_cast<std::int64_t>(v);
}

inline std::uint32_t TruncU32(double v) {
    if (v >= 4294967296.0) return std::numeric_limits<std::uint32_t>::max();
    if (!(v > -1.0)) return 0;  // also NaN
    return static_cast<std::uint32_t>(v);
}

inline std::uint64_t TruncU64(double v) {
    if (v >= 18446744073709551616.0) return std::numeric_limits<std::uint64_t>::max();
    if (!(v > -1.0)) return 0;  // also NaN
    if (v >= 9223372036854775808.0) {
        // Through the signed range: take 2^63 off and put it back as the top bit.
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(v - 9223372036854775808.0)) |
               (std::uint64_t{1} << 63);
    }
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(v));
}

/// The epsilon step: 1e-10 added to a value that is not negative (0.0 and -0.0 included),
/// subtracted from a negative one.
inline double AddEpsilon(double v) {
    return v >= 0.0 ? v + kTolerance : v - kTolerance;
}
/// The half step: 0.5 added to a value that is not negative, subtracted from a negative one.
inline double AddHalf(double v) {
    return v >= 0.0 ? v + 0.5 : v - 0.5;
}

/// Epsilon truncation to int32 (saturating).
inline std::int32_t EpsTrunc32(double v) {
    return TruncI32(AddEpsilon(v));
}
/// Half-away rounding to int32, the library's rule for every double-to-integer result: the
/// half step, then the epsilon step, then saturating truncation (NaN gives 0).
inline std::int32_t HalfAway32(double v) {
    return TruncI32(AddEpsilon(AddHalf(v)));
}

/// CPrecise::PreciseInt, inlined for point loops.
inline std::int32_t PreciseInt(double value, double precision) {
    double v = value >= 0.0 ? value + precision : value - precision;
    v = v < 0.0 ? v - kTolerance : v + kTolerance;
    return TruncI32(v);
}

/// a / b with the IEEE result also for a zero divisor (an infinity signed by both operands,
/// or NaN for 0/0 and NaN/0), without performing a division by zero: callers whose contract
/// lets a singular map yield infinities use this instead of `/`.
inline double IeeeDiv(double a, double b) {
    if (b != 0.0) return a / b;
    if (a != a || a == 0.0) return std::numeric_limits<double>::quiet_NaN();
    const bool negative = std::signbit(a) != std::signbit(b);
    return negative ? -std::numeric_limits<double>::infinity()
                    : std::numeric_limits<double>::infinity();
}

}  // namespace kxbase::detail
