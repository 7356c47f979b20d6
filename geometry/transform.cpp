// ATransform: composition, forward and inverse mapping, decomposition.
#include <kxbase/geometry/transform.h>

#include <cmath>
#include <cstddef>

#include "base/saturate_p.h"
#include "geometry/point_map_p.h"
#include "platform/sys.h"

#if KXBASE_X86_DISPATCH
#include <immintrin.h>
#endif

using kxbase::detail::AffineMap;
using kxbase::detail::HostSimdLevel;
using kxbase::detail::IeeeDiv;
using kxbase::detail::MapPointsD;
using kxbase::detail::PreciseInt;
using kxbase::detail::SimdLevel;

namespace kxbase::detail {
namespace {

// The coefficients are copied to locals first: stores through the point pointer could
// otherwise alias them and force a reload per point.
void MapPortable(const AffineMap& m, POINTD* p, int n) {
    const double a = m.m11, b = m.m12, c = m.m21, d = m.m22, e = m.dx, f = m.dy;
    if (m.axisAligned) {
        for (int i = 0; i < n; ++i) {
            p[i].x = p[i].x * a + e;
            p[i].y = p[i].y * d + f;
        }
    } else {
        for (int i = 0; i < n; ++i) {
            const double x = p[i].x;
            const double y = p[i].y;
            p[i].x = x * a + y * c + e;
            p[i].y = x * b + y * d + f;
        }
    }
}

#if KXBASE_X86_DISPATCH
// The vector variants keep (x, y) pairs as they lie in memory. Per pair: the x lane needs
// x*m11 + y*m21 + dx, the y lane x*m12 + y*m22 + dy, so x is broadcast over its pair and
// multiplied by (m11, m12), y likewise by (m21, m22); the two products are added and then the
// offsets, as in the portable loop.

KXBASE_TARGET_AVX2 inline __m256d Map4(__m256d q, __m256d fx, __m256d fy, __m256d off) {
    const __m256d xs = _mm256_unpacklo_pd(q, q), ys = _mm256_unpackhi_pd(q, q);
    return _mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(xs, fx), _mm256_mul_pd(ys, fy)), off);
}

KXBASE_TARGET_AVX2 void MapAvx2(const AffineMap& m, POINTD* p, int n) {
    double* v = &p[0].x;
    const std::size_t count = 2 * static_cast<std::size_t>(n);  // doubles
    std::size_t i = 0;
    const __m256d off = _mm256_setr_pd(m.dx, m.dy, m.dx, m.dy);
    if (m.axisAligned) {
        const __m256d s = _mm256_setr_pd(m.m11, m.m22, m.m11, m.m22);
        for (; i + 8 <= count; i += 8) {
            const __m256d a = _mm256_loadu_pd(v + i), b = _mm256_loadu_pd(v + i + 4);
            _mm256_storeu_pd(v + i, _mm256_add_pd(_mm256_mul_pd(a, s), off));
            _mm256_storeu_pd(v + i + 4, _mm256_add_pd(_mm256_mul_pd(b, s), off));
        }
    } else {
        const __m256d fx = _mm256_setr_pd(m.m11, m.m12, m.m11, m.m12);
        const __m256d fy = _mm256_setr_pd(m.m21, m.m22, m.m21, m.m22);
        for (; i + 8 <= count; i += 8) {
            const __m256d a = _mm256_loadu_pd(v + i), b = _mm256_loadu_pd(v + i + 4);
            _mm256_storeu_pd(v + i, Map4(a, fx, fy, off));
            _mm256_storeu_pd(v + i + 4, Map4(b, fx, fy, off));
        }
    }
    // The tail runs SSE code: clear the upper register halves first, or every SSE
    // instruction after this function would pay for merging them.
    _mm256_zeroupper();
    MapPortable(m, p + i / 2, n - static_cast<int>(i / 2));
}

KXBASE_TARGET_AVX512 inline __m512d Map4(__m512d q, __m512d fx, __m512d fy, __m512d off) {
    const __m512d xs = _mm512_mask_unpacklo_pd(q, 0xFF, q, q),
                  ys = _mm512_mask_unpackhi_pd(q, 0xFF, q, q);
    return _mm512_add_pd(_mm512_add_pd(_mm512_mul_pd(xs, fx), _mm512_mul_pd(ys, fy)), off);
}

KXBASE_TARGET_AVX512 void MapAvx512(const AffineMap& m, POINTD* p, int n) {
    double* v = &p[0].x;
    const std::size_t count = 2 * static_cast<std::size_t>(n);  // doubles
    std::size_t i = 0;
    const __m512d off = _mm512_setr_pd(m.dx, m.dy, m.dx, m.dy, m.dx, m.dy, m.dx, m.dy);
    if (m.axisAligned) {
        const __m512d s = _mm512_setr_pd(m.m11, m.m22, m.m11, m.m22, m.m11, m.m22, m.m11, m.m22);
        for (; i + 16 <= count; i += 16) {
            const __m512d a = _mm512_loadu_pd(v + i), b = _mm512_loadu_pd(v + i + 8);
            _mm512_storeu_pd(v + i, _mm512_add_pd(_mm512_mul_pd(a, s), off));
            _mm512_storeu_pd(v + i + 8, _mm512_add_pd(_mm512_mul_pd(b, s), off));
        }
        if (i < count) {
            const __mmask8 k = static_cast<__mmask8>((1u << (count - i < 8 ? count - i : 8)) - 1);
            _mm512_mask_storeu_pd(
                v + i, k, _mm512_add_pd(_mm512_mul_pd(_mm512_maskz_loadu_pd(k, v + i), s), off));
            i += count - i < 8 ? count - i : 8;
        }
    } else {
        const __m512d fx = _mm512_setr_pd(m.m11, m.m12, m.m11, m.m12, m.m11, m.m12, m.m11, m.m12);
        const __m512d fy = _mm512_setr_pd(m.m21, m.m22, m.m21, m.m22, m.m21, m.m22, m.m21, m.m22);
        for (; i + 16 <= count; i += 16) {
            const __m512d a = _mm512_loadu_pd(v + i), b = _mm512_loadu_pd(v + i + 8);
            _mm512_storeu_pd(v + i, Map4(a, fx, fy, off));
            _mm512_storeu_pd(v + i + 8, Map4(b, fx, fy, off));
        }
        if (i < count) {
            const __mmask8 k = static_cast<__mmask8>((1u << (count - i < 8 ? count - i : 8)) - 1);
            _mm512_mask_storeu_pd(v + i, k, Map4(_mm512_maskz_loadu_pd(k, v + i), fx, fy, off));
            i += count - i < 8 ? count - i : 8;
        }
    }
    // The tail runs SSE code: clear the upper register halves first, or every SSE
    // instruction after this function would pay for merging them.
    _mm256_zeroupper();
    MapPortable(m, p + i / 2, n - static_cast<int>(i / 2));
}
#endif

}  // namespace

void MapPointsD(const AffineMap& m, POINTD* p, int n, SimdLevel level) {
#if KXBASE_X86_DISPATCH
    if (level >= SimdLevel::kAvx512 && HostSimdLevel() >= SimdLevel::kAvx512)
        return MapAvx512(m, p, n);
    if (level >= SimdLevel::kAvx2 && HostSimdLevel() >= SimdLevel::kAvx2) return MapAvx2(m, p, n);
#else
    (void)level;
#endif
    MapPortable(m, p, n);
}

}  // namespace kxbase::detail

namespace {

constexpr double kTol = kxbase::detail::kTolerance;
constexpr double kPi = 3.141592653589793;

// out = a * b: a applied first, then b. out may alias a or b.
inline void Multiply(TransMatrix& out, const TransMatrix& a, const TransMatrix& b) {
    const double m11 = a.eM11 * b.eM11 + a.eM12 * b.eM21;
    const double m12 = a.eM11 * b.eM12 + a.eM12 * b.eM22;
    const double m21 = a.eM21 * b.eM11 + a.eM22 * b.eM21;
    const double m22 = a.eM21 * b.eM12 + a.eM22 * b.eM22;
    const double dx = a.eDx * b.eM11 + a.eDy * b.eM21 + b.eDx;
    const double dy = a.eDx * b.eM12 + a.eDy * b.eM22 + b.eDy;
    out.eM11 = m11;
    out.eM12 = m12;
    out.eM21 = m21;
    out.eM22 = m22;
    out.eDx = dx;
    out.eDy = dy;
}

// Forward mapping of arrays with a matrix. The shape test is made once, outside the loop: a
// map without rotation or shear (exact zeros) skips the two cross products; for finite
// coordinates they only add +-0, so the results agree up to the sign of a zero.
struct Mapper {
    double m11, m12, m21, m22, dx, dy;
    bool axisAligned;

    explicit Mapper(const TransMatrix& m)
        : m11(m.eM11),
          m12(m.eM12),
          m21(m.eM21),
          m22(m.eM22),
          dx(m.eDx),
          dy(m.eDy),
          axisAligned(m.eM12 == 0.0 && m.eM21 == 0.0) {}

    void Map(POINTD* p, int n) const {
        MapPointsD({m11, m12, m21, m22, dx, dy, axisAligned}, p, n, HostSimdLevel());
    }

    void Map(POINTF* p, int n) const {
        const double a = m11, b = m12, c = m21, d = m22, e = dx, f = dy;
        for (int i = 0; i < n; ++i) {
            const double x = p[i].x;
            const double y = p[i].y;
            p[i].x = static_cast<float>(x * a + y * c + e);
            p[i].y = static_cast<float>(x * b + y * d + f);
        }
    }

    void Map(POINT* p, int n, double precision) const {
        const double a = m11, b = m12, c = m21, d = m22, e = dx, f = dy;
        for (int i = 0; i < n; ++i) {
            const double x = p[i].x;
            const double y = p[i].y;
            p[i].x = PreciseInt(x * a + y * c + e, precision);
            p[i].y = PreciseInt(x * b + y * d + f, precision);
        }
    }
};

// Walks the polylines of a grouped array and maps each run of points.
template <typename Pt, typename... Extra>
void MapGroups(const Mapper& m, Pt* pts, const int* counts, int groups, Extra... extra) {
    if (pts == nullptr || counts == nullptr) return;
    for (int g = 0; g < groups; ++g) {
        const int c = counts[g];
        if (c <= 0) continue;
        m.Map(pts, c, extra...);
        pts += c;
    }
}

}  // namespace

ATransform::~ATransform() = default;

// ---- composition --------------------------------------------------------------------------

void ATransform::Translation(double tx, double ty) {
    MultMatrix(TransMatrix(1.0, 0.0, 0.0, 1.0, tx, ty));
}

void ATransform::Scaling(double sx, double sy, double cx, double cy) {
    MultMatrix(TransMatrix(sx, 0.0, 0.0, sy, (1.0 - sx) * cx, (1.0 - sy) * cy));
}

void ATransform::Rotate(double angle, double cx, double cy) {
    const double s = kxbase::sys::Sin(angle);
    const double c = kxbase::sys::Cos(angle);
    MultMatrix(TransMatrix(c, s, -s, c, (1.0 - c) * cx + s * cy, (1.0 - c) * cy - s * cx));
}

void ATransform::Shear(double kx, double ky, double cx, double cy) {
    MultMatrix(TransMatrix(1.0, kx, ky, 1.0, -ky * cy, -kx * cx));
}

void ATransform::Reflection(double angle, double cx, double cy) {
    Translation(-cx, -cy);
    if (angle >= 0.0 && angle < kPi) {
        Rotate(-angle, 0.0, 0.0);
        MultMatrix(TransMatrix(1.0, 0.0, 0.0, -1.0, 0.0, 0.0));
        Rotate(angle, 0.0, 0.0);
    } else {
        // Deliberately a point reflection for angles outside [0, pi).
        MultMatrix(TransMatrix(-1.0, 0.0, 0.0, -1.0, 0.0, 0.0));
    }
    Translation(cx, cy);
}

void ATransform::Translation(const ATransform& src, double tx, double ty) {
    TransMatrix::operator=(src);
    Translation(tx, ty);
}
void ATransform::Scaling(const ATransform& src, double sx, double sy, double cx, double cy) {
    TransMatrix::operator=(src);
    Scaling(sx, sy, cx, cy);
}
void ATransform::Rotate(const ATransform& src, double angle, double cx, double cy) {
    TransMatrix::operator=(src);
    Rotate(angle, cx, cy);
}
void ATransform::Shear(const ATransform& src, double kx, double ky, double cx, double cy) {
    TransMatrix::operator=(src);
    Shear(kx, ky, cx, cy);
}
void ATransform::Reflection(const ATransform& src, double angle, double cx, double cy) {
    TransMatrix::operator=(src);
    Reflection(angle, cx, cy);
}

void ATransform::MultMatrix(const TransMatrix& other) {
    Multiply(*this, *this, other);
}

void ATransform::MultMatrix(ATransform& out, const TransMatrix& a, const TransMatrix& b) {
    Multiply(out, a, b);
}

ATransform ATransform::operator*(const ATransform& rhs) const {
    ATransform r;
    Multiply(r, *this, rhs);
    return r;
}

ATransform ATransform::operator*(const TransMatrix& rhs) const {
    ATransform r;
    Multiply(r, *this, rhs);
    return r;
}

ATransform operator*(const TransMatrix& lhs, const ATransform& rhs) {
    ATransform r;
    Multiply(r, lhs, rhs);
    return r;
}

int ATransform::operator==(const ATransform& o) const {
    auto within = [](double d) { return d > -kTol && d < kTol; };
    return (within(eM11 - o.eM11) && within(eM12 - o.eM12) && within(eM21 - o.eM21) &&
            within(eM22 - o.eM22) && within(eDx - o.eDx) && within(eDy - o.eDy))
               ? 1
               : 0;
}

// ---- forward mapping ----------------------------------------------------------------------

void ATransform::CalcPoint(float& x, float& y) const {
    double dx = x;
    double dy = y;
    CalcPoint(dx, dy);
    x = static_cast<float>(dx);
    y = static_cast<float>(dy);
}

void ATransform::CalcPoint(int& x, int& y, double precision) const {
    double dx = x;
    double dy = y;
    CalcPoint(dx, dy);
    x = PreciseInt(dx, precision);
    y = PreciseInt(dy, precision);
}

void ATransform::CalcPoints(POINT* pts, int n, double precision) const {
    if (pts != nullptr && n > 0) Mapper(*this).Map(pts, n, precision);
}
void ATransform::CalcPoints(POINTF* pts, int n) const {
    if (pts != nullptr && n > 0) Mapper(*this).Map(pts, n);
}
void ATransform::CalcPoints(POINTD* pts, int n) const {
    if (pts != nullptr && n > 0) Mapper(*this).Map(pts, n);
}

void ATransform::CalcPointPoints(POINT* pts, const int* counts, int groups,
                                 double precision) const {
    MapGroups(Mapper(*this), pts, counts, groups, precision);
}
void ATransform::CalcPointPoints(POINTF* pts, const int* counts, int groups) const {
    MapGroups(Mapper(*this), pts, counts, groups);
}
void ATransform::CalcPointPoints(POINTD* pts, const int* counts, int groups) const {
    MapGroups(Mapper(*this), pts, counts, groups);
}

void ATransform::CalcDist(double& d) const {
    double x0 = 0.0, y0 = 0.0, x1 = d, y1 = 0.0;
    CalcPoint(x0, y0);
    CalcPoint(x1, y1);
    d = std::hypot(x1 - x0, y1 - y0);
}

// ---- inverse mapping ----------------------------------------------------------------------

int ATransform::CanInverseCalc() const {
    return (eM21 * eM12 - eM22 * eM11 != 0.0) ? 1 : 0;
}

void ATransform::InverseCalcPoint(double& x, double& y) const {
    const double det = eM11 * eM22 - eM12 * eM21;
    const double x0 = IeeeDiv(x * eM22 - y * eM21 - (eDx * eM22 - eDy * eM21), det);
    const double y0 = IeeeDiv(-(x * eM12 - y * eM11 - (eDx * eM12 - eDy * eM11)), det);
    x = x0;
    y = y0;
}

void ATransform::InverseCalcPoint(float& x, float& y) const {
    double dx = x;
    double dy = y;
    InverseCalcPoint(dx, dy);
    x = static_cast<float>(dx);
    y = static_cast<float>(dy);
}

void ATransform::InverseCalcPoint(int& x, int& y, double precision) const {
    double dx = x;
    double dy = y;
    InverseCalcPoint(dx, dy);
    x = PreciseInt(dx, precision);
    y = PreciseInt(dy, precision);
}

void ATransform::InverseCalcPoints(POINT* pts, int n, double precision) const {
    TransMatrix inv;
    if (pts != nullptr && n > 0 && inv.InverseMatrix(*this)) Mapper(inv).Map(pts, n, precision);
}
void ATransform::InverseCalcPoints(POINTF* pts, int n) const {
    TransMatrix inv;
    if (pts != nullptr && n > 0 && inv.InverseMatrix(*this)) Mapper(inv).Map(pts, n);
}
void ATransform::InverseCalcPoints(POINTD* pts, int n) const {
    TransMatrix inv;
    if (pts != nullptr && n > 0 && inv.InverseMatrix(*this)) Mapper(inv).Map(pts, n);
}

void ATransform::InverseCalcPointPoints(POINT* pts, const int* counts, int groups,
                                        double precision) const {
    TransMatrix inv;
    if (inv.InverseMatrix(*this)) MapGroups(Mapper(inv), pts, counts, groups, precision);
}
void ATransform::InverseCalcPointPoints(POINTF* pts, const int* counts, int groups) const {
    TransMatrix inv;
    if (inv.InverseMatrix(*this)) MapGroups(Mapper(inv), pts, counts, groups);
}
void ATransform::InverseCalcPointPoints(POINTD* pts, const int* counts, int groups) const {
    TransMatrix inv;
    if (inv.InverseMatrix(*this)) MapGroups(Mapper(inv), pts, counts, groups);
}

void ATransform::InverseCalcDist(double& d) const {
    double x0 = 0.0, y0 = 0.0, x1 = d, y1 = 0.0;
    InverseCalcPoint(x0, y0);
    InverseCalcPoint(x1, y1);
    d = std::hypot(x1 - x0, y1 - y0);
}

// ---- decomposition ------------------------------------------------------------------------

int ATransform::Resolution(const POINTD& scaleCenter, const POINTD& rotateCenter, ATransform* scale,
                           ATransform* offset, ATransform* rotate) const {
    if (scale == nullptr || offset == nullptr || rotate == nullptr) return 0;
    const double a = eM11, b = eM12, c = eM21, d = eM22, e = eDx, f = eDy;
    const double p1x = scaleCenter.x, p1y = scaleCenter.y;
    const double p2x = rotateCenter.x, p2y = rotateCenter.y;
    const double t = kTol;

    const double det = a * d - b * c;
    if (!(std::fabs(det) >= t)) return 0;
    // Shape tests, kept exactly as hosts expect them (|d| < t passes only when |a| == t).
    if (std::fabs(a) < t && std::fabs(d) < t) return 0;
    if (std::fabs(d) < t && std::fabs(a) > t) return 0;
    if (std::fabs(b) < t && std::fabs(c) > t) return 0;
    if (std::fabs(c) < t && std::fabs(b) > t) return 0;

    double sx, sy, cs, sn, tx, ty;
    // A quarter turn: x' = y*c, y' = x*b.
    auto quarterTurnOffset = [&] {
        tx = f - (p1x * c + p1x + p2y - p2x);
        ty = p2x - (p1y * c + p1y) + p2y - e;
    };
    auto axisOffset = [&] {
        tx = e - (p1x - p1x * a);
        ty = f - (p1y - p1y * d);
    };
    if (a == 0.0) {
        sx = b;
        sy = -c;
        cs = 0.0;
        sn = 1.0;
        quarterTurnOffset();
    } else if (std::fabs(c) < t) {
        sx = a;
        sy = d;
        cs = 1.0;
        sn = 0.0;
        axisOffset();
    } else {
        if (!(std::fabs(c * a + b * d) <= 1e-12)) return 0;  // not a rotation of a scaling
        // d is 0.0 only when |a| is exactly the tolerance; the divisions then give infinities
        // or NaN, which the unit-circle test below refuses.
        const double r = std::sqrt(IeeeDiv(a * det, d));
        cs = IeeeDiv(a, r);
        sn = IeeeDiv(b, r);
        sx = r;
        sy = IeeeDiv(det, r);
        if (!(std::fabs(1.0 - cs * cs - sn * sn) <= 1e-12)) return 0;
        if (cs == 0.0) {
            quarterTurnOffset();
        } else if (sn == 0.0) {
            axisOffset();
        } else {
            const double u =
                p1x * cs - p1x * a - p1y * sn - p1y * c + p2x - p2x * cs + p2y * sn - e;
            const double v =
                p1x * c + p1x * sn + p1y * cs - p1y * d + p2y - p2y * cs - p2x * sn - f;
            tx = -u * cs - v * sn;
            ty = u * sn - v * cs;
        }
    }

    scale->TransMatrix::operator=(
        TransMatrix(sx, 0.0, 0.0, sy, (1.0 - sx) * p1x, (1.0 - sy) * p1y));
    offset->TransMatrix::operator=(TransMatrix(1.0, 0.0, 0.0, 1.0, tx, ty));
    rotate->TransMatrix::operator=(
        TransMatrix(cs, sn, -sn, cs, sn * p2y + (1.0 - cs) * p2x, (1.0 - cs) * p2y - sn * p2x));
    return 1;
}
