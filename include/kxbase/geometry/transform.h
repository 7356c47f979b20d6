/// \file
/// ATransform: an affine map of the plane built by composing elementary operations, applied
/// forwards and backwards to points, point arrays and distances, and decomposed.
///
/// It keeps TransMatrix's six values and meaning: (x, y) maps to
///     (x*eM11 + y*eM21 + eDx, x*eM12 + y*eM22 + eDy).
/// No inverse is cached: every inverse mapping is computed from the six values when asked.
/// Angles are radians; positive angles turn +x toward +y.
///
/// Composition post-multiplies: the existing map is applied first and the new elementary
/// operation E after it (M = M*E). The overloads taking `const ATransform& src` first set this
/// object to src and then append the operation (src itself is not changed; it may be *this).
///
/// Integer results go through CPrecise::PrecisePoint with the caller's precision (0.5 rounds
/// halves away from zero, 0.0 truncates with the 1e-10 epsilon) and saturate to the int32
/// range (NaN becomes 0). Float results are narrowed from the double results.
///
/// Thread-safety: const members may be called concurrently on one object; the array forms
/// allocate nothing.
#pragma once

#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/geometry/precise.h>
#include <kxbase/geometry/trans_matrix.h>
#include <kxbase/platform/types.h>

/// An affine map with composition, forward and inverse mapping and decomposition; see the file
/// description.
class KXBASE_API ATransform : public TransMatrix {
public:
    /// The identity.
    ATransform() = default;
    /// The six float fields widened, in order.
    ATransform(const XFORM& xf) : TransMatrix(xf) {}  // NOLINT: implicit, like TransMatrix
    /// The six values of a matrix.
    ATransform(const TransMatrix& m) : TransMatrix(m) {}  // NOLINT: implicit by design
    ///@{
    /// The six values as given (eM11, eM12, eM21, eM22, eDx, eDy).
    ATransform(double m11, double m12, double m21, double m22, double dx, double dy)
        : TransMatrix(m11, m12, m21, m22, dx, dy) {}
    ///@}
    ///@{
    /// Plain copies.
    ATransform(const ATransform&) = default;
    ATransform& operator=(const ATransform&) = default;
    ///@}
    /// Virtual: hosts derive from the class.
    virtual ~ATransform();

    // ---- composition (each appends E after the existing map) ------------------------------

    ///@{
    /// E: x' = x + tx, y' = y + ty.
    void Translation(double tx, double ty);
    void Translation(const ATransform& src, double tx, double ty);
    ///@}
    ///@{
    /// Scaling about (cx, cy). E: x' = sx*x + (1 - sx)*cx, y' = sy*y + (1 - sy)*cy.
    void Scaling(double sx, double sy, double cx, double cy);
    void Scaling(const ATransform& src, double sx, double sy, double cx, double cy);
    ///@}
    ///@{
    /// Rotation about (cx, cy) by angle radians; with s = sin(angle), c = cos(angle):
    /// E: x' = c*x - s*y + (1 - c)*cx + s*cy, y' = s*x + c*y + (1 - c)*cy - s*cx.
    void Rotate(double angle, double cx, double cy);
    void Rotate(const ATransform& src, double angle, double cx, double cy);
    ///@}
    ///@{
    /// Shear about (cx, cy). E: x' = x + ky*(y - cy), y' = y + kx*(x - cx): the first factor
    /// shears y by x, the second shears x by y.
    void Shear(double kx, double ky, double cx, double cy);
    void Shear(const ATransform& src, double kx, double ky, double cx, double cy);
    ///@}
    ///@{
    /// Reflection about the centre (cx, cy). For 0 <= angle < pi (pi as the double
    /// 3.141592653589793) it mirrors across the line through the centre at that angle to the
    /// x axis (translate by -centre, rotate by -angle, mirror y, rotate by angle, translate
    /// back). Deliberately, any other angle (negative, or pi or more) gives the point
    /// reflection through the centre: x' = 2cx - x, y' = 2cy - y.
    void Reflection(double angle, double cx, double cy);
    void Reflection(const ATransform& src, double angle, double cx, double cy);
    ///@}

    /// this = this * other (other applied after this map).
    void MultMatrix(const TransMatrix& other);
    /// out = a * b (a first, then b). out may be a or b.
    static void MultMatrix(ATransform& out, const TransMatrix& a, const TransMatrix& b);
    ///@{
    /// Copy of this * rhs.
    ATransform operator*(const ATransform& rhs) const;
    ATransform operator*(const TransMatrix& rhs) const;
    ///@}
    /// 1 when all six values agree strictly within +-1e-10, else 0.
    int operator==(const ATransform& other) const;
    /// Exact negation of operator==.
    int operator!=(const ATransform& other) const { return !(*this == other); }

    // ---- forward mapping ------------------------------------------------------------------

    ///@{
    /// Maps a point in place, in double.
    void CalcPoint(double& x, double& y) const {
        const double nx = x * eM11 + y * eM21 + eDx;
        const double ny = x * eM12 + y * eM22 + eDy;
        x = nx;
        y = ny;
    }
    void CalcPoint(POINTD& pt) const { CalcPoint(pt.x, pt.y); }
    ///@}
    ///@{
    /// Widens to double, maps, narrows the results to float.
    void CalcPoint(float& x, float& y) const;
    void CalcPoint(POINTF& pt) const { CalcPoint(pt.x, pt.y); }
    ///@}
    ///@{
    /// Converts to double, maps, and stores through CPrecise::PrecisePoint with precision.
    void CalcPoint(int& x, int& y, double precision) const;
    void CalcPoint(POINT& pt, double precision) const {
        int x = pt.x, y = pt.y;  // LONG is not int on every system
        CalcPoint(x, y, precision);
        pt = POINT{x, y};
    }
    ///@}

    ///@{
    /// Maps n points in place as the single-point forms do; n <= 0 (or a null array) does
    /// nothing. pts must hold n points.
    void CalcPoints(POINT* pts, int n, double precision) const;
    void CalcPoints(POINTF* pts, int n) const;
    void CalcPoints(POINTD* pts, int n) const;
    ///@}

    ///@{
    /// pts holds `groups` polylines one after another; counts[g] is the number of points of
    /// polyline g. All counts[0] + ... + counts[groups - 1] points are mapped in place; a count
    /// <= 0 contributes no points; groups < 1 (or a null pointer) does nothing.
    void CalcPointPoints(POINT* pts, const int* counts, int groups, double precision) const;
    void CalcPointPoints(POINTF* pts, const int* counts, int groups) const;
    void CalcPointPoints(POINTD* pts, const int* counts, int groups) const;
    ///@}

    /// Replaces d by the distance between the images of (0, 0) and (d, 0), that is
    /// |d| * sqrt(eM11^2 + eM12^2) (never negative).
    void CalcDist(double& d) const;

    // ---- inverse mapping ------------------------------------------------------------------
    // The singularity rules differ on purpose: CanInverseCalc tests exactly against 0.0, the
    // single-point inverses do not test at all (a singular map yields infinities or NaN, and
    // the integer forms then saturate, NaN giving 0), and the array inverses use the 1e-10
    // tolerance of TransMatrix::InverseMatrix() and leave the points unchanged on failure.

    /// 1 when eM21*eM12 - eM22*eM11 is not exactly 0.0, else 0.
    int CanInverseCalc() const;

    ///@{
    /// Solves the map by Cramer's rule, with D = eM11*eM22 - eM12*eM21:
    /// x0 = (x*eM22 - y*eM21 - (eDx*eM22 - eDy*eM21)) / D,
    /// y0 = -(x*eM12 - y*eM11 - (eDx*eM12 - eDy*eM11)) / D. No test of D.
    void InverseCalcPoint(double& x, double& y) const;
    void InverseCalcPoint(POINTD& pt) const { InverseCalcPoint(pt.x, pt.y); }
    ///@}
    ///@{
    /// Widens to double, solves, narrows the results to float.
    void InverseCalcPoint(float& x, float& y) const;
    void InverseCalcPoint(POINTF& pt) const { InverseCalcPoint(pt.x, pt.y); }
    ///@}
    ///@{
    /// Converts to double, solves, and stores through CPrecise::PrecisePoint with precision.
    void InverseCalcPoint(int& x, int& y, double precision) const;
    void InverseCalcPoint(POINT& pt, double precision) const {
        int x = pt.x, y = pt.y;  // LONG is not int on every system
        InverseCalcPoint(x, y, precision);
        pt = POINT{x, y};
    }
    ///@}

    ///@{
    /// Inverts a copy of the six values with TransMatrix::InverseMatrix() and, only when that
    /// succeeds, maps the points with the inverse as CalcPoints / CalcPointPoints do.
    void InverseCalcPoints(POINT* pts, int n, double precision) const;
    void InverseCalcPoints(POINTF* pts, int n) const;
    void InverseCalcPoints(POINTD* pts, int n) const;
    void InverseCalcPointPoints(POINT* pts, const int* counts, int groups, double precision) const;
    void InverseCalcPointPoints(POINTF* pts, const int* counts, int groups) const;
    void InverseCalcPointPoints(POINTD* pts, const int* counts, int groups) const;
    ///@}

    /// Replaces d by the distance between the inverse images (Cramer's rule, no test) of
    /// (0, 0) and (d, 0).
    void InverseCalcDist(double& d) const;

    // ---- decomposition --------------------------------------------------------------------

    /// Splits this map into a scaling about scaleCenter, then a pure translation, then a
    /// rotation about rotateCenter, and writes the three parts:
    ///   scale  = (sx, 0, 0, sy, (1 - sx)*p1x, (1 - sy)*p1y),
    ///   offset = (1, 0, 0, 1, tx, ty),
    ///   rotate = (cos, sin, -sin, cos, sin*p2y + (1 - cos)*p2x, (1 - cos)*p2y - sin*p2x).
    /// Returns 1 on success. Returns 0, leaving the three outputs as they were, when a pointer
    /// is null, |det| < 1e-10, the factors fail the shape tests (|eM22| < 1e-10 is refused
    /// unless |eM11| is exactly 1e-10; exactly one of |eM12|, |eM21| below 1e-10 is refused),
    /// or the matrix is not a rotation of a scaling within the absolute tolerance 1e-12.
    /// scale * offset * rotate reproduces the linear part of this map; the translation
    /// formula (kept as hosts know it) reproduces the offsets when both centres are the
    /// origin, but with other centres the recomposed y offset generally differs.
    /// Because that tolerance is absolute, maps with large factors (hundreds and more) are
    /// often refused even when they are a rotation of a scaling; the tests are kept as they
    /// are because hosts rely on the same answers.
    int Resolution(const POINTD& scaleCenter, const POINTD& rotateCenter, ATransform* scale,
                   ATransform* offset, ATransform* rotate) const;
};

/// lhs * rhs (lhs applied first).
KXBASE_API ATransform operator*(const TransMatrix& lhs, const ATransform& rhs);
