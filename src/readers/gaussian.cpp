// Reads Gaussian logs and formatted checkpoints.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "readers/programs.hpp"  // for the routines
#include "readers/rows.hpp"      // for the rows of the tables
#include "readers/scan.hpp"  // for search_word, search_word_free, search_word_del_space, search_word_last_del_space, search_word_first_number
#include "text/layout.hpp"   // for layout
#include "text/number.hpp"   // for to_integer
#include "text/output_file.hpp"  // for tell_free, tell
#include "text/stop.hpp"         // for fail, stop, warn
#include "text/words.hpp"        // for word_of

namespace vbn {

namespace {

constexpr int masses_per_line = 10;
constexpr std::string_view geometry_heading = "Center Atomic Atomic Coordinates";

// Goes to the first row of the first table of coordinates.
bool first_geometry(input_file& file) {
  std::string_view line;
  if (!search_word_del_space(file, geometry_heading, line) || !search_word_first_number(file, line))
    return false;
  file.back_line();
  return true;
}

// The list of the isotopes, on lines of up to ten masses.
bool masses_of_isotopes(input_file& file, array1<double>& mass) {
  constexpr std::string_view expected = "\"AtmWgt=\" and up to ten masses";
  std::string_view line;
  if (!search_word_free(file, "AtmWgt", line)) return false;
  file.back_line();
  for (int ib = 1; ib <= mass.size(); ib += masses_per_line) {
    if (!search_word_free(file, "AtmWgt", line)) {
      fail_missing(file, "the masses from atom " + std::to_string(ib) + " on", "a line with \"AtmWgt\"");
    }
    const int count = std::min(masses_per_line, mass.size() - ib + 1);
    row_numbers(file, line, 1,
                mass.span().subspan(static_cast<std::size_t>(ib - 1), static_cast<std::size_t>(count)),
                expected);
  }
  return true;
}

// The list in the thermochemistry: "Atom  1 has atomic number  6 and mass  12.00000".
bool masses_of_thermochemistry(input_file& file, array1<double>& mass) {
  std::string_view line;
  if (!search_word_free(file, "Thermochemistry", line) || !search_word_free(file, "Atom", line)) return false;
  file.back_line();
  mass_rows(file, 9, mass);
  return true;
}

}  // namespace

bool gaussian_log_natom(input_file& file, int& natom) {
  std::string_view line;
  if (!search_word(file, 2, 8, "NAtoms=", line)) return false;
  natom = row_integer(file, line, 2, "\"NAtoms=\" and the number of atoms");
  return true;
}

void gaussian_log_nat(input_file& file, array1<int>& nat) {
  if (first_geometry(file)) return number_rows(file, 2, nat);
  std::string_view line;
  file.rewind();
  if (!search_word_del_space(file, "Mulliken charges", line)) {
    fail_missing(file, "the atoms", "a table \"Center Atomic Atomic Coordinates\" or \"Mulliken charges\"");
  }
  skip_rows(file, 1, "the Mulliken charges");
  symbol_rows(file, 2, nat);
}

void gaussian_log_mass(input_file& file, array1<double>& mass) {
  if (masses_of_isotopes(file, mass)) return;
  file.rewind();
  if (masses_of_thermochemistry(file, mass)) return;
  file.rewind();
  if (!first_geometry(file)) {
    fail_missing(
        file, "the masses",
        "lines with \"AtmWgt\", the list behind \"Thermochemistry\" or a table \"Center Atomic Atomic "
        "Coordinates\"");
  }
  array1<int> nat(mass.size());
  number_rows(file, 2, nat);
  element_masses(nat, mass);
}

void gaussian_log_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word_last_del_space(file, geometry_heading, line) || !search_word_first_number(file, line)) {
    fail_missing(file, "the coordinates", "a table \"Center Atomic Atomic Coordinates\"");
  }
  file.back_line();
  coordinate_rows(file, 3, true, x);
}

bool gaussian_fchk_natom(input_file& file, int& natom) {
  std::string_view line;
  if (!search_word(file, 1, 15, "Number of atoms", line)) return false;
  natom = row_integer(file, line, 5, "\"Number of atoms\", \"I\" and the number");
  return true;
}

void gaussian_fchk_mass(input_file& file, array1<double>& mass) {
  std::string_view line;
  if (!search_word_free(file, "Real atomic weights", line)) {
    fail_missing(file, "the masses", "a line with \"Real atomic weights\"");
  }
  all_numbers(file, mass.span(), "the mass of every atom");
}

bool gaussian_fchk_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  file.rewind();
  int count = 0;
  if (!search_word(file, 1, 29, "Current cartesian coordinates", line) ||
      !to_integer(word_of(line, 6), count) || count != 3 * x.cols()) {
    return false;
  }
  all_numbers(file, x.span(), "the coordinates of every atom");
  return true;
}

// The lower triangle, row by row, as one list of numbers.
void gaussian_fchk_fc(input_file& file, int natom, array2<double>& fc) {
  constexpr std::string_view heading = "Cartesian Force Constants";
  std::string_view line;
  if (!search_word(file, 1, 25, heading, line)) {
    warn(file.name() +
         " has no force constants; run a freq job and make its formatted checkpoint with formchk");
    static const layout empty("()");
    tell(empty);
    tell_free({"Error! Can not find 'Cartesian Force Constants'"});
    tell_free({file.name()});
    tell(empty);
    stop();
  }
  const int count =
      row_integer(file, line, 6, "\"Cartesian Force Constants\", \"R\", \"N=\" and their number");
  const std::int64_t wanted = std::int64_t{3} * natom * (std::int64_t{3} * natom + 1) / 2;
  if (count != wanted) {
    fail(file.here("the file has force constants of another number of atoms",
                   std::to_string(wanted) + " force constants for " + std::to_string(natom) + " atoms"));
  }
  fc = force_constant_matrix(file, natom);
  std::vector<double> triangle(static_cast<std::size_t>(count));
  all_numbers(file, triangle, "all " + std::to_string(count) + " force constants");
  auto k = triangle.begin();
  for (int i = 1; i <= fc.rows(); ++i) {
    for (int j = 1; j <= i; ++j) fc(i, j) = fc(j, i) = *k++;
  }
}

}  // namespace vbn
