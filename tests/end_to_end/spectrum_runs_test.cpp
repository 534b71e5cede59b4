// Whole runs of vbn-spectrum on real pairs of states, against exact moments, symmetries and each other.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run, real_data

namespace vbn::end_to_end {
namespace {

constexpr double kelvin_to_cm = 0.6950348;

// The columns of a table with commas, by their headings; texts are 0.
using columns = std::map<std::string, std::vector<double>>;

columns table_of(const std::string& content) {
  columns table;
  std::vector<std::string> heads;
  for (const std::string& line : lines_of(content)) {
    if (line.starts_with("#")) continue;
    std::istringstream fields(line);
    std::size_t i = 0;
    for (std::string field; std::getline(fields, field, ','); ++i) {
      if (heads.size() <= i && table[field].empty())
        heads.push_back(field);
      else
        table[heads[i]].push_back(std::atof(field.c_str()));
    }
  }
  return table;
}

// A run of the input `folder`/NAME.inp of the real cases with these keys of &spectrum.
std::unique_ptr<whole_run> spectrum_of(const std::string& input, const std::string& keys) {
  const std::filesystem::path file = real_data() / input;
  auto run = std::make_unique<whole_run>(file.parent_path());
  run->program = "vbn-spectrum";
  run->write("s.inp", run->read(file.filename()) + "\n&spectrum " + keys + " /\n");
  run->run("s.inp");
  EXPECT_EQ(run->status, 0) << input << run->err;
  return run;
}

// The rows of the log: T, reorganisation energy, mean, sd, sum of the band - 1, its mean, its sd.
std::vector<std::array<double, 7>> moments_of(const std::string& log) {
  std::vector<std::array<double, 7>> rows;
  bool in_table = false;
  for (const std::string& line : lines_of(log)) {
    std::array<double, 7> row{};
    std::istringstream words(line);
    const bool numbers = std::all_of(row.begin(), row.end(), [&](double& x) { return bool(words >> x); });
    if (in_table && numbers) rows.push_back(row);
    in_table = numbers ? in_table : line.find("band sum - 1") != std::string::npos;
  }
  return rows;
}

TEST(spectrum_runs, bands_of_real_pairs_have_the_exact_sum_mean_and_width) {
  VBN_NEEDS_REAL_DATA();
  const std::string small = "temperature = 0, 10, 298.15, 1000";
  const std::map<std::string, std::string> cases = {
      {"nwchem/water/water.inp", small},
      {"nwchem/formaldehyde_s1/formaldehyde_s1.inp", small},
      {"nwchem/formaldehyde_s1/planar.inp", small},
      {"nwchem/ethylene/ethylene.inp", small},
      {"nwchem/glyoxal/glyoxal.inp", small + ", displacements = 'internal'"},
      {"nwchem/hcn/hcn.inp", small},
      {"nwchem/n2/n2.inp", small},
      {"nwchem/formamide/formamide.inp", "what = 'emission'"},
      {"nwchem/butadiene/butadiene.inp", "line_seconds = 0.1"},
      {"oniom/formaldehyde_2w/formaldehyde_2w.inp", small},
      {"public/cyclopentane_gaussian/cyclopentane.inp", "temperature = 298.15"},
      {"public/dvb_gaussian_turbomole/dvb.inp", "temperature = 0, 298.15"},
      {"public/formic_acid_molpro/amended.inp", "temperature = 0, 298.15"},
      {"xtb/naphthalene/numforce/naphthalene.inp", "fwhm = 30"},
      {"xtb/nitrobenzene/numforce/nitrobenzene.inp", "temperature = 0, 298.15"},
      {"xtb/azobenzene/numforce/azobenzene.inp", "fwhm = 500, line_seconds = 0.1"},
      {"xtb/coumarin153/numforce/coumarin153.inp", "fwhm = 500, line_seconds = 0.1"},
      {"xtb/beta_carotene/numforce/beta_carotene.inp",
       "what = 'absorption', fwhm = 3000, line_seconds = 0.1"}};
  for (const auto& [input, keys] : cases) {
    SCOPED_TRACE(input);
    const auto rows = moments_of(spectrum_of(input, keys)->read("vbn.spectrum.out"));
    EXPECT_GE(rows.size(), 1u);
    for (const auto& [temperature, reorganisation, mean, sd, sum, band_mean, band_sd] : rows) {
      EXPECT_LT(std::abs(sum), 1e-12);
      EXPECT_NEAR(band_mean, mean, 2e-4 * sd + 0.01) << temperature << " K";
      EXPECT_NEAR(band_sd, sd, 2e-4 * sd + 0.01) << temperature << " K";
    }
  }
}

// A Gaussian band of emission is that of absorption, shifted by the square of its width over kT and weighted
// with exp(-E/kT): here kT is such that the shift is 30 cm-1, three steps of the table.
TEST(spectrum_runs, absorption_and_emission_are_in_detailed_balance) {
  VBN_NEEDS_REAL_DATA();
  const double variance = std::pow(200 / 2.3548200450309493, 2);
  const std::string temperature = std::to_string(variance / 30 / kelvin_to_cm);
  for (const std::string input :
       {"xtb/naphthalene/gaussian/naphthalene.inp", "xtb/coumarin153/gaussian/coumarin153.inp"}) {
    SCOPED_TRACE(input);
    const auto run = spectrum_of(input, "temperature = " + temperature + ", line_seconds = 0.1");
    const auto column = [&](const char* file) {
      std::map<long, double> f;
      for (const auto table = table_of(run->read(file)); const auto& [head, values] : table)
        for (std::size_t i = 0; head.starts_with("F_") && i < values.size(); ++i)
          f[std::lround(table.at("wavenumber_from_0-0_cm-1")[i])] = values[i];
      return f;
    };
    auto absorbed = column("vbn.absorption.csv"), emitted = column("vbn.emission.csv");
    const double at_origin = emitted[0] / absorbed[-30];
    for (long e = -1200; e <= 600; e += 10)
      EXPECT_NEAR(
          emitted[e] / absorbed[e - 30] / at_origin / std::exp(-30.0 * static_cast<double>(e) / variance), 1,
          3e-4)
          << e;
  }
}

// Bands of files of two programs, or of a molecule that is rotated with its dipole derivatives.
TEST(spectrum_runs, bands_do_not_depend_on_the_program_or_the_orientation) {
  VBN_NEEDS_REAL_DATA();
  const std::vector<std::vector<std::string>> same = {
      {"dipoles/naphthalene/naphthalene.inp", "dipoles/naphthalene/turned.inp"},
      {"xtb/nitrobenzene/gaussian/nitrobenzene.inp", "xtb/nitrobenzene/numforce/nitrobenzene.inp"},
      {"xtb/coumarin153/gaussian/coumarin153.inp", "xtb/coumarin153/numforce/coumarin153.inp"},
      {"formats/formaldehyde/gaussian/formaldehyde.inp", "formats/formaldehyde/numforce/formaldehyde.inp",
       "formats/formaldehyde/molpro/formaldehyde.inp", "formats/formaldehyde/turbomole/formaldehyde.inp",
       "formats/formaldehyde/chemshell/formaldehyde.inp", "formats/formaldehyde/mixed/formaldehyde.inp"}};
  for (const std::vector<std::string>& inputs : same) {
    std::vector<columns> tables;
    for (const std::string& input : inputs) {
      const auto run =
          spectrum_of(input, "energy = 21000, energy_is = '0-0', range = 18000, 24000, line_seconds = 0.1");
      for (const char* file : {"vbn.absorption.csv", "vbn.emission.csv"})
        tables.push_back(table_of(run->read(file)));
    }
    for (std::size_t i = 2; i < tables.size(); ++i) {
      for (const auto& [head, values] : tables[i]) {
        const std::vector<double>& first = tables[i % 2].at(head);
        const double peak = *std::max_element(first.begin(), first.end());
        ASSERT_EQ(values.size(), first.size());
        for (std::size_t k = 0; k < values.size(); ++k)
          ASSERT_NEAR(values[k], first[k], 2e-4 * peak) << inputs[i / 2] << " " << head << " " << k;
      }
    }
  }
}

// With Herzberg-Teller terms the dipole of the 0-0 line is one number, whichever state it is reached from.
TEST(spectrum_runs, both_directions_have_the_same_dipole_at_the_origin) {
  VBN_NEEDS_REAL_DATA();
  const auto run =
      spectrum_of("dipoles/naphthalene/turned.inp",
                  "energy = 30000, energy_is = '0-0', range = 29990, 30010, fwhm = 5, temperature = 0");
  const auto at_origin = [&](const char* file, const char* name) {
    const columns table = table_of(run->read(file));
    const auto& w = table.at("wavenumber_cm-1");
    return table.at(name)[static_cast<std::size_t>(std::ranges::find(w, 30000) - w.begin())];
  };
  const double absorbed = at_origin("vbn.absorption.csv", "epsilon_0K_5") / (703.3011 * 30000);
  const double emitted = at_origin("vbn.emission.csv", "photons_0K_5") / (2.0261e-6 * std::pow(30000.0, 3));
  EXPECT_NEAR(emitted / absorbed, 1, 1e-4);
  EXPECT_NEAR(absorbed / at_origin("vbn.absorption.csv", "F_0K_5") / 0.194, 1, 0.05);
}

TEST(spectrum_runs, threads_change_no_byte_and_stored_times_give_the_same_bands) {
  const std::filesystem::path example = std::filesystem::path(VBN_EXAMPLES) / "glyoxal";
  const std::string group =
      "&vbn ffreq = 's0.dat' 't1.dat', fnacme = 'nac_molpro.out' /\n"
      "&spectrum what = 'absorption', 'emission', 'ic', energy = 21000, dipole = 1, 0, 0, ";
  const auto run_of = [&](whole_run& run, const std::string& keys, const std::string& options = "s.inp") {
    run.program = "vbn-spectrum";
    run.write("s.inp", group + keys + " /\n");
    run.run(options);
    EXPECT_EQ(run.status, 0) << run.err;
    std::map<std::string, std::string> results = run.results();
    results.erase("vbn.spectrum.out");
    return results;
  };
  whole_run one(example), two(example);
  const auto files = run_of(one, "threads = 1");
  EXPECT_EQ(files.size(), 5u);
  EXPECT_EQ(files, run_of(two, "threads = 3"));
  // A wider band from the stored times, and the same from new ones.
  one.write("c.csv", files.at("vbn.correlation.csv"));
  const auto stored = run_of(one, "fwhm = 300, 1000", "--from' 'c.csv' 's.inp");
  const auto anew = run_of(two, "fwhm = 300, 1000");
  for (const char* file : {"vbn.absorption.csv", "vbn.emission.csv"}) {
    const columns a = table_of(stored.at(file)), b = table_of(anew.at(file));
    ASSERT_EQ(a.size(), b.size());
    for (const auto& [head, values] : a) {
      const double peak = *std::max_element(values.begin(), values.end());
      // Rows at the ends differ: both tables begin at multiples of their steps.
      for (std::size_t i = 0; head != "wavenumber_cm-1" && i < values.size(); i += 10) {
        const std::vector<double>& w = b.at("wavenumber_cm-1");
        const auto at = std::ranges::find(w, a.at("wavenumber_cm-1")[i]);
        if (at == w.end()) continue;
        EXPECT_NEAR(values[i], b.at(head)[static_cast<std::size_t>(at - w.begin())], 1e-6 * peak);
      }
    }
  }
}

TEST(spectrum_runs, damaged_times_and_keys_that_they_do_not_fit_are_named) {
  whole_run run(std::filesystem::path(VBN_EXAMPLES) / "glyoxal");
  run.program = "vbn-spectrum";
  run.run("spectrum.inp");
  const std::string times = run.read("vbn.correlation.csv");
  const auto replaced = [&](const std::string& from, const std::string& to) {
    std::string other = times;
    return other.replace(other.find(from), from.size(), to);
  };
  const std::size_t rows = times.find("\nabsorption,298.15,");
  const std::string keys = "energy = 17000 ";
  for (const auto& [file, group, said] : std::vector<std::array<std::string, 3>>{
           {times.substr(0, rows + 1), keys, "the correlation function ends early"},
           {times.substr(0, rows), keys, "the correlation function ends early"},
           {times.substr(0, times.find("transition,")), keys, "no correlation function in this file"},
           {replaced("#grid,absorption,-", "#grid,absorption,x"), keys, "cannot read a number"},
           {replaced("\nabsorption,0,", "\nabsorption,1,"), keys, "this line is not one of the absorption"},
           {replaced("#band,absorption,", "#band,absorption,1,"), keys, "wrong number of columns"},
           {replaced("#grid,absorption,", "#grid,absorption,0,"), keys, "wrong number of columns"},
           {times, keys + "fwhm = 100", "the times end too early for fwhm = 100.00 cm-1"},
           {times, keys + "fwhm = 20000", "the times do not hold the whole band for fwhm"},
           {times, keys + "range = 0, 90000", "the times do not hold the whole range"}}) {
    run.write("c.csv", file);
    run.write("s.inp", "&spectrum " + group + " /\n");
    run.run("--from' 'c.csv' 's.inp");
    EXPECT_EQ(run.status, 1) << said;
    EXPECT_NE(run.err.find(said), std::string::npos) << said << "\n" << run.err;
  }
}

TEST(spectrum_runs, results_appear_only_when_all_are_complete) {
  whole_run run(std::filesystem::path(VBN_EXAMPLES) / "formaldehyde");
  run.program = "vbn-spectrum";
  run.write("vbn.absorption.csv", "of an earlier run");
  std::filesystem::create_directory(run.path("vbn.spectrum.out"));
  run.write("s.inp", run.read("formaldehyde.inp") + "&spectrum /\n");
  const auto before = run.files();
  run.run("s.inp");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("cannot replace this file"), std::string::npos) << run.err;
  EXPECT_EQ(run.files(), before);
}

}  // namespace
}  // namespace vbn::end_to_end
