// Resampling maps: where each source pixel's run of destination pixels starts and how long
// it is, for nearest-neighbour stretching of a line of src pixels to dst pixels.
#include <kxbase/mathopt/amathopt.h>

#include "base/resample_p.h"

namespace {

using kxbase::detail::ResamplePair;
using PairKind = ResamplePair;

PairKind Classify(UINT src, UINT dst) {
    return kxbase::detail::ClassifyResample(src, dst);
}
UINT Boundary(UINT src, UINT dst, UINT p) {
    return kxbase::detail::ResampleBoundary(src, dst, p);
}

}  // namespace

UINT AMathOpt::ResamplePosition(UINT src, UINT dst, UINT pos) {
    if (pos == 0) return 0;
    switch (Classify(src, dst)) {
        case PairKind::Trivial:
            return pos;
        case PairKind::Integral:
            return pos * (dst / src);
        case PairKind::General:
            break;
    }
    return Boundary(src, dst, pos);
}

UINT AMathOpt::ResamplePosition(UINT src, UINT dst, UINT pos, UINT* start) {
    UINT first = 0;
    UINT length = 0;
    switch (Classify(src, dst)) {
        case PairKind::Trivial:
            first = pos;
            length = 1;
            break;
        case PairKind::Integral: {
            const UINT k = dst / src;
            first = k * pos;
            length = k;
            break;
        }
        case PairKind::General:
            first = pos == 0 ? 0 : Boundary(src, dst, pos);
            length = Boundary(src, dst, pos + 1) - first;
            break;
    }
    if (start) *start = first;
    return length;
}

void AMathOpt::ResampleSegCount(UINT src, UINT dst, UINT first, UINT last, UINT* counts) {
    if (!counts || last <= first) return;
    if (last - first == 1) {
        counts[0] = ResamplePosition(src, dst, first, nullptr);
        return;
    }
    const UINT n = last - first;
    switch (Classify(src, dst)) {
        case PairKind::Trivial:
            for (UINT j = 0; j < n; ++j) counts[j] = 1;
            return;
        case PairKind::Integral: {
            const UINT k = dst / src;
            for (UINT j = 0; j < n; ++j) counts[j] = k;
            return;
        }
        case PairKind::General:
            break;
    }
    // The first run is measured from the integer start (the 32-bit product wraps), which
    // hosts depend on; every later run from the double boundaries.
    UINT prev = dst * first / src;
    for (UINT j = 0; j < n; ++j) {
        const UINT b = Boundary(src, dst, first + j + 1);
        counts[j] = b - prev;
        prev = b;
    }
}

void AMathOpt::ResampleSegMap(UINT src, UINT dst, UINT first, UINT last, UINT* starts) {
    if (!starts || last <= first) return;
    if (last - first == 1) {
        ResamplePosition(src, dst, first, &starts[0]);
        return;
    }
    const UINT n = last - first;
    switch (Classify(src, dst)) {
        case PairKind::Trivial:
            for (UINT j = 0; j < n; ++j) starts[j] = first + j;
            return;
        case PairKind::Integral: {
            const UINT k = dst / src;
            UINT s = k * first;
            for (UINT j = 0; j < n; ++j, s += k) starts[j] = s;
            return;
        }
        case PairKind::General:
            break;
    }
    for (UINT j = 0; j < n; ++j) starts[j] = Boundary(src, dst, first + j);
}

void AMathOpt::ResampleLine(UINT src, UINT dst, UINT* counts) {
    if (!counts || src == 0) return;
    if (src == dst || dst == 0) {
        for (UINT i = 0; i < src; ++i) counts[i] = 1;
        return;
    }
    if (dst % src == 0) {
        const UINT k = dst / src;
        for (UINT i = 0; i < src; ++i) counts[i] = k;
        return;
    }
    UINT prev = 0;
    for (UINT i = 0; i < src; ++i) {
        const UINT b = Boundary(src, dst, i + 1);
        counts[i] = b - prev;
        prev = b;
    }
}

void AMathOpt::ResampleLineMap(UINT src, UINT dst, UINT* starts) {
    kxbase::detail::ResampleLineMap(src, dst, starts);
}
