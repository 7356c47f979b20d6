// Zoom-ratio steps of a view: ratios above 1 magnify; they stay between 1/20000 and 100.
#include <kxbase/base/number_format.h>

#include <cmath>

namespace {

constexpr double kMaxRatio = 100.0;
constexpr double kMaxInverse = 20000.0;

// A ratio that is not positive (or NaN, or within 1e-10 of 0) starts over at 1:1.
bool ResetIfInvalid(double& ratio) {
    if (ratio < 1e-10 || ratio != ratio) {
        ratio = 1.0;
        return true;
    }
    return false;
}

// The nearer of ZelFloor(v) and ZelCeil(v), measured from v itself; the floor on a tie.
double SnapToWhole(double v) {
    const double lo = ZelFloor(v);
    const double hi = ZelCeil(v);
    return (v - lo <= hi - v) ? lo : hi;
}

// The step for a reduced ratio 1/n: fine steps near 1:1, coarser (a sixth) further out.
double ReductionStep(double n) {
    if (n < 11.1) return 1.0;
    if (n <= 10001.1) return std::trunc(n / 6.0);
    return 10000.0;
}

}  // namespace

void ZelZoomNormalRatio(double& ratio) {
    if (ResetIfInvalid(ratio)) return;
    if (ratio > 1.0) {
        double r = std::fmin(SnapToWhole(ratio), kMaxRatio);
        if (std::fabs(r) < 1e-10) r = 1.0;
        ratio = r;
        return;
    }
    double inv = std::fmin(SnapToWhole(1.0 / ratio), kMaxInverse);
    if (std::fabs(inv) < 1e-10) inv = 1.0;
    ratio = std::fmin(1.0 / inv, kMaxRatio);
}

void ZelZoomInRatio(double& ratio) {
    if (ResetIfInvalid(ratio)) return;
    if (ratio >= 1.0) {
        ratio = std::fmin(ZelCeil(ratio) + 1.0, kMaxRatio);
        return;
    }
    // The plain floor of the double inverse: 1/(1/123) is just below 123 and gives 122.
    const double n = std::floor(1.0 / ratio);
    const double m = std::fmin(n - ReductionStep(n), kMaxInverse);
    // From 1/1 (n = 1) the reduced step reaches 1/0: that is above 1:1 and becomes 1:1.
    double r = m > 0.0 ? 1.0 / m : 1.0;
    if (r > 1.0) r = 1.0;
    ratio = std::fmin(r, kMaxRatio);
}

void ZelZoomOutRatio(double& ratio) {
    if (ResetIfInvalid(ratio)) return;
    if (ratio > 1.0) {
        ratio = std::fmin(std::fmax(ZelCeil(ratio) - 1.0, 1.0), kMaxRatio);
        return;
    }
    const double n = std::floor(1.0 / ratio);
    ratio = 1.0 / std::fmin(n + ReductionStep(n), kMaxInverse);
}
