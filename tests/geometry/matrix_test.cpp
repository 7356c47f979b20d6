// The n x n Gauss-Jordan inversion on random and ill-conditioned matrices, and on bad input.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include <kxbase/geometry/trans_matrix.h>

namespace {

// max |A * B - I| over all entries.
double Residual(const std::vector<double>& a, const std::vector<double>& b, int n) {
    double worst = 0.0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double s = 0.0;
            for (int k = 0; k < n; ++k) s += a[i * n + k] * b[k * n + j];
            worst = std::fmax(worst, std::fabs(s - (i == j ? 1.0 : 0.0)));
        }
    return worst;
}

// Fault: wrong pivot bookkeeping or un-permutation (shows as soon as pivots move), or partial
// instead of full pivoting losing precision on Hilbert matrices (condition ~1e10 at order 8),
// or bad input accepted.
TEST(InverseMatrixN, RandomAndHilbertMatricesInvertBadInputFails) {
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> u(-10.0, 10.0);
    for (int n = 1; n <= 9; ++n)
        for (int rep = 0; rep <= 20; ++rep) {
            const bool hilbert = rep == 20 && n <= 8;
            std::vector<double> a(n * n), inv(n * n);
            for (int k = 0; k < n * n; ++k) a[k] = hilbert ? 1.0 / (k / n + k % n + 1) : u(rng);
            ASSERT_EQ(TransMatrix::InverseMatrix(inv.data(), a.data(), n), 1);
            EXPECT_LT(Residual(a, inv, n), hilbert ? 1e-5 : 1e-9) << "n=" << n;
            // The known integer inverse of the Hilbert matrix has H^-1[0][0] = n^2.
            EXPECT_LT(hilbert ? std::fabs(inv[0] - n * n) : 0.0, 1e-4 * n * n) << "n=" << n;
        }
    // A null array must fail, not be read (NaN and an empty order are golden vectors).
    EXPECT_EQ(TransMatrix::InverseMatrix(static_cast<double*>(nullptr), 3), 0);
}

}  // namespace
