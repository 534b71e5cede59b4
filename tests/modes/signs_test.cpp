// Tests of the two conventions for the signs of the modes.
#include "modes/signs.hpp"  // for set_positive_diag, set_proper_rotation

#include <gtest/gtest.h>

#include <algorithm>

#include "frame/inertial.hpp"              // for max_abs
#include "modes/duschinsky.hpp"            // for get_vbn
#include "tests/modes/pair_of_states.hpp"  // for chiral_pair

namespace vbn {
namespace {

// By elimination, with the largest pivot of each column.
double plain_determinant(array2<double> a) {
  const int n = a.rows();
  double det = 1.0;
  for (int k = 1; k <= n; ++k) {
    int p = k;
    for (int i = k; i <= n; ++i)
      if (std::abs(a(i, k)) > std::abs(a(p, k))) p = i;
    if (p != k) det = -det;
    for (int j = 1; j <= n; ++j) std::swap(a(k, j), a(p, j));
    det *= a(k, k);
    for (int i = k + 1; i <= n; ++i)
      for (int j = n; j >= k; --j) a(i, j) -= a(i, k) / a(k, k) * a(k, j);
  }
  return det;
}

// A pair whose modes have signs in disorder; bits 0 and 1 of `kind` choose between determinants.
run_data disordered_pair(int kind) {
  run_data run = chiral_pair(1);
  for (int n = 1; n <= 2; ++n) {
    for (int j = 1; j <= run.state(n).atoms.n3; ++j) {
      const bool one_more = j == 7 && (kind >> (n - 1)) % 2 == 1;
      if (((j * n) % 3 == 1) != one_more) {
        for (double& element : run.state(n).modes.cm.column(j)) element = -element;
      }
    }
  }
  run.input.sort_mode = 1;
  get_vbn(run.state, run.input);
  return run;
}

void expect_same_physics(const run_data& run, const run_data& before) {
  for (int n = 1; n <= 2; ++n) {
    EXPECT_EQ(run.state(n).modes.order, before.state(n).modes.order);
    EXPECT_NEAR(run.state(n).cart.lamt, before.state(n).cart.lamt, 1e-15);
    for (int i = 1; i <= run.state(n).atoms.n3; ++i) {
      EXPECT_NEAR(run.state(n).cart.hr(i), before.state(n).cart.hr(i), 1e-12);
      EXPECT_NEAR(std::abs(run.state(n).cart.d(i)), std::abs(before.state(n).cart.d(i)), 1e-12);
    }
  }
}

double paired(const run_data& run, int i) {
  return run.state(1).modes.s(run.state(1).modes.order(i), run.state(2).modes.order(i));
}

TEST(signs, positive_diagonal_of_the_pairs_with_state_1_as_the_guide) {
  const run_data before = disordered_pair(0);
  run_data run = disordered_pair(0);
  set_positive_diag(run.state, false, run.input);
  EXPECT_TRUE(run.state(1).modes.cm == before.state(1).modes.cm &&
              run.state(2).modes.cm == before.state(2).modes.cm);
  set_positive_diag(run.state, true, run.input);
  for (int i = 1; i <= run.state(1).atoms.n3; ++i) {
    EXPECT_GE(paired(run, i), 0.0) << i;
    EXPECT_GT(max_abs(run.state(1).modes.cm.column(i)), 0.0) << i;
  }
  expect_same_physics(run, before);
}

TEST(signs, proper_rotation_turns_the_pair_of_the_smallest_element_where_a_determinant_is_negative) {
  int negative = 0;
  for (int kind = 0; kind < 4; ++kind) {
    const run_data before = disordered_pair(kind);
    run_data run = disordered_pair(kind);
    set_proper_rotation(run.state, true, run.input);
    int least = 1;
    for (int i = 1; i <= run.state(1).atoms.n3; ++i)
      if (paired(before, i) < paired(before, least)) least = i;
    for (int n = 1; n <= 2; ++n) {
      const bool improper = plain_determinant(before.state(n).modes.cm) < 0.0;
      negative += improper;
      EXPECT_NEAR(plain_determinant(run.state(n).modes.cm), 1.0, 1e-10);
      for (int j = 1; j <= run.state(n).atoms.n3; ++j) {
        const bool turned = improper && j == before.state(n).modes.order(least);
        EXPECT_EQ(run.state(n).modes.cm(1, j), (turned ? -1.0 : 1.0) * before.state(n).modes.cm(1, j));
      }
    }
    expect_same_physics(run, before);
  }
  EXPECT_EQ(negative, 4);  // each state in two of the four kinds
}

}  // namespace
}  // namespace vbn
