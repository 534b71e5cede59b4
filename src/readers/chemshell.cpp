// Reads ChemShell files.
#include <algorithm>
#include <span>
#include <string>

#include "readers/isotope_table.hpp"  // for weights_or_isotope_table_mass
#include "readers/programs.hpp"       // for the routines
#include "readers/rows.hpp"           // for the rows of the tables
#include "readers/scan.hpp"           // for search_word, search_word_free, search_word_first_number
#include "readers/triangle.hpp"       // for force_constant_matrix, mirror_upper
#include "text/layout.hpp"            // for layout
#include "text/messages.hpp"          // for free_line
#include "text/stop.hpp"              // for stop_printed, fail
#include "text/words.hpp"             // for trim, word_of, is_number

namespace vbn {

namespace {

constexpr int lines_before_block = 11;  // of force constants
constexpr int block_columns = 9;        // numbers in a row of a block
constexpr int label_width = 20;         // columns before them
constexpr int field_width = 12;         // columns of each

// Moves to the first row of the input coordinates.
bool first_atom(input_file& file, std::string_view& line) {
  return search_word_free(file, "Input Coordinates", line) && search_word_first_number(file, line);
}

}  // namespace

std::optional<int> chemshell_natom(input_file& file) {
  std::string_view line;
  if (!first_atom(file, line)) return std::nullopt;
  for (int natom = 1; file.read_line(line); ++natom) {
    if (!is_number(word_of(line, 1))) return natom;
  }
  fail(file.here("the file ends inside the table of atoms", "a line after its last row"));
}

void chemshell_nat(input_file& file, array1<int>& nat) {
  std::string_view line;
  if (!first_atom(file, line)) fail_missing(file, "the atoms", "a line with \"Input Coordinates\"");
  file.back_line();
  symbol_rows(file, 2, nat);
}

void chemshell_mass(input_file& file, array1<double>& mass) {
  std::string_view line;
  const bool listed = search_word(file, 11, "atomic weights", line);
  weights_or_isotope_table_mass(file, listed, "atomic weights", mass);
}

void chemshell_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word(file, 32, "Input Coordinates", line)) {
    tell_and_stop({"Error!", "Can not find coordinate in ChemShell output file, stop!"});
  }
  skip_rows(file, 2, "the coordinates");
  coordinate_rows(file, 3, false, x);
}

// A full square in blocks of nine columns, of which the lower triangle is read.
array2<double> chemshell_fc(input_file& file, int natom) {
  static const layout row("(20X,9F12.8)");
  constexpr std::string_view expected = "a row of up to nine force constants from column 21 on";
  std::string_view line;
  if (!search_word(file, 23, "cartesian force constant matrix", line)) {
    file.warn(file.name() + " has no force constants; use the output of a ChemShell force calculation");
    stop_printed(free_line({"No force matrix information found"}));
  }
  skip_rows(file, 1, "the force constants");
  array2<double> fc = force_constant_matrix(file, natom);
  const int n3 = fc.rows();
  for (int kb = 1; kb <= n3; kb += block_columns) {
    const int width = std::min(block_columns, n3 - kb + 1);
    skip_rows(file, lines_before_block, "a block of force constants");
    for (int j = 1; j <= n3; ++j) {
      if (!file.read_line(line)) fail(file.here("the file ends too early", std::string(expected)));
      const int wanted =
          std::min(width, j - kb + 1);  // fields of the lower triangle, none of which may be blank
      double numbers[block_columns];
      if ((wanted > 0 && static_cast<int>(trim(line).size()) <= label_width + field_width * (wanted - 1)) ||
          !read_fixed(line, row, std::span(numbers).first(static_cast<std::size_t>(width)))) {
        fail(file.here("cannot read the line", std::string(expected)));
      }
      for (int k = kb; k < kb + wanted; ++k) fc(k, j) = numbers[k - kb];
    }
  }
  mirror_upper(fc);
  return fc;
}

}  // namespace vbn
