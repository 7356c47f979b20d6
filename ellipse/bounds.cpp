// CEllipse: extreme points, bounding boxes and centre of a conic; the topmost and rightmost
// points; the gradient octant of a point; the point where a ray from the centre meets it.
#include <cmath>
#include <cstdint>

#include <kxbase/ellipse/ellipse.h>
#include <kxbase/geometry/precise.h>

#include "ellipse/ellipse_p.h"
#include "platform/sys.h"

using namespace kxbase::detail::ell;

namespace {

struct Extremes {
    double yTop, yBot, xTop, xBot;        // vertical extremes and their x
    double xLeft, xRight, yLeft, yRight;  // horizontal extremes and their y
};

// Roots of alpha*v^2 + beta*v + gamma = 0 that bound the conic along one axis: where a line
// along the other axis touches the ellipse, the quadratic there has a double root.
bool TangentRoots(double alpha, double beta, double gamma, double& lo, double& hi) {
    if (std::fabs(alpha) < kZero) {
        if (std::fabs(beta) < kZero) return false;
        lo = hi = -gamma / beta;
        return true;
    }
    const double disc = beta * beta - 4.0 * alpha * gamma;
    if (disc < 0.0) return false;
    const double sq = std::sqrt(disc);
    lo = (-sq - beta) / (2.0 * alpha);
    hi = (sq - beta) / (2.0 * alpha);
    return true;
}

bool ComputeExtremes(const ELLPARAM& p, Extremes& x) {
    if (std::fabs(p.a) < kZero || std::fabs(p.c) < kZero) return false;
    if (!TangentRoots(p.c - p.b * p.b / (4.0 * p.a), p.e - p.b * p.d / (2.0 * p.a),
                      p.f - p.d * p.d / (4.0 * p.a), x.yTop, x.yBot))
        return false;
    x.xTop = -(p.b * x.yTop + p.d) / (2.0 * p.a);
    x.xBot = -(p.b * x.yBot + p.d) / (2.0 * p.a);
    if (!TangentRoots(p.a - p.b * p.b / (4.0 * p.c), p.d - p.e * p.b / (2.0 * p.c),
                      p.f - p.e * p.e / (4.0 * p.c), x.xLeft, x.xRight))
        return false;
    x.yLeft = -(p.b * x.xLeft + p.e) / (2.0 * p.c);
    x.yRight = -(p.b * x.xRight + p.e) / (2.0 * p.c);
    // A conic with non-finite coefficients has no usable extremes.
    const double all[8] = {x.yTop, x.yBot, x.xTop, x.xBot, x.xLeft, x.xRight, x.yLeft, x.yRight};
    for (double v : all)
        if (!std::isfinite(v)) return false;
    return true;
}

LONG AddSat(LONG base, double extent) {
    const std::int64_t v = std::int64_t{base} + TruncI32(extent);
    return v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : static_cast<LONG>(v);
}

POINT RoundPoint(const POINTD& p) {
    POINT out;
    CPrecise::PrecisePoint(p, out, 0.5);
    return out;
}

ATransform Inverse(const ATransform& t) {
    ATransform inv(t);
    inv.InverseMatrix();  // a singular map is used as InverseMatrix leaves it (unchanged)
    return inv;
}

}  // namespace

// ---- bounds ------------------------------------------------------------------------------

int CEllipse::GetEllBoundary(const ELLPARAM& param, POINTD* pts, RECT* border, POINTD* center) {
    Extremes x;
    if (!ComputeExtremes(param, x)) return 0;
    if (pts) {
        pts[0] = POINTD(x.xTop, x.yTop);
        pts[1] = POINTD(x.xLeft, x.yLeft);
        pts[2] = POINTD(x.xBot, x.yBot);
        pts[3] = POINTD(x.xRight, x.yRight);
    }
    if (border) {
        int left, top;
        CPrecise::PrecisePoint(x.xLeft, x.yTop, left, top, 0.5);
        border->left = left;
        border->top = top;
        border->right = AddSat(left, x.xRight - x.xLeft + 1.5);
        border->bottom = AddSat(top, x.yBot - x.yTop + 1.5);
    }
    if (center) *center = POINTD((x.xLeft + x.xRight) * 0.5, (x.yTop + x.yBot) * 0.5);
    return 1;
}

int CEllipse::GetEllBoundary(const ELLPARAM& param, POINT* pts, RECT* border, POINT* center) {
    POINTD buf[4];
    POINTD c;
    const int ok = GetEllBoundary(param, buf, border, &c);
    // Written whether or not the routine succeeded: zeros on failure.
    if (pts)
        for (int i = 0; i < 4; ++i) pts[i] = RoundPoint(buf[i]);
    if (center) *center = static_cast<POINT>(c);  // epsilon truncation only, deliberately
    return ok;
}

int CEllipse::GetEllBoundary(const ELLPARAM& param, ELLBOUND& bound) {
    return GetEllBoundary(param, bound.ptBound, &bound.rcBorder, &bound.ptCenter);
}

int CEllipse::GetEllBoundary(const RECTD& rc, const ATransform& t, POINTD* pts, RECT* border,
                             POINTD* center) {
    ELLPARAM p;
    if (!GetEllipseParam(rc, Inverse(t), p)) return 0;
    return GetEllBoundary(p, pts, border, center);
}

int CEllipse::GetEllBoundary(const RECT& rc, const ATransform& t, POINTD* pts, RECT* border,
                             POINTD* center) {
    return GetEllBoundary(RECTD(rc), t, pts, border, center);
}

int CEllipse::GetEllBoundary(const RECTD& rc, const ATransform& t, POINT* pts, RECT* border,
                             POINT* center) {
    ELLPARAM p;
    if (!GetEllipseParam(rc, Inverse(t), p)) return 0;
    return GetEllBoundary(p, pts, border, center);
}

int CEllipse::GetEllBoundary(const RECT& rc, const ATransform& t, POINT* pts, RECT* border,
                             POINT* center) {
    return GetEllBoundary(RECTD(rc), t, pts, border, center);
}

int CEllipse::GetEllBoundary(const RECT& rc, const ATransform& t, ELLBOUND& bound) {
    return GetEllBoundary(RECTD(rc), t, bound.ptBound, &bound.rcBorder, &bound.ptCenter);
}

int CEllipse::GetEllBoundary(const RECTD& rc, const ATransform& t, ELLBOUND& bound) {
    return GetEllBoundary(rc, t, bound.ptBound, &bound.rcBorder, &bound.ptCenter);
}

int CEllipse::GetEllipseBorder(const ELLPARAM& param, RECT& border) {
    Extremes x;
    if (!ComputeExtremes(param, x)) return 0;
    // Rounding without the 1e-10 epsilon; differs from GetEllBoundary on purpose.
    auto round = [](double v) { return TruncI32(v > 0.0 ? v + 0.5 : v - 0.5); };
    border.left = round(x.xLeft);
    border.top = round(x.yTop);
    border.right = AddSat(border.left, x.xRight - x.xLeft + 1.5);
    border.bottom = AddSat(border.top, x.yBot - x.yTop + 1.5);
    return 1;
}

int CEllipse::GetEllipseBorder(const RECTD& rc, const ATransform& t, RECT& border) {
    ELLPARAM p;
    if (!GetEllipseParam(rc, Inverse(t), p)) return 0;
    return GetEllipseBorder(p, border);
}

int CEllipse::GetEllipseBorder(const RECT& rc, const ATransform& t, RECT& border) {
    return GetEllipseBorder(RECTD(rc), t, border);
}

void CEllipse::GetEllipseBorder(const RECT& rc, double angle, RECT& border) {
    angle = NormalizeAngle(angle);
    const std::int64_t w = std::int64_t{rc.right} - rc.left;
    const std::int64_t h = std::int64_t{rc.bottom} - rc.top;
    if (w == h || NearZeroOrPi(angle)) {
        border = rc;
        return;
    }
    const std::int64_t cx = (std::int64_t{rc.left} + rc.right) / 2;
    const std::int64_t cy = (std::int64_t{rc.top} + rc.bottom) / 2;
    double p = 0.0, q = 0.0, r = 0.0, s = 0.0;
    if (!GetEllipseParam(rc, angle, p, q, r, s)) p = q = r = s = 0.0;
    POINT top{0, 0}, right{0, 0};
    if (!GetTopPoint(p, q, r, s, top)) top = POINT{0, 0};
    if (!GetRightPoint(p, q, r, s, right)) right = POINT{0, 0};
    auto sat = [](std::int64_t v) {
        return static_cast<LONG>(v > INT32_MAX ? INT32_MAX : v < INT32_MIN ? INT32_MIN : v);
    };
    // A deliberate two-pixel margin on every side.
    border.left = sat(cx - right.x - 2);
    border.top = sat(cy - top.y - 2);
    border.right = sat(cx + 2 + right.x);
    border.bottom = sat(cy + 2 + top.y);
}

// ---- extreme points ----------------------------------------------------------------------

namespace {

// The extreme point of the centred conic p*x^2 + q*y^2 + r*x*y = s along the y axis (the
// top); called with p and q exchanged it gives the extreme along x (the right), with u and v
// then meaning y and x. Fails when the conic has no such extreme (a degenerate denominator).
bool ExtremeAlongV(double p, double q, double r, double s, double& u, double& v) {
    if (std::fabs(r) < kZero) {
        u = 0.0;
        v = std::sqrt(IeeeDiv(s, q));
        return true;
    }
    const double den = 4.0 * p * p * q - r * r * p;
    if (std::fabs(den) < kZero) return false;  // the platform beep: nothing to sound here
    const double m = std::sqrt(r * r * s / den);
    u = p * r > 0.0 ? -m : m;
    v = -2.0 * p * u / r;
    return true;
}

}  // namespace

int CEllipse::GetTopPoint(double p, double q, double r, double s, POINT& out) {
    double x, y;
    if (!ExtremeAlongV(p, q, r, s, x, y)) return 0;
    PrecisePoint(x, y, out);
    return 1;
}

int CEllipse::GetRightPoint(double p, double q, double r, double s, POINT& out) {
    double x, y;
    if (!ExtremeAlongV(q, p, r, s, y, x)) return 0;
    PrecisePoint(x, y, out);
    return 1;
}

int CEllipse::GetTopPoint(const ELLPARAM& p, POINT& out) {
    return GetTopPoint(p.a, p.b, p.c, p.d, p.e, p.f, out);
}

int CEllipse::GetTopPoint(double a, double b, double c, double d, double e, double f, POINT& out) {
    double x, y;
    if (std::fabs(b) < kZero) {
        if (std::fabs(a) < kZero) return 0;
        x = -d / (2.0 * a);
        const double g = f - d * d / (4.0 * a);
        if (std::fabs(c) < kZero) {
            if (std::fabs(e) < kZero) return 0;
            y = -g / e;
        } else {
            const double disc = e * e - 4.0 * c * g;
            if (disc < 0.0) return 0;
            y = (-e - std::sqrt(disc)) / (2.0 * c);
        }
    } else {
        // The top point satisfies 2a*x + b*y + d = 0; substitute y into the conic.
        const double bb = b * b;
        const double alpha = 4.0 * a * a * c / bb - a;
        const double beta = 4.0 * a * c * d / bb - 2.0 * a * e / b;
        const double gamma = c * d * d / bb - d * e / b + f;
        if (std::fabs(alpha) < kZero) {
            if (std::fabs(beta) < kZero) return 0;
            x = -gamma / beta;
            y = -(2.0 * a * x + d) / b;
        } else {
            const double disc = beta * beta - 4.0 * alpha * gamma;
            if (disc < 0.0) return 0;
            const double sq = std::sqrt(disc);
            const double x1 = (-sq - beta) / (2.0 * alpha);
            const double x2 = (sq - beta) / (2.0 * alpha);
            const double y1 = -(2.0 * a * x1 + d) / b;
            const double y2 = -(2.0 * a * x2 + d) / b;
            // The smaller y is the top; on equal y the second root is kept.
            if (y1 < y2) {
                x = x1;
                y = y1;
            } else {
                x = x2;
                y = y2;
            }
        }
    }
    PrecisePoint(x, y, out);
    return 1;
}

// ---- gradient octant ---------------------------------------------------------------------

int CEllipse::EllPointSite(const ELLPARAM& p, const POINTD& pt) {
    const double gx = 2.0 * p.a * pt.x + p.b * pt.y + p.d;
    const double gy = 2.0 * p.c * pt.y + p.b * pt.x + p.e;
    // Octants numbered in the order the outline runs: top, left, bottom, right. On an exact
    // diagonal the higher code of the pair wins.
    if (gx <= 0.0) {
        if (gy < 0.0) return gx > gy ? 0 : 1;
        return -gx > gy ? 2 : 3;
    }
    if (gy > 0.0) return gy > gx ? 4 : 5;
    return gx > -gy ? 6 : 7;
}

int CEllipse::EllPointSite(const ELLPARAM& p, const POINT& pt) {
    return EllPointSite(p, POINTD(pt));
}

// ---- ray from the centre -----------------------------------------------------------------

int CEllipse::EllipsePoint(const ELLPARAM& p, const POINTD* center, double angle, POINTD& out) {
    angle = NormalizeAngle(angle);
    POINTD c;
    if (center) {
        c = *center;
    } else if (!GetEllBoundary(p, static_cast<POINTD*>(nullptr), nullptr, &c)) {
        return 0;
    }
    const double cx = c.x, cy = c.y;
    const bool nearPi = Near(angle, kPi);
    if (Near(angle, 0.0) || nearPi || Near(angle, kTwoPi)) {
        // Horizontal ray: solve a*x^2 + (b*y + d)*x + (c*y^2 + e*y + f) = 0 on y = cy.
        const double y = cy;
        const double B = p.b * y + p.d;
        const double C = p.c * y * y + p.e * y + p.f;
        double x;
        if (std::fabs(p.a) >= kZero) {
            const double disc = B * B - 4.0 * p.a * C;
            if (!(disc >= 0.0)) return 0;
            const double sq = nearPi ? -std::sqrt(disc) : std::sqrt(disc);
            x = (sq - B) / p.a * 0.5;
        } else {
            if (!(std::fabs(B) >= kZero)) return 0;
            x = -C / B;
        }
        out = POINTD(x, y);
        return 1;
    }
    const bool nearDown = Near(angle, kPi / 2);
    if (nearDown || Near(angle, 3 * kPi / 2)) {
        // Vertical ray on x = cx.
        const double x = cx;
        const double B = p.b * x + p.e;
        const double C = p.a * x * x + p.d * x + p.f;
        double y;
        if (std::fabs(p.c) >= kZero) {
            const double disc = B * B - 4.0 * p.c * C;
            if (!(disc >= 0.0)) return 0;
            const double sq = nearDown ? std::sqrt(disc) : -std::sqrt(disc);
            y = (sq - B) / p.c * 0.5;
        } else {
            if (!(std::fabs(B) >= kZero)) return 0;
            y = -C / B;
        }
        out = POINTD(x, y);
        return 1;
    }
    // General ray y = cy + t*(x - cx), substituted into the conic.
    const double t = std::tan(angle);
    const double k = t * cx - cy;
    double A = p.a + p.b * t + p.c * t * t;
    double B = (p.e - p.b * cx - 2.0 * t * p.c * cx + 2.0 * p.c * cy) * t + (p.b * cy + p.d);
    double C = p.c * k * k - p.e * k + p.f;
    double n = std::fabs(A);
    if (std::fabs(B) < n) n = std::fabs(B);
    if (std::fabs(C) < n) n = std::fabs(C);
    if (n > kZero) {
        A /= n;
        B /= n;
        C /= n;
    }
    double x;
    if (std::fabs(A) < kZero) {
        if (!(std::fabs(B) >= kZero)) return 0;
        x = -C / B;
    } else {
        const double disc = B * B - 4.0 * A * C;
        if (!(disc >= 0.0)) return 0;
        const double s = kxbase::sys::Cos(angle) >= 0.0 ? 1.0 : -1.0;
        x = (s * std::sqrt(disc) - B) / A * 0.5;
    }
    out = POINTD(x, (x - cx) * t + cy);
    return 1;
}

int CEllipse::EllipsePoint(const ELLPARAM& p, const POINT* center, double angle, POINT& out) {
    POINTD c, r;
    if (center) c = POINTD(*center);
    const int ok = EllipsePoint(p, center ? &c : nullptr, angle, r);
    out = RoundPoint(r);  // written even on failure: (0, 0)
    return ok;
}

int CEllipse::EllipsePoint(const ELLPARAM& p, const ELLBOUND& bound, double angle, POINTD& out) {
    return EllipsePoint(p, &bound.ptCenter, angle, out);
}

int CEllipse::EllipsePoint(const ELLPARAM& p, const ELLBOUND& bound, double angle, POINT& out) {
    POINTD r;
    const int ok = EllipsePoint(p, &bound.ptCenter, angle, r);
    out = RoundPoint(r);
    return ok;
}

int CEllipse::EllipsePoint(const RECTD& rc, const ATransform& t, const POINTD* center, double angle,
                           POINTD& out) {
    // Centre and angle are taken in the rectangle's own space.
    ELLPARAM p;
    if (!GetEllipseParam(rc, ATransform(), p)) return 0;
    POINTD r;
    if (!EllipsePoint(p, center, angle, r)) return 0;
    t.CalcPoint(r);
    out = r;
    return 1;
}

int CEllipse::EllipsePoint(const RECT& rc, const ATransform& t, const POINTD* center, double angle,
                           POINTD& out) {
    return EllipsePoint(RECTD(rc), t, center, angle, out);
}

int CEllipse::EllipsePoint(const RECTD& rc, const ATransform& t, const POINT* center, double angle,
                           POINT& out) {
    ELLPARAM p;
    if (!GetEllipseParam(rc, ATransform(), p)) return 0;
    POINTD c, r;
    if (center) c = POINTD(*center);
    const int ok = EllipsePoint(p, center ? &c : nullptr, angle, r);
    // Rounded in the rectangle's space (written even on failure), and on success carried
    // by the transform and rounded again: two roundings, deliberately.
    out = RoundPoint(r);
    if (ok) t.CalcPoint(out, 0.5);
    return ok;
}

int CEllipse::EllipsePoint(const RECT& rc, const ATransform& t, const POINT* center, double angle,
                           POINT& out) {
    return EllipsePoint(RECTD(rc), t, center, angle, out);
}
