// Tests of the labels of atoms that are no element symbols.
#include "readers/rows.hpp"  // for symbol_rows

#include <gtest/gtest.h>

#include <string>

#include "tests/readers/sample_files.hpp"  // for ending_of

namespace vbn {
namespace {

// The atomic number of a row, 0 when the run ends.
int number_of(const std::string& row, int charge_word = 3) {
  input_file file = input_file::from_memory("rows", row + "\n");
  array1<int> nat(1);
  const ending e = ending_of([&] { symbol_rows(file, 2, nat, 3, charge_word); });
  return e.status == -1 ? nat(1) : 0;
}

TEST(rows, labels_with_something_behind_the_symbol_give_the_element_that_the_charge_allows) {
  EXPECT_EQ(number_of("1 H1 1.00"), 1);
  EXPECT_EQ(number_of("1 CL12 17.0"), 17);
  EXPECT_EQ(number_of("1 O100 8.0"), 8);
  EXPECT_EQ(number_of("1 CA2 6.0"), 6);    // an alpha carbon
  EXPECT_EQ(number_of("1 CA2 20.0"), 20);  // calcium
  EXPECT_EQ(number_of("1 CA2 10.0"), 20);  // calcium with ten electrons in a pseudopotential
  EXPECT_EQ(number_of("1 Hw 1.0"), 1);
  EXPECT_EQ(number_of("1 CA 6.0"), 20);  // a symbol is a symbol
  for (const char* none : {"1 X1 1.0", "1 H1 6.0", "1 H1 0.5", "1 H1 x", "1 1H 1.0", "1 bqH 0.0"}) {
    EXPECT_EQ(number_of(none), 0) << none;
  }
  // Without a charge only digits may follow.
  EXPECT_EQ(number_of("1 Cl12", 0), 17);
  EXPECT_EQ(number_of("1 Hw", 0), 0);
  EXPECT_EQ(number_of("1 C1a", 0), 0);
}

}  // namespace
}  // namespace vbn
