// Reads the structure of VASP, PWscf and crystallographic (CIF) files.
#include "readers/programs.hpp"  // for the routines
#include "readers/rows.hpp"      // for the rows of the tables
#include "readers/scan.hpp"      // for search_word_free, search_word_free_last
#include "text/words.hpp"        // for trim

#include <algorithm>

namespace vbn {

namespace {

// The integer from a column of a line on.
int integer_from(const input_file& file, std::string_view line, std::size_t column,
                 std::string_view expected) {
  return row_integer(file, line.substr(std::min(column - 1, line.size())), 1, expected);
}

}  // namespace

std::optional<int> cif_natom(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "_atom_site_occupancy", line) || !file.read_line(line)) return std::nullopt;
  int natom = 0;
  while (file.read_line(line) && trim(line) != "loop_") ++natom;
  return natom;
}

std::optional<int> pwout_natom(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "number of atoms", line)) return std::nullopt;
  return integer_from(file, line, 34, "the number of atoms from column 34 on");
}

std::optional<int> vasp_natom(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "number of ions", line)) return std::nullopt;
  return integer_from(file, line, 67, "the number of ions from column 67 on");
}

void vasp_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word_free_last(file, "POSITION", line)) {
    fail_missing(file, "the coordinates", "a line with \"POSITION\"");
  }
  skip_rows(file, 1, "the table of positions");
  coordinate_rows(file, 0, true, x);
}

}  // namespace vbn
