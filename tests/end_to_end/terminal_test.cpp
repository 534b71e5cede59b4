// Whole runs at a terminal: the stage of a long run, and the summary at the end.
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run

namespace vbn::end_to_end {
namespace {

// Runs what follows at a terminal, of which both streams are the standard output of this command.
const char* const at_terminal = R"(sh -c 'script -qec "$0 $1" /dev/null')";

TEST(terminal, a_run_that_ended_well_closes_with_its_totals_and_strongest_modes) {
  whole_run run(std::filesystem::path(VBN_EXAMPLES) / "glyoxal");
  run.run("glyoxal.inp", at_terminal);
  std::vector<std::string> lines;
  std::istringstream out(run.out);
  for (std::string line; std::getline(out, line);) lines.push_back(line.substr(0, line.find('\r')));
  ASSERT_EQ(lines.size(), 10u) << run.out;
  EXPECT_EQ(lines[0], "C2H2O2, 6 atoms");
  EXPECT_EQ(lines[2], "state 2: t1.dat, NUMFORCE 1.2");
  EXPECT_EQ(
      lines[3],
      "reorganisation energies of states 1 and 2: Cartesian 888.75 and 745.74 cm-1, internal coordinates "
      "903.91 and 733.14 cm-1");
  EXPECT_EQ(lines[4],
            "mode 16 of state 2: 1575.75 cm-1, Huang-Rhys factor 0.2959 Cartesian, 0.2868 internal");
  for (std::string file : {"vbn.out", "vbn.dint.abs", "vbn.cart.nac", "vbn.vib2.xyz"})
    EXPECT_NE(lines[9].find(file), std::string::npos) << file;
}

TEST(terminal, a_run_of_seconds_shows_its_stage_in_one_line) {
  VBN_NEEDS_REAL_DATA();
  whole_run run(real_data() / "xtb/octa3ht/numforce");
  const auto start = std::chrono::steady_clock::now();
  run.run("octa3ht.inp", at_terminal);
  if (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(2300)) GTEST_SKIP() << "too fast";
  EXPECT_NE(run.out.find("vbn: route through internal coordinates ...\r"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("vbn: ", run.out.find("C80H114S8")), std::string::npos) << "after the summary";
}

}  // namespace
}  // namespace vbn::end_to_end
