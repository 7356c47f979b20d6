// CPrecise: rounding with a chosen bias.
#include <kxbase/geometry/precise.h>

#include "base/saturate_p.h"

int CPrecise::PreciseInt(double value, double precision) {
    return kxbase::detail::PreciseInt(value, precision);
}
