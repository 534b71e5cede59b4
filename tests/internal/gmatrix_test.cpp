// Tests of the G matrix sums and of the non-redundant basis.
#include "internal/gmatrix.hpp"  // for get_int_gmatrix

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "linalg/matmul.hpp"            // for matmul
#include "tests/internal/molecule.hpp"  // for ammonia
#include "tests/written_file.hpp"       // for scratch
#include "text/output_file.hpp"         // for output_file
#include "text/stop.hpp"                // for run_end

namespace vbn {
namespace {

using namespace internal_molecules;

// The sums as the triple loop has them.
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

void expect_near(const array2<double>& a, const array2<double>& b, double tolerance) {
  ASSERT_EQ(a.rows(), b.rows());
  ASSERT_EQ(a.cols(), b.cols());
  for (int i = 1; i <= a.rows(); ++i)
    for (int j = 1; j <= a.cols(); ++j) EXPECT_NEAR(a(i, j), b(i, j), tolerance) << i << " " << j;
}

array2<double> unit(int n) {
  array2<double> a(n, n);
  for (int i = 1; i <= n; ++i) a(i, i) = 1.0;
  return a;
}

// The state with its coordinates, ready for the basis.
states prepared(const std::vector<test_atom>& atoms, const input_data& input = {}) {
  states state = molecule(atoms);
  get_int_coord(state, input);
  return state;
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

TEST(gmatrix, power_inverts_what_has_a_value_and_takes_null_directions_for_nothing) {
  std::mt19937 random(5);
  const array2<double> half = random_matrix(6, 9, 1.0, random);
  const array2<double> a = matmul(half, half, op::plain, op::transposed);
  array1<double> e;
  array2<double> v, ap;
  matrix_power(-0.5, a, e, v, ap);
  expect_near(matmul(matmul(ap, a), ap), unit(6), 1.0e-10);
  matrix_power(-1.0, a, e, v, ap);
  expect_near(matmul(ap, a), unit(6), 1.0e-10);
  array2<double> diagonal(3, 3);
  diagonal(1, 1) = 4.0;
  diagonal(2, 2) = -9.0e-7;
  matrix_power(-0.5, diagonal, e, v, ap);
  EXPECT_EQ(e(1), 0.0);
  EXPECT_EQ(e(2), 0.0);
  EXPECT_EQ(e(3), 0.5);
  EXPECT_EQ(ap(1, 1), 0.5);
  EXPECT_EQ(ap(2, 2), 0.0);
  diagonal(2, 2) = -2.0e-6;
  try {
    matrix_power(-0.5, diagonal, e, v, ap);
    FAIL();
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 1);
  }
}

TEST(gmatrix, basis_is_orthonormal_and_belongs_to_the_rows_of_b) {
  states state = prepared(ammonia);
  ASSERT_EQ(state.internal.nr, 7);
  output_file log(scratch("log"));
  get_int_gmatrix(state, 1.0e-8, log);
  const int nv = 6;
  array2<double> identity(state.atoms.n3, state.atoms.n3);
  for (int i = 1; i <= nv; ++i) identity(i, i) = 1.0;
  expect_near(matmul(state.basis.bm, state.basis.bm, op::plain, op::transposed), identity, 1.0e-10);
  array2<double> ga_b = matmul(state.basis.ga, state.internal.br, op::plain, op::transposed);
  for (int i = 1; i <= state.atoms.n3; ++i)
    for (int j = 1; j <= state.atoms.n3; ++j) {
      EXPECT_NEAR(ga_b(i, j) / state.atoms.sqtmass(j), state.basis.bm(i, j), 1.0e-11);
      if (i > nv) {
        EXPECT_EQ(state.basis.bm(i, j), 0.0);
      }
    }
}

TEST(gmatrix, log_tells_cut_counts_and_the_roots_of_the_overlap) {
  states state = prepared(ammonia);
  const std::string name = scratch("log");
  output_file log(name);
  get_int_gmatrix(state, 1.0e-8, log);
  log.close();
  const std::vector<std::string> lines = lines_of(name);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], "  G cut                              =    1.00E-08");
  EXPECT_EQ(lines[1], "  3N-6                               =          6");
  EXPECT_EQ(lines[2], "  nber non-redundant internal coords =          6");
  EXPECT_EQ(lines[3], "Check on Eigenvals of non-red overlap matrix:");
  ASSERT_EQ(lines[4].size(), 72u);
  // The kept eigenvectors leave the eigenvalues of G on the diagonal.
  array1<double> e;
  array2<double> v;
  int info = 0;
  diag_symm(get_wilson_g_matrix(state.atoms.massau, transposed(state.internal.br)), e, v, info);
  for (int i = 1; i <= 6; ++i)
    EXPECT_NEAR(std::stod(lines[4].substr(static_cast<std::size_t>(12 * (i - 1)), 12)),
                std::pow(e(i + 1), -0.25), 1.0e-7);
}

TEST(gmatrix, an_eigenvalue_equal_to_the_cut_counts_not_and_too_few_are_told_in_the_log) {
  states state = prepared(water);
  const std::string name = scratch("log");
  output_file log(name);
  array1<double> e;
  array2<double> v;
  int info = 0;
  diag_symm(get_wilson_g_matrix(state.atoms.massau, transposed(state.internal.br)), e, v, info);
  EXPECT_NO_THROW(get_int_gmatrix(state, std::nextafter(e(1), 0.0), log));
  try {
    get_int_gmatrix(state, e(1), log);
    FAIL();
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.text, "");
  }
  log.close();
  const std::vector<std::string> lines = lines_of(name);
  ASSERT_EQ(lines.size(), 5u + 11u);
  const std::vector<std::string> told(lines.begin() + 7, lines.end());
  EXPECT_EQ(told, (std::vector<std::string>{"  nber non-redundant internal coords =          2", "",
                                            "  G eigenvalues:", "", told[4], "", "  Error! nv is incorrect",
                                            "  Try to set set_cart = t", "Stop!"}));
  EXPECT_EQ(told[4].size(), 45u);
}

TEST(gmatrix, a_diatomic_has_one_direction_beyond_its_count_and_says_so) {
  states state = prepared({{7, {0, 0, 0}}, {7, {0, 0, 1.1}}});
  output_file log(scratch("log"));
  testing::internal::CaptureStderr();
  get_int_gmatrix(state, 1.0e-8, log);
  EXPECT_NE(testing::internal::GetCapturedStderr().find(": 1 independent"), std::string::npos);
  EXPECT_EQ(state.basis.nv, 0);
  EXPECT_NEAR(std::abs(state.basis.bm(1, 6)), std::sqrt(0.5), 1.0e-12);
}

}  // namespace
}  // namespace vbn
