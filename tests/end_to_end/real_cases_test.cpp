// Whole runs on real calculations, compared with what is known from elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <sstream>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run, expect_same_physics

namespace vbn::end_to_end {
namespace {

mode_table cartesian_table(const std::string& folder, const std::string& input) {
  whole_run run(real_data() / folder);
  run.run(input);
  EXPECT_EQ(run.status, 0) << folder << "\n" << run.out << run.err;
  return parse_mode_data(run.read("vbn.cart.dat"));
}

// The frequencies, in increasing order, of the lines that begin with `label` in their last table.
std::vector<double> printed_frequencies(const std::filesystem::path& file, const std::string& label) {
  std::ifstream stream(file);
  std::vector<double> found;
  for (std::string line; std::getline(stream, line);) {
    const std::size_t at = line.find(label);
    if (at == std::string::npos) continue;
    std::istringstream words(line.substr(at + label.size()));
    for (double f = 0.0; words >> f;) found.push_back(f);
  }
  std::sort(found.begin(), found.end());
  return found;
}

// From about 100 coordinates on OpenBLAS would share a product among threads, and so change its last bits.
TEST(real_cases, the_number_of_threads_that_is_asked_for_changes_no_byte) {
  VBN_NEEDS_REAL_DATA();
  whole_run run(real_data() / "xtb/coumarin153/numforce");
  run.run("coumarin153.inp", "OPENBLAS_NUM_THREADS=1");
  const auto one_thread = run.results();
  run.run("coumarin153.inp", "OPENBLAS_NUM_THREADS=2");
  EXPECT_TRUE(run.results() == one_thread);
}

// Runs of a few hundred atoms: every file is there, holds no value that is none, and comes out the same
// again.
TEST(real_cases, large_ones_run_to_their_end_and_repeat_to_the_byte) {
  VBN_NEEDS_REAL_DATA();
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "too slow under the sanitizers";
#endif
  for (const std::string name : {"beta_carotene/gaussian", "beta_carotene/numforce", "octa3ht/numforce"}) {
    SCOPED_TRACE(name);
    whole_run run(real_data() / "xtb" / name);
    const std::string input = name.substr(0, name.find('/')) + ".inp";
    run.run(input);
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    const auto first = run.results();
    EXPECT_EQ(first.size(), 10u);
    for (const auto& [file, content] : first) EXPECT_EQ(content.find("NaN"), std::string::npos) << file;
    run.run(input);
    EXPECT_TRUE(run.results() == first) << "a second run wrote other bytes";
  }
}

TEST(real_cases, vibrations_have_the_frequencies_that_the_programs_printed) {
  VBN_NEEDS_REAL_DATA();
  const char *gaussian = "Frequencies --", *molpro = "Wavenumbers [cm-1]", *nwchem = "P.Frequency";
  const struct {
    std::string folder, input;
    const char *file1, *label1, *file2, *label2;  // with the label before the frequencies
  } cases[] = {
      {"nwchem/water", "water.inp", "neutral.out", nwchem, "cation.out", nwchem},
      {"nwchem/formaldehyde", "formaldehyde.inp", "s0.out", nwchem, "cation.out", nwchem},
      {"nwchem/formaldehyde_s1", "formaldehyde_s1.inp", "s0.out", nwchem, "s1.out", nwchem},
      {"nwchem/formaldehyde_s1", "planar.inp", "s0.out", nwchem, "s1_planar.out", nwchem},
      {"nwchem/ethylene", "ethylene.inp", "neutral.out", nwchem, "cation.out", nwchem},
      {"nwchem/ammonia", "ammonia.inp", "neutral.out", nwchem, "cation.out", nwchem},
      {"nwchem/glyoxal", "glyoxal.inp", "s0.out", nwchem, "t1.out", nwchem},
      {"nwchem/butadiene", "butadiene.inp", "s0.out", nwchem, "t1.out", nwchem},
      {"nwchem/formamide", "formamide.inp", "neutral.out", nwchem, "cation.out", nwchem},
      {"nwchem/hcn", "hcn.inp", "neutral.out", nwchem, "cation.out", nwchem},
      {"nwchem/n2", "n2.inp", "neutral.out", nwchem, "cation.out", nwchem},
      {"public/dvb_gaussian", "dvb.inp", "g09.out", gaussian, "g16.out", gaussian},
      {"public/dvb_gaussian_turbomole", "dvb.inp", "g16.out", gaussian, "aoforce.out", "  frequency"},
      {"public/dvb_molpro", "dvb.inp", "dvb_ir.out", molpro, "dvb_ir.out", molpro},
      {"public/dvb_nwchem", "dvb.inp", "dvb_ir.out", nwchem, "dvb_ir.out", nwchem},
      {"public/propane_gaussian", "propane.inp", "propane.out", gaussian, "propane.out", gaussian},
      {"public/cyclopentane_gaussian", "cyclopentane.inp", "halfchair.log", gaussian, "envelope.log",
       gaussian},
      {"public/formic_acid_molpro", "as_is.inp", "hcooh.out", molpro, "cation.out", nwchem}};
  for (const auto& it : cases) {
    SCOPED_TRACE(it.folder + "/" + it.input);
    const mode_table table = cartesian_table(it.folder, it.input);
    const std::size_t vibrations = table.rows.size() - (table.rows.size() > 6 ? 6 : 5);
    for (int k = 1; k <= 2; ++k) {
      std::vector<double> ours;
      for (const mode_row& row : table.rows) ours.push_back(k == 1 ? row.freq1 : row.freq2);
      std::vector<double> printed = printed_frequencies(
          real_data() / it.folder / (k == 1 ? it.file1 : it.file2), k == 1 ? it.label1 : it.label2);
      ASSERT_GE(printed.size(), vibrations);
      // Translations and rotations, the lowest in magnitude, are not printed by all.
      for (std::vector<double>* frequencies : {&ours, &printed}) {
        std::ranges::sort(*frequencies, std::greater(), [](double f) { return std::abs(f); });
        frequencies->resize(vibrations);
        std::ranges::sort(*frequencies);
      }
      const double digits = it.folder.starts_with("nwchem") ? 0.1 : 0.05;
      for (std::size_t i = 0; i < vibrations; ++i) EXPECT_NEAR(ours[i], printed[i], digits) << "state " << k;
    }
  }
}

TEST(real_cases, one_molecule_gives_the_same_tables_through_every_kind_of_file) {
  VBN_NEEDS_REAL_DATA();
  const std::string folder = "formats/formaldehyde/";
  const mode_table reference = cartesian_table(folder + "numforce", "formaldehyde.inp");
  // The files have 6 to 10 digits of the coordinates and 5 to 8 of the force constants.
  for (const char* kind : {"gaussian", "molpro", "turbomole", "chemshell", "nwchem", "mixed"}) {
    SCOPED_TRACE(kind);
    expect_same_physics(reference, cartesian_table(folder + kind, "formaldehyde.inp"), 0.1, 1e-3);
  }
}

TEST(real_cases, rotating_and_shifting_the_molecule_changes_no_result) {
  VBN_NEEDS_REAL_DATA();
  // The logs hold the molecule of the other folder rotated and shifted at random, with coordinates to 6
  // decimals.
  for (const char* name : {"naphthalene", "azobenzene", "coumarin153", "nitrobenzene"}) {
    SCOPED_TRACE(name);
    const std::string folder = std::string("xtb/") + name;
    expect_same_physics(cartesian_table(folder + "/numforce", std::string(name) + ".inp"),
                        cartesian_table(folder + "/gaussian", std::string(name) + ".inp"), 0.02, 2e-3);
  }
}

TEST(real_cases, couplings_by_mode_are_the_same_through_the_files_of_four_programs) {
  VBN_NEEDS_REAL_DATA();
  const auto couplings_of = [](const std::string& input) {
    whole_run run(real_data() / "couplings/glyoxal");
    run.run(input + ".inp");
    return parse_couplings(run.read("vbn.cart.nac"));
  };
  const std::vector<double> reference = couplings_of("molpro");
  ASSERT_EQ(reference.size(), 12u);
  for (const char* program : {"gaussian", "nwchem", "turbomole63", "turbomole65"}) {
    const std::vector<double> couplings = couplings_of(program);
    ASSERT_EQ(couplings.size(), 12u) << program;
    // The fields have six or seven decimals and the energy of the Gaussian file four.
    for (std::size_t i = 0; i < 12; ++i) EXPECT_NEAR(couplings[i], reference[i], 2e-6) << program;
  }
}

}  // namespace
}  // namespace vbn::end_to_end
