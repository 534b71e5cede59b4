// Whole runs on real calculations, held against what is known from elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run

namespace vbn::end_to_end {
namespace {

struct real_case {
  const char* folder;
  const char* input;
};

// The large ones, for the builds without a sanitizer.
const std::vector<real_case> large_cases = {
    {"xtb/beta_carotene/gaussian", "beta_carotene.inp"},
    {"xtb/beta_carotene/numforce", "beta_carotene.inp"},
    {"xtb/octa3ht/numforce", "octa3ht.inp"},
};

const std::vector<std::string> files_of_a_run = {
    "vbn.out",      "vbn.cart.dat", "vbn.cart.abs", "vbn.dint.dat", "vbn.dint.abs",
    "vbn.dx.x.com", "vbn.dx.x.xyz", "vbn.dx.v.xyz", "vbn.vib1.xyz", "vbn.vib2.xyz"};

// Runs the case twice; every file is there, holds no value that is none, and comes out the same.
void run_twice(const real_case& it) {
  SCOPED_TRACE(std::string(it.folder) + "/" + it.input);
  whole_run run(real_data() / it.folder);
  run.run(it.input);
  ASSERT_EQ(run.status, 0) << run.out << run.err;
  const auto first = run.results();
  for (const std::string& file : files_of_a_run) {
    ASSERT_TRUE(first.contains(file)) << file;
    // Equal geometries have no direction to scale the arrows of the displacement by.
    if (file == "vbn.dx.v.xyz") continue;
    EXPECT_EQ(first.at(file).find("NaN"), std::string::npos) << file;
  }
  run.run(it.input);
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.results() == first) << "a second run wrote other bytes";
}

mode_table cartesian_table(const std::string& folder, const std::string& input) {
  whole_run run(real_data() / folder);
  run.run(input);
  EXPECT_EQ(run.status, 0) << folder << "\n" << run.out << run.err;
  return parse_mode_data(run.read("vbn.cart.dat"));
}

// The frequencies, rising, of the lines that begin with `label` in the last table of them.
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

TEST(real_cases, large_ones_run_to_their_end_and_repeat_to_the_byte) {
  VBN_NEEDS_REAL_DATA();
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "too slow under the sanitizers";
#endif
  for (const real_case& it : large_cases) run_twice(it);
}

TEST(real_cases, projected_frequencies_are_the_ones_that_the_quantum_chemistry_printed) {
  VBN_NEEDS_REAL_DATA();
  const std::vector<std::array<const char*, 4>> pairs = {
      {"water", "water.inp", "neutral.out", "cation.out"},
      {"formaldehyde", "formaldehyde.inp", "s0.out", "cation.out"},
      {"formaldehyde_s1", "formaldehyde_s1.inp", "s0.out", "s1.out"},
      {"formaldehyde_s1", "planar.inp", "s0.out", "s1_planar.out"},
      {"ethylene", "ethylene.inp", "neutral.out", "cation.out"},
      {"ammonia", "ammonia.inp", "neutral.out", "cation.out"},
      {"glyoxal", "glyoxal.inp", "s0.out", "t1.out"},
      {"butadiene", "butadiene.inp", "s0.out", "t1.out"},
      {"formamide", "formamide.inp", "neutral.out", "cation.out"},
      {"hcn", "hcn.inp", "neutral.out", "cation.out"},
      {"n2", "n2.inp", "neutral.out", "cation.out"}};
  for (const auto& [folder, input, file1, file2] : pairs) {
    SCOPED_TRACE(std::string(folder) + "/" + input);
    const mode_table table = cartesian_table(std::string("nwchem/") + folder, input);
    for (int k = 1; k <= 2; ++k) {
      const auto printed =
          printed_frequencies(real_data() / "nwchem" / folder / (k == 1 ? file1 : file2), "P.Frequency");
      ASSERT_EQ(printed.size(), table.rows.size());
      std::vector<double> ours;
      for (const mode_row& row : table.rows) ours.push_back(k == 1 ? row.freq1 : row.freq2);
      std::sort(ours.begin(), ours.end());
      for (std::size_t i = 0; i < ours.size(); ++i) EXPECT_NEAR(ours[i], printed[i], 0.1) << "mode " << i + 1;
    }
  }
}

TEST(real_cases, outputs_that_users_published_give_the_frequencies_that_they_print) {
  VBN_NEEDS_REAL_DATA();
  struct published {
    const char* folder;
    const char* input;
    const char* file[2];
    const char* label[2];  // in front of the frequencies
  };
  const char* gaussian = "Frequencies --";
  const char* molpro = "Wavenumbers [cm-1]";
  const char* nwchem = "P.Frequency";
  const published cases[] = {
      {"dvb_gaussian", "dvb.inp", {"g09.out", "g16.out"}, {gaussian, gaussian}},
      {"dvb_gaussian_turbomole", "dvb.inp", {"g16.out", "aoforce.out"}, {gaussian, "  frequency"}},
      {"dvb_molpro", "dvb.inp", {"dvb_ir.out", "dvb_ir.out"}, {molpro, molpro}},
      {"dvb_nwchem", "dvb.inp", {"dvb_ir.out", "dvb_ir.out"}, {nwchem, nwchem}},
      {"propane_gaussian", "propane.inp", {"propane.out", "propane.out"}, {gaussian, gaussian}},
      {"cyclopentane_gaussian", "cyclopentane.inp", {"halfchair.log", "envelope.log"}, {gaussian, gaussian}},
      {"formic_acid_molpro", "as_is.inp", {"hcooh.out", "cation.out"}, {molpro, nwchem}}};
  for (const published& it : cases) {
    SCOPED_TRACE(it.folder);
    const std::string folder = std::string("public/") + it.folder;
    const mode_table table = cartesian_table(folder, it.input);
    for (int k = 0; k < 2; ++k) {
      // Of the vibrations: translations and rotations are not printed by all.
      const auto vibrations = [&](std::vector<double> frequencies) {
        const auto by_size = [](double a, double b) { return std::abs(a) > std::abs(b); };
        std::sort(frequencies.begin(), frequencies.end(), by_size);
        frequencies.resize(table.rows.size() - 6);
        std::sort(frequencies.begin(), frequencies.end());
        return frequencies;
      };
      const auto printed = printed_frequencies(real_data() / folder / it.file[k], it.label[k]);
      ASSERT_GE(printed.size(), table.rows.size() - 6) << it.file[k];
      std::vector<double> ours;
      for (const mode_row& row : table.rows) ours.push_back(k == 0 ? row.freq1 : row.freq2);
      const auto a = vibrations(ours);
      const auto b = vibrations(printed);
      for (std::size_t i = 0; i < a.size(); ++i) EXPECT_NEAR(a[i], b[i], 0.05) << it.file[k];
    }
  }
}

TEST(real_cases, one_molecule_gives_the_same_tables_through_every_kind_of_file) {
  VBN_NEEDS_REAL_DATA();
  const std::string folder = "formats/formaldehyde/";
  const mode_table reference = cartesian_table(folder + "numforce", "formaldehyde.inp");
  // The files carry 6 to 10 digits of the coordinates and 5 to 8 of the force constants.
  for (const char* kind : {"gaussian", "molpro", "turbomole", "chemshell", "nwchem", "mixed"}) {
    SCOPED_TRACE(kind);
    expect_same_physics(reference, cartesian_table(folder + kind, "formaldehyde.inp"), 0.1, 1e-3);
  }
}

TEST(real_cases, turning_and_shifting_the_molecule_changes_no_result) {
  VBN_NEEDS_REAL_DATA();
  // The logs hold the molecule of the other folder turned and shifted at random, with coordinates to 6
  // decimals.
  for (const char* name : {"naphthalene", "azobenzene", "coumarin153", "nitrobenzene"}) {
    SCOPED_TRACE(name);
    const std::string folder = std::string("xtb/") + name;
    expect_same_physics(cartesian_table(folder + "/numforce", std::string(name) + ".inp"),
                        cartesian_table(folder + "/gaussian", std::string(name) + ".inp"), 0.02, 2e-3);
  }
}

TEST(real_cases, exchanging_the_states_exchanges_their_columns) {
  VBN_NEEDS_REAL_DATA();
  whole_run run(real_data() / "nwchem/formamide");
  run.run("formamide.inp");
  const mode_table there = parse_mode_data(run.read("vbn.cart.dat"));
  run.write("back.inp", "&vbn ffreq(1) = 'cation.out', ffreq(2) = 'neutral.out' /\n");
  run.run("back.inp");
  const mode_table back = parse_mode_data(run.read("vbn.cart.dat"));
  ASSERT_EQ(there.rows.size(), back.rows.size());
  for (std::size_t i = 6; i < there.rows.size(); ++i) {
    EXPECT_DOUBLE_EQ(there.rows[i].freq1, back.rows[i].freq2);
    EXPECT_NEAR(there.rows[i].hr1, back.rows[i].hr2, 2e-5);
    EXPECT_NEAR(there.rows[i].hr2, back.rows[i].hr1, 2e-5);
    EXPECT_NEAR(std::abs(there.rows[i].s), std::abs(back.rows[i].s), 2e-4);
  }
}

TEST(real_cases, duschinsky_matrix_is_orthogonal_and_the_unit_matrix_for_equal_files) {
  VBN_NEEDS_REAL_DATA();
  const mode_table t = cartesian_table("nwchem/formamide", "formamide.inp");
  const std::size_t n = t.rows.size();
  ASSERT_EQ(t.s.size(), n * n);
  // The rotations of two different geometries span slightly different spaces, so the block of the vibrations
  // alone is orthogonal only as far as the displacement is small.
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      double all = 0;
      double vibrations = 0;
      for (std::size_t k = 0; k < n; ++k) {
        all += t.s[i * n + k] * t.s[j * n + k];
        if (k >= 6) vibrations += t.s[i * n + k] * t.s[j * n + k];
      }
      EXPECT_NEAR(all, i == j ? 1.0 : 0.0, 1e-5);
      if (i >= 6 && j >= 6) {
        EXPECT_NEAR(vibrations, i == j ? 1.0 : 0.0, 1e-2);
      }
    }
  }

  whole_run run(real_data() / "nwchem/formamide");
  run.write("equal.inp", "&vbn ffreq = 2*'neutral.out' /\n");
  run.run("equal.inp");
  const mode_table equal = parse_mode_data(run.read("vbn.cart.dat"));
  for (std::size_t i = 6; i < n; ++i) {
    for (std::size_t j = 6; j < n; ++j) EXPECT_NEAR(equal.s[i * n + j], i == j ? 1.0 : 0.0, 1e-6);
    EXPECT_EQ(equal.rows[i].d1, 0.0);
    EXPECT_EQ(equal.rows[i].hr2, 0.0);
  }
}

}  // namespace
}  // namespace vbn::end_to_end
