// Reads Molpro files.
#include <algorithm>
#include <span>
#include <string>

#include "readers/programs.hpp"  // for the routines
#include "readers/rows.hpp"      // for the rows of the tables
#include "readers/scan.hpp"      // for the searches
#include "run/stop.hpp"          // for stop
#include "run/text.hpp"          // for tell_free

namespace vbn {

namespace {

constexpr int block_columns = 5;           // numbers in a row of a block of force constants
constexpr std::size_t symbol_letters = 3;  // of a label that count as the element symbol

}  // namespace

bool molpro_natom(input_file& file, int& natom) {
  std::string_view line;
  if (!search_word_free(file, "ATOMIC COORDINATES", line) || !search_word_first_number(file, line))
    return false;
  natom = 1 + rows_to_blank(file);
  return true;
}

void molpro_nat(input_file& file, array1<int>& nat) {
  std::string_view line;
  if (!search_word(file, 2, 19, "ATOMIC COORDINATES", line)) {
    fail_missing(file, "the atoms", "\"ATOMIC COORDINATES\" in columns 2 to 19");
  }
  skip_rows(file, 3, "the table of atoms");
  symbol_rows(file, 2, nat, symbol_letters);
}

void molpro_mass(input_file& file, array1<double>& mass) {
  constexpr std::string_view expected = "two words, then the mass of every atom";
  std::string_view line;
  if (search_word(file, 2, 14, "Atomic Masses", line)) {
    if (!file.read_line(line)) fail(file.here("the file ends too early", std::string(expected)));
    return row_numbers(file, line, 2, mass.span(), expected);
  }
  file.rewind();
  array1<int> nat(mass.size());
  molpro_nat(file, nat);
  element_masses(nat, mass);
}

void molpro_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word(file, 2, 40, "Dump information in style XYZ to output", line)) {
    tell_and_stop({"Error!", "Can not find coordinate in Molpro output file, stop!"});
  }
  skip_rows(file, 3, "the coordinates");
  coordinate_rows(file, 1, false, x);
}

// The lower triangle in blocks of five columns, each row with a label in front.
void molpro_fc(input_file& file, int natom, array2<double>& fc) {
  constexpr std::string_view expected = "a label and up to five force constants";
  std::string_view line;
  if (!search_word(file, 2, 16, "Force Constants", line)) {
    tell_free({"No force matrix information found"});
    stop();
  }
  fc = force_constant_matrix(file, natom);
  const int n3 = fc.rows();
  for (int ib = 1; ib <= n3; ib += block_columns) {
    skip_rows(file, 1, "a block of force constants");
    for (int i = ib; i <= n3; ++i) {
      // Row i of the lower triangle is held in column i until the whole triangle is mirrored.
      const int count = std::min(i - ib + 1, block_columns);
      row_numbers(file, next_row(file, expected), 1,
                  fc.column(i).subspan(static_cast<std::size_t>(ib - 1), static_cast<std::size_t>(count)),
                  expected);
    }
  }
  mirror_upper(fc);
}

}  // namespace vbn
