// Tests of the rotation of vectors and force constants.
#include "frame/rotation.hpp"  // for rotn, rot_fc

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/frame/molecule.hpp"  // for random_rotation

namespace vbn {
namespace {

// The sum over all terms, as it is written in a book.
void plain_rot_fc(const array2<double>& r, array2<double>& fc) {
  const int n = fc.rows() / 3;
  array2<double> fc1(3 * n, 3 * n);
  for (int iat = 1; iat <= n; ++iat)
    for (int jat = 1; jat <= n; ++jat)
      for (int ix = 1; ix <= 3; ++ix)
        for (int jx = 1; jx <= 3; ++jx)
          for (int ix1 = 1; ix1 <= 3; ++ix1)
            for (int jx1 = 1; jx1 <= 3; ++jx1) {
              const int ii = 3 * (iat - 1) + ix;
              const int jj = 3 * (jat - 1) + jx;
              double term = r(ix, ix1) * fc(3 * (iat - 1) + ix1, 3 * (jat - 1) + jx1) * r(jx, jx1);
              if (std::abs(term) < 1.0e-300) term = 0.0;
              fc1(ii, jj) += term;
            }
  fc = fc1;
  for (int i = 2; i <= 3 * n; ++i)
    for (int j = 1; j <= i - 1; ++j) fc(j, i) = fc(i, j) = (fc(j, i) + fc(i, j)) / 2.0;
}

array2<double> random_matrix(int n, unsigned seed) {
  std::mt19937 draw(seed);
  std::uniform_real_distribution<double> number(-1.0, 1.0);
  array2<double> a(n, n);
  for (double& element : a.span()) element = number(draw);
  return a;
}

TEST(rotation, force_constants_have_the_bits_of_the_sum_over_all_terms) {
  for (int natom = 1; natom <= 9; ++natom) {
    array2<double> fast = random_matrix(3 * natom, static_cast<unsigned>(natom));
    fast(1, 2) = 2.0e-300;  // some of its terms fall below the limit
    fast(3, 3) = std::numeric_limits<double>::denorm_min();
    array2<double> plain = fast;
    const array2<double> r = random_rotation(static_cast<unsigned>(natom) + 40);
    rot_fc(r, fast);
    plain_rot_fc(r, plain);
    EXPECT_EQ(fast, plain) << natom;
  }
}

TEST(rotation, identity_leaves_the_symmetric_part_and_a_symmetric_matrix_keeps_its_bits) {
  array2<double> unit(3, 3);
  for (int a = 1; a <= 3; ++a) unit(a, a) = 1.0;
  const array2<double> from = random_matrix(12, 3);
  array2<double> fc = from;
  rot_fc(unit, fc);
  for (int i = 1; i <= 12; ++i)
    for (int j = 1; j <= 12; ++j) EXPECT_EQ(fc(i, j), (from(i, j) + from(j, i)) / 2.0);
  const array2<double> symmetric = fc;
  set_sym_matrix(fc);
  EXPECT_EQ(fc, symmetric);
}

TEST(rotation, vectors_turn_from_rows_to_components_and_lengths_stay) {
  array2<double> quarter(3, 3);  // about z, x to y
  quarter(2, 1) = quarter(3, 3) = 1.0;
  quarter(1, 2) = -1.0;
  std::vector<double> v = {1.0, 2.0, 3.0, 0.0, -1.0, 0.5};
  rotn(quarter, v);
  EXPECT_EQ(v, (std::vector<double>{-2.0, 1.0, 3.0, 1.0, 0.0, 0.5}));
}

}  // namespace
}  // namespace vbn
