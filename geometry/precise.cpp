// CPrecise: rounding with a chosen bias.
#include <kxbase/geometry/precise.h>

#include "geometry/saturate_p.h"

int CPrecise::PreciseInt(double value, double precision) {
    return kxbase::detail::PreciseInt(value, precision);
}
