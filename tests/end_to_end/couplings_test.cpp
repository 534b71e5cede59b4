// Whole runs with couplings: which state they belong to, and what a turn of the frame must not change.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run

namespace vbn::end_to_end {
namespace {

const std::filesystem::path examples = VBN_EXAMPLES;

struct coupling_row {
  double freq = 0.0;      // cm-1
  double coupling = 0.0;  // au, without its sign, which follows that of the mode
};

// The vibrations in the table of couplings, by rising frequency.
std::vector<coupling_row> vibrations(const std::string& nac) {
  std::vector<coupling_row> rows;
  for (const std::string& line : lines_of(nac)) {
    if (line.size() != 174 || line.substr(0, 6) == "     m" || std::stoi(line.substr(6, 6)) < 1) continue;
    rows.push_back({std::stod(line.substr(18, 12)), std::abs(std::stod(line.substr(30, 18)))});
  }
  std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.freq < b.freq; });
  return rows;
}

// Runs the example with these keys beside `fnacme`.
std::vector<coupling_row> couplings_of(whole_run& run, const std::string& keys) {
  std::filesystem::remove(run.path("vbn.cart.nac"));
  run.write("keys.inp", "&vbn " + keys + ", fnacme = 'nac_molpro.out' /\n");
  run.run("keys.inp");
  EXPECT_EQ(run.status, 0) << keys << "\n" << run.out << run.err;
  return run.has("vbn.cart.nac") ? vibrations(run.read("vbn.cart.nac")) : std::vector<coupling_row>();
}

void expect_same(const std::vector<coupling_row>& a, const std::vector<coupling_row>& b) {
  ASSERT_EQ(a.size(), 12u);
  ASSERT_EQ(b.size(), 12u);
  for (std::size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i].freq, b[i].freq, 0.011);
    EXPECT_NEAR(a[i].coupling, b[i].coupling, 2e-9) << a[i].freq;
  }
}

TEST(couplings, by_mode_do_not_depend_on_where_the_eckart_step_stands) {
  whole_run run(examples / "glyoxal");
  const auto inertial = couplings_of(run, "ffreq = 's0.dat' 't1.dat', eckart_rot = 0");
  for (const char* keys :
       {"ffreq = 's0.dat' 't1.dat', eckart_rot = 1", "ffreq = 's0.dat' 't1.dat', eckart_rot = 2",
        "ffreq = 's0.dat' 't1.dat', set_eckart_order = 3"}) {
    SCOPED_TRACE(keys);
    expect_same(couplings_of(run, keys), inertial);
  }
}

TEST(couplings, go_to_the_state_of_the_files_geometry_and_to_state_1_when_both_have_it) {
  whole_run run(examples / "glyoxal");
  const auto on_1 = couplings_of(run, "ffreq = 's0.dat' 't1.dat'");
  EXPECT_NE(run.read("vbn.out").find("  NACME file 1       :  nac_molpro.out\n"), std::string::npos);
  const auto on_2 = couplings_of(run, "ffreq = 't1.dat' 's0.dat'");
  EXPECT_NE(run.read("vbn.out").find("  NACME file 2       :  nac_molpro.out\n"), std::string::npos);
  expect_same(on_1, on_2);
  const auto on_both = couplings_of(run, "ffreq = 's0.dat' 's0.dat'");
  EXPECT_NE(run.read("vbn.out").find("  NACME file 1       :  nac_molpro.out\n"), std::string::npos);
  expect_same(on_1, on_both);
}

}  // namespace
}  // namespace vbn::end_to_end
