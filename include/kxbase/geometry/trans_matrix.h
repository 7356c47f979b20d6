/// \file
/// TransMatrix: the plane affine matrix of six doubles, and XFORM, its single-precision record.
///
/// Points are row vectors multiplied on the left: (x, y) maps to
///     x' = x*eM11 + y*eM21 + eDx,    y' = x*eM12 + y*eM22 + eDy.
/// As a 3x3 row-major matrix the layout is (eM11, eM12, 0), (eM21, eM22, 0), (eDx, eDy, 1);
/// the product A*B therefore means "apply A, then B".
///
/// "Strictly within t" below means -t < difference < t, both bounds strict.
///
/// Thread-safety: value type; const members may be called concurrently on one object.
#pragma once

#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>

#if !defined(_WIN32)
/// The platform's single-precision transform record, same field order as TransMatrix (on
/// Windows the system's own, from <windows.h>).
struct XFORM {
    float eM11;  ///< x-to-x factor
    float eM12;  ///< x-to-y factor
    float eM21;  ///< y-to-x factor
    float eM22;  ///< y-to-y factor
    float eDx;  ///< x offset
    float eDy;  ///< y offset
};
#endif
static_assert(sizeof(XFORM) == 6 * sizeof(float));

/// The six values of a plane affine map (see the file description for the formula).
class KXBASE_API TransMatrix {
public:
    double eM11 = 1.0;  ///< x-to-x factor
    double eM12 = 0.0;  ///< x-to-y factor
    double eM21 = 0.0;  ///< y-to-x factor
    double eM22 = 1.0;  ///< y-to-y factor
    double eDx = 0.0;   ///< x offset
    double eDy = 0.0;   ///< y offset

    /// The identity (1, 0, 0, 1, 0, 0).
    TransMatrix() = default;
    /// Each float field widened to double, in the same order. Implicit, so that a record
    /// initialises a matrix as the host's code writes it (TransMatrix m = xf;).
    TransMatrix(const XFORM& xf)  // NOLINT: implicit by design
        : eM11(xf.eM11), eM12(xf.eM12), eM21(xf.eM21), eM22(xf.eM22), eDx(xf.eDx), eDy(xf.eDy) {}
    /// The six values as given.
    TransMatrix(double m11, double m12, double m21, double m22, double dx, double dy)
        : eM11(m11), eM12(m12), eM21(m21), eM22(m22), eDx(dx), eDy(dy) {}
    ///@{
    /// Plain copies.
    TransMatrix(const TransMatrix&) = default;
    TransMatrix& operator=(const TransMatrix&) = default;
    ///@}

    /// Sets the identity.
    void LoadIdentity() { *this = TransMatrix(); }
    /// Copies the six values of another matrix.
    void LoadMatrix(const TransMatrix& other) { *this = other; }

    /// Takes a 3x3 row-major array of nine doubles: eM11 = m[0], eM12 = m[1], eM21 = m[3],
    /// eM22 = m[4], eDx = m[6], eDy = m[7]; m[2], m[5] and m[8] are ignored. m must not be null.
    void SetTransMatrix(const double* m);
    /// Writes nine doubles: eM11, eM12, 0, eM21, eM22, 0, eDx, eDy, 1. m must not be null.
    void GetTransMatrix(double* m) const;
    /// Each value narrowed to float, same order (values beyond the float range become
    /// infinities, as the conversion does).
    operator XFORM() const;  // NOLINT: implicit like the platform's record

    /// 1 when each of the six values lies strictly within 1e-10 of the identity's, else 0.
    int IdentityMatrix() const;
    /// 1 when eM12 and eM21 both lie strictly within +-1e-10 (no rotation or shear), else 0;
    /// the diagonal and the offsets are not looked at.
    int OnlyScaleOffset() const;
    /// Compares with another matrix. Deliberately three-valued:
    ///  0: one of eM11, eM12, eM21, eM22 is not strictly within 1e-10 of other's; offset is
    ///     left untouched;
    ///  1: the four factors agree and the matrices differ by a pure offset;
    /// -1: the offsets agree too (strictly within 1e-10): the matrices are the same.
    /// For 1 and -1, offset (when not null) receives (eDx - other.eDx, eDy - other.eDy).
    int OnlyOffset(const TransMatrix& other, POINTD* offset) const;

    /// Inverts this matrix in place. With det = eM11*eM22 - eM12*eM21 strictly within
    /// +-1e-10 it returns 0 and leaves the matrix unchanged; otherwise 1.
    int InverseMatrix();
    /// Copies src into this matrix, then inverts in place: on a singular src this matrix ends
    /// equal to src and 0 is returned.
    int InverseMatrix(const TransMatrix& src);
    /// The same into dst.
    static int InverseMatrix(TransMatrix& dst, const TransMatrix& src) {
        return dst.InverseMatrix(src);
    }

    /// Inverts the n x n row-major matrix a in place by Gauss-Jordan elimination with full
    /// pivoting (the first largest element in row-by-row scan order is the pivot). Returns 1
    /// on success; 0 when a pivot's magnitude is below 1e-10 (singular: a is then left partly
    /// transformed), when a is null, n < 1, or the two n-entry pivot records cannot be
    /// allocated (a unchanged). Uses O(n) working memory; allocates, so not for hot loops.
    static int InverseMatrix(double* a, int n);
    /// Copies n*n doubles from src to dst, then inverts dst in place. dst and src must not
    /// overlap unless they are equal. Null pointers or n < 1 give 0 with nothing written.
    static int InverseMatrix(double* dst, const double* src, int n);
};
