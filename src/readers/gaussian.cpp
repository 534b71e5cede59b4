// Reads Gaussian logs and formatted checkpoints.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "molecule/constants.hpp"  // for au_to_ev
#include "readers/couplings.hpp"   // for energy_word, read_fields, nacme_of_field
#include "readers/programs.hpp"    // for the routines
#include "readers/rows.hpp"        // for the rows of the tables
#include "readers/scan.hpp"  // for search_word, search_word_free, search_word_del_space, search_word_last_del_space, search_word_first_number
#include "readers/triangle.hpp"  // for force_constant_matrix, mirror_upper
#include "text/layout.hpp"       // for layout
#include "text/messages.hpp"     // for lines_of, free_line
#include "text/number.hpp"       // for to_integer, to_real
#include "text/stop.hpp"         // for stop_printed, fail
#include "text/words.hpp"        // for word_of, number_of_words

namespace vbn {

namespace {

constexpr int masses_per_line = 10;
constexpr std::string_view geometry_heading = "Center Atomic Atomic Coordinates";

// Moves to the first row of the next table of coordinates.
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

std::optional<int> gaussian_log_natom(input_file& file) {
  std::string_view line;
  if (!search_word(file, 2, "NAtoms=", line)) return std::nullopt;
  return row_integer(file, line, 2, "\"NAtoms=\" and the number of atoms");
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
        "lines with \"AtmWgt\", the list after \"Thermochemistry\" or a table \"Center Atomic Atomic "
        "Coordinates\"");
  }
  array1<int> nat(mass.size());
  number_rows(file, 2, nat);
  element_masses(nat, mass);
}

bool gaussian_log_coord_before(input_file& file, std::size_t end, array2<double>& x) {
  std::string_view line;
  if (!search_word_last_del_space(file, geometry_heading, line, end) ||
      !search_word_first_number(file, line)) {
    return false;
  }
  file.back_line();
  coordinate_rows(file, 3, true, x);
  return true;
}

void gaussian_log_coord(input_file& file, array2<double>& x) {
  if (!gaussian_log_coord_before(file, file.content().size(), x)) {
    fail_missing(file, "the coordinates", "a table \"Center Atomic Atomic Coordinates\"");
  }
}

std::optional<int> gaussian_fchk_natom(input_file& file) {
  std::string_view line;
  if (!search_word(file, 1, "Number of atoms", line)) return std::nullopt;
  return row_integer(file, line, 5, "\"Number of atoms\", \"I\" and the number");
}

namespace {

// The numbers of a block of the checkpoint that only serves comparisons; empty when there is none with
// `count` of them, or it is damaged.
array1<double> fchk_block(input_file& file, std::string_view heading, int count) {
  std::string_view line;
  file.rewind();
  int n = 0;
  if (!search_word(file, 1, heading, line) || !to_integer(word_of(line, number_of_words(heading) + 3), n) ||
      n != count) {
    return {};
  }
  array1<double> numbers(count);
  for (int i = 1; i <= count && file.read_line(line);) {
    for (int k = 1; k <= number_of_words(line) && i <= count; ++k, ++i)
      if (!to_real(word_of(line, k), numbers(i)) || !std::isfinite(numbers(i))) return {};
    if (i > count) return numbers;
    if (number_of_words(line) == 0) return {};
  }
  return {};
}

}  // namespace

bool gaussian_fchk_coord(input_file& file, array2<double>& x) {
  const array1<double> numbers = fchk_block(file, "Current cartesian coordinates", 3 * x.cols());
  std::ranges::copy(numbers, x.span().begin());
  return numbers.size() > 0;
}

gaussian_fchk_atoms gaussian_fchk_atoms_of(input_file& file, int natom) {
  const array1<double> nat = fchk_block(file, "Atomic numbers", natom);
  gaussian_fchk_atoms atoms{array1<int>(nat.size()), fchk_block(file, "Real atomic weights", natom)};
  std::ranges::transform(nat, atoms.nat.begin(),
                         [](double number) { return static_cast<int>(std::clamp(number, 0.0, 1000.0)); });
  return atoms;
}

void gaussian_fchk_nat(input_file& file, array1<int>& nat) {
  const gaussian_fchk_atoms atoms = gaussian_fchk_atoms_of(file, nat.size());
  if (atoms.nat.size() == 0) fail_missing(file, "the atomic numbers", "\"Atomic numbers\" with all atoms");
  nat = atoms.nat;
}

void gaussian_fchk_mass(input_file& file, array1<double>& mass) {
  const gaussian_fchk_atoms atoms = gaussian_fchk_atoms_of(file, mass.size());
  if (atoms.mass.size() > 0) {
    mass = atoms.mass;
    return;
  }
  array1<int> nat(mass.size());
  gaussian_fchk_nat(file, nat);
  element_masses(nat, mass);
}

void gaussian_fchk_state_coord(input_file& file, array2<double>& x) {
  if (!gaussian_fchk_coord(file, x)) {
    fail_missing(file, "the coordinates", "\"Current cartesian coordinates\" with all atoms");
  }
}

printed_results gaussian_fchk_printed(input_file& file) {
  printed_results printed;
  std::string_view line;
  const auto integer = [&](std::string_view heading, int word) {
    int number = 0;
    file.rewind();
    return search_word(file, 1, heading, line) && to_integer(word_of(line, word), number)
               ? std::optional<int>(number)
               : std::nullopt;
  };
  printed.charge = integer("Charge  ", 3);
  printed.multiplicity = integer("Multiplicity  ", 3);
  const int modes = integer("Number of Normal Modes", 6).value_or(0);
  const int size = integer("Vib-E2", 4).value_or(0);
  if (modes > 0 && size > modes) {
    const array1<double> all = fchk_block(file, "Vib-E2", size);
    printed.frequencies.assign(all.begin(), all.begin() + std::min(modes, all.size()));
  }
  return printed;
}

// The lower triangle, row by row, as one list of numbers.
array2<double> gaussian_fchk_fc(input_file& file, int natom) {
  constexpr std::string_view heading = "Cartesian Force Constants";
  std::string_view line;
  if (!search_word(file, 1, heading, line)) {
    file.warn(file.name() +
              " has no force constants; run a freq job and make its formatted checkpoint with formchk");
    static const layout empty("()");
    stop_printed(lines_of(empty) + free_line({"Error! Can not find 'Cartesian Force Constants'"}) +
                 free_line({file.name()}) + lines_of(empty));
  }
  const int count =
      row_integer(file, line, 6, "\"Cartesian Force Constants\", \"R\", \"N=\" and their number");
  const std::int64_t wanted = std::int64_t{3} * natom * (std::int64_t{3} * natom + 1) / 2;
  if (count != wanted) {
    fail(file.here("the file has force constants for another number of atoms",
                   std::to_string(wanted) + " force constants for " + std::to_string(natom) + " atoms"));
  }
  array2<double> fc = force_constant_matrix(file, natom);
  std::vector<double> triangle(static_cast<std::size_t>(count));
  all_numbers(file, triangle, "all " + std::to_string(count) + " force constants");
  auto row = triangle.begin();
  for (int i = 1; i <= fc.cols(); row += i++) std::copy_n(row, i, fc.column(i).begin());
  mirror_upper(fc);
  return fc;
}

namespace {

// "Excited State   1", or the state that the log says it has followed: the last one before this line.
std::string followed_state(const input_file& file) {
  constexpr std::string_view first = "Excited State   1";
  constexpr std::string_view heading = "\n Excited State ";
  const std::string_view text = file.content().substr(file.position());
  const std::size_t said = text.find("This state for optimization and/or second-order correction");
  const std::size_t at = said == std::string_view::npos ? said : text.rfind(heading, said);
  if (at == std::string_view::npos) return std::string(first);
  return std::string(text.substr(at + 2, first.size()));
}

}  // namespace

void gaussian_log_nacme(qm_file& from, file_couplings& read) {
  input_file& file = from.file;
  std::string_view line;
  if (!search_word(file, 2, "Charge =", line)) {
    fail_missing(file, "the atoms", "\"Charge =\" in columns 2 to 9 and a row for each atom after it");
  }
  for (int i = 1; i <= read.natom(); ++i) next_row(file, "the symbol of an atom");

  if (!first_geometry(file)) {
    fail_missing(file, "the atomic numbers", "the table \"Center Atomic Atomic Coordinates\"");
  }
  array1<int> nat(read.natom());
  number_rows(file, 2, nat);
  std::copy(nat.begin(), nat.end(), read.z.begin());

  const std::string root = followed_state(file);
  if (!search_word(file, 2, root, line)) {
    fail_missing(file, "the vertical energy", "\"" + root + "\" in columns 2 to 18 after the geometry");
  }
  read.e_vert = energy_word(file, line, 5, "the energy in eV") / au_to_ev;

  read_fields(file, 3, read.tranele);
  nacme_of_field(file, read);
}

}  // namespace vbn
