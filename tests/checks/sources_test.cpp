// States against what their files print, and against each other.
#include "checks/sources.hpp"  // for warn_of_sources, require_one_molecule

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "checks/atom_order.hpp"   // for warn_of_atom_order
#include "frame/hessian.hpp"       // for frequencies_of
#include "molecule/constants.hpp"  // for au_to_cm
#include "readers/programs.hpp"  // for gaussian_log_printed, nwchem_printed, molpro_printed, turbomole_printed
#include "tests/ending.hpp"      // for ending_of
#include "tests/molecules.hpp"   // for state_of, moved, chiral_molecule

namespace vbn {
namespace {

using change = std::function<void(states&)>;

states read(const molecule& atoms) {
  states state = state_of(atoms);
  state.modes.freq0 = frequencies_of(state.force.fcm());
  for (const double f : state.modes.freq0) state.file.printed.frequencies.push_back(au_to_cm * f);
  state.file.printed.max_gradient = 1e-5;
  state.file.printed.method = "B3LYP";
  return state;
}

std::string warnings_of(
    const states& one, const states& two,
    const std::function<void(const array1<states>&, const messages&)>& check = warn_of_sources) {
  array1<states> both(2);
  both(1) = one;
  both(2) = two;
  both(1).file.ffreq = "one";
  both(2).file.ffreq = "two";
  std::string warnings;
  check(both, messages([&](std::string_view text) { warnings.append(text).append("\n"); }, {}));
  return warnings;
}

molecule excited() {
  molecule atoms = chiral_molecule;
  atoms[1].x[0] += 0.1;
  return atoms;
}

TEST(sources, what_does_not_fit_is_named_with_both_values_and_the_rest_is_silent) {
  const states one = read(chiral_molecule), good = read(excited());
  EXPECT_EQ(warnings_of(one, good), "");
  const struct {
    change spoil;
    const char* said;
  } cases[] = {
      {[](states& s) { s.file.printed.frequencies.back() += 30.0; },
       "state 2 (two): its force constants give a frequency of "},
      {[](states& s) { s.file.printed.max_gradient = 0.02; },
       "it prints a largest gradient of 0.020000 hartree/bohr"},
      {[](states& s) {
         for (double& c : s.atoms.x.span()) c *= 0.3;
       },
       "the unit of length may not be"},
      {[](states& s) {
         for (double& c : s.atoms.x.span()) c *= 1.89;
       },
       "the unit of length may not be"},
      {[](states& s) {
         for (double& f : s.modes.freq0) f *= 4.0;
       },
       "the unit of the force constants may not be"},
      {[](states& s) { s.atoms.mass(1) *= 1.001; }, "atom 1 (C) weighs 12.00000 in one and 12.01200 in two"},
      {[](states& s) { s.file.printed.method = "HF"; }, "different methods, B3LYP and HF"},
      {[](states& s) { s.file.printed.method = "B3-LYP"; }, ""},
      {[](states& s) { s = read(chiral_molecule); }, "one and two hold the same state"},
  };
  for (const auto& [spoil, said] : cases) {
    states two = good;
    spoil(two);
    EXPECT_NE(warnings_of(one, two).find(said), std::string::npos) << said << "\n" << warnings_of(one, two);
  }
  states scaled = good, partly = good;
  for (double& f : scaled.file.printed.frequencies) f *= 1.004;  // other constants of nature
  partly.file.printed.frequencies = {500.0, 1000.0};
  EXPECT_EQ(warnings_of(one, scaled) + warnings_of(one, partly), "");
}

TEST(sources, two_molecules_end_the_run_with_both_formulas) {
  array1<states> both(2);
  both(1) = read(hydrogen_cyanide);
  both(2) = read(water);
  const ending e = ending_of([&] { require_one_molecule(both); });
  EXPECT_EQ(e.status, 1);
  EXPECT_NE(e.error.find("different molecules: CHN in , H2O in "), std::string::npos) << e.error;
}

TEST(atom_order, is_found_for_shuffled_rotated_and_mirrored_states) {
  molecule shuffled;
  for (const std::size_t k : {3, 0, 4, 1, 2}) shuffled.push_back(excited()[k]);
  const std::string order = "atoms 1 to 5 of one are atoms 2, 4, 5, 1, 3 of two";
  const std::string plain =
      warnings_of(read(chiral_molecule), read(moved(shuffled, 3, {1, 2, 3})), warn_of_atom_order);
  EXPECT_NE(plain.find(order + "; so the geometries are 0.0"), std::string::npos) << plain;
  for (test_atom& atom : shuffled) atom.x[2] = -atom.x[2];
  const std::string mirrored = warnings_of(read(chiral_molecule), read(shuffled), warn_of_atom_order);
  EXPECT_NE(mirrored.find(order + " (its mirror image); so the geometries are 0."), std::string::npos)
      << mirrored;
  // Every order of three equal atoms is a rotation of ammonia or its mirror image; none needs the mirror.
  std::vector<std::size_t> h = {1, 2, 3};
  const molecule pyramid = {
      {7, {0.0, 0.0, 0.6}}, {1, {1.8, 0.0, 0.0}}, {1, {-0.9, 1.5588, 0.0}}, {1, {-0.9, -1.5588, 0.0}}};
  do {
    const molecule other = {pyramid[0], pyramid[h[0]], pyramid[h[1]], pyramid[h[2]]};
    const bool rotation = (h[1] + 3 - h[0]) % 3 == 1;
    const std::string said = warnings_of(read(pyramid), read(other), warn_of_atom_order);
    EXPECT_EQ(said.find("so the geometries are 0.000") == std::string::npos, rotation) << said;
    EXPECT_EQ(said.find("mirror"), std::string::npos) << said;
  } while (std::ranges::next_permutation(h).found);
  // The same element twice: no label tells the hydrogens apart, only the distances.
  molecule turned = disulfane(2.0), swapped = {turned[3], turned[2], turned[1], turned[0]};
  EXPECT_EQ(warnings_of(read(turned), read(turned), warn_of_atom_order), "");
  swapped[0].nat = 9;
  EXPECT_NE(
      warnings_of(read(turned), read(swapped), warn_of_atom_order).find("atom 1 is H in one and F in two"),
      std::string::npos);
}

TEST(printed, results_are_found_in_the_text_of_each_program) {
  const auto results = [](printed_results (*read)(input_file&), std::string_view text) {
    input_file file = input_file::from_memory("t", text);
    const printed_results p = read(file);
    std::string shown = p.method + " " + p.basis_set;
    for (const auto& number : {p.charge, p.multiplicity})
      shown.append(" ").append(number ? std::to_string(*number) : "-");
    for (const double f : p.frequencies) shown.append(" ").append(std::to_string(f), 0, 7);
    return shown + (p.max_gradient ? " " + std::to_string(*p.max_gradient) : "");
  };
  EXPECT_EQ(
      results(
          gaussian_log_printed,
          " Charge =  0 Multiplicity = 1\n Charge = -1 Multiplicity = 2\n Standard basis: 6-31G(d) (6D, 7F)\n"
          " SCF Done:  E(UB3LYP) =  -118.9 A.U.\n Harmonic frequencies (cm**-1), IR\n Frequencies --    "
          "100.5\n"
          " Harmonic frequencies (cm**-1), IR\n Frequencies --   -223.8919               270.8877\n"
          " Frequencies --    735.8323\n Maximum Force            0.000098     0.000450     YES\n"
          " SCF Done:  E(RHF) =  -118.1 A.U.\n Maximum Force            0.040000     0.000450     NO\n"),
      "B3LYP 6-31G(d) -1 2 -223.89 270.887 735.832 0.000098");
  EXPECT_EQ(
      results(
          nwchem_printed,
          "          Charge           :     1\n          Spin multiplicity:     2\n"
          " Summary of \"ao basis\" -> \"\" (spherical)\n ----\n Tag  Description\n ---- --- "
          "---------------------\n"
          " *                           6-31G*                   on all atoms \n\n"
          "                         B3LYP Method XC Potential\n@ Step       Energy      Delta E   Gmax\n"
          "@    5    -114.10472523  4.6D-10  0.00001  0.00000  0.00000  0.00001      7.7\n"
          "             (Projected Frequencies expressed in cm-1)\n P.Frequency       -0.00      868.13\n"),
      "B3LYP 6-31G* 1 2 -0.0000 868.130 0.000010");
  EXPECT_EQ(
      results(
          molpro_printed,
          " SETTING BASIS          =    6-311G(D,P)\n ITER.   ENERGY(OLD)    ENERGY(NEW)  DE  GRADMAX\n"
          "   1  -115.07  -115.08  -0.0015  0.0321  0.04\n   2  -115.08  -115.08  -0.0001  0.0003  0.01\n\n"
          " PROGRAM * FREQUENCIES (Calculation of harmonic vibrational spectra for HF-SCF)\n Normal Modes\n "
          "Wavenumbers [cm-1]  697.94  706.55\n"
          " Normal Modes of low/zero frequencies\n Wavenumbers [cm-1]  0.01\n"),
      "HF 6-311G(D,P) - - 697.940 706.550 0.000300");
  EXPECT_EQ(
      results(turbomole_printed,
              "   type   atoms  prim   cont   basis\n   -----\n    c       10     15      5   sto-3g hondo\n"
              "           ------\n           density functional\n           ------\n B-P86 functional\n"
              "  molecular charge           :    0.000\n     frequency   i53.33    88.32\n"),
      "B-P86 sto-3g 0 - -53.330 88.3200");
}

}  // namespace
}  // namespace vbn
