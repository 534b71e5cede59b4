// Tests of the eigensolver: eigenpairs, sign rule, and the fast routines bit for bit against the plain ones.
#include "linalg/eigen.hpp"  // for diag_symm, tred2e, tql2e, sort_vec_large

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "linalg/lane_kernels.hpp"       // for available_kernels
#include "linalg/matmul.hpp"             // for matmul
#include "tests/linalg/plain_eigen.hpp"  // for plain::tred2e, plain::tql2e

namespace vbn {
namespace {

#ifdef VBN_RANGE_CHECKS
constexpr int size_step = 33;  // every size takes too long with every index checked
#else
constexpr int size_step = 1;
#endif

array2<double> random_symmetric(int n, unsigned seed) {
  std::mt19937 draw(seed);
  std::uniform_real_distribution<double> number(-1.0, 1.0);
  array2<double> a(n, n);
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= j; ++i) a(i, j) = a(j, i) = number(draw);
  return a;
}

// Force constants of a ring of n / 3 equal atoms with equal springs to the next and the next but one: its
// eigenvalues are in pairs, like those of a symmetric molecule.
array2<double> ring(int n) {
  array2<double> a(n, n);
  const int atoms = n / 3;
  const auto bind = [&](int i, int j, double constant) {
    for (int x = 1; x <= 3; ++x) {
      const int k = 3 * (i - 1) + x;
      const int l = 3 * (j - 1) + x;
      a(k, k) += constant;
      a(l, l) += constant;
      a(k, l) -= constant;
      a(l, k) -= constant;
    }
  };
  for (int i = 1; i <= atoms && atoms > 2; ++i) {
    bind(i, i % atoms + 1, 0.3);
    bind(i, (i + 1) % atoms + 1, 0.1);
  }
  return a;
}

struct named_matrix {
  std::string name;
  array2<double> a;
};

// Matrices that reveal a rearranged sum, a lost zero or a wrong range of a sweep.
std::vector<named_matrix> spectra(int n) {
  std::vector<named_matrix> all;
  const array2<double> random = random_symmetric(n, 11);
  const auto add = [&](const std::string& name, auto element) {
    array2<double> a(n, n);
    for (int j = 1; j <= n; ++j)
      for (int i = j; i <= n; ++i) a(i, j) = a(j, i) = element(i, j);
    all.push_back({name, a});
  };
  add("zero", [](int, int) { return 0.0; });
  add("identity", [](int i, int j) { return i == j ? 1.0 : 0.0; });
  add("diagonal", [](int i, int j) { return i == j ? i % 5 : 0.0; });
  add("all ones", [](int, int) { return 1.0; });
  add("two values", [](int i, int j) { return i == j ? 2.0 : -0.5; });
  add("clustered", [&](int i, int j) { return (i == j ? i % 3 : 0.0) + 1e-13 * random(i, j); });
  add("blocks", [&](int i, int j) { return i / 9 == j / 9 ? random(i, j) : 0.0; });
  add("tridiagonal", [](int i, int j) { return i == j ? 2.0 : i == j + 1 ? -1.0 : 0.0; });
  add("graded down", [&](int i, int j) { return random(i, j) * std::pow(10.0, -0.1 * (i + j)); });
  add("graded up", [&](int i, int j) { return random(i, j) * std::pow(10.0, 0.1 * (i + j)); });
  add("300 decades", [&](int i, int j) { return random(i, j) * std::pow(10.0, 150.0 - 300.0 * i / n); });
  add("one huge", [&](int i, int j) { return i == n / 2 + 1 && j == i ? 1e200 : random(i, j); });
  add("one tiny row", [&](int i, int j) { return i == n ? 1e-320 * random(i, j) : random(i, j); });
  add("zero row", [&](int i, int j) { return i == n / 2 + 1 || j == n / 2 + 1 ? 0.0 : random(i, j); });
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (const int place : {1, n / 2 + 1, n}) {
    const std::string where = " in row " + std::to_string(place);
    add("no number" + where, [&](int i, int j) { return i == place && j == 1 ? nan : random(i, j); });
    add("infinity" + where, [&](int i, int j) { return i == place && j == place ? inf : random(i, j); });
    add("overflow" + where, [&](int i, int j) { return i == place ? 1e308 : random(i, j); });
  }
  all.push_back({"ring", ring(n)});
  array2<double> tall(n, n / 3 + 1);
  for (int j = 1; j <= tall.cols(); ++j)
    for (int i = 1; i <= n; ++i) tall(i, j) = random(i, j);
  all.push_back({"rank-deficient", matmul(tall, tall, op::plain, op::transposed)});
  return all;
}

// Whether two numbers have the same bits. All NaN are equal.
bool same(double x, double y) {
  return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y) ||
         (std::isnan(x) && std::isnan(y));
}

::testing::AssertionResult same_bits(std::span<const double> x, std::span<const double> y) {
  for (std::size_t k = 0; k < x.size(); ++k)
    if (!same(x[k], y[k]))
      return ::testing::AssertionFailure() << "element " << k << ": " << x[k] << " against " << y[k];
  return ::testing::AssertionResult(x.size() == y.size());
}

void expect_bits_of_plain(const array2<double>& a) {
  array1<double> plain_d, plain_e;
  array2<double> plain_z;
  plain::tred2e(a, plain_d, plain_e, plain_z);
  array1<double> plain_eval = plain_d;
  array1<double> plain_work = plain_e;
  array2<double> plain_vector = plain_z;
  int plain_ierr = -1;
  plain::tql2e(plain_eval, plain_work, plain_vector, plain_ierr);

  const std::span<const lane_kernels> available = available_kernels();
  for (std::size_t width = 0; width < available.size(); ++width) {
    SCOPED_TRACE("kernels " + std::to_string(width));
    array1<double> d, e;
    array2<double> z;
    tred2e(a, d, e, z, available[width]);
    ASSERT_TRUE(same_bits(d.span(), plain_d.span())) << "d";
    ASSERT_TRUE(same_bits(e.span(), plain_e.span())) << "e";
    ASSERT_TRUE(same_bits(z.span(), plain_z.span())) << "transformation";
    int ierr = -1;
    tql2e(d, e, z, ierr, available[width]);
    ASSERT_EQ(ierr, plain_ierr);
    ASSERT_TRUE(same_bits(d.span(), plain_eval.span())) << "eigenvalues";
    ASSERT_TRUE(same_bits(z.span(), plain_vector.span())) << "eigenvectors";
  }

  array1<double> eval;
  array2<double> vector;
  int info = -1;
  diag_symm(a, eval, vector, info);
  sort_vec_large(a.rows(), a.rows(), plain_vector);
  EXPECT_EQ(info, plain_ierr);
  EXPECT_TRUE(same_bits(eval.span(), plain_eval.span()));
  EXPECT_TRUE(same_bits(vector.span(), plain_vector.span()));
}

TEST(eigen, every_vector_width_gives_the_bits_of_the_plain_routines_at_every_size) {
  for (int n = 0; n <= 200 && !HasFatalFailure(); n += n < 35 ? 1 : size_step) {
    SCOPED_TRACE(n);
    expect_bits_of_plain(random_symmetric(n, 3));
    if (n < 60) expect_bits_of_plain(array2<double>(n, n, 1.0));
  }
}

TEST(eigen, every_vector_width_gives_the_bits_of_the_plain_routines_for_every_spectrum) {
  for (const int n : {2, 3, 5, 16, 18, 33, 67})
    for (const named_matrix& matrix : spectra(n)) {
      SCOPED_TRACE(matrix.name + " of size " + std::to_string(n));
      expect_bits_of_plain(matrix.a);
      if (HasFatalFailure()) return;
    }
}

TEST(eigen, pairs_satisfy_the_eigenvalue_equation_and_vectors_are_orthonormal) {
  for (const int n : {1, 2, 3, 4, 17, 60, 131}) {
    const array2<double> a = random_symmetric(n, 7);
    array1<double> eval;
    array2<double> v;
    int info = -1;
    array2<double> lower = a;  // the other triangle is not read
    for (int j = 1; j <= n; ++j)
      for (int i = 1; i < j; ++i) lower(i, j) = 1e9;
    diag_symm(lower, eval, v, info);
    ASSERT_EQ(info, 0);
    const array2<double> av = matmul(a, v);
    const array2<double> overlap = matmul(v, v, op::transposed, op::plain);
    for (int k = 1; k <= n; ++k) {
      EXPECT_LE(eval(k > 1 ? k - 1 : 1), eval(k));
      for (int i = 1; i <= n; ++i) {
        EXPECT_NEAR(av(i, k), eval(k) * v(i, k), 1e-14 * n) << n << ' ' << i << ' ' << k;
        EXPECT_NEAR(overlap(i, k), i == k ? 1.0 : 0.0, 1e-14 * n) << n << ' ' << i << ' ' << k;
      }
    }
  }
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
