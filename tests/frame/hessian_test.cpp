// Tests of mass-weighting, replaced masses, frequencies and of what a frequency file must hold.
#include "frame/hessian.hpp"  // for get_hess, get_isotope, fc_to_fcm, get_freq

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "run/stop.hpp"              // for run_end
#include "run/storage.hpp"           // for vbn_allocate
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch, write_text

namespace vbn {
namespace {

// A file of numerical frequencies that holds the molecule.
std::string written(const states& state) {
  std::string text = " NUMERICAL FREQUENCY\n NAtoms " + std::to_string(state.natom) +
                     "\n Coordinate Bohr\n No Z mass x y z\n";
  char row[200];
  for (int i = 1; i <= state.natom; ++i) {
    std::snprintf(row, sizeof row, "%d %d %.17g %.17g %.17g %.17g\n", i, state.nat(i), state.mass(i),
                  state.x(1, i), state.x(2, i), state.x(3, i));
    text += row;
  }
  text += " Unprojected Force Constant Matrix\n";
  for (int i = 1; i <= state.n3; ++i) {
    text += " row\n";
    for (int j = 1; j <= state.n3; ++j) {
      std::snprintf(row, sizeof row, " %.17g", state.fc(i, j));
      text += row;
    }
    text += "\n";
  }
  const std::string name = scratch("molecule.dat");
  write_text(name, text);
  return name;
}

// A record before its file is read; with `kept` atoms in the analysis if they are fewer than all.
states unread(const std::string& name, int natom, int kept) {
  states state;
  state.ffreq = state.fhess = name;
  state.natom = kept;
  state.n3 = 3 * kept;
  state.ifoniom = kept < natom;
  state.nqmmm = natom;
  vbn_allocate(state);
  return state;
}

TEST(hessian, a_file_fills_the_record_and_its_copies_with_raw_frequencies) {
  const states molecule = spring_molecule(water);
  states state = unread(written(molecule), 3, 3);
  get_hess(state);
  EXPECT_EQ(state.x, molecule.x);
  EXPECT_EQ(state.fc, molecule.fc);
  EXPECT_EQ(state.fcm, molecule.fcm);
  EXPECT_EQ(state.massau, molecule.massau);
  EXPECT_EQ(state.sqtmass, molecule.sqtmass);
  EXPECT_TRUE(state.x0 == state.x && state.fc0 == state.fc && state.fcm0 == state.fcm);
  EXPECT_EQ(state.mass0, state.mass);
  EXPECT_EQ(state.symbol(1).str(), "O");
  EXPECT_EQ(state.sym_num(3).str(), " H(3)");
  get_freq(state);
  EXPECT_EQ(state.freq0, state.freq);
  EXPECT_EQ(state.cm0, state.cm);
}

TEST(hessian, a_layer_takes_its_atoms_and_its_part_of_the_matrix) {
  const states molecule = spring_molecule(chiral_molecule);
  states state = unread(written(molecule), 5, 2);
  const int atoms[2] = {2, 4};
  for (int i = 1; i <= 2; ++i) {
    state.iqm(i) = atoms[i - 1];
    for (int a = 1; a <= 3; ++a) state.iqm3(3 * (i - 1) + a) = 3 * (atoms[i - 1] - 1) + a;
  }
  get_hess(state);
  EXPECT_EQ(state.nat(1), 9);
  EXPECT_EQ(state.mass(2), molecule.mass(4));
  EXPECT_EQ(state.x(3, 2), molecule.x(3, 4));
  EXPECT_EQ(state.fc(2, 6), molecule.fc(5, 12));
  EXPECT_EQ(state.fcm(5, 5), molecule.fcm(11, 11));
}

// What the run says when it ends over the molecule's file; empty when it goes on.
std::string end_over(const states& molecule) {
  states state = unread(written(molecule), 3, 3);
  try {
    get_hess(state);
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 1);
    EXPECT_NE(end.text.find("molecule.dat"), std::string::npos);
    return end.text;
  }
  return "";
}

TEST(hessian, a_number_that_nothing_can_be_calculated_from_ends_the_run) {
  const states molecule = spring_molecule(water);
  states bad = molecule;
  bad.mass(2) = 0.0;
  EXPECT_NE(end_over(bad).find("H(2)"), std::string::npos);
  bad = molecule;
  bad.mass(3) = -1.0;
  EXPECT_NE(end_over(bad), "");
  bad = molecule;
  bad.x(2, 1) = HUGE_VAL;
  EXPECT_NE(end_over(bad), "");
  bad = molecule;
  bad.fc(4, 7) = NAN;
  EXPECT_NE(end_over(bad), "");
  EXPECT_EQ(end_over(molecule), "");
}

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
