// Reads files of numerical frequencies (NUMFORCE).
#include "molecule/elements.hpp"  // for nat_to_symbol
#include "readers/qm_file.hpp"    // for file_dipole
#include "readers/programs.hpp"   // for the routines
#include "readers/rows.hpp"       // for the rows of the tables
#include "readers/scan.hpp"       // for search_word, search_word_free, search_word_del_space
#include "readers/triangle.hpp"   // for force_constant_matrix
#include "text/words.hpp"         // for word_of

#include <vector>

namespace vbn {

std::optional<int> numforce_natom(input_file& file) {
  std::string_view line;
  if (!search_word_del_space(file, "NAtoms", line)) return std::nullopt;
  return row_integer(file, line, 2, "\"NAtoms\" and the number of atoms");
}

void numforce_nat(input_file& file, array1<int>& nat) {
  std::string_view line;
  if (!search_word(file, 2, "Coordinate", line)) {
    fail_missing(file, "the atoms", "a line \" Coordinate\"");
  }
  skip_rows(file, 1, "the table of atoms");
  number_rows(file, 2, nat);
  nat_to_symbol(nat);  // stops at a number of no element
}

void numforce_mass(input_file& file, array1<double>& mass) {
  std::string_view line;
  if (!search_word_free(file, "Coordinate", line)) {
    fail_missing(file, "the masses", "a line with \"Coordinate\"");
  }
  skip_rows(file, 1, "the table of atoms");
  mass_rows(file, 3, mass);
}

void numforce_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word_free(file, "Coordinate", line)) {
    fail_missing(file, "the coordinates", "a line with \"Coordinate\"");
  }
  const std::string unit = lowercase(line);
  const bool bohr = unit.find("bohr") != std::string::npos || unit.find("a.u.") != std::string::npos ||
                    unit.find("atomic unit") != std::string::npos || word_of(unit, 2).starts_with('b');
  skip_rows(file, 1, "the table of atoms");
  coordinate_rows(file, 3, !bohr, x);
}

// The full square, a heading line before each row.
array2<double> numforce_fc(input_file& file, int natom) {
  std::string_view line;
  if (!search_word_free(file, "Unprojected Force Constant Matrix", line)) {
    fail_missing(file, "the force constants", "a line with \"Unprojected Force Constant Matrix\"");
  }
  array2<double> fc = force_constant_matrix(file, natom);
  std::vector<double> row(static_cast<std::size_t>(fc.cols()));
  for (int i = 1; i <= fc.rows(); ++i) {
    skip_rows(file, 1, "a row of force constants");
    all_numbers(file, row, "a row of 3 x natom force constants");
    for (int j = 1; j <= fc.cols(); ++j) fc(i, j) = row[static_cast<std::size_t>(j - 1)];
  }
  return fc;
}

void numforce_tdipd(input_file& file, file_dipole& read) {
  constexpr std::string_view heading = "Transition dipole moment derivative (Atomic unit)";
  constexpr int words = 4;
  const std::string expected = "four words, then the dipole components x, y and z";
  std::string_view line;
  if (!search_word_free(file, heading, line)) {
    fail_missing(file, "the dipole derivatives", "\"" + std::string(heading) + "\"");
  }
  row_numbers(file, next_row(file, expected), words, read.dip0.span(), expected);
  const std::span<double> derivatives = read.tdipd_x.span();
  for (std::size_t row = 0; row < derivatives.size(); row += 3) {
    row_numbers(file, next_row(file, expected), words, derivatives.subspan(row, 3), expected);
  }
}

}  // namespace vbn
