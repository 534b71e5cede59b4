// Real files of many programs: frequencies as printed, and one pair of states that agrees among programs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <iterator>

#include "app/analysis.hpp"                // for analyse
#include "molecule/constants.hpp"          // for au_to_cm
#include "readers/programs.hpp"            // for orca_hess_state
#include "readers/state_parts.hpp"         // for check_state
#include "tests/ending.hpp"                // for ending_of
#include "tests/end_to_end/whole_run.hpp"  // for real_data

namespace vbn::end_to_end {
namespace {

void name_files(input_data& input, const std::string& one, const std::string& two) {
  input.ffreq(1) = (real_data() / "more_programs" / one).string();
  input.ffreq(2) = (real_data() / "more_programs" / two).string();
  input.set_cart = true;
}

ending analysed(run_data& run) {
  return ending_of([&](const messages& say) {
    run.say = say;
    run.fout = output_file::nowhere();
    analyse(run);
  });
}

// A file with the frequencies that its program printed beside it in `file`.printed, or in itself.
struct printed_case {
  const char* kind;  // as the program names it
  const char* file;
  double digits;  // cm-1 by which the frequencies may differ
  int proj_hessian = 1;
};

// ORCA takes other constants, GAMESS prints six decimals of the force constants, MOPAC four by default, and
// DALTON removes translations and rotations without masses, which matters far from a minimum.
const printed_case cases[] = {{"GAUSSIAN LOG", "gaussian_alone/h2o2.log", 0.05},
                              {"GAUSSIAN LOG", "gaussian_alone/nh2.log", 0.05},
                              {"GAUSSIAN LOG", "gaussian_alone/ch4_oh_ts.log", 0.05},
                              {"GAUSSIAN LOG", "gaussian_alone/vinyl_hydroperoxide.log", 0.05},
                              {"GAUSSIAN FCHK", "gaussian_alone/ch4.fchk", 0.05},
                              {"GAUSSIAN FCHK", "gaussian_alone/acetonitrile.fchk", 0.05},
                              {"GAUSSIAN FCHK", "qchem/water.fchk", 0.05},
                              {"OPENMOLCAS UNSYM", "openmolcas/formaldehyde_neutral.UnSym", 0.05},
                              {"OPENMOLCAS UNSYM", "openmolcas/formaldehyde_cation.UnSym", 0.05},
                              {"OPENMOLCAS UNSYM", "openmolcas/formaldehyde_neutral_sym.UnSym", 0.05},
                              {"XTB or TURBOMOLE HESSIAN", "xtb/formaldehyde_neutral/hessian", 0.05},
                              {"XTB or TURBOMOLE HESSIAN", "xtb/formaldehyde_cation/hessian", 0.05},
                              {"XTB or TURBOMOLE HESSIAN", "turbomole_control/control", 0.05},
                              {"ORCA HESS", "orca/formaldehyde_neutral.hess", 0.1},
                              {"ORCA HESS", "orca/formaldehyde_cation.hess", 0.1},
                              {"ORCA HESS", "orca/methanol.hess", 0.1},
                              {"ORCA HESS", "orca/co2.hess", 0.1},
                              {"ORCA HESS", "orca/ts_6_atoms.hess", 0.1},
                              {"ORCA HESS", "orca/water_v3.hess", 0.1},
                              {"ORCA HESS", "orca/alkane_26.hess", 0.1},
                              {"ORCA HESS", "orca/h2.hess", 0.1},
                              {"ORCA HESS", "orca/methane_v3_raman.hess", 0.1},
                              {"ORCA PROPERTY", "orca/water_v6.property.json", 0.1},
                              {"QCHEM", "qchem/formaldehyde_neutral.out", 0.05},
                              {"QCHEM", "qchem/formaldehyde_cation.out", 0.05},
                              {"QCHEM", "qchem/co_final_hessian.out", 0.05},
                              {"QCHEM", "qchem/water_vibman4.out", 0.05},
                              {"QCHEM", "qchem/methanol_final_hessian.out", 0.05},
                              {"QCHEM", "qchem/no3.out", 0.05},
                              {"PSI4", "psi4/water_analytic.out", 0.05},
                              {"QCSCHEMA", "json_qcschema/formaldehyde_neutral.json", 0.05},
                              {"ASE", "json_ase/formaldehyde_neutral.json", 0.05},
                              {"ASE", "json_ase/formaldehyde_cation.json", 0.05},
                              {"PSI4 HESS", "psi4/formaldehyde_neutral.hess", 0.05},
                              {"PSI4 HESS", "psi4/formaldehyde_cation.hess", 0.05},
                              {"GAMESS", "gamess/ammonia_ts.out", 0.1},
                              {"GAMESS DAT", "gamess/ammonia_ts.dat", 0.1},
                              {"GAMESS", "gamess/water_2005.out", 0.1},
                              {"CP2K", "cp2k/formaldehyde_neutral.out", 0.05},
                              {"CP2K", "cp2k/formaldehyde_cation.out", 0.05},
                              {"MOPAC AUX", "mopac/formaldehyde_neutral.aux", 0.05},
                              {"MOPAC AUX", "mopac/formaldehyde_cation.aux", 0.05},
                              {"MOPAC AUX", "mopac/formaldehyde_neutral_4digits.aux", 0.15},
                              {"MOPAC AUX", "mopac/formaldehyde_cation_4digits.aux", 0.15},
                              {"MOPAC AUX", "mopac/water_2016.aux", 0.15},
                              {"BAGEL", "bagel/formaldehyde_neutral.out", 0.05},
                              {"BAGEL", "bagel/formaldehyde_cation.out", 0.05},
                              {"CFOUR", "cfour/water_nosymm.out", 0.05},
                              {"DALTON", "dalton/divinylbenzene.out", 0.05, 2},
                              {"MOLDEN", "openmolcas/formaldehyde_neutral.freq.molden", 0.05},
                              {"MOLDEN", "openmolcas/formaldehyde_cation.freq.molden", 0.05},
                              {"MOLDEN", "psi4/formaldehyde_neutral.molden_normal_modes", 0.05},
                              {"MOLDEN", "psi4/formaldehyde_cation.molden_normal_modes", 0.05},
                              {"JAGUAR", "jaguar/divinylbenzene.01.in", 0.05}};

TEST(more_programs, vibrations_have_the_frequencies_that_the_programs_printed) {
  VBN_NEEDS_REAL_DATA();
  for (const printed_case& it : cases) {
    SCOPED_TRACE(it.file);
    run_data run;
    name_files(run.input, it.file, it.file);
    run.input.proj_hessian = it.proj_hessian;
    const ending e = analysed(run);
    ASSERT_EQ(e.status, -1) << e.error << e.printed;
    EXPECT_EQ(run.state(1).file.ffreq_type, it.kind);
    EXPECT_EQ(e.warned.find("where it prints"), std::string::npos) << e.warned;

    std::ifstream stream(real_data() / "more_programs" / (std::string(it.file) + ".printed"));
    std::vector<double> printed(std::istream_iterator<double>(stream), {});
    if (!stream.is_open()) printed = run.state(1).file.printed.frequencies;
    ASSERT_FALSE(printed.empty());
    const array1<double>& freq = run.state(1).modes.freq;
    std::vector<double> ours(freq.begin(), freq.end());
    // Translations and rotations have the lowest magnitudes.
    std::ranges::sort(ours, std::greater(), [](double f) { return std::abs(f); });
    ours.resize(printed.size());
    std::ranges::sort(ours);
    std::ranges::sort(printed);
    double worst = 0.0;
    for (std::size_t i = 0; i < ours.size(); ++i)
      worst = std::max(worst, std::abs(au_to_cm * ours[i] - printed[i]));
    EXPECT_LE(worst, it.digits);
    RecordProperty(it.file, std::to_string(worst));
  }
}

// Formaldehyde and its cation by HF/6-31G: geometries and modes of the programs differ only by their
// optimisations, so each pair gives the same displacements, whichever programs computed the two states.
TEST(more_programs, a_pair_of_states_agrees_among_programs_and_between_them) {
  VBN_NEEDS_REAL_DATA();
  const std::string programs[][2] = {
      {"orca/formaldehyde_neutral.hess", "orca/formaldehyde_cation.hess"},
      {"qchem/formaldehyde_neutral.out", "qchem/formaldehyde_cation.out"},
      {"psi4/formaldehyde_neutral.hess", "psi4/formaldehyde_cation.hess"},
      {"json_ase/formaldehyde_neutral.json", "json_ase/formaldehyde_cation.json"},
      {"psi4/formaldehyde_neutral.molden_normal_modes", "psi4/formaldehyde_cation.molden_normal_modes"},
      {"bagel/formaldehyde_neutral.out", "bagel/formaldehyde_cation.out"}};
  for (const auto& one : programs)
    for (const auto& two : programs) {
      SCOPED_TRACE(one[0] + " " + two[1]);
      run_data run;
      input_data& input = run.input;
      name_files(input, one[0], two[1]);
      input.if_isotope = true;
      input.mass_type(1) = 1.00782503;
      input.mass_type(6) = 12.0;
      input.mass_type(8) = 15.99491462;
      const ending e = analysed(run);
      ASSERT_EQ(e.status, -1) << e.error << e.printed;
      const double wider = &one == &two ? 1.0 : 1.5;  // the errors of two optimisations
      const mode_results &g = run.state(1).cart, &c = run.state(2).cart;
      EXPECT_NEAR(g.hr(9), 0.0407, 0.00015 * wider);
      EXPECT_NEAR(g.hr(10), 0.23025, 0.0007 * wider);
      EXPECT_NEAR(au_to_cm * g.lamt, 508.25, 1.1 * wider);
      EXPECT_NEAR(au_to_cm * c.lamt, 383.55, 0.8 * wider);
    }
}

TEST(more_programs, a_geometry_of_another_file_must_be_in_the_frame_of_the_force_constants) {
  VBN_NEEDS_REAL_DATA();
  input_file file((real_data() / "more_programs/orca/methanol.hess").string(), {});
  file_state state = orca_hess_state(file);
  state.geometry_file = "other.xyz";
  EXPECT_EQ(ending_of([&] { check_state(file, state); }).status, -1);
  for (int i = 1; i <= state.natom(); ++i) std::swap(state.x(1, i), state.x(2, i));
  const ending e = ending_of([&] { check_state(file, state); });
  EXPECT_NE(e.error.find("the geometry of other.xyz does not belong"), std::string::npos) << e.error;
}

}  // namespace
}  // namespace vbn::end_to_end
