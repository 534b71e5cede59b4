// Tests of the G matrix sums and of the non-redundant basis.
#include "internal/gmatrix.hpp"  // for get_wilson_g_matrix, times_sparse

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace vbn {
namespace {

// The sums as in the plain triple loop.
array2<double> plain_g(const array1<double>& mass, const array2<double>& b) {
  const int m = b.rows();
  array2<double> g(m, m);
  for (int i = 1; i <= m; ++i)
    for (int j = 1; j <= i; ++j) {
      double sum = 0.0;
      for (int k = 1; k <= b.cols(); ++k) sum += b(i, k) * b(j, k) / mass((k - 1) / 3 + 1);
      g(i, j) = g(j, i) = sum;
    }
  return g;
}

array2<double> plain_product(const array2<double>& a, const array2<double>& b) {
  array2<double> c(a.rows(), b.cols());
  for (int i = 1; i <= a.rows(); ++i)
    for (int j = 1; j <= b.cols(); ++j)
      for (int k = 1; k <= a.cols(); ++k) c(i, j) += a(i, k) * b(k, j);
  return c;
}

bool same_bits(const array2<double>& a, const array2<double>& b) {
  return a.rows() == b.rows() && a.cols() == b.cols() &&
         std::memcmp(a.data(), b.data(), a.span().size_bytes()) == 0;
}

array2<double> random_matrix(int rows, int cols, double filled, std::mt19937& random) {
  std::uniform_real_distribution<double> draw(-1.0, 1.0);
  std::bernoulli_distribution kept(filled);
  array2<double> a(rows, cols);
  for (double& element : a.span()) element = kept(random) ? draw(random) : draw(random) * 0.0;  // both zeros
  return a;
}

TEST(gmatrix, sums_have_the_bits_of_the_plain_loop_for_sparse_and_dense_rows) {
  std::mt19937 random(3);
  for (const int m : {1, 7, 8, 37, 90})
    for (const double filled : {0.0, 0.1, 0.45, 0.9, 1.0}) {
      const int natom = 11;
      const array2<double> b = random_matrix(m, 3 * natom, filled, random);
      array1<double> mass(natom);
      for (double& one : mass) one = 1822.9 * (1.0 + 30.0 * std::generate_canonical<double, 53>(random));
      EXPECT_TRUE(same_bits(get_wilson_g_matrix(mass, b), plain_g(mass, b)))
          << m << " rows, " << filled << " filled";
      const array2<double> a = random_matrix(m / 2 + 1, m, 0.8, random);
      EXPECT_TRUE(same_bits(times_sparse(a, b), plain_product(a, b)));
    }
}

}  // namespace
}  // namespace vbn
