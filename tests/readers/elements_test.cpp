// Tests of the element tables.
#include "readers/elements.hpp"  // for the look-ups

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "run/constants.hpp"               // for max_element
#include "tests/readers/sample_files.hpp"  // for ending_of

namespace vbn {
namespace {

TEST(elements, every_symbol_gives_its_own_number_in_any_case) {
  for (int nat = 1; nat <= max_element; ++nat) EXPECT_EQ(symbol_to_nat(element_symbol(nat)), nat);
  for (const char* chlorine : {"Cl", "CL", "cl", "cL", " Cl "}) EXPECT_EQ(symbol_to_nat(chlorine), 17);
  for (const char* none : {"", "H1", "Xx", "C l"}) EXPECT_EQ(symbol_to_nat(none), 0) << none;
}

TEST(elements, masses_and_radii_stand_beside_their_element) {
  EXPECT_EQ(nat_to_mass(1), 1.007825037);
  EXPECT_EQ(nat_to_mass(symbol_to_nat("Se")), 78.96);
  EXPECT_EQ(nat_to_mass(symbol_to_nat("I")), 126.9004);
  EXPECT_EQ(nat_to_mass(symbol_to_nat("Md")), 255.0906);
  for (const char* none : {"Pm", "No", "Uuo"}) EXPECT_EQ(nat_to_mass(symbol_to_nat(none)), 0.0) << none;
  EXPECT_EQ(nat_to_mass(0), 0.0);
  EXPECT_EQ(nat_to_mass(119), 0.0);
  // From element to element a mass falls nowhere but at these pairs.
  for (int nat = 2; nat < 102; ++nat) {
    const std::string_view symbol = element_symbol(nat);
    constexpr std::string_view falling[] = {"K", "Ni", "Br", "I", "Pm", "Pa", "Np", "Fm"};
    const bool falls = std::ranges::find(falling, symbol) != std::end(falling);
    EXPECT_EQ(nat_to_mass(nat) < nat_to_mass(nat - 1), falls) << symbol;
  }

  array1<double> radius(3, -1.0);
  int info = 7;
  array1<int> nat(3);
  nat(1) = 6;
  nat(2) = 105;
  nat(3) = 11;
  nat_to_radius(nat, radius, info);
  EXPECT_EQ(info, 0);
  EXPECT_EQ(radius(1), 0.77);
  EXPECT_EQ(radius(2), 1.3);
  EXPECT_EQ(radius(3), 0.0);
  radius = array1<double>(3, -1.0);
  nat(2) = 106;
  nat_to_radius(nat, radius, info);
  EXPECT_EQ(info, -1);
  EXPECT_EQ(radius(1), 0.77);
  EXPECT_EQ(radius(3), -1.0);
}

TEST(elements, a_number_that_is_no_element_is_told_with_its_place_and_stops) {
  array1<int> nat(2, 8);
  array1<text<2>> symbol(2);
  nat_to_symbol(nat, symbol);
  EXPECT_EQ(symbol(2), "O");
  nat(1) = 113;
  nat_to_symbol(nat, symbol);
  EXPECT_EQ(symbol(1), "Uu");  // the field has two characters
  nat(2) = 119;
  const ending e = ending_of([&] { nat_to_symbol(nat, symbol); });
  EXPECT_EQ(e.status, 0);
  EXPECT_EQ(e.error, "");
  EXPECT_EQ(e.told, " Error!\nnat(2) = 119 is out of [1,118]\n");
}

TEST(elements, numbered_symbol_is_right_justified_and_cut_at_ten_characters) {
  array1<text<2>> symbol(2, "C");
  symbol(2) = "Cl";
  array1<text<10>> sym_num(2);
  get_sym_num(symbol, sym_num);
  EXPECT_EQ(sym_num(1).full(), " C(1)     ");
  EXPECT_EQ(sym_num(2).full(), "Cl(2)     ");
}

}  // namespace
}  // namespace vbn
