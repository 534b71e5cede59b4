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
  for (double& element : state.fc.span()) element += number(draw);
  set_sym_matrix(state.fc);
  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
}

TEST(projection, all_ways_leave_the_frequencies_of_a_sound_hessian) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    states raw = in_frame(atoms);
    get_freq(raw);
    for (int way = 1; way <= 3; ++way) {
      states state = raw;
      project(state, way);
      for (int i = 1; i <= raw.n3; ++i) {
        // A frequency of zero is the root of a rounding error.
        const double eps = std::abs(raw.freq(i)) < 1e-5 ? 1e-7 : 1e-12;
        EXPECT_NEAR(state.freq1(i), raw.freq(i), eps) << "way " << way << " mode " << i;
      }
    }
  }
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
        array1<double> force(state.n3);
        for (int i = 1; i <= state.natom; ++i) {
          for (int k = 1; k <= state.n3; ++k) {
            const int at = 3 * (i - 1);
            force(k) += move <= 3 ? state.fc(k, at + p)
                                  : state.fc(k, at + r) * state.x(q, i) - state.fc(k, at + q) * state.x(r, i);
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
      EXPECT_TRUE(state.fc1 == state.fc && state.fcm1 == state.fcm);
      EXPECT_NEAR(state.fcm(1, 9), state.fc(1, 9) / state.sqtmass(1) / state.sqtmass(9), 1e-18);
    }
  }
}

TEST(projection, only_the_second_way_tells_the_rotation_that_a_linear_molecule_or_an_atom_lacks) {
  const auto told = [](int number) {
    return " Dependent rotation vector no. " + std::to_string(number) +
           "\n found in ECKART; assuming linear geometry\n";
  };
  for (int way = 1; way <= 3; ++way) {
    states linear = in_frame(hydrogen_cyanide);
    linear.fc = linear.fcm = array2<double>(9, 9);
    for (int i = 1; i <= 9; ++i) linear.fc(i, i) = linear.fcm(i, i) = 1.0;
    EXPECT_EQ(project(linear, way), way == 2 ? told(1) : "");
    double trace = 0.0;  // of the projector itself: what is left beside five directions
    for (int i = 1; i <= 9; ++i) trace += way == 2 ? linear.fc(i, i) : linear.fcm(i, i);
    EXPECT_NEAR(trace, 4.0, 1e-12) << way;
    states atom = in_frame({{2, 4.0026, {1.0, 2.0, 3.0}}});
    EXPECT_EQ(project(atom, way), way == 2 ? told(1) + told(2) + told(3) : "");
  }
}

TEST(projection, a_layer_or_another_key_leaves_the_hessian_and_still_gives_its_spectrum) {
  states state = in_frame(chiral_molecule);
  disturb(state);
  get_freq(state);
  for (int way = 0; way <= 4; ++way) {
    states kept = state;
    kept.ifoniom = way >= 1 && way <= 3;
    project(kept, way);
    EXPECT_TRUE(kept.fc == state.fc && kept.fcm1 == state.fcm) << way;
    EXPECT_TRUE(kept.freq1 == state.freq && kept.cm1 == state.cm) << way;
  }
}

}  // namespace
}  // namespace vbn
