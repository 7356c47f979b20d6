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

}  // namespace kxbase::detail
