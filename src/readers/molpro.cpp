// Reads Molpro files.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>
#include <string>

#include "molecule/constants.hpp"  // for bohr_to_ang
#include "molecule/elements.hpp"   // for nat_to_mass, element_symbol
#include "readers/couplings.hpp"   // for energy_word, check_divisors
#include "readers/programs.hpp"    // for the routines
#include "readers/rows.hpp"        // for the rows of the tables
#include "readers/scan.hpp"  // for search_word, search_word_free, search_word_del_space, search_word_first_number
#include "readers/triangle.hpp"  // for force_constant_matrix, read_lower_blocks, mirror_upper
#include "text/messages.hpp"     // for free_line
#include "text/number.hpp"       // for shortest
#include "text/stop.hpp"         // for stop_printed, fail, fail_in
#include "text/words.hpp"        // for adjustl

namespace vbn {

namespace {

constexpr int block_columns = 5;           // numbers in a row of a block of force constants
constexpr std::size_t symbol_letters = 3;  // of a label that count as the element symbol
constexpr int charge_word = 3;             // of a row of atoms
constexpr double isotope_window =
    2.5;  // amu by which isotopes and averages may differ from the mass of the element

bool to_force_constants(input_file& file) {
  std::string_view line;
  return search_word(file, 2, "Force Constants", line);
}

bool has_dump(input_file& file) {
  std::string_view line;
  file.rewind();
  return search_word(file, 2, "Dump information in style XYZ to output", line);
}

// Moves to the rows of the table "Nr Atom Charge" that the frequency calculation prints after its force
// constants: the geometry in bohr, and the atoms in the order of the force constants and masses, which with
// symmetry is not the order of "ATOMIC COORDINATES".
bool to_frequency_table(input_file& file) {
  std::string_view line;
  file.rewind();
  return to_force_constants(file) && search_word_del_space(file, "Nr Atom Charge", line);
}

// Ends the run unless the rows begin with the numbers 1 to natom and are followed by a blank line.
void check_frequency_table(input_file& file, int natom) {
  const std::string expected =
      "the rows 1 to " + std::to_string(natom) + " of the table \"Nr  Atom  Charge\"";
  for (int i = 1; i <= natom; ++i) {
    if (row_integer(file, next_row(file, expected), 1, expected) != i) {
      fail(file.here("this is not row " + std::to_string(i), expected));
    }
  }
  if (rows_to_blank(file) != 0) fail(file.here("the table of atoms has too many rows", expected));
}

// " 1- 10" before masses, or "100-109": its first and last atom, and the rest of the line.
bool mass_range(std::string_view line, int& first, int& last, std::string_view& masses) {
  const auto number = [&](int& n) {
    line = adjustl(line);
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), n);
    if (error != std::errc()) return false;
    line = adjustl(line.substr(static_cast<std::size_t>(end - line.data())));
    return true;
  };
  if (!number(first) || !line.starts_with('-')) return false;
  line.remove_prefix(1);
  if (!number(last)) return false;
  masses = line;
  return true;
}

// The masses on several lines, each after its range of atoms.
void masses_by_range(input_file& file, array1<double>& mass) {
  constexpr std::string_view expected = "a range of atoms, as \"1- 10\", and the mass of each of them";
  for (int next = 1; next <= mass.size();) {
    const std::string_view line = next_row(file, expected);
    int first = 0;
    int last = 0;
    std::string_view masses;
    if (!mass_range(line, first, last, masses) || first != next || last < first || last > mass.size()) {
      fail(file.here("cannot read the line of masses from atom " + std::to_string(next) + " on",
                     std::string(expected)));
    }
    row_numbers(
        file, masses, 0,
        mass.span().subspan(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - first + 1)),
        expected);
    next = last + 1;
  }
}

// The block "Atomic Masses": all on the next line or, for more than ten atoms, ten to a line. False when
// there is none.
bool stated_masses(input_file& file, array1<double>& mass) {
  std::string_view line;
  file.rewind();
  if (!search_word(file, 2, "Atomic Masses", line)) return false;
  if (!try_row_numbers(next_row(file, "the masses of the atoms"), 2, mass.span())) {
    file.back_line();
    masses_by_range(file, mass);
  }
  return true;
}

// A text that names an atom with a mass of no isotope of its element; empty if there is none or no mass is
// given. The masses are in the order of the force constants.
std::string wrong_mass(input_file& file, const array1<int>& nat) {
  array1<double> mass(nat.size());
  if (!stated_masses(file, mass)) return "";
  for (int i = 1; i <= nat.size(); ++i) {
    const double known = nat_to_mass(nat(i));
    if (known > 0.0 && std::abs(mass(i) - known) > isotope_window) {
      return "atom " + std::to_string(i) + " is " + std::string(element_symbol(nat(i))) +
             " in the table of atoms, but its mass is " + shortest(mass(i));
    }
  }
  return "";
}

}  // namespace

std::optional<int> molpro_natom(input_file& file) {
  std::string_view line;
  if (!search_word_free(file, "ATOMIC COORDINATES", line) || !search_word_first_number(file, line))
    return std::nullopt;
  return 1 + rows_to_blank(file);
}

void molpro_nat(input_file& file, array1<int>& nat) {
  std::string_view line;
  if (!has_dump(file) && to_frequency_table(file)) {
    check_frequency_table(file, nat.size());
    to_frequency_table(file);
    symbol_rows(file, 2, nat, symbol_letters, charge_word);
    const std::string wrong = wrong_mass(file, nat);
    if (!wrong.empty()) fail_in(file.name(), wrong, "masses in the order of the table \"Nr  Atom  Charge\"");
    return;
  }
  file.rewind();
  if (!search_word(file, 2, "ATOMIC COORDINATES", line)) {
    fail_missing(file, "the atoms", "\"ATOMIC COORDINATES\" in columns 2 to 19");
  }
  skip_rows(file, 3, "the table of atoms");
  symbol_rows(file, 2, nat, symbol_letters, charge_word);
  const std::string wrong = wrong_mass(file, nat);
  if (!wrong.empty()) {
    file.warn(file.name() + ": " + wrong +
              "; the order of atoms in the force constants may differ from that of \"ATOMIC COORDINATES\"");
  }
}

void molpro_mass(input_file& file, array1<double>& mass) {
  if (stated_masses(file, mass)) return;
  array1<int> nat(mass.size());
  molpro_nat(file, nat);
  element_masses(nat, mass);
}

namespace {

constexpr double dump_in_angstrom = 1.4;  // between 1 and the 1.89 bohr of an angstrom

// The coordinates of the table of the frequencies or, without one, of "ATOMIC COORDINATES", bohr. False when
// they cannot be read.
bool other_table(input_file& file, array2<double>& x) {
  if (!to_frequency_table(file)) return molpro_start_coord(file, x);
  std::string_view line;
  for (int i = 1; i <= x.cols(); ++i) {
    do {
      if (!file.read_line(line)) return false;
    } while (i == 1 && trim(line).empty());
    for (int a = 1; a <= 3; ++a)
      if (!to_real(word_of(line, a + 3), x(a, i))) return false;
  }
  return true;
}

// The root of the sum of all squared distances of two atoms: the size of a molecule in any order of its
// atoms.
double spread(const array2<double>& x) {
  double sum = 0.0;
  for (int i = 1; i <= x.cols(); ++i)
    for (int j = 1; j < i; ++j)
      for (int a = 1; a <= 3; ++a) sum += (x(a, i) - x(a, j)) * (x(a, i) - x(a, j));
  return std::sqrt(sum);
}

}  // namespace

bool molpro_start_coord(input_file& file, array2<double>& x) {
  std::string_view line;
  file.rewind();
  if (!search_word(file, 2, "ATOMIC COORDINATES", line) || !file.skip_lines(3)) return false;
  for (int i = 1; i <= x.cols(); ++i) {
    if (!file.read_line(line)) return false;
    for (int a = 1; a <= 3; ++a)
      if (!to_real(word_of(line, a + 3), x(a, i))) return false;
  }
  return true;
}

void molpro_coord(input_file& file, array2<double>& x) {
  if (has_dump(file)) {
    skip_rows(file, 3, "the coordinates");
    coordinate_rows(file, 1, false, x);
    array2<double> listed(3, x.cols());
    if (!other_table(file, listed) || !(spread(listed) > dump_in_angstrom * spread(x))) return;
    file.warn(file.name() + ": the dump in XYZ style is in angstrom, as the other table of the file shows");
    for (double& component : x.span()) component /= bohr_to_ang;
    return;
  }
  if (to_frequency_table(file)) {
    check_frequency_table(file, x.cols());
    to_frequency_table(file);
    return coordinate_rows(file, 3, false, x);
  }
  tell_and_stop({"Error!", "Can not find coordinate in Molpro output file, stop!"});
}

// The lower triangle in blocks of five columns, each row after a label.
array2<double> molpro_fc(input_file& file, int natom) {
  constexpr std::string_view expected = "a label and up to five force constants";
  if (!to_force_constants(file)) {
    file.warn(file.name() + " has no force constants; ask Molpro for them with {frequencies;print,hessian}");
    stop_printed(free_line({"No force matrix information found"}));
  }
  array2<double> fc = force_constant_matrix(file, natom);
  read_lower_blocks(
      fc, block_columns, [&](int) { skip_rows(file, 1, "a block of force constants"); },
      [&](std::span<double> numbers) { row_numbers(file, next_row(file, expected), 1, numbers, expected); });
  mirror_upper(fc);
  return fc;
}

void molpro_nacme(qm_file& from, file_couplings& read) {
  input_file& file = from.file;
  std::string_view line;
  if (!search_word(file, 2, "ATOMIC COORDINATES", line)) {
    fail_missing(file, "the atoms", "\"ATOMIC COORDINATES\" in columns 2 to 19");
  }
  skip_rows(file, 3, "the table of atoms");
  const std::string atom_row = "number, symbol and charge of an atom";
  for (double& z : read.z) row_numbers(file, next_row(file, atom_row), 2, {&z, 1}, atom_row);

  file.rewind();
  if (!search_word(file, 2, "Energy Difference at present geometry", line)) {
    fail_missing(file, "the vertical energy", "\"Energy Difference at present geometry\" in columns 2 to 38");
  }
  read.e_vert = energy_word(file, line, 6, "the energy in hartree");

  if (!search_word(file, 2, "Derivative Coupling before scaling", line)) {
    fail_missing(file, "the couplings",
                 "\"Derivative Coupling before scaling\" in columns 2 to 35 after the energy");
  }
  const std::string coupling_row = "the coupling x, y and z of an atom";
  for (int i = 1; i <= read.natom(); ++i) {
    row_numbers(file, next_row(file, coupling_row), 0, read.nacme.column(i), coupling_row);
  }
  check_divisors(file, read);
  for (int i = 1; i <= read.natom(); ++i) {
    for (int c = 1; c <= 3; ++c) read.tranele(c, i) = read.nacme(c, i) / read.z(i) * read.e_vert;
  }
}

}  // namespace vbn
