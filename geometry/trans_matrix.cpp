// TransMatrix: record conversions, shape tests and inversion.
#include <kxbase/geometry/trans_matrix.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "base/saturate_p.h"

namespace {

constexpr double kTol = kxbase::detail::kTolerance;

bool Within(double d, double t = kTol) {
    return d > -t && d < t;
}

}  // namespace

void TransMatrix::SetTransMatrix(const double* m) {
    eM11 = m[0];
    eM12 = m[1];
    eM21 = m[3];
    eM22 = m[4];
    eDx = m[6];
    eDy = m[7];
}

void TransMatrix::GetTransMatrix(double* m) const {
    m[0] = eM11;
    m[1] = eM12;
    m[2] = 0.0;
    m[3] = eM21;
    m[4] = eM22;
    m[5] = 0.0;
    m[6] = eDx;
    m[7] = eDy;
    m[8] = 1.0;
}

TransMatrix::operator XFORM() const {
    return XFORM{static_cast<float>(eM11), static_cast<float>(eM12), static_cast<float>(eM21),
                 static_cast<float>(eM22), static_cast<float>(eDx),  static_cast<float>(eDy)};
}

int TransMatrix::IdentityMatrix() const {
    return (Within(eM11 - 1.0) && Within(eM12) && Within(eM21) && Within(eM22 - 1.0) &&
            Within(eDx) && Within(eDy))
               ? 1
               : 0;
}

int TransMatrix::OnlyScaleOffset() const {
    return (Within(eM12) && Within(eM21)) ? 1 : 0;
}

int TransMatrix::OnlyOffset(const TransMatrix& other, POINTD* offset) const {
    if (!Within(eM11 - other.eM11) || !Within(eM12 - other.eM12) || !Within(eM21 - other.eM21) ||
        !Within(eM22 - other.eM22))
        return 0;
    const POINTD d(eDx - other.eDx, eDy - other.eDy);
    if (offset != nullptr) *offset = d;
    return (Within(d.x) && Within(d.y)) ? -1 : 1;
}

int TransMatrix::InverseMatrix() {
    const double det = eM11 * eM22 - eM12 * eM21;
    if (Within(det)) return 0;
    const TransMatrix o = *this;
    eM11 = o.eM22 / det;
    eM12 = -o.eM12 / det;
    eM21 = -o.eM21 / det;
    eM22 = o.eM11 / det;
    eDx = (o.eDy * o.eM21 - o.eDx * o.eM22) / det;
    eDy = (o.eDx * o.eM12 - o.eDy * o.eM11) / det;
    return 1;
}

int TransMatrix::InverseMatrix(const TransMatrix& src) {
    *this = src;
    return InverseMatrix();
}

int TransMatrix::InverseMatrix(double* a, int n) {
    if (a == nullptr || n < 1) return 0;
    const auto un = static_cast<std::size_t>(n);
    // One block of 2n entries: the pivot row and the pivot column of every step.
    std::unique_ptr<int[]> pivots(new (std::nothrow) int[2 * un]);
    if (!pivots) return 0;
    int* const pivRow = pivots.get();
    int* const pivCol = pivots.get() + un;
    auto at = [a, un](std::size_t i, std::size_t j) -> double& { return a[i * un + j]; };

    for (std::size_t k = 0; k < un; ++k) {
        // Full pivoting: the first element of largest magnitude in row-by-row scan order.
        double best = 0.0;
        std::size_t br = k;
        std::size_t bc = k;
        for (std::size_t i = k; i < un; ++i)
            for (std::size_t j = k; j < un; ++j) {
                const double v = std::fabs(at(i, j));
                if (v > best) {
                    best = v;
                    br = i;
                    bc = j;
                }
            }
        pivRow[k] = static_cast<int>(br);
        pivCol[k] = static_cast<int>(bc);
        // Also refuses NaN pivots (best stays 0.0 when every candidate is NaN).
        if (!(best >= kTol)) return 0;

        if (br != k)
            for (std::size_t j = 0; j < un; ++j) std::swap(at(k, j), at(br, j));
        if (bc != k)
            for (std::size_t i = 0; i < un; ++i) std::swap(at(i, k), at(i, bc));

        const double piv = 1.0 / at(k, k);
        at(k, k) = piv;
        for (std::size_t j = 0; j < un; ++j)
            if (j != k) at(k, j) *= piv;
        for (std::size_t i = 0; i < un; ++i) {
            if (i == k) continue;
            const double aik = at(i, k);
            for (std::size_t j = 0; j < un; ++j)
                if (j != k) at(i, j) -= aik * at(k, j);
        }
        for (std::size_t i = 0; i < un; ++i)
            if (i != k) at(i, k) = -at(i, k) * piv;
    }

    // Undo the permutations in reverse order: a column swap of the input is a row swap of the
    // inverse, and the other way round.
    for (std::size_t k = un; k-- > 0;) {
        const auto c = static_cast<std::size_t>(pivCol[k]);
        const auto r = static_cast<std::size_t>(pivRow[k]);
        if (c != k)
            for (std::size_t j = 0; j < un; ++j) std::swap(at(k, j), at(c, j));
        if (r != k)
            for (std::size_t i = 0; i < un; ++i) std::swap(at(i, k), at(i, r));
    }
    return 1;
}

int TransMatrix::InverseMatrix(double* dst, const double* src, int n) {
    if (dst == nullptr || src == nullptr || n < 1) return 0;
    const auto un = static_cast<std::size_t>(n);
    if (dst != src) std::memmove(dst, src, un * un * sizeof(double));
    return InverseMatrix(dst, n);
}
