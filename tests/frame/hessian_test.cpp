// Tests of mass-weighting, replaced masses, frequencies and of what a frequency file must hold.
#include "frame/hessian.hpp"  // for get_hess, get_isotope, fc_to_fcm, get_freq

#include <gtest/gtest.h>

#include <string>

#include "text/stop.hpp"             // for run_end
#include "tests/frame/molecule.hpp"  // for spring_molecule
#include "tests/written_file.hpp"    // for scratch, write_text

namespace vbn {
namespace {

// The record of a molecule before its file, of numerical frequencies, is read; the analysis keeps the atoms
// `kept` of it.
states unread(const states& molecule, const std::vector<int>& kept) {
  const auto row = [](std::initializer_list<double> numbers) {
    std::string text;
    char number[40];
    for (const double value : numbers) {
      std::snprintf(number, sizeof number, " %.17g", value);
      text += number;
    }
    return text;
  };
  std::string text = " NUMERICAL FREQUENCY\n NAtoms " + std::to_string(molecule.natom) +
                     "\n Coordinate Bohr\n No Z mass x y z\n";
  for (int i = 1; i <= molecule.natom; ++i) {
    text += "1 " + std::to_string(molecule.nat(i)) +
            row({molecule.mass(i), molecule.x(1, i), molecule.x(2, i), molecule.x(3, i)}) + "\n";
  }
  text += " Unprojected Force Constant Matrix\n";
  for (int i = 1; i <= molecule.n3; ++i) {
    text += " row\n";
    for (int j = 1; j <= molecule.n3; ++j) text += row({molecule.fc(i, j)});
    text += "\n";
  }

  states state;
  state.ffreq = state.fhess = scratch("molecule.dat");
  write_text(state.ffreq.str(), text);
  state.natom = static_cast<int>(kept.size());
  state.n3 = 3 * state.natom;
  state.nqmmm = molecule.natom;
  state.ifoniom = state.natom < state.nqmmm;
  vbn_allocate(state);
  for (int i = 1; state.ifoniom && i <= state.natom; ++i) {
    state.iqm(i) = kept[static_cast<std::size_t>(i - 1)];
    for (int a = 1; a <= 3; ++a) state.iqm3(3 * (i - 1) + a) = 3 * (state.iqm(i) - 1) + a;
  }
  return state;
}

TEST(hessian, a_file_fills_the_record_and_a_layer_takes_its_part_of_the_matrix) {
  const states molecule = spring_molecule(water);
  states state = unread(molecule, {1, 2, 3});
  get_hess(state);
  EXPECT_TRUE(state.x == molecule.x && state.fc == molecule.fc && state.fcm == molecule.fcm);
  EXPECT_TRUE(state.massau == molecule.massau && state.sqtmass == molecule.sqtmass);
  EXPECT_TRUE(state.x0 == state.x && state.fc0 == state.fc && state.fcm0 == state.fcm);
  EXPECT_EQ(state.mass0, state.mass);
  EXPECT_EQ(state.sym_num(3).str(), " H(3)");
  get_freq(state);
  EXPECT_TRUE(state.freq0 == state.freq && state.cm0 == state.cm);

  const states whole = spring_molecule(chiral_molecule);
  states layer = unread(whole, {2, 4});
  get_hess(layer);
  EXPECT_EQ(layer.nat(1), 9);
  EXPECT_EQ(layer.mass(2), whole.mass(4));
  EXPECT_EQ(layer.x(3, 2), whole.x(3, 4));
  EXPECT_EQ(layer.fc(2, 6), whole.fc(5, 12));
  EXPECT_EQ(layer.fcm(5, 5), whole.fcm(11, 11));
}

TEST(hessian, a_mass_that_nothing_can_be_weighed_with_ends_the_run_and_names_file_and_atom) {
  for (const double mass : {0.0, -1.0}) {
    states bad = spring_molecule(water);
    bad.mass(2) = mass;
    states state = unread(bad, {1, 2, 3});
    try {
      get_hess(state);
      ADD_FAILURE() << "went on";
    } catch (const run_end& end) {
      EXPECT_EQ(end.status, 1);
      EXPECT_NE(end.text.find("molecule.dat"), std::string::npos);
      EXPECT_NE(end.text.find("H(2)"), std::string::npos);
    }
  }
}

TEST(hessian, weighting_reads_the_upper_triangle_alone_and_both_directions_undo_each_other) {
  states state = spring_molecule(chiral_molecule);
  const array2<double> fc = state.fc;
  for (int i = 2; i <= state.n3; ++i)
    for (int j = 1; j < i; ++j) state.fc(i, j) = 77.0;
  int info = 9;
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, 1, info);
  EXPECT_EQ(state.fcm(5, 2), fc(2, 5) / state.sqtmass(2) / state.sqtmass(5));
  fc_to_fcm(state.n3, state.sqtmass, state.fc, state.fcm, -1, info);
  EXPECT_EQ(info, 0);
  expect_near(state.fc, fc, 1e-16);
}

TEST(hessian, mass_of_an_element_goes_over_the_mass_of_an_atom_and_reaches_the_weighted_matrix) {
  states state = spring_molecule(water);
  state.fcm(1, 1) += 1.0e-9;  // not what `fc` gives: shows whether it is weighed anew
  const states before = state;
  array1<double> mass_atom(1500, -1.0);
  array1<double> mass_type(1500, -1.0);
  mass_atom(1) = state.mass(1);
  get_isotope(state, 1500, mass_atom, mass_type);
  EXPECT_EQ(state.fcm, before.fcm);
  mass_atom(3) = 1.0;
  mass_type(1) = 2.014;
  get_isotope(state, 1500, mass_atom, mass_type);
  EXPECT_EQ(state.mass(3), 2.014);
  EXPECT_EQ(state.sqtmass(9), std::sqrt(amu_to_au * 2.014));
  EXPECT_EQ(state.fcm(3, 9), before.fc(3, 9) / state.sqtmass(3) / state.sqtmass(9));
  EXPECT_THROW(get_isotope(state, 2, mass_atom, mass_type), run_end);
}

TEST(hessian, a_negative_eigenvalue_gives_a_negative_frequency) {
  states state = spring_molecule(water);
  state.fcm = array2<double>(state.n3, state.n3);
  for (int i = 1; i <= state.n3; ++i) state.fcm(i, i) = i == 4 ? -9.0 : 0.25 * i * i;
  get_freq(state);
  EXPECT_EQ(state.freq(1), -3.0);
  EXPECT_EQ(state.cm(4, 1), 1.0);
  EXPECT_EQ(state.freq(9), 4.5);
}

}  // namespace
}  // namespace vbn
