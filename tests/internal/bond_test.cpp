// Tests of the bond graph.
#include "internal/bond.hpp"  // for get_bond

#include <gtest/gtest.h>

#include <vector>

#include "internal/int_coord.hpp"       // for get_int_coord
#include "text/stop.hpp"                // for run_end
#include "tests/internal/molecule.hpp"  // for molecule, water

namespace vbn {
namespace {

using namespace internal_molecules;

// The graph of atoms along the x axis, positions in angstrom.
array2<bool_> along_x(const std::vector<int>& nat, const std::vector<double>& position) {
  const int n = static_cast<int>(nat.size());
  array2<double> x(3, n);
  array1<int> numbers(n);
  for (int i = 1; i <= n; ++i) {
    x(1, i) = position[static_cast<std::size_t>(i - 1)];
    numbers(i) = nat[static_cast<std::size_t>(i - 1)];
  }
  array2<bool_> bond;
  get_bond(x, numbers, bond);
  return bond;
}

// Whether two atoms bond at a distance, the same in either order.
bool bonded(int nat_a, int nat_b, double distance) {
  const auto ab = along_x({nat_a, nat_b}, {0.0, distance});
  const auto ba = along_x({nat_b, nat_a}, {0.0, distance});
  EXPECT_EQ(ab, ba);
  EXPECT_EQ(ab(1, 2), ab(2, 1));
  EXPECT_FALSE(ab(1, 1));
  return ab(1, 2);
}

TEST(bond, fixed_limits_beyond_the_radii_are_strict_and_in_single_precision) {
  EXPECT_TRUE(bonded(6, 6, 1.75));  // the radii reach 1.694
  EXPECT_FALSE(bonded(6, 6, 1.8));
  EXPECT_TRUE(bonded(11, 6, 1.95));  // second row, no radius
  EXPECT_FALSE(bonded(11, 6, 2.0));
  EXPECT_TRUE(bonded(1, 6, 1.29));  // the radii reach 1.232
  EXPECT_FALSE(bonded(1, 6, 1.3));
  EXPECT_TRUE(bonded(77, 8, 2.2));  // 2.2 in single precision lies above 2.2
  EXPECT_FALSE(bonded(77, 8, 2.3));
}

TEST(bond, element_classes_are_those_of_the_table_and_no_wider) {
  EXPECT_TRUE(bonded(12, 9, 3.7));
  EXPECT_FALSE(bonded(12, 9, 3.8));
  EXPECT_FALSE(bonded(12, 8, 3.7));
  EXPECT_FALSE(bonded(12, 6, 3.7));
  EXPECT_TRUE(bonded(1, 1, 0.76));  // two hydrogens by their radii only
  EXPECT_FALSE(bonded(1, 1, 0.78));
  EXPECT_TRUE(bonded(16, 16, 2.28));  // radii beyond the fixed limits
  EXPECT_FALSE(bonded(16, 16, 2.29));
}

TEST(bond, hydrogen_bridge_joins_the_acceptor_below_two_angstrom_and_only_by_way_of_a_donor) {
  EXPECT_TRUE(along_x({8, 1, 7}, {-1.0, 0.0, 1.9})(3, 2));
  EXPECT_TRUE(along_x({8, 1, 7}, {-1.0, 0.0, 1.9})(2, 3));
  EXPECT_FALSE(along_x({8, 1, 7}, {-1.0, 0.0, 2.0})(3, 2));
  EXPECT_FALSE(along_x({6, 1, 7}, {-1.0, 0.0, 1.9})(3, 2));
  EXPECT_FALSE(along_x({8, 1, 9}, {-1.0, 0.0, 1.9})(3, 2));
}

TEST(bond, an_element_without_a_radius_costs_no_later_atom_its_bonds) {
  testing::internal::CaptureStderr();
  const array2<bool_> bond = along_x({106, 16, 16}, {0.0, 1.95, 4.2});
  const std::string warning = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(bond(1, 2));  // by the limit of the second row and beyond
  EXPECT_TRUE(bond(2, 3));  // by the radii
  EXPECT_NE(warning.find("106"), std::string::npos);
}

TEST(bond, an_atom_left_alone_is_told_and_stops_the_run) {
  std::vector<test_atom> atoms = water;
  atoms[2].x = {0.0, -1.4, 0.0};
  states state = molecule(atoms);
  testing::internal::CaptureStdout();
  try {
    get_int_coord(state, {});
    FAIL();
  } catch (const run_end& end) {
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.text, "STOP unconnected atom in bmatred\n");
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Atom          3\n");
}

}  // namespace
}  // namespace vbn
