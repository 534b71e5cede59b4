// Tests of mass-weighting, replaced masses, frequencies and of what a frequency file must hold.
#include "frame/hessian.hpp"  // for get_hess, get_isotope, fc_to_fcm, get_freq

#include <gtest/gtest.h>

#include "run/stop.hpp"              // for run_end
#include "tests/frame/molecule.hpp"  // for spring_molecule

namespace vbn {
namespace {

TEST(hessian, weighting_reads_the_upper_triangle_alone_and_both_directions_undo_each_other) {
  states state = spring_molecule(chiral_molecule);
  const array2<double> fc = state.fc;
  for (int i = 2; i <= state.n3; ++i)
    for (int j = 1; j < i; ++j) state.fc(i, j) = 77.0;
  int info = 9;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(state.fcm(2, 5), state.fcm(5, 2));
  EXPECT_EQ(state.fcm(2, 5), fc(2, 5) / state.sqtmass(2) / state.sqtmass(5));
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, -1, info);
  for (int i = 1; i <= state.n3; ++i)
    for (int j = 1; j <= state.n3; ++j) EXPECT_NEAR(state.fc(i, j), fc(i, j), 1e-16);
  fc_to_fcm(0, state.sqtmass, state.fc, state.fcm, 1, info);
  EXPECT_EQ(info, -1);
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 2, info);
  EXPECT_EQ(info, -2);
}

TEST(hessian, mass_of_an_element_goes_over_the_mass_of_an_atom_and_reaches_the_weighted_matrix) {
  states state = spring_molecule(water);
  array1<double> mass_atom(1500, -1.0);
  array1<double> mass_type(1500, -1.0);
  const states before = state;
  get_isotope(state, 1500, mass_atom, mass_type);
  EXPECT_EQ(state.fcm, before.fcm);
  mass_atom(1) = 17.99916;
  mass_atom(3) = 1.0;
  mass_type(1) = 2.014;
  get_isotope(state, 1500, mass_atom, mass_type);
  EXPECT_EQ(state.mass(1), 17.99916);
  EXPECT_EQ(state.mass(2), 2.014);
  EXPECT_EQ(state.mass(3), 2.014);
  EXPECT_EQ(state.sqtmass(9), std::sqrt(amu_to_au * 2.014));
  EXPECT_EQ(state.fcm(3, 9), before.fc(3, 9) / state.sqtmass(3) / state.sqtmass(9));
  EXPECT_THROW(get_isotope(state, 2, mass_atom, mass_type), run_end);
}

TEST(hessian, a_matrix_left_alone_by_masses_that_stay_keeps_its_bits) {
  states state = spring_molecule(water);
  state.fcm(1, 1) += 1.0e-9;  // not what `fc` would give
  const array2<double> fcm = state.fcm;
  array1<double> mass_atom(1500, -1.0);
  mass_atom(1) = state.mass(1);
  get_isotope(state, 1500, mass_atom, array1<double>(1500, -1.0));
  EXPECT_EQ(state.fcm, fcm);
}

TEST(hessian, a_negative_eigenvalue_gives_a_negative_frequency) {
  states state = spring_molecule(water);
  for (double& element : state.fcm.span()) element = 0.0;
  for (int i = 1; i <= state.n3; ++i) state.fcm(i, i) = i == 4 ? -9.0 : 0.25 * i * i;
  get_freq(state);
  EXPECT_EQ(state.freq(1), -3.0);
  EXPECT_EQ(state.cm(4, 1), 1.0);
  EXPECT_EQ(state.freq(2), 0.5);
  EXPECT_EQ(state.freq(9), 4.5);
}

}  // namespace
}  // namespace vbn
