// The n x n Gauss-Jordan inversion on random, ill-conditioned and singular matrices.
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

// Fault: a wrong pivot bookkeeping or un-permutation step (shows up as soon as pivots move).
TEST(InverseMatrixN, RandomMatricesInvert) {
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> u(-10.0, 10.0);
    for (int n = 1; n <= 9; ++n)
        for (int rep = 0; rep < 20; ++rep) {
            std::vector<double> a(n * n), inv(n * n);
            for (double& v : a) v = u(rng);
            ASSERT_EQ(TransMatrix::InverseMatrix(inv.data(), a.data(), n), 1);
            EXPECT_LT(Residual(a, inv, n), 1e-9) << "n=" << n;
        }
}

// Fault: partial instead of full pivoting, or lost precision, on Hilbert matrices (condition
// numbers up to about 1e10 at order 8).
TEST(InverseMatrixN, HilbertMatricesKeepResidualSmall) {
    for (int n = 2; n <= 8; ++n) {
        std::vector<double> h(n * n), inv(n * n);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) h[i * n + j] = 1.0 / (i + j + 1);
        ASSERT_EQ(TransMatrix::InverseMatrix(inv.data(), h.data(), n), 1);
        EXPECT_LT(Residual(h, inv, n), 1e-5) << "n=" << n;
        // The known integer inverse of the Hilbert matrix has H^-1[0][0] = n^2.
        EXPECT_NEAR(inv[0], double(n) * n, 1e-4 * n * n);
    }
}

// Fault: a tiny-but-regular matrix passes as invertible, or a permutation is not exact.
TEST(InverseMatrixN, SingularAndPermutationCases) {
    std::vector<double> rank1 = {1, 2, 3, 2, 4, 6, 3, 6, 9};
    EXPECT_EQ(TransMatrix::InverseMatrix(rank1.data(), 3), 0);
    std::vector<double> small = {1e-11, 0, 0, 1e-11};
    EXPECT_EQ(TransMatrix::InverseMatrix(small.data(), 2), 0);
    std::vector<double> nanm = {NAN, 0, 0, 1};
    EXPECT_EQ(TransMatrix::InverseMatrix(nanm.data(), 2), 0);
    EXPECT_EQ(TransMatrix::InverseMatrix(static_cast<double*>(nullptr), 3), 0);
    EXPECT_EQ(TransMatrix::InverseMatrix(small.data(), 0), 0);
    const std::vector<double> perm = {0, 0, 1, 1, 0, 0, 0, 1, 0};
    std::vector<double> inv(9);
    ASSERT_EQ(TransMatrix::InverseMatrix(inv.data(), perm.data(), 3), 1);
    const std::vector<double> expect = {0, 1, 0, 0, 0, 1, 1, 0, 0};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(inv[i] + 0.0, expect[i]);
}

// Fault: the six-value inverse disagrees with the general inversion of its 3x3 form.
TEST(InverseMatrixN, SixValueInverseMatchesGeneral) {
    TransMatrix m(1.5, -0.25, 0.75, 2.0, 10.0, -4.0);
    double a[9];
    m.GetTransMatrix(a);
    ASSERT_EQ(TransMatrix::InverseMatrix(a, 3), 1);
    ASSERT_EQ(m.InverseMatrix(), 1);
    double b[9];
    m.GetTransMatrix(b);
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(a[i], b[i], 1e-12);
}

}  // namespace
