// Packed fractions: numerator in the high 32 bits of a 64-bit word, denominator in the low.
#include <kxbase/mathopt/amathopt.h>

#include <cmath>

#include "mathopt/mathopt_p.h"

namespace {

constexpr UINT64 Pack(UINT64 numerator, UINT64 denominator) {
    return (numerator << 32) | (denominator & 0xFFFFFFFFu);
}
constexpr UINT High(UINT64 f) {
    return static_cast<UINT>(f >> 32);
}
constexpr UINT Low(UINT64 f) {
    return static_cast<UINT>(f);
}

}  // namespace

UINT64 AMathOpt::CommonMultiple(UINT64 a, UINT64 b) {
    return kxbase::detail::Gcd(a, b);
}

UINT64 AMathOpt::SimpleFraction(UINT64 f) {
    const UINT n = High(f);
    const UINT d = Low(f);
    const UINT64 g = n != 0 ? kxbase::detail::Gcd(d, n) : d;
    if (g == 0) return f;  // 0 over 0: no divisor
    return Pack(n / g, d / g);
}

UINT64 AMathOpt::ScaleMultiply(UINT64 f, UINT64 g) {
    const UINT lo = Low(f) * Low(g);
    const UINT hi = High(f) * High(g);
    const UINT64 c = hi != 0 ? kxbase::detail::Gcd(lo, hi) : lo;
    if (c == 0) return 0;  // both products 0: no divisor
    return Pack(hi / c, lo / c);
}

UINT64 AMathOpt::DoubleToFraction(double x, double limit) {
    if (x > -1e-9 && x < 1e-9) return Pack(0xFFFFFFFFu, 1);
    if (x > 4294967295.0) return Pack(1, 0xFFFFFFFFu);
    if (x < 0 || std::isnan(x)) return 0;

    // Search bound: trunc(limit * x), clamped to [1, 0xFFFFFFFF]. Out-of-domain products
    // (NaN, negative) count as 0 and so give the bound 1.
    const double product = limit * x;
    UINT64 bound = 0;
    if (product >= 4294967295.0) {
        bound = 0xFFFFFFFFu;
    } else if (product >= 1.0) {
        bound = static_cast<UINT64>(product);
    }
    if (bound == 0) bound = 1;

    const double inverse = 1.0 / x;
    double bestError = 100.0;
    UINT64 bestN = 1;
    UINT64 bestD = 1;
    for (UINT64 n = 1;; ++n) {
        const double nd = static_cast<double>(n);
        // Denominators are taken modulo 65536, deliberately (the host's behaviour).
        const double q = std::fmin(nd * inverse, 4294967295.0);
        UINT64 d = static_cast<UINT64>(q) & 0xFFFFu;
        if (d != 0) {
            const double err = nd / static_cast<double>(d) - x;
            if (err > -1e-9 && err < 1e-9) return Pack(n, d);
            if (std::fabs(err) < bestError) {
                bestError = std::fabs(err);
                bestN = n;
                bestD = d;
            }
        }
        d += 1;  // the next denominator up, 65536 after 65535
        const double err = nd / static_cast<double>(d) - x;
        if (err > -1e-9 && err < 1e-9) return Pack(n, d);
        if (std::fabs(err) < bestError) {
            bestError = std::fabs(err);
            bestN = n;
            bestD = d;
        }
        if (n >= bound) break;
    }
    return Pack(bestN, bestD);
}
