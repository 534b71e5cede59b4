// Tests of the element tables, and of the labels of atoms that are no element symbols.
#include "molecule/elements.hpp"  // for the look-ups

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "readers/rows.hpp"                // for symbol_rows
#include "molecule/constants.hpp"          // for max_element
#include "tests/readers/sample_files.hpp"  // for ending_of

namespace vbn {
namespace {

TEST(elements, a_row_of_the_tables_that_slipped_is_seen_at_its_neighbours) {
  for (int nat = 1; nat <= max_element; ++nat) EXPECT_EQ(symbol_to_nat(element_symbol(nat)), nat);
  // From element to element a mass falls nowhere but at these.
  for (int nat = 2; nat < 102; ++nat) {
    constexpr std::string_view falling[] = {"K", "Ni", "Br", "I", "Pm", "Pa", "Np", "Fm"};
    const bool falls = std::ranges::find(falling, element_symbol(nat)) != std::end(falling);
    EXPECT_EQ(nat_to_mass(nat) < nat_to_mass(nat - 1), falls) << nat;
  }
}

TEST(elements, a_number_that_is_no_element_is_told_with_its_place_and_stops) {
  array1<int> nat(2, 8);
  array1<text<2>> symbol(2);
  nat(2) = 119;
  const ending e = ending_of([&] { nat_to_symbol(nat); });
  EXPECT_EQ(e.status, 0);
  EXPECT_EQ(e.told, " Error!\nnat(2) = 119 is out of [1,118]\n");
}

TEST(elements, labels_with_something_behind_the_symbol_give_the_element_that_the_charge_allows) {
  const std::pair<const char*, int> labels[] = {
      {"1 CL12 17.0", 17}, {"1 CA2 6.0", 6}, {"1 CA2 20.0", 20}, {"1 CA2 10.0", 20}, {"1 Hw 1.0", 1},
      {"1 CA 6.0", 20},    {"1 X1 1.0", 0},  {"1 H1 6.0", 0},    {"1 H1 0.5", 0},    {"1 H1 x", 0}};
  for (const auto& [row, number] : labels) {
    input_file file = input_file::from_memory("rows", row + std::string("\n"));
    array1<int> nat(1);
    const ending e = ending_of([&] { symbol_rows(file, 2, nat, 3, 3); });
    EXPECT_EQ(e.status == -1 ? nat(1) : 0, number) << row;
  }
}

}  // namespace
}  // namespace vbn
