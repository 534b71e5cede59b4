// Tests of the three projections of translations and rotations.
#include "frame/projection.hpp"  // for get_proj_hessian

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "frame/inertial.hpp"        // for get_inertial
#include "tests/frame/molecule.hpp"  // for spring_molecule

namespace vbn {
namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

states in_frame(const std::vector<test_atom>& atoms) {
  states state = spring_molecule(atoms);
  get_inertial(state);
  return state;
}

std::string project(states& state, int way) {
  CaptureStdout();
  get_proj_hessian(state, way);
  return GetCapturedStdout();
}

std::size_t count(const std::string& in, const std::string& what) {
  std::size_t found = 0;
  for (std::size_t at = in.find(what); at != std::string::npos; at = in.find(what, at + 1)) ++found;
  return found;
}

// Breaks the invariance of the Hessian as the digits of a file do, only more.
void disturb(states& state) {
  std::mt19937 draw(4);
  std::uniform_real_distribution<double> number(-0.01, 0.01);
  for (int i = 1; i <= state.n3; ++i)
    for (int j = 1; j <= i; ++j) state.fc(i, j) = state.fc(j, i) = state.fc(i, j) + number(draw);
  int info = 0;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
}

TEST(projection, all_ways_leave_the_frequencies_of_a_sound_hessian) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    const states sound = in_frame(atoms);
    states raw = sound;
    get_freq(raw);
    for (int way = 1; way <= 3; ++way) {
      states state = sound;
      project(state, way);
      for (int i = 1; i <= sound.n3; ++i) {
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
      const array2<double>& x = state.x;
      for (int move = 1; move <= 6; ++move) {
        array1<double> t(state.n3);
        for (int i = 1; i <= state.natom; ++i) {
          const double turn[4][3] = {
              {0, 0, 0}, {0, -x(3, i), x(2, i)}, {x(3, i), 0, -x(1, i)}, {-x(2, i), x(1, i), 0}};
          for (int a = 1; a <= 3; ++a)
            t(3 * (i - 1) + a) = move <= 3 ? (a == move ? 1.0 : 0.0) : turn[move - 3][a - 1];
        }
        double largest = 0.0;
        for (int k = 1; k <= state.n3; ++k) {
          double force = 0.0;
          for (int l = 1; l <= state.n3; ++l) force += state.fc(k, l) * t(l);
          largest = std::max(largest, std::abs(force));
        }
        // The root in single precision leaves the second way a trace of the translation along x, and of the
        // rotations that hold a part of it, since the masses do not weigh their vectors.
        const bool trace = way == 2 && (move == 1 || move >= 5);
        EXPECT_LT(largest, trace ? 1e-8 : 1e-13) << "way " << way << " move " << move;
        if (way == 2 && move == 1) {
          EXPECT_GT(largest, 1e-12);
        }
      }
      EXPECT_EQ(state.fc1, state.fc);
      EXPECT_EQ(state.fcm1, state.fcm);
      for (int k = 1; k <= state.n3; ++k)
        EXPECT_NEAR(state.fcm(1, k), state.fc(1, k) / state.sqtmass(1) / state.sqtmass(k), 1e-18);
    }
  }
}

TEST(projection, only_the_second_way_tells_the_rotation_that_a_linear_molecule_or_an_atom_lacks) {
  const std::string second_line = " found in ECKART; assuming linear geometry\n";
  states linear = in_frame(hydrogen_cyanide);
  states copy = linear;
  EXPECT_EQ(project(copy, 1), "");
  copy = linear;
  EXPECT_EQ(project(copy, 3), "");
  const std::string told = project(linear, 2);
  EXPECT_EQ(told.rfind(" Dependent rotation vector no. ", 0), 0u) << told;
  EXPECT_NE(told.find(" 1\n" + second_line), std::string::npos) << told;
  EXPECT_EQ(count(told, second_line), 1u);
  // Five directions are gone: a matrix of ones on the diagonal keeps the four vibrations.
  for (int way = 1; way <= 3; ++way) {
    array2<double> unit(9, 9);
    for (int i = 1; i <= 9; ++i) unit(i, i) = 1.0;
    CaptureStdout();
    if (way == 1) projtrm_rot(linear.x, linear.massau, unit);
    if (way == 2) project_xhessian_rot(linear.x, unit);
    if (way == 3) project_mhessian_rot(linear.x, linear.massau, unit);
    GetCapturedStdout();
    double trace = 0.0;
    for (int i = 1; i <= 9; ++i) trace += unit(i, i);
    EXPECT_NEAR(trace, 4.0, 1e-12) << "way " << way;
  }

  states atom = in_frame({{2, 4.0026, {1.0, 2.0, 3.0}}});
  const std::string thrice = project(atom, 2);
  EXPECT_EQ(count(thrice, second_line), 3u) << thrice;
  EXPECT_LT(thrice.find(" 1\n"), thrice.find(" 2\n"));
  EXPECT_LT(thrice.find(" 2\n"), thrice.find(" 3\n"));
}

TEST(projection, a_layer_or_another_key_leaves_the_hessian_and_still_gives_its_spectrum) {
  states state = in_frame(chiral_molecule);
  disturb(state);
  states raw = state;
  get_freq(raw);
  for (const int way : {0, 1, 2, 3, 4}) {
    states kept = state;
    kept.ifoniom = way >= 1 && way <= 3;
    project(kept, way);
    EXPECT_EQ(kept.fc, state.fc);
    EXPECT_EQ(kept.fcm1, state.fcm);
    EXPECT_EQ(kept.freq1, raw.freq);
    EXPECT_EQ(kept.cm1, raw.cm);
  }
}

}  // namespace
}  // namespace vbn
