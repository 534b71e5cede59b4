// Reads NWChem files.
#include <algorithm>
#include <cmath>
#include <span>
#include <string>

#include "readers/programs.hpp"  // for the routines
#include "readers/rows.hpp"      // for the rows of the tables
#include "readers/scan.hpp"      // for search_word_free, search_word_free_last
#include "text/stop.hpp"         // for fail_in

namespace vbn {

namespace {

constexpr int lines_before_block = 4;      // of force constants
constexpr int block_columns = 10;          // numbers in a row of a block
constexpr double amu_per_kamu = 1000.0;    // the Hessian is weighted with masses in thousands of amu
constexpr std::size_t symbol_letters = 3;  // of a label that count as the element symbol

// Goes to the first row of a table of coordinates, from its heading on.
void to_rows(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "No.", line)) {
    fail_missing(file, "the table of atoms",
                 "a line with \"No.\" behind \"Output coordinates in angstroms\"");
  }
  skip_rows(file, 1, "the table of atoms");
}

}  // namespace

bool nwchem_natom(input_file& file, int& natom) {
  std::string_view line;
  if (!search_word_free(file, "Geometry", line) || !search_word_free(file, "No.", line)) return false;
  skip_rows(file, 1, "the table of atoms");
  natom = rows_to_blank(file);
  return true;
}

void nwchem_nat(input_file& file, array1<int>& nat) {
  std::string_view line;
  if (!search_word_free(file, "Output coordinates in angstroms", line)) {
    fail_missing(file, "the atoms", "a line with \"Output coordinates in angstroms\"");
  }
  to_rows(file);
  symbol_rows(file, 2, nat, symbol_letters, 3);
}

void nwchem_mass(input_file& file, array1<double>& mass) {
  array1<int> nat(mass.size());
  nwchem_nat(file, nat);
  element_masses(nat, mass);
}

void nwchem_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word_free_last(file, "Output coordinates in angstroms", line)) {
    fail_missing(file, "the coordinates", "a line with \"Output coordinates in angstroms\"");
  }
  to_rows(file);
  coordinate_rows(file, 3, true, x);
}

// The lower triangle in blocks of ten columns, each row with its number in front, weighted with the masses.
void nwchem_fc(input_file& file, int natom, array2<double>& fc) {
  constexpr std::string_view expected = "a row number and up to ten force constants";
  array1<double> mass(natom);
  nwchem_mass(file, mass);
  array1<double> sqtmass(3 * natom);
  for (int i = 1; i <= natom; ++i) {
    if (mass(i) <= 0.0) {
      fail_in(file.name(), "no mass is known for the element of atom " + std::to_string(i),
              "an element with a mass, since the force constants in the file are weighted with the masses");
    }
    for (int c = 1; c <= 3; ++c) sqtmass(3 * (i - 1) + c) = std::sqrt(mass(i));
  }

  std::string_view line;
  if (!search_word_free_last(file, "MASS-WEIGHTED PROJECTED HESSIAN", line)) {
    fail_missing(file, "the force constants",
                 "a line with \"MASS-WEIGHTED PROJECTED HESSIAN\", as task ... freq prints it");
  }
  skip_rows(file, 1, "the force constants");
  fc = force_constant_matrix(file, natom);
  const int n3 = fc.rows();
  for (int ib = 1; ib <= n3; ib += block_columns) {
    skip_rows(file, lines_before_block, "a block of force constants");
    for (int i = ib; i <= n3; ++i) {
      // Row i of the lower triangle is held in column i until the whole triangle is mirrored.
      const int count = std::min(i - ib + 1, block_columns);
      row_numbers(file, next_row(file, expected), 1,
                  fc.column(i).subspan(static_cast<std::size_t>(ib - 1), static_cast<std::size_t>(count)),
                  expected);
    }
  }
  for (int i = 1; i <= n3; ++i) {
    for (int j = 1; j <= i; ++j) fc(j, i) = fc(j, i) * sqtmass(i) * sqtmass(j) / amu_per_kamu;
  }
  mirror_upper(fc);
}

}  // namespace vbn
