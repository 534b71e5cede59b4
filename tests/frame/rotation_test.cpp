// Tests of the rotation of vectors and force constants.
#include "frame/rotation.hpp"  // for rot_fc

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/molecules.hpp"  // for random_rotation

namespace vbn {
namespace {

// The sum over all terms, as in a textbook.
void plain_rot_fc(const array2<double>& r, array2<double>& fc) {
  const int n = fc.rows() / 3;
  array2<double> fc1(3 * n, 3 * n);
  for (int iat = 1; iat <= n; ++iat)
    for (int jat = 1; jat <= n; ++jat)
      for (int ix = 1; ix <= 3; ++ix)
        for (int jx = 1; jx <= 3; ++jx)
          for (int ix1 = 1; ix1 <= 3; ++ix1)
            for (int jx1 = 1; jx1 <= 3; ++jx1) {
              double term = r(ix, ix1) * fc(3 * (iat - 1) + ix1, 3 * (jat - 1) + jx1) * r(jx, jx1);
              if (std::abs(term) < 1.0e-300) term = 0.0;
              fc1(3 * (iat - 1) + ix, 3 * (jat - 1) + jx) += term;
            }
  fc = fc1;
  for (int i = 2; i <= 3 * n; ++i)
    for (int j = 1; j <= i - 1; ++j) fc(j, i) = fc(i, j) = (fc(j, i) + fc(i, j)) / 2.0;
}

TEST(rotation, force_constants_have_the_bits_of_the_sum_over_all_terms) {
  std::mt19937 draw(1);
  std::uniform_real_distribution<double> number(-1.0, 1.0);
  for (int natom = 1; natom <= 9; ++natom) {
    array2<double> fast(3 * natom, 3 * natom);
    for (double& element : fast.span()) element = number(draw);
    fast(1, 2) = fast(3, 3) = 2.0e-300;  // some of their terms are below the limit
    array2<double> plain = fast;
    const array2<double> r = random_rotation(static_cast<unsigned>(natom));
    rot_fc(r, fast);
    plain_rot_fc(r, plain);
    EXPECT_EQ(fast, plain) << natom;
    set_sym_matrix(fast);
    EXPECT_EQ(fast, plain) << "a symmetric matrix keeps its bits";
  }
}

}  // namespace
}  // namespace vbn
