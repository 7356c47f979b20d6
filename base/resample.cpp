#include "base/resample_p.h"

namespace kxbase::detail {

void ResampleLineMap(UINT src, UINT dst, UINT* starts) {
    if (!starts) return;
    switch (ClassifyResample(src, dst)) {
        case ResamplePair::Trivial:
            for (UINT i = 0; i < src; ++i) starts[i] = i;
            return;
        case ResamplePair::Integral: {
            const UINT k = dst / src;
            UINT s = 0;
            for (UINT i = 0; i < src; ++i, s += k) starts[i] = s;
            return;
        }
        case ResamplePair::General:
            break;
    }
    for (UINT i = 0; i < src; ++i) starts[i] = ResampleBoundary(src, dst, i);
}

}  // namespace kxbase::detail
