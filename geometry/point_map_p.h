// Forward mapping of a POINTD array by an affine matrix, with the vector variant chosen by the
// caller. Every variant forms, per coordinate, exactly the products and sums of the portable
// loop in the same order (x*m11 + y*m21 + dx, rounded after each step, never fused), so the
// results do not depend on the variant.
#pragma once

#include <kxbase/geometry/pointd.h>

#include "geometry/simd_level_p.h"

namespace kxbase::detail {

struct AffineMap {
    double m11, m12, m21, m22, dx, dy;
    // No rotation or shear (exact zeros): the two cross products are skipped. For finite
    // coordinates they only add +-0, so the results agree up to the sign of a zero.
    bool axisAligned;
};

/// Maps p[0..n) in place with the variant of `level` (a level the processor lacks, or one
/// this build has no variant for, runs the next narrower one that exists).
void MapPointsD(const AffineMap& m, POINTD* p, int n, SimdLevel level);

}  // namespace kxbase::detail
