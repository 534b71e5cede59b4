// Tests of the Duschinsky matrix, displacements and reorganisation energies.
#include "modes/duschinsky.hpp"  // for get_vbn

#include <gtest/gtest.h>

#include <string>

#include "linalg/matmul.hpp"               // for matmul
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

}  // namespace
}  // namespace vbn
