// Whole runs with the symmetry keys on real calculations, compared with group theory.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "tests/end_to_end/whole_run.hpp"  // for whole_run, parse_mode_data

namespace vbn::end_to_end {
namespace {

// Both states of each molecule have the group, and so the same vibrations of each representation.
struct symmetric_case {
  const char *folder, *first, *second, *group;
  std::map<std::string, int> vibrations;  // the totally symmetric ones come first by name
};

const std::vector<symmetric_case> symmetric_cases = {
    {"nwchem/water", "neutral.out", "cation.out", "C2V(y)", {{"A1", 2}, {"B1", 1}}},
    {"nwchem/formaldehyde", "s0.out", "cation.out", "C2V(x)", {{"A1", 3}, {"B1", 2}, {"B2", 1}}},
    {"nwchem/glyoxal", "s0.out", "t1.out", "C2H(z)", {{"Ag", 5}, {"Bg", 1}, {"Au", 2}, {"Bu", 4}}},
    {"nwchem/butadiene", "s0.out", "t1.out", "C2H(z)", {{"Ag", 9}, {"Bg", 3}, {"Au", 4}, {"Bu", 8}}},
    // clang-format off
    {"nwchem/ethylene", "neutral.out", "cation.out", "D2H",
     {{"Ag", 3}, {"B1g", 2}, {"B2g", 1}, {"Au", 1}, {"B1u", 1}, {"B2u", 2}, {"B3u", 2}}},
    {"xtb/naphthalene/numforce", "neutral.dat", "cation.dat", "D2H",
     {{"Ag", 9}, {"B1g", 8}, {"B2g", 3}, {"B3g", 4}, {"Au", 4}, {"B1u", 4}, {"B2u", 8}, {"B3u", 8}}},
    // clang-format on
};

TEST(symmetry_runs, modes_follow_the_textbook_and_only_totally_symmetric_ones_are_displaced) {
  VBN_NEEDS_REAL_DATA();
  for (const symmetric_case& c : symmetric_cases) {
    SCOPED_TRACE(c.folder);
    whole_run run(real_data() / c.folder);
    run.write("t.inp", std::string("&vbn ffreq = '") + c.first + "' '" + c.second +
                           "' point_group = t enforce_symm = t /\n");
    run.run("t.inp");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    const mode_table table = parse_mode_data(run.read("vbn.cart.dat"));
    const std::string log = run.read("vbn.out");
    const std::string heading = "Point group:  " + std::string(c.group).append(6, ' ').substr(0, 6) + "\n";
    EXPECT_NE(log.find(heading), log.rfind(heading));
    EXPECT_EQ(log.find("Warning"), std::string::npos);
    const std::string total = c.vibrations.begin()->first;
    std::map<std::string, int> first, second;
    const std::size_t n3 = table.rows.size();
    ASSERT_EQ(table.s.size(), n3 * n3);
    for (std::size_t i = 0; i < n3; ++i) {
      const mode_row& row = table.rows[i];
      if (row.n > 6) {
        ++first[row.sym1];
        ++second[row.sym2];
      }
      EXPECT_TRUE(row.sym1 == total || row.d1 == 0.0) << row.n << row.sym1;
      EXPECT_TRUE(row.sym2 == total || row.d2 == 0.0) << row.n << row.sym2;
      for (std::size_t j = 0; j < n3; ++j)
        EXPECT_TRUE(row.sym1 == table.rows[j].sym2 || std::abs(table.s[i * n3 + j]) < 1e-10) << i << ' ' << j;
    }
    EXPECT_EQ(first, c.vibrations);
    EXPECT_EQ(second, c.vibrations);
  }
}

}  // namespace
}  // namespace vbn::end_to_end
