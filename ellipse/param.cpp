// CEllipse: conic parameters of a rectangle's ellipse, the centred turned form, and the
// class's shared angle and rounding helpers.
#include <cmath>

#include <kxbase/ellipse/ellipse.h>
#include <kxbase/base/number_format.h>

#include "ellipse/ellipse_p.h"
#include "platform/sys.h"

namespace kxbase::detail::ell {

double NormalizeAngle(double angle) {
    if (!std::isfinite(angle)) return angle;
    if (angle >= 0.0 && angle < kTwoPi) return angle;
    return angle - ZelFloor(angle / kTwoPi) * kTwoPi;
}

}  // namespace kxbase::detail::ell

using namespace kxbase::detail::ell;

int CEllipse::GetEllipseParam(const RECTD& rc, const ATransform& t, double& a, double& b, double& c,
                              double& d, double& e, double& f) {
    const double w = rc.right - rc.left;
    const double h = rc.bottom - rc.top;
    // !(w > 0) also refuses a NaN edge.
    if (!(w > 0.0) || !(h > 0.0)) return 0;
    const double cx = (rc.left + rc.right) * 0.5;
    const double cy = (rc.top + rc.bottom) * 0.5;
    const double A2 = w * w * 0.25;  // squared half-width
    const double B2 = h * h * 0.25;  // squared half-height
    const double k1 = t.eM11, k2 = t.eM12, k3 = t.eM21, k4 = t.eM22, k5 = t.eDx, k6 = t.eDy;

    // B2*(x' - cx)^2 + A2*(y' - cy)^2 - A2*B2 with (x', y') the forward image of (x, y).
    double pa = k2 * k2 * A2 + k1 * k1 * B2;
    double pb = 2.0 * (B2 * k1 * k3 + A2 * k2 * k4);
    double pc = k4 * k4 * A2 + k3 * k3 * B2;
    double pd = 2.0 * (B2 * k1 * (k5 - cx) + A2 * k2 * (k6 - cy));
    double pe = 2.0 * (B2 * k3 * (k5 - cx) + A2 * k4 * (k6 - cy));
    double pf =
        A2 * ((k6 - 2.0 * cy) * k6 + cy * cy) + B2 * ((k5 - 2.0 * cx) * k5 + cx * cx) - B2 * A2;
    // Normalise by the smaller squared coefficient. There is no zero test on purpose: a
    // degenerate transform yields infinities or NaN, which every later routine refuses.
    const double m = pc < pa ? pc : pa;
    a = IeeeDiv(pa, m);
    b = IeeeDiv(pb, m);
    c = IeeeDiv(pc, m);
    d = IeeeDiv(pd, m);
    e = IeeeDiv(pe, m);
    f = IeeeDiv(pf, m);
    return 1;
}

int CEllipse::GetEllipseParam(const RECT& rc, const ATransform& t, double& a, double& b, double& c,
                              double& d, double& e, double& f) {
    return GetEllipseParam(RECTD(rc), t, a, b, c, d, e, f);
}

int CEllipse::GetEllipseParam(const RECT& rc, const ATransform& t, ELLPARAM& p) {
    return GetEllipseParam(RECTD(rc), t, p.a, p.b, p.c, p.d, p.e, p.f);
}

int CEllipse::GetEllipseParam(const RECTD& rc, const ATransform& t, ELLPARAM& p) {
    return GetEllipseParam(rc, t, p.a, p.b, p.c, p.d, p.e, p.f);
}

int CEllipse::GetEllipseParam(const RECT& rc, double angle, double& p, double& q, double& r,
                              double& s) {
    angle = NormalizeAngle(angle);
    // The form of angle + pi is that of angle: reduce below pi.
    if (angle > kPi) angle -= kPi;
    const std::int64_t w = std::int64_t{rc.right} - rc.left;
    const std::int64_t h = std::int64_t{rc.bottom} - rc.top;
    if (w < 1 || h < 1) return 0;
    const double wd = static_cast<double>(w), hd = static_cast<double>(h);
    const double H = hd * hd * 0.25, W = wd * wd * 0.25;
    const double co = kxbase::sys::Cos(angle), si = kxbase::sys::Sin(angle);
    p = co * co * H + si * si * W;
    q = si * si * H + co * co * W;
    r = (hd * hd - wd * wd) * 0.25 * (2.0 * co * si);
    s = H * W;
    return 1;
}

void CEllipse::PrecisePoint(double x, double y, POINT& out) {
    auto one = [](double v) -> LONG {
        // The 8-decimal text of values beyond the 32-bit range cannot be formed: saturate.
        if (v != v) return 0;
        if (v >= 2147483647.0) return 2147483647;
        if (v <= -2147483648.0) return -2147483647 - 1;
        const double fl = std::floor(ZelFloatPrecision(v, 8, 1));
        // The cut compares the unrounded value, so a value a few 1e-9 below an integer
        // rounds up to it and a fraction of at least 0.499999999999 rounds up.
        return TruncI32(v - fl < 0.499999999999 ? fl : fl + 1.0);
    };
    out.x = one(x);
    out.y = one(y);
}

void CEllipse::RectVertex(const RECT& rc, POINT pts[4]) {
    pts[0] = POINT{rc.left, rc.top};
    pts[1] = POINT{rc.left, rc.bottom};
    pts[2] = POINT{rc.right, rc.bottom};
    pts[3] = POINT{rc.right, rc.top};
}

int CEllipse::RotateRect(const RECT& rc, double angle, POINT pts[4]) {
    const std::int64_t w = std::int64_t{rc.right} - rc.left;
    const std::int64_t h = std::int64_t{rc.bottom} - rc.top;
    const std::int64_t cx = (std::int64_t{rc.left} + rc.right) / 2;
    const std::int64_t cy = (std::int64_t{rc.top} + rc.bottom) / 2;
    const std::int64_t hw = w / 2, hh = h / 2;
    const std::int64_t oddW = w & 1, oddH = h & 1;
    auto pt = [](std::int64_t x, std::int64_t y) {
        return POINT{TruncI32(static_cast<double>(x)), TruncI32(static_cast<double>(y))};
    };
    // The angle is used as given (no normalisation); only the four references are tested.
    if (NearZeroOrPi(angle)) {
        RectVertex(rc, pts);
        return 0;
    }
    if (NearQuarter(angle)) {
        // Width and height swap about the centre; odd sizes extend the far sides by one.
        pts[0] = pt(cx - hh, cy - hw);
        pts[1] = pt(cx - hh, cy + hw + oddW);
        pts[2] = pt(cx + hh + oddH, cy + hw + oddW);
        pts[3] = pt(cx + hh + oddH, cy - hw);
        return 0;
    }
    const double co = kxbase::sys::Cos(angle), si = kxbase::sys::Sin(angle);
    auto turn = [&](double X, double Y, double& tx, double& ty) {
        tx = std::trunc(X * co - Y * si);
        ty = std::trunc(Y * co + X * si);
        if (tx != tx) tx = 0.0;
        if (ty != ty) ty = 0.0;
    };
    double x0, y0, x1, y1;
    turn(-static_cast<double>(hw), -static_cast<double>(hh), x0, y0);
    turn(-static_cast<double>(hw), static_cast<double>(hh + oddH), x1, y1);
    const double fx = static_cast<double>(cx), fy = static_cast<double>(cy);
    pts[0] = POINT{TruncI32(fx + x0), TruncI32(fy + y0)};
    pts[1] = POINT{TruncI32(fx + x1), TruncI32(fy + y1)};
    pts[2] = POINT{TruncI32(fx - x0), TruncI32(fy - y0)};
    pts[3] = POINT{TruncI32(fx - x1), TruncI32(fy - y1)};
    // Quadrant code with the sign of the dividend (C remainder).
    const double q = std::trunc(2.0 * angle / kPi);
    if (!(std::fabs(q) < 1e15)) return 0;
    return static_cast<int>(static_cast<std::int64_t>(q) % 4);
}
