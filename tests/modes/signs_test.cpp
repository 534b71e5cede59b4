// Tests of the two conventions for the signs of the modes.
#include "modes/signs.hpp"  // for set_positive_diag, set_proper_rotation

#include <gtest/gtest.h>

#include <algorithm>

#include "frame/inertial.hpp"              // for max_abs
#include "modes/duschinsky.hpp"            // for get_vbn
#include "tests/modes/pair_of_states.hpp"  // for chiral_pair, to_modes

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

void negate(states& state, int j) {
  for (double& element : state.cm.column(j)) element = -element;
}

// A pair whose modes stand in disorder of signs; odd `seed`s give determinants of either sign.
run_data disordered_pair(int seed) {
  run_data run = chiral_pair();
  to_modes(run);
  for (int j = 1; j <= run.state(1).n3; ++j) {
    if ((seed + j) % 2 == 0) negate(run.state(1), j);
    if ((seed * j) % 3 == 1) negate(run.state(2), j);
  }
  run.input.sort_mode = 1;
  get_vbn(run.state, run.input);
  return run;
}

void expect_same_physics(const run_data& run, const run_data& before) {
  for (int n = 1; n <= 2; ++n) {
    EXPECT_EQ(run.state(n).freq, before.state(n).freq);
    EXPECT_EQ(run.state(n).order, before.state(n).order);
    EXPECT_NEAR(run.state(n).lamt, before.state(n).lamt, 1e-15);
    for (int i = 1; i <= run.state(n).n3; ++i) {
      EXPECT_NEAR(run.state(n).hr(i), before.state(n).hr(i), 1e-12);
      EXPECT_NEAR(std::abs(run.state(n).d(i)), std::abs(before.state(n).d(i)), 1e-12);
    }
  }
}

double paired(const run_data& run, int i) {
  return run.state(1).s(run.state(1).order(i, 1), run.state(2).order(i, 1));
}

TEST(signs, positive_diagonal_of_the_pairs_with_state_1_as_the_guide) {
  run_data run = disordered_pair(3);
  run_data before = disordered_pair(3);
  set_positive_diag(run.state, false, run.input);
  EXPECT_EQ(run.state(1).cm, before.state(1).cm);
  EXPECT_EQ(run.state(2).s, before.state(2).s);
  set_positive_diag(run.state, true, run.input);
  for (int i = 1; i <= run.state(1).n3; ++i) {
    EXPECT_GE(paired(run, i), 0.0) << i;
    EXPECT_GT(max_abs(run.state(1).cm.column(i)), 0.0) << i;
  }
  expect_same_physics(run, before);
}

TEST(signs, proper_rotation_gives_both_mode_matrices_a_determinant_of_one) {
  int negative[2] = {0, 0};
  int both = 0;
  for (int seed = 1; seed <= 12; ++seed) {
    run_data run = disordered_pair(seed);
    if (seed % 4 >= 2) negate(run.state(1), 7);
    if (seed % 4 == 3) negate(run.state(2), 9);
    get_vbn(run.state, run.input);
    run_data before = disordered_pair(seed);
    before.state = run.state;
    const double det[2] = {plain_determinant(run.state(1).cm), plain_determinant(run.state(2).cm)};
    set_proper_rotation(run.state, true, run.input);
    int flipped[2] = {0, 0};
    for (int n = 1; n <= 2; ++n) {
      EXPECT_NEAR(plain_determinant(run.state(n).cm), 1.0, 1e-10);
      negative[n - 1] += det[n - 1] < 0.0;
      for (int i = 1; i <= run.state(n).n3; ++i) {
        if (run.state(n).cm(1, i) == before.state(n).cm(1, i)) continue;
        EXPECT_EQ(flipped[n - 1], 0);
        flipped[n - 1] = i;
      }
      EXPECT_EQ(flipped[n - 1] != 0, det[n - 1] < 0.0);
    }
    // The mode turned is the one of the pair with the smallest element.
    int least = 1;
    for (int i = 1; i <= run.state(1).n3; ++i)
      if (paired(before, i) < paired(before, least)) least = i;
    if (flipped[0] != 0) {
      EXPECT_EQ(flipped[0], before.state(1).order(least, 1));
    }
    if (flipped[1] != 0) {
      EXPECT_EQ(flipped[1], before.state(2).order(least, 1));
    }
    if (flipped[0] != 0 && flipped[1] != 0) {
      ++both;
      EXPECT_EQ(paired(run, least), paired(before, least));
    }
    expect_same_physics(run, before);
  }
  // The cases above are of every kind.
  EXPECT_TRUE(negative[0] > 0 && negative[0] < 12 && negative[1] > 0 && negative[1] < 12 && both > 0);
}

}  // namespace
}  // namespace vbn
