// Tests of the Duschinsky matrix, displacements and reorganisation energies.
#include "modes/duschinsky.hpp"  // for get_vbn, test_fc

#include <gtest/gtest.h>

#include <string>

#include "modes/shared_hessian.hpp"        // for use_same_hessian
#include "run/matmul.hpp"                  // for matmul
#include "run/stop.hpp"                    // for run_end
#include "tests/modes/pair_of_states.hpp"  // for chiral_pair, to_modes

namespace vbn {
namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

TEST(duschinsky, a_displaced_oscillator_has_the_huang_rhys_factor_of_the_formula) {
  const double distance = 2.1;
  const double shift = 0.12;
  run_data run;
  run.state(1) = spring_molecule({{7, 14.00307, {0.0, 0.0, 0.0}}, {8, 15.99491, {0.0, 0.0, distance}}});
  run.state(2) =
      spring_molecule({{7, 14.00307, {0.0, 0.0, 0.0}}, {8, 15.99491, {0.0, 0.0, distance + shift}}}, 0.2);
  const double mu = amu_to_au * 14.00307 * 15.99491 / (14.00307 + 15.99491);
  to_modes(run);
  get_vbn(run.state, run.input);
  const double k[2] = {1.2 * 0.3 / (distance * distance),
                       1.2 * 0.2 / ((distance + shift) * (distance + shift))};
  for (int n = 1; n <= 2; ++n) {
    const states& state = run.state(n);
    const double omega = std::sqrt(k[n - 1] / mu);
    EXPECT_NEAR(state.freq(6), omega, 1e-12);
    EXPECT_NEAR(std::abs(state.d(6)), std::sqrt(mu) * shift, 1e-10);
    EXPECT_NEAR(state.hr(6), 0.5 * mu * omega * shift * shift, 1e-12);
    EXPECT_NEAR(state.lam(6), 0.5 * k[n - 1] * shift * shift, 1e-14);
    EXPECT_NEAR(state.lamt, state.lam(6), 1e-12);
    EXPECT_EQ(state.freqt, 0.0);  // the sum begins at mode 7
    for (int i = 1; i <= 6; ++i) EXPECT_EQ(state.zptlen(i), 10.0);
  }
}

TEST(duschinsky, displacements_and_overlaps_keep_their_relations) {
  run_data run = chiral_pair();
  to_modes(run);
  get_vbn(run.state, run.input);
  const states& g = run.state(1);
  const states& e = run.state(2);
  const int n3 = g.n3;
  const array2<double> unit = matmul(g.s, e.s);
  double total[2] = {0.0, 0.0};
  double frequencies = 0.0;
  for (int i = 1; i <= n3; ++i) {
    double back = 0.0;  // De = -S(e,g) Dg
    for (int j = 1; j <= n3; ++j) {
      EXPECT_NEAR(unit(i, j), i == j ? 1.0 : 0.0, 1e-12);
      EXPECT_EQ(g.s(i, j), e.s(j, i));
      back -= e.s(i, j) * g.d(j);
    }
    EXPECT_NEAR(e.d(i), back, 1e-10);
    EXPECT_EQ(g.d_sign_cart(i), g.d(i) < 0.0 ? -1.0 : 1.0);
    if (i > 6) {
      EXPECT_EQ(g.zptlen(i), bohr_to_ang * std::sqrt(1.0 / g.freq(i)));
    }
    if (i > 6) frequencies += g.freq(i);
    total[0] += g.lam(i);
    total[1] += e.lam(i);
    EXPECT_EQ(g.order(i, 1), i);
  }
  EXPECT_EQ(g.lamt, total[0]);
  EXPECT_EQ(e.lamt, total[1]);
  EXPECT_EQ(g.freqt, frequencies);
  EXPECT_GT(g.lamt, 1e-4);
}

TEST(duschinsky, turning_and_shifting_either_molecule_changes_no_result) {
  run_data run = chiral_pair();
  run_data moved = chiral_pair();
  move_molecule(moved.state(1), random_rotation(31), {1.0, -7.0, 2.0});
  move_molecule(moved.state(2), random_rotation(32), {-3.0, 0.0, 9.0});
  to_modes(run);
  to_modes(moved);
  get_vbn(run.state, run.input);
  get_vbn(moved.state, run.input);
  for (int n = 1; n <= 2; ++n) {
    EXPECT_NEAR(moved.state(n).lamt, run.state(n).lamt, 1e-12);
    for (int i = 7; i <= run.state(n).n3; ++i) {
      EXPECT_NEAR(moved.state(n).freq(i), run.state(n).freq(i), 1e-13);
      EXPECT_NEAR(moved.state(n).hr(i), run.state(n).hr(i), 1e-9);
      EXPECT_NEAR(moved.state(n).lam(i), run.state(n).lam(i), 1e-11);
    }
  }
}

TEST(duschinsky, equal_states_have_no_displacement_and_the_unit_matrix) {
  run_data run;
  run.state(1) = run.state(2) = spring_molecule(chiral_molecule);
  to_modes(run);
  run.state(1).x = run.state(2).x;
  run.state(1).cm = run.state(2).cm;
  get_vbn(run.state, run.input);
  const states& g = run.state(1);
  for (int i = 1; i <= g.n3; ++i) {
    EXPECT_EQ(g.d(i), 0.0);
    EXPECT_EQ(g.lam(i), 0.0);
    EXPECT_EQ(g.d_sign_cart(i), 1.0);
    for (int j = 1; j <= g.n3; ++j) EXPECT_NEAR(g.s(i, j), i == j ? 1.0 : 0.0, 1e-13);
  }
  EXPECT_EQ(g.lamt, 0.0);
}

TEST(duschinsky, another_sign_of_a_mode_flips_its_column_and_nothing_that_is_physical) {
  run_data run = chiral_pair();
  to_modes(run);
  get_vbn(run.state, run.input);
  const states g = run.state(1);
  const states e = run.state(2);
  for (double& element : run.state(2).cm.column(9)) element = -element;
  get_vbn(run.state, run.input);
  EXPECT_EQ(run.state(2).d(9), -e.d(9));
  EXPECT_EQ(run.state(2).d0(9), -e.d0(9));
  EXPECT_EQ(run.state(2).d_sign_cart(9), -e.d_sign_cart(9));
  for (int i = 1; i <= g.n3; ++i) {
    EXPECT_EQ(run.state(1).s(i, 9), -g.s(i, 9));
    EXPECT_EQ(run.state(2).s(9, i), -e.s(9, i));
    EXPECT_EQ(run.state(1).s(i, 8), g.s(i, 8));
  }
  EXPECT_EQ(run.state(2).hr, e.hr);
  EXPECT_EQ(run.state(2).lamt, e.lamt);
  EXPECT_EQ(run.state(2).order, e.order);
}

TEST(duschinsky, an_imaginary_mode_lowers_the_total_and_has_no_zero_point_length) {
  run_data run = chiral_pair();
  to_modes(run);
  get_vbn(run.state, run.input);
  const states before = run.state(2);
  run.state(2).freq(8) = -run.state(2).freq(8);
  run.state(2).freq(9) = 0.0;
  get_vbn(run.state, run.input);
  const states& e = run.state(2);
  EXPECT_EQ(e.hr(8), before.hr(8));
  EXPECT_EQ(e.lam(8), -before.lam(8));
  EXPECT_NEAR(e.lamt, before.lamt - 2.0 * before.lam(8) - before.lam(9), 1e-15);
  EXPECT_NEAR(e.freqt, before.freqt - before.freq(9), 1e-15);
  EXPECT_TRUE(std::isnan(e.zptlen(8)));
  EXPECT_TRUE(std::isinf(e.zptlen(9)));
}

TEST(duschinsky, modes_too_long_stop_the_run_and_modes_too_short_do_not) {
  run_data run = chiral_pair();
  to_modes(run);
  const array2<double> cm = run.state(1).cm;
  for (double& element : run.state(1).cm.column(3)) element *= 1.0 - 1.0e-3;
  EXPECT_NO_THROW(test_fc(run.state(1).cm));

  array2<double> scaled = cm;
  for (double& element : scaled.column(3)) element *= 1.0 + 1.0e-11;
  CaptureStdout();
  try {
    test_fc(scaled);
    ADD_FAILURE() << "went on";
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 0);
    EXPECT_NE(end.text.find("STOP  Test fc: fc matrix is not orthogonal! Stop!"), std::string::npos);
  }
  EXPECT_EQ(GetCapturedStdout(), "  c * c  (   3,   3 ) =       0.100000E+01\n");

  array2<double> skewed(2, 2);
  skewed(1, 1) = skewed(2, 2) = 0.5;
  skewed(1, 2) = -0.1;
  EXPECT_NO_THROW(test_fc(skewed));
  skewed(1, 2) = 0.1;
  CaptureStdout();
  EXPECT_THROW(test_fc(skewed), run_end);
  EXPECT_EQ(GetCapturedStdout(), "");
}

TEST(duschinsky, a_shared_hessian_leaves_the_displacement_and_each_states_own_frequencies) {
  for (const int same_hessian : {0, 1, 2, 3}) {
    run_data run = chiral_pair();
    to_modes(run);
    const array1<states> before = run.state;
    use_same_hessian(run.state, same_hessian);
    get_vbn(run.state, run.input);
    const states& g = run.state(1);
    const states& e = run.state(2);
    EXPECT_EQ(g.freq, before(1).freq);
    EXPECT_EQ(e.freq, before(2).freq);
    EXPECT_EQ(g.cm == before(1).cm, same_hessian != 2);
    EXPECT_EQ(e.cm == before(2).cm, same_hessian != 1);
    EXPECT_EQ(g.fc == e.fc && g.fcm == e.fcm && g.c == e.c, same_hessian == 1 || same_hessian == 2);
    if (same_hessian != 1 && same_hessian != 2) continue;
    for (int i = 1; i <= g.n3; ++i) {
      EXPECT_EQ(e.d(i), -g.d(i));
      for (int j = 1; j <= g.n3; ++j) EXPECT_NEAR(g.s(i, j), i == j ? 1.0 : 0.0, 1e-13);
    }
  }
}

}  // namespace
}  // namespace vbn
