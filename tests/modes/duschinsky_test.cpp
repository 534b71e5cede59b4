// Tests of the Duschinsky matrix, displacements and reorganisation energies.
#include "modes/duschinsky.hpp"  // for get_vbn, test_fc

#include <gtest/gtest.h>

#include <string>

#include "modes/shared_hessian.hpp"        // for use_same_hessian
#include "linalg/matmul.hpp"               // for matmul
#include "text/stop.hpp"                   // for run_end
#include "tests/modes/pair_of_states.hpp"  // for chiral_pair, to_modes

namespace vbn {
namespace {

TEST(duschinsky, a_displaced_oscillator_has_the_huang_rhys_factor_of_the_formula) {
  const double distance[2] = {2.1, 2.22};
  const double strength[2] = {0.3, 0.2};
  const double shift = distance[1] - distance[0];
  run_data run;
  for (int n = 0; n < 2; ++n) {
    run.state(n + 1) = spring_molecule(
        {{7, 14.00307, {0.0, 0.0, 0.0}}, {8, 15.99491, {0.0, 0.0, distance[n]}}}, strength[n]);
  }
  to_modes(run);
  get_vbn(run.state, run.input);
  const double mu = amu_to_au * 14.00307 * 15.99491 / (14.00307 + 15.99491);
  for (int n = 0; n < 2; ++n) {
    const states& state = run.state(n + 1);
    const double k = 1.2 * strength[n] / (distance[n] * distance[n]);
    const double omega = std::sqrt(k / mu);
    EXPECT_NEAR(state.modes.freq(6), omega, 1e-12);
    EXPECT_NEAR(std::abs(state.cart.d(6)), std::sqrt(mu) * shift, 1e-10);
    EXPECT_NEAR(state.cart.hr(6), 0.5 * mu * omega * shift * shift, 1e-12);
    EXPECT_NEAR(state.cart.lamt, 0.5 * k * shift * shift, 1e-12);
    EXPECT_EQ(state.modes.freqt, 0.0);  // the sum begins at mode 7
    for (int i = 1; i <= 6; ++i) EXPECT_EQ(state.modes.zptlen(i), 10.0);
  }
}

TEST(duschinsky, displacements_and_overlaps_keep_their_relations_however_the_molecules_stand) {
  run_data run = chiral_pair(1);
  get_vbn(run.state, run.input);
  const states& g = run.state(1);
  const states& e = run.state(2);
  const array2<double> unit = matmul(g.modes.s, e.modes.s);
  double total = 0.0;
  double frequencies = 0.0;
  for (int i = 1; i <= g.atoms.n3; ++i) {
    double back = 0.0;  // De = -S(e,g) Dg
    for (int j = 1; j <= g.atoms.n3; ++j) {
      EXPECT_NEAR(unit(i, j), i == j ? 1.0 : 0.0, 1e-12);
      EXPECT_EQ(g.modes.s(i, j), e.modes.s(j, i));
      back -= e.modes.s(i, j) * g.cart.d(j);
    }
    EXPECT_NEAR(e.cart.d(i), back, 1e-10);
    EXPECT_EQ(g.modes.zptlen(i), i > 6 ? bohr_to_ang * std::sqrt(1.0 / g.modes.freq(i)) : 10.0);
    if (i > 6) frequencies += g.modes.freq(i);
    total += g.cart.lam(i);
  }
  EXPECT_EQ(g.cart.lamt, total);
  EXPECT_EQ(g.modes.freqt, frequencies);
  EXPECT_GT(g.cart.lamt, 1e-4);

  run_data moved = chiral_pair(7);
  get_vbn(moved.state, run.input);
  for (int n = 1; n <= 2; ++n) {
    EXPECT_NEAR(moved.state(n).cart.lamt, run.state(n).cart.lamt, 1e-12);
    for (int i = 7; i <= g.atoms.n3; ++i) {
      EXPECT_NEAR(moved.state(n).modes.freq(i), run.state(n).modes.freq(i), 1e-13);
      EXPECT_NEAR(moved.state(n).cart.hr(i), run.state(n).cart.hr(i), 1e-9);
    }
  }
}

TEST(duschinsky, modes_too_long_or_leaning_forward_stop_the_run_and_the_other_way_round_do_not) {
  const auto told_at_stop = [](const array2<double>& c) {
    testing::internal::CaptureStdout();
    std::string end_text;
    try {
      test_fc(c);
    } catch (const run_end& end) {
      EXPECT_EQ(end.status, 0);
      end_text = end.text;
    }
    const std::string told = testing::internal::GetCapturedStdout();
    return told + end_text;
  };
  const std::string stop = "STOP  Test fc: fc matrix is not orthogonal! Stop!";
  array2<double> c(12, 12);
  for (int i = 1; i <= 12; ++i) c(i, i) = 1.0;
  c(10, 10) = 1.0 - 1e-3;
  c(2, 5) = -0.1;
  c(5, 5) = 0.5;
  EXPECT_EQ(told_at_stop(c), "");
  c(2, 5) = 0.1;
  EXPECT_EQ(told_at_stop(c).substr(0, stop.size()), stop);
  c(2, 5) = 0.0;
  c(10, 10) = 1.0 + 1e-11;
  EXPECT_EQ(told_at_stop(c).substr(0, 43 + stop.size()),
            "  c * c  (  10,  10 ) =       0.100000E+01\n" + stop);
}

TEST(duschinsky, a_shared_hessian_leaves_the_displacement_and_each_states_own_frequencies) {
  for (const int same_hessian : {0, 1, 2, 3}) {
    run_data run = chiral_pair(1);
    const array1<states> before = run.state;
    use_same_hessian(run.state, same_hessian);
    get_vbn(run.state, run.input);
    const states& g = run.state(1);
    const states& e = run.state(2);
    EXPECT_TRUE(g.modes.freq == before(1).modes.freq && e.modes.freq == before(2).modes.freq);
    EXPECT_EQ(g.modes.cm == before(1).modes.cm, same_hessian != 2);
    EXPECT_EQ(e.modes.cm == before(2).modes.cm, same_hessian != 1);
    if (same_hessian != 1 && same_hessian != 2) continue;
    EXPECT_TRUE(g.force.fc() == e.force.fc() && g.force.fcm() == e.force.fcm());
    for (int i = 1; i <= g.atoms.n3; ++i) {
      EXPECT_EQ(e.cart.d(i), -g.cart.d(i));
      for (int j = 1; j <= g.atoms.n3; ++j) EXPECT_NEAR(g.modes.s(i, j), i == j ? 1.0 : 0.0, 1e-13);
    }
    run.state(1).atoms.x = e.atoms.x;  // and without a displacement nothing is left
    get_vbn(run.state, run.input);
    EXPECT_EQ(g.cart.d, array1<double>(g.atoms.n3, 0.0));
    EXPECT_EQ(g.cart.lamt, 0.0);
  }
}

}  // namespace
}  // namespace vbn
