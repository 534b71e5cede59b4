// Reads files of numerical frequencies (NUMFORCE).
#include "molecule/elements.hpp"  // for nat_to_symbol
#include "readers/programs.hpp"   // for the routines
#include "readers/rows.hpp"       // for the rows of the tables
#include "readers/scan.hpp"       // for search_word, search_word_free, search_word_del_space
#include "text/words.hpp"         // for number_of_words, word_of

#include <vector>

namespace vbn {

bool numforce_natom(input_file& file, int& natom) {
  std::string_view line;
  if (!search_word_del_space(file, "NAtoms", line)) return false;
  natom = row_integer(file, line, 2, "\"NAtoms\" and the number of atoms");
  return true;
}

void numforce_nat(input_file& file, array1<int>& nat) {
  std::string_view line;
  if (!search_word(file, 2, 11, "Coordinate", line)) {
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
  const std::string_view unit = word_of(line, 2);
  const bool bohr = number_of_words(line) == 2 && (unit.front() == 'B' || unit.front() == 'b');
  skip_rows(file, 1, "the table of atoms");
  coordinate_rows(file, 3, !bohr, x);
}

// The full square, a heading line before each row.
void numforce_fc(input_file& file, int natom, array2<double>& fc) {
  std::string_view line;
  if (!search_word_free(file, "Unprojected Force Constant Matrix", line)) {
    fail_missing(file, "the force constants", "a line with \"Unprojected Force Constant Matrix\"");
  }
  fc = force_constant_matrix(file, natom);
  std::vector<double> row(static_cast<std::size_t>(fc.cols()));
  for (int i = 1; i <= fc.rows(); ++i) {
    skip_rows(file, 1, "a row of force constants");
    all_numbers(file, row, "a row of 3 x natom force constants");
    for (int j = 1; j <= fc.cols(); ++j) fc(i, j) = row[static_cast<std::size_t>(j - 1)];
  }
}

}  // namespace vbn
