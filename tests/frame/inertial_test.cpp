// Tests of the inertial frame and of the choice among its four variants.
#include "frame/inertial.hpp"  // for get_inertial

#include <gtest/gtest.h>

#include <string>

#include "tests/frame/molecule.hpp"  // for spring_molecule

namespace vbn {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

TEST(inertial, any_molecule_stands_centred_and_right_handed_with_its_longest_extent_along_x) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    states state = spring_molecule(atoms);
    move_molecule(state, random_rotation(5), {3.0, -4.0, 0.5});
    array2<double> by_solver = state.atoms.x;
    inertm(state.atoms.massau, by_solver);
    array2<double> rotation;
    array2<double> fc = state.force.fc();
    inertm_fc(state.atoms.massau, state.atoms.x, fc, rotation);
    expect_near(by_solver, state.atoms.x, 1e-12);
    EXPECT_NEAR(determinant3(rotation), 1.0, 1e-13);
    for (int k = 1; k <= 2; ++k) {
      EXPECT_GT(max_abs(std::vector{rotation(k, 1), rotation(k, 2), rotation(k, 3)}), 0.0);
    }
    double extent[4] = {};
    for (int a = 1; a <= 3; ++a) {
      double centre = 0.0;
      double product = 0.0;
      for (int i = 1; i <= state.atoms.natom; ++i) {
        centre += state.atoms.mass(i) * state.atoms.x(a, i);
        product += state.atoms.mass(i) * state.atoms.x(a, i) * state.atoms.x(a % 3 + 1, i);
        extent[a] += state.atoms.mass(i) * state.atoms.x(a, i) * state.atoms.x(a, i);
      }
      EXPECT_NEAR(centre, 0.0, 1e-12);
      EXPECT_NEAR(product, 0.0, 1e-11);
    }
    EXPECT_GE(extent[1], extent[2]);
    EXPECT_GE(extent[2], extent[3] - 1e-12);
  }
  states atom = spring_molecule({{2, 4.0026, {1.0, 2.0, 3.0}}});
  array2<double> rotation;
  array2<double> fc = atom.force.fc();
  inertm_fc(atom.atoms.mass, atom.atoms.x, fc, rotation);
  EXPECT_EQ(atom.atoms.x, (array2<double>(3, 1)));
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(rotation(i, j), i == j ? 1.0 : 0.0);
}

TEST(inertial, a_step_starts_from_the_weighted_matrix_and_reports_a_mirror_image_in_the_coupling_file) {
  states state = spring_molecule(chiral_molecule);
  move_molecule(state, random_rotation(11), {0.0, 2.0, 0.0});
  state.couplings.x_nac = state.atoms.x;
  states expected = state;
  CaptureStdout();
  get_inertial(expected);
  EXPECT_EQ(GetCapturedStdout(), "");
  state.force.set_projected_fc(
      array2<double>(state.atoms.n3, state.atoms.n3, 1.0));  // rebuilt from `fcm`, so without effect
  state.couplings.ifnac = true;
  state.couplings.fnacm = "couplings.out";
  for (int i = 1; i <= state.atoms.natom; ++i) state.couplings.x_nac(1, i) = -state.couplings.x_nac(1, i);
  CaptureStdout();
  get_inertial(state);
  const std::string told = GetCapturedStdout();
  expect_near(state.force.fc(), expected.force.fc(), 1e-14);
  EXPECT_EQ(state.force.fcm()(2, 7),
            state.force.fc()(2, 7) / state.atoms.sqtmass(2) / state.atoms.sqtmass(7));
  EXPECT_NE(told.find("\n  The coordinate of atom in file molecule.out is not equal to that in the file "
                      "couplings.out\n"),
            std::string::npos)
      << told;
  char row[100];
  std::snprintf(row, sizeof row, "%15.7f%15.7f%15.7f%15.7f%15.7f%15.7f\n", state.atoms.x(1, 5) * bohr_to_ang,
                state.atoms.x(2, 5) * bohr_to_ang, state.atoms.x(3, 5) * bohr_to_ang,
                state.couplings.x_nac(1, 5), state.couplings.x_nac(2, 5), state.couplings.x_nac(3, 5));
  EXPECT_TRUE(told.ends_with(row)) << told;
}

}  // namespace
}  // namespace vbn
