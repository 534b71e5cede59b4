// Tests of the three projections of translations and rotations.
#include "frame/projection.hpp"  // for get_proj_hessian

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "frame/inertial.hpp"   // for inertm, max_abs
#include "tests/ending.hpp"     // for ending_of
#include "tests/molecules.hpp"  // for state_of

namespace vbn {
namespace {

TEST(projection, no_force_answers_a_translation_or_rotation_of_a_disturbed_hessian) {
  std::mt19937 draw(4);
  std::uniform_real_distribution<double> number(-0.01, 0.01);
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    for (int way = 1; way <= 3; ++way) {
      states state = state_of(atoms);
      const int n3 = state.atoms.n3;
      inertm(state.atoms.massau, state.atoms.x);
      array2<double> disturbed(n3, n3);
      for (int i = 1; i <= n3; ++i)
        for (int j = 1; j <= i; ++j) disturbed(i, j) = disturbed(j, i) = number(draw);
      state.force.set_fc(state.atoms.sqtmass, disturbed);
      const ending e =
          ending_of([&](const messages& say) { get_proj_hessian(state.atoms, way, state.force, say); });
      EXPECT_EQ(e.printed.empty(), way != 2 || atoms[0].nat != 1)
          << "only this way reports a linear molecule";
      const array2<double> fc = state.force.fc();
      for (int move = 1; move <= 6; ++move) {
        // A translation along, or a rotation about, axis p.
        const int p = (move - 1) % 3 + 1, q = p % 3 + 1, r = q % 3 + 1;
        array1<double> force(n3);
        for (int i = 1; i <= state.atoms.natom; ++i) {
          const int at = 3 * (i - 1);
          for (int k = 1; k <= n3; ++k)
            force(k) += move <= 3 ? fc(k, at + p)
                                  : fc(k, at + r) * state.atoms.x(q, i) - fc(k, at + q) * state.atoms.x(r, i);
        }
        // The root in single precision leaves a trace of the translation along x with the second projection,
        // and of the rotations that contain a part of it, since their vectors are not mass-weighted.
        const bool trace = way == 2 && (move == 1 || move >= 5);
        EXPECT_LT(std::abs(max_abs(force.span())), trace ? 1e-8 : 1e-13) << way << ' ' << move;
      }
      EXPECT_NEAR(state.force.fcm()(1, 9), fc(1, 9) / state.atoms.sqtmass(1) / state.atoms.sqtmass(9), 1e-18);
    }
  }
}

}  // namespace
}  // namespace vbn
