// Tests of the three projections of translations and rotations.
#include "frame/projection.hpp"  // for get_proj_hessian

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "frame/inertial.hpp"        // for get_inertial
#include "tests/frame/molecule.hpp"  // for spring_molecule

namespace vbn {
namespace {

states in_frame(const std::vector<test_atom>& atoms) {
  states state = spring_molecule(atoms);
  get_inertial(state);
  return state;
}

// Gives what the projection told on standard output.
std::string project(states& state, int way) {
  testing::internal::CaptureStdout();
  get_proj_hessian(state, way);
  return testing::internal::GetCapturedStdout();
}

// Breaks the invariance of the Hessian as the digits of a file do, only more.
void disturb(states& state) {
  std::mt19937 draw(4);
  std::uniform_real_distribution<double> number(-0.01, 0.01);
  change_fc(state, [&](array2<double>& fc) {
    for (double& element : fc.span()) element += number(draw);
    set_sym_matrix(fc);
  });
}

TEST(projection, no_force_answers_a_translation_or_rotation_of_a_disturbed_hessian) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    for (int way = 1; way <= 3; ++way) {
      states state = in_frame(atoms);
      disturb(state);
      project(state, way);
      for (int move = 1; move <= 6; ++move) {
        // A translation along, or a rotation about, axis p.
        const int p = (move - 1) % 3 + 1;
        const int q = p % 3 + 1;
        const int r = q % 3 + 1;
        array1<double> force(state.atoms.n3);
        for (int i = 1; i <= state.atoms.natom; ++i) {
          for (int k = 1; k <= state.atoms.n3; ++k) {
            const int at = 3 * (i - 1);
            force(k) += move <= 3 ? state.force.fc()(k, at + p)
                                  : state.force.fc()(k, at + r) * state.atoms.x(q, i) -
                                        state.force.fc()(k, at + q) * state.atoms.x(r, i);
          }
        }
        // The root in single precision leaves the second way a trace of the translation along x, and of the
        // rotations that hold a part of it, since the masses do not weigh their vectors.
        const bool trace = way == 2 && (move == 1 || move >= 5);
        EXPECT_LT(std::abs(max_abs(force.span())), trace ? 1e-8 : 1e-13) << way << ' ' << move;
        if (way == 2 && move == 1) {
          EXPECT_GT(std::abs(max_abs(force.span())), 1e-12);
        }
      }
      EXPECT_NEAR(state.force.fcm()(1, 9),
                  state.force.fc()(1, 9) / state.atoms.sqtmass(1) / state.atoms.sqtmass(9), 1e-18);
    }
  }
}

}  // namespace
}  // namespace vbn
