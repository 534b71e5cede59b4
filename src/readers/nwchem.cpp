// Reads NWChem files.
#include <algorithm>
#include <cmath>
#include <span>
#include <string>

#include "molecule/geometry.hpp"  // for largest_difference
#include "readers/couplings.hpp"  // for read_fields, nacme_of_field
#include "readers/programs.hpp"   // for the routines
#include "readers/rows.hpp"       // for the rows of the tables
#include "readers/scan.hpp"       // for search_word_free, search_word_free_last
#include "readers/triangle.hpp"   // for force_constant_matrix, read_lower_blocks, mirror_upper
#include "text/number.hpp"        // for to_real
#include "text/stop.hpp"          // for fail, fail_in
#include "text/words.hpp"         // for number_of_words, word_of

namespace vbn {

namespace {

constexpr int lines_before_block = 4;      // of force constants
constexpr int block_columns = 10;          // numbers in a row of a block
constexpr double amu_per_kamu = 1000.0;    // the Hessian is weighted with masses in thousands of amu
constexpr std::size_t symbol_letters = 3;  // of a label that count as the element symbol

// Moves from the heading of a table of coordinates to its first row.
void to_rows(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "No.", line)) {
    fail_missing(file, "the table of atoms", "a line with \"No.\" after \"Output coordinates in angstroms\"");
  }
  skip_rows(file, 1, "the table of atoms");
}

// The first word of a text that is a real number; false when there is none.
bool first_real(std::string_view a, double& r) {
  for (int k = 1; k <= number_of_words(a); ++k) {
    if (to_real(word_of(a, k), r)) return true;
  }
  return false;
}

}  // namespace

std::optional<int> nwchem_natom(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "Geometry", line) || !search_word_free(file, "No.", line)) return std::nullopt;
  skip_rows(file, 1, "the table of atoms");
  return rows_to_blank(file);
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

namespace {

constexpr double same_geometry = 1.0e-4;  // bohr

// The geometry in the "Atom information" of the last Hessian; false where it is not printed.
bool coord_of_hessian(input_file& file, array2<double>& x) {
  std::string_view line;
  if (!search_word_free_last(file, "MASS-WEIGHTED PROJECTED HESSIAN", line)) return false;
  const std::string_view before = file.content().substr(0, file.position());
  const std::size_t at = before.rfind("Atom information");
  if (at == std::string_view::npos) return false;
  file.seek_line_after(at);
  if (!file.skip_lines(2)) return false;
  for (int i = 1; i <= x.cols(); ++i) {
    if (!file.read_line(line)) return false;
    for (int a = 1; a <= 3; ++a)
      if (!to_real(word_of(line, a + 2), x(a, i)) || !std::isfinite(x(a, i))) return false;
  }
  return true;
}

}  // namespace

void nwchem_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  search_word_free_last(file, "Output coordinates in angstroms",
                        line);  // it is there, or `nwchem_nat` would have failed
  to_rows(file);
  coordinate_rows(file, 3, true, x);
  array2<double> own = x;
  if (coord_of_hessian(file, own) && largest_difference(x, own) > same_geometry) {
    file.warn("the last geometry of " + file.name() +
              " is not that of its force constants; the geometry printed with them is used");
    x = own;
  }
}

// The lower triangle in blocks of ten columns, each row after its number, weighted with the masses.
array2<double> nwchem_fc(input_file& file, int natom) {
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
  array2<double> fc = force_constant_matrix(file, natom);
  read_lower_blocks(
      fc, block_columns, [&](int) { skip_rows(file, lines_before_block, "a block of force constants"); },
      [&](std::span<double> numbers) { row_numbers(file, next_row(file, expected), 1, numbers, expected); });
  for (int i = 1; i <= fc.cols(); ++i) {
    for (int j = 1; j <= i; ++j) fc(j, i) = fc(j, i) * sqtmass(i) * sqtmass(j) / amu_per_kamu;
  }
  mirror_upper(fc);
  return fc;
}

namespace {

// "Root   1", or the root that the file says it has followed, "Target root =      2"; the position stays.
std::string followed_root(const input_file& file) {
  constexpr std::string_view marker = "Target root =";
  const std::size_t at = file.content().find(marker);
  const std::string_view rest =
      at == std::string_view::npos ? "" : file.content().substr(at + marker.size(), 20);
  int root = 1;
  if (!to_integer(word_of(rest.substr(0, rest.find('\n')), 1), root) || root < 1 || root > 999) root = 1;
  const std::string number = std::to_string(root);
  return "Root" + std::string(4 - number.size(), ' ') + number;
}

}  // namespace

void nwchem_nacme(qm_file& from, file_couplings& read) {
  input_file& file = from.file;
  std::string_view line;
  if (!search_word_free(file, "Output coordinates in angstroms", line) ||
      !search_word_free(file, "No.", line)) {
    fail_missing(file, "the atoms", "the table \"Output coordinates in angstroms\"");
  }
  skip_rows(file, 1, "the table of atoms");
  array1<int> nat(read.natom());
  symbol_rows(file, 2, nat, symbol_letters, 3);
  std::copy(nat.begin(), nat.end(), read.z.begin());

  const std::string root = followed_root(file);
  if (!search_word_free(file, root, line)) {
    fail_missing(file, "the vertical energy", "\"" + root + "\" after the geometry");
  }
  const std::string_view columns = line.substr(std::min<std::size_t>(line.size(), 24), 31);
  if (!first_real(columns, read.e_vert)) {
    fail(file.here("cannot read the vertical energy", "the energy in hartree in columns 25 to 55"));
  }

  read_fields(file, 2, read.tranele);
  nacme_of_field(file, read);
}

}  // namespace vbn
