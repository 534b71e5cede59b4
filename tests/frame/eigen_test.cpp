// Tests of the eigensolver: eigenpairs, sign rule, and the special matrices.
#include "frame/eigen.hpp"  // for diag_symm, sort_vec_large

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace vbn {
namespace {

array2<double> random_symmetric(int n, unsigned seed) {
  std::mt19937 draw(seed);
  std::uniform_real_distribution<double> number(-1.0, 1.0);
  array2<double> a(n, n);
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= j; ++i) a(i, j) = a(j, i) = number(draw);
  return a;
}

TEST(eigen, pairs_satisfy_the_eigenvalue_equation_and_vectors_are_orthonormal) {
  for (const int n : {2, 3, 4, 5, 17, 40}) {
    const array2<double> a = random_symmetric(n, 7);
    array1<double> eval;
    array2<double> v;
    int info = -1;
    diag_symm(a, eval, v, info);
    ASSERT_EQ(info, 0);
    for (int k = 1; k <= n; ++k) {
      EXPECT_LE(eval(k > 1 ? k - 1 : 1), eval(k));
      for (int i = 1; i <= n; ++i) {
        double residual = -eval(k) * v(i, k);
        double overlap = i == k ? -1.0 : 0.0;
        for (int j = 1; j <= n; ++j) {
          residual += a(i, j) * v(j, k);
          overlap += v(j, i) * v(j, k);
        }
        EXPECT_NEAR(residual, 0.0, 1e-14 * n) << n << ' ' << i << ' ' << k;
        EXPECT_NEAR(overlap, 0.0, 1e-14 * n) << n << ' ' << i << ' ' << k;
      }
    }
  }
}

TEST(eigen, identity_keeps_its_unit_vectors_and_one_element_gives_itself) {
  for (const int n : {1, 2, 6}) {
    array2<double> unit(n, n);
    for (int i = 1; i <= n; ++i) unit(i, i) = 1.0;
    array1<double> eval;
    array2<double> v;
    int info = -1;
    diag_symm(unit, eval, v, info);
    EXPECT_EQ(info, 0);
    EXPECT_EQ(v, unit);
    EXPECT_EQ(eval, array1<double>(n, 1.0));
  }
  array1<double> eval;
  array2<double> v;
  int info = -1;
  diag_symm(array2<double>(1, 1, -3.5), eval, v, info);
  EXPECT_EQ(eval(1), -3.5);
  EXPECT_EQ(v(1, 1), 1.0);
}

TEST(eigen, sign_rule_lets_the_first_of_equal_magnitudes_decide) {
  array2<double> c(3, 4);
  c(1, 1) = 0.5, c(2, 1) = -0.5;
  c(1, 2) = -0.5, c(2, 2) = 0.5;
  c(1, 3) = 0.1, c(2, 3) = 0.2, c(3, 3) = -0.9;
  sort_vec_large(3, 4, c);
  EXPECT_EQ(c(1, 1), 0.5);
  EXPECT_EQ(c(2, 1), -0.5);
  EXPECT_EQ(c(1, 2), 0.5);
  EXPECT_EQ(c(2, 2), -0.5);
  EXPECT_EQ(c(1, 3), -0.1);
  EXPECT_EQ(c(3, 3), 0.9);
  for (int j = 1; j <= 3; ++j) EXPECT_FALSE(std::signbit(c(j, 4))) << "a column of zeros keeps its zeros";
  const array2<double> before = c;
  sort_vec_large(0, 4, c);
  sort_vec_large(3, 0, c);
  EXPECT_EQ(c, before);
}

}  // namespace
}  // namespace vbn
