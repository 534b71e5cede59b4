// Tests of the element tables, and of the labels of atoms that are no element symbols.
#include "molecule/elements.hpp"  // for the look-ups

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "readers/rows.hpp"        // for symbol_rows
#include "molecule/constants.hpp"  // for max_element
#include "tests/ending.hpp"        // for ending_of

namespace vbn {
namespace {

TEST(elements, a_shifted_row_of_the_table_shows_at_its_neighbours) {
  const std::string symbols =
      "H He Li Be B C N O F Ne Na Mg Al Si P S Cl Ar K Ca Sc Ti V Cr Mn Fe Co Ni Cu Zn Ga Ge As Se Br Kr Rb "
      "Sr "
      "Y Zr Nb Mo Tc Ru Rh Pd Ag Cd In Sn Sb Te I Xe Cs Ba La Ce Pr Nd Pm Sm Eu Gd Tb Dy Ho Er Tm Yb Lu Hf "
      "Ta "
      "W Re Os Ir Pt Au Hg Tl Pb Bi Po At Rn Fr Ra Ac Th Pa U Np Pu Am Cm Bk Cf Es Fm Md No Lr Rf Db Sg Bh "
      "Hs "
      "Mt Ds Rg Cn Uut Fl Uup Lv Uus Uuo ";
  std::string written;
  for (int nat = 1; nat <= max_element; ++nat) {
    written += std::string(element_symbol(nat)) + " ";
    EXPECT_EQ(symbol_to_nat(element_symbol(nat)), nat);
  }
  EXPECT_EQ(written, symbols);
  // The mass decreases from one element to the next only at these.
  for (int nat = 2; nat < 102; ++nat) {
    constexpr std::string_view falling[] = {"K", "Ni", "Br", "I", "Pm", "Pa", "Np", "Fm"};
    const bool falls = std::ranges::find(falling, element_symbol(nat)) != std::end(falling);
    EXPECT_EQ(nat_to_mass(nat) < nat_to_mass(nat - 1), falls) << nat;
  }
}

TEST(elements, labels_longer_than_the_symbol_give_the_element_that_the_charge_allows) {
  const std::pair<const char*, int> labels[] = {
      {"1 CL12 17.0", 17}, {"1 CA2 6.0", 6}, {"1 CA2 20.0", 20}, {"1 CA2 10.0", 20}, {"1 Hw 1.0", 1},
      {"1 CA 6.0", 6},    {"1 X1 1.0", 0},  {"1 H1 6.0", 0},    {"1 H1 0.5", 0},    {"1 H1 x", 0}};
  for (const auto& [row, number] : labels) {
    input_file file = input_file::from_memory("rows", row + std::string("\n"));
    array1<int> nat(1);
    const ending e = ending_of([&] { symbol_rows(file, 2, nat, 3, 3); });
    EXPECT_EQ(e.status == -1 ? nat(1) : 0, number) << row;
  }
}

}  // namespace
}  // namespace vbn
