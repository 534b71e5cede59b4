// Tests of the reorganisation energy by coordinate and of its file.
#include "internal/reorganisation.hpp"  // for reverse_order

#include <gtest/gtest.h>

#include <filesystem>

#include "internal/displacement.hpp"    // for check_int_coord
#include "internal/gmatrix.hpp"         // for get_int_gmatrix
#include "tests/internal/molecule.hpp"  // for ammonia, set_modes
#include "tests/written_file.hpp"       // for scratch, lines_of
#include "text/output_file.hpp"         // for output_file

namespace vbn {
namespace {

using namespace internal_molecules;

// The file has a fixed name in the working directory: each test works in one of its own.
class reorganisation : public testing::Test {
 protected:
  reorganisation() {
    std::filesystem::create_directories(folder_);
    std::filesystem::current_path(folder_);
  }
  ~reorganisation() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
  std::filesystem::path folder_ = scratch("folder");
};

array1<states> displaced(const std::vector<test_atom>& atoms1, const std::vector<test_atom>& atoms2,
                         bool proj_reorg) {
  array1<states> state(2);
  state(1) = molecule(atoms1);
  state(2) = molecule(atoms2);
  output_file log("log");
  double spring = 0.4;
  for (states& one : state) {
    get_int_coord(one, {});
    int_allocate(one);
    get_int_gmatrix(one, 1.0e-8, log);
    set_modes(one, spring);
    spring *= 0.8;
  }
  input_data input;
  input.proj_reorg = proj_reorg;
  check_int_coord(state, input, log);
  return state;
}

std::vector<test_atom> moved_ammonia() {
  std::vector<test_atom> atoms = ammonia;
  atoms[1].x = {1.05, 0.12, -0.3};
  atoms[3].x[2] += 0.2;
  return atoms;
}

// The numbers of a line from the bar behind the head on.
std::vector<double> numbers(const std::string& line, std::size_t from) {
  std::vector<double> found;
  for (std::size_t at = from; at < line.size();) {
    if (line[at] == '|' || line[at] == ' ') {
      ++at;
      continue;
    }
    std::size_t used = 0;
    found.push_back(std::stod(line.substr(at), &used));
    at += used;
  }
  return found;
}

TEST_F(reorganisation, file_has_its_heads_rules_and_columns) {
  const array1<states> state = displaced(ammonia, moved_ammonia(), true);
  const std::vector<std::string> lines = lines_of("proj_reorg.dat");
  const std::string rule(132, '-');
  ASSERT_EQ(lines.size(), 31u);
  const std::vector<std::string> head{
      "",
      "   1      N ",
      "   2      H ",
      "   3      H ",
      "   4      H ",
      "",
      "zd(i) = z2(i) - z1(i)      (Angstrom) ",
      "",
      rule,
      "Internal coordinate type",
      "1: bond stretch",
      "2: linear bend",
      "3: normal bend",
      "4: proper dihedral angle",
      "5: improper dihedral angle",
      "6: proper torsion angle",
      rule,
      "     n  type   |         int-def |       zd |   Reorganization energy 1 (cm-1) |   Reorganization "
      "energy 2 (cm-1) || Total (cm-1)",
      "               |                 |          |       diag   non-diag        sum |       diag   "
      "non-diag        sum ||             ",
      rule,
  };
  for (std::size_t i = 0; i < head.size(); ++i) EXPECT_EQ(lines[i], head[i]) << i;
  EXPECT_EQ(lines[20].substr(0, 45), "  sum:         |                 |          |");
  EXPECT_EQ(lines[20].size(), 129u);
  EXPECT_EQ(lines[21], rule);
  EXPECT_EQ(lines[29], rule);
  EXPECT_EQ(lines[30], lines[20]);
}

TEST_F(reorganisation, sums_are_those_of_the_rows_and_of_the_modes_of_each_state) {
  const array1<states> state = displaced(ammonia, moved_ammonia(), true);
  const std::vector<std::string> lines = lines_of("proj_reorg.dat");
  const std::vector<double> told = numbers(lines[20], 6);
  ASSERT_EQ(told.size(), 7u);
  const double rounding = 1.0e-3;
  std::vector<double> sums(7, 0.0);
  double last = 1.0e30;
  for (int i = 1; i <= state(1).nr; ++i) {
    const std::vector<double> row = numbers(lines[static_cast<std::size_t>(21 + i)], 0);
    ASSERT_EQ(row.size(), 14u);
    EXPECT_EQ(row[0], i);
    for (std::size_t c = 0; c < 7; ++c) sums[c] += row[7 + c];
    EXPECT_NEAR(row[9], row[7] + row[8], rounding);
    EXPECT_NEAR(row[13], row[9] + row[12], rounding);
    EXPECT_LE(row[13], last);
    last = row[13];
  }
  for (std::size_t c = 0; c < 7; ++c) EXPECT_NEAR(sums[c], told[c], rounding) << c;
  // Both states are displaced by the same zd, and the modes carry the energy of all of it.
  for (int k = 1; k <= 2; ++k) {
    double modes = 0.0;
    for (int i = 7; i <= 12; ++i) modes += state(k).lam_c(i) * au_to_cm;
    EXPECT_GT(modes, 100.0);
    EXPECT_NEAR(told[k == 1 ? 2 : 5], modes, rounding);
  }
}

TEST_F(reorganisation, a_diatomic_has_a_file_of_zeros_and_no_file_comes_without_the_key) {
  const std::vector<test_atom> nitrogen{{7, {0, 0, 0}}, {7, {0, 0, 1.1}}};
  const std::vector<test_atom> longer{{7, {0, 0, 0}}, {7, {0, 0, 1.2}}};
  testing::internal::CaptureStderr();  // warnings that a diatomic has one vibration more than 3N-6
  displaced(nitrogen, longer, false);
  EXPECT_FALSE(std::filesystem::exists("proj_reorg.dat"));
  displaced(nitrogen, longer, true);
  testing::internal::GetCapturedStderr();
  const std::vector<std::string> lines = lines_of("proj_reorg.dat");
  ASSERT_EQ(lines.size(), 23u);
  EXPECT_EQ(lines[20],
            "     1     1   |   1   2   0   0 |   0.1000 |     0.0000     0.0000     0.0000 |     0.0000     "
            "0.0000     0.0000 ||       0.0000");
}

TEST(reverse_order, exchanges_the_ends_and_keeps_the_middle) {
  array1<int> order(5);
  for (int i = 1; i <= 5; ++i) order(i) = i * i;
  reverse_order(order);
  EXPECT_EQ(std::vector<int>(order.begin(), order.end()), (std::vector<int>{25, 16, 9, 4, 1}));
}

}  // namespace
}  // namespace vbn
