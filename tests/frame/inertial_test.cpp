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

// Sum over the atoms of mass x coordinate a x coordinate b; with b = 0 of mass x coordinate a.
double moment(const array1<double>& mass, const array2<double>& x, int a, int b) {
  double sum = 0.0;
  for (int i = 1; i <= x.cols(); ++i) sum += mass(i) * x(a, i) * (b == 0 ? 1.0 : x(b, i));
  return sum;
}

void expect_near(const array2<double>& a, const array2<double>& b, double eps) {
  for (int j = 1; j <= a.cols(); ++j)
    for (int i = 1; i <= a.rows(); ++i) EXPECT_NEAR(a(i, j), b(i, j), eps) << i << ' ' << j;
}

TEST(inertial, any_molecule_stands_centred_and_right_handed_with_its_longest_extent_along_x) {
  for (const auto& atoms : {chiral_molecule, water, hydrogen_cyanide}) {
    states state = spring_molecule(atoms);
    move_molecule(state, random_rotation(5), {3.0, -4.0, 0.5});
    array2<double> by_solver = state.x;
    inertm(state.massau, by_solver);
    array2<double> rotation;
    inertm_fc(state.massau, state.x, state.fc, rotation);
    expect_near(by_solver, state.x, 1e-12);
    EXPECT_NEAR(determinant3(rotation), 1.0, 1e-13);
    for (int k = 1; k <= 2; ++k) {
      const double row[3] = {rotation(k, 1), rotation(k, 2), rotation(k, 3)};
      EXPECT_GT(max_abs(row), 0.0);
    }
    for (int a = 1; a <= 3; ++a) {
      EXPECT_NEAR(moment(state.massau, state.x, a, 0), 0.0, 1e-9);
      for (int b = 1; b < a; ++b) {
        EXPECT_NEAR(moment(state.massau, state.x, a, b), 0.0, 1e-8);
        EXPECT_GE(moment(state.massau, state.x, b, b), moment(state.massau, state.x, a, a) - 1e-8);
      }
    }
  }
}

TEST(inertial, a_planar_molecule_lies_in_xy_a_linear_one_along_x_and_an_atom_at_the_origin) {
  states planar = spring_molecule(water);
  move_molecule(planar, random_rotation(6), {1.0, 1.0, 1.0});
  inertm(planar.mass, planar.x);
  for (int i = 1; i <= 3; ++i) EXPECT_NEAR(planar.x(3, i), 0.0, 1e-14);
  states linear = spring_molecule(hydrogen_cyanide);
  inertm(linear.mass, linear.x);
  for (int i = 1; i <= 3; ++i)
    for (int a = 2; a <= 3; ++a) EXPECT_NEAR(linear.x(a, i), 0.0, 1e-14);
  states atom = spring_molecule({{2, 4.0026, {1.0, 2.0, 3.0}}});
  array2<double> rotation;
  inertm_fc(atom.mass, atom.x, atom.fc, rotation);
  EXPECT_EQ(atom.x, (array2<double>(3, 1)));
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(rotation(i, j), i == j ? 1.0 : 0.0);
}

TEST(inertial, each_of_the_four_variants_is_found_with_its_vectors_and_a_tie_takes_the_first) {
  states state = spring_molecule(chiral_molecule);
  inertm(state.mass, state.x);
  const double signs[4][3] = {{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}};
  for (const auto& sign : signs) {
    array2<double> reference = state.x;
    for (int i = 1; i <= state.natom; ++i)
      for (int a = 1; a <= 3; ++a) reference(a, i) *= sign[a - 1];
    array2<double> x = state.x;
    std::vector<double> field(x.span().begin(), x.span().end());
    const array2<double> turn = random_rotation(9);
    rotn(turn, x.span());
    rotn(turn, field);
    for (int i = 1; i <= state.natom; ++i) x(2, i) += 5.0;  // fields are not shifted with the atoms
    inertmv_ref(state.mass, reference, x, field);
    expect_near(x, reference, 1e-13);
    for (std::size_t k = 0; k < field.size(); ++k) EXPECT_NEAR(field[k], reference.span()[k], 1e-13);
  }
  const array2<double> nowhere(3, state.natom);
  array2<double> x = state.x;
  inertmv_ref(state.mass, nowhere, x, {});
  array2<double> first = state.x;
  inertm(state.mass, first);
  expect_near(x, first, 1e-13);
}

TEST(inertial, a_step_starts_from_the_weighted_matrix_and_turns_it_with_the_geometry) {
  states state = spring_molecule(chiral_molecule);
  move_molecule(state, random_rotation(11), {0.0, 2.0, 0.0});
  states turned = state;
  turned.fc = array2<double>(state.n3, state.n3, 1.0);  // rebuilt from `fcm`, so without effect
  CaptureStdout();
  get_inertial(turned);
  EXPECT_EQ(GetCapturedStdout(), "");
  states expected = spring_molecule(chiral_molecule);
  get_inertial(expected);
  // Both orientations may differ by the sign rule of the axes; squares of couplings between atoms do not.
  for (int i = 1; i <= state.natom; ++i) {
    for (int j = 1; j <= state.natom; ++j) {
      for (int a = 1; a <= 3; ++a) {
        for (int b = 1; b <= 3; ++b) {
          const int k = 3 * (i - 1) + a;
          const int l = 3 * (j - 1) + b;
          EXPECT_NEAR(std::abs(turned.fc(k, l)), std::abs(expected.fc(k, l)), 1e-13);
          EXPECT_NEAR(turned.fcm(k, l), turned.fc(k, l) / turned.sqtmass(k) / turned.sqtmass(l), 1e-18);
        }
      }
    }
  }
}

TEST(inertial, a_mirror_image_in_the_coupling_file_is_reported_and_the_run_goes_on) {
  states state = spring_molecule(chiral_molecule);
  state.ifnac = true;
  state.fnacm = "couplings.out";
  state.x_nac = state.x;
  for (int i = 1; i <= state.natom; ++i) state.x_nac(1, i) = -state.x_nac(1, i);
  CaptureStdout();
  get_inertial(state);
  const std::string told = GetCapturedStdout();
  EXPECT_NE(told.find("\n  The coordinate of atom in file molecule.out is not equal to that in the file "
                      "couplings.out\n"),
            std::string::npos)
      << told;
  char row[100];
  std::snprintf(row, sizeof row, "%15.7f%15.7f%15.7f%15.7f%15.7f%15.7f\n", state.x(1, 5) * bohr_to_ang,
                state.x(2, 5) * bohr_to_ang, state.x(3, 5) * bohr_to_ang, state.x_nac(1, 5),
                state.x_nac(2, 5), state.x_nac(3, 5));
  EXPECT_TRUE(told.ends_with(row)) << told;
  EXPECT_EQ(state.nacme_x1, state.nacme_x);
}

TEST(inertial,
     dipole_derivatives_turn_in_their_component_alone_and_a_turn_from_the_files_frame_is_warned_of) {
  states state = spring_molecule(chiral_molecule);
  get_inertial(state);
  state.ifdip = true;
  state.ftdipd = "dipole.dat";
  state.x_dip = state.x;
  for (int l = 1; l <= 3; ++l) {
    state.dip0(l) = l;
    for (int k = 1; k <= 3; ++k) state.tdipd_x(l, k, 2) = 10.0 * k + l;
  }
  states turned = state;
  get_inertial(state);
  CaptureStderr();
  warn_of_dipole_turn(state);
  EXPECT_EQ(GetCapturedStderr(), "");

  array2<double> quarter(3, 3);  // about z, x to y; its inverse is what the file's data need
  quarter(2, 1) = quarter(3, 3) = 1.0;
  quarter(1, 2) = -1.0;
  rotn(quarter, turned.x_dip.span());
  get_inertial(turned);
  for (int k = 1; k <= 3; ++k) {
    EXPECT_NEAR(turned.tdipd_x(1, k, 2), 10.0 * k + 2, 1e-12);
    EXPECT_NEAR(turned.tdipd_x(2, k, 2), -(10.0 * k + 1), 1e-12);
    EXPECT_NEAR(turned.tdipd_x(3, k, 2), 10.0 * k + 3, 1e-12);
  }
  EXPECT_NEAR(turned.dip0(2), -1.0, 1e-13);
  CaptureStderr();
  warn_of_dipole_turn(turned);
  EXPECT_EQ(GetCapturedStderr().rfind("warning: the transition dipole derivatives in dipole.dat", 0), 0u);
  add_dipole_turn(turned, quarter);  // turned back
  CaptureStderr();
  warn_of_dipole_turn(turned);
  EXPECT_EQ(GetCapturedStderr(), "");
}

TEST(inertial, small_routines_keep_their_edge_cases) {
  EXPECT_EQ(max_abs(std::vector<double>{0.5, -2.0, 2.0}), -2.0);
  EXPECT_EQ(max_abs(std::vector<double>{}), 0.0);
  double d = 7.0;
  int info = 0;
  get_dv({}, {}, d, info);
  EXPECT_EQ(info, -1);
  EXPECT_EQ(d, 7.0);
  get_dv(std::vector<double>{1.0, 2.0}, std::vector<double>{1.0, 0.0}, d, info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(d, std::sqrt(2.0));
}

}  // namespace
}  // namespace vbn
