// Reads outputs of CFOUR and DALTON, which print their force constants in the same layout.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "molecule/elements.hpp"    // for nat_to_mass, element_symbol
#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, skip_rows, all_numbers, mass_rows, try_row_numbers
#include "readers/scan.hpp"         // for search_word_free
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/number.hpp"          // for to_integer, shortest
#include "text/stop.hpp"            // for fail_in
#include "text/words.hpp"           // for word_of, number_of_words, trim

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;
constexpr double isotope_window = 2.5;  // amu by which isotopes may differ from the mass of the element

// Ends the run unless the next line that is not blank is the heading of a block of Cartesian coordinates.
// With symmetry the matrix is printed in blocks of symmetry coordinates.
void refuse_symmetry(input_file& file, std::string_view what_to_do) {
  const std::string expected = "the labels of the first six columns";
  skip_rows(file, 1, "the rule under the heading of the matrix");
  const std::string_view line = next_row(file, expected);
  if (line.find("Symmetry") != none || line.find("symmetry") != none) {
    fail_in(file.name(), "the force constants are printed in symmetry coordinates", what_to_do);
  }
  file.back_line();
}

// The masses must be in the order of the atoms.
void check_masses(const input_file& file, const file_state& state) {
  for (int i = 1; i <= state.natom(); ++i) {
    if (std::abs(state.mass(i) - nat_to_mass(state.nat(i))) < isotope_window) continue;
    fail_in(file.name(),
            "atom " + std::to_string(i) + " is " + std::string(element_symbol(state.nat(i))) +
                " in the geometry, but its mass is " + shortest(state.mass(i)),
            "masses in the order of the atoms");
  }
}

// The largest component of the gradient of DALTON; none without a table of all atoms.
std::optional<double> printed_gradient(input_file& file, int natom, int words) {
  std::string_view line;
  if (!search_word_free(file, "Molecular gradient (au)", line) || !file.skip_lines(2)) return std::nullopt;
  double largest = 0.0;
  for (int i = 1; i <= natom; ++i) {
    double g[3];
    if (!file.read_line(line) || !try_row_numbers(line, words - 3, g)) return std::nullopt;
    for (const double component : g) largest = std::max(largest, std::abs(component));
  }
  return largest;
}

}  // namespace

file_state cfour_state(input_file& file) {
  const std::size_t matrix = need_before(file, "Molecular hessian", none, "the force constants");
  file.seek_line_after(need_before(file, "Coordinates (in bohr)", matrix, "the geometry"));
  skip_rows(file, 2, "the heading of the geometry");
  file_state state = read_atoms(file, {.charge = 2, .before_x = 2},
                                "the rows of the geometry: symbol, atomic number, x, y and z");
  file.seek_line_after(matrix);
  refuse_symmetry(file, "the same calculation with SYMMETRY=OFF");
  read_labelled_triangle(file, state.fc);
  std::string_view line;
  if (search_word_free(file, "masses used (in AMU)", line)) {
    all_numbers(file, state.mass.span(), "the mass of each atom");
    check_masses(file, state);
  }
  while (file.read_line(line)) {
    if (trim(line).ends_with(" VIBRATION")) append_numbers(word_of(line, 2), 0, state.printed.frequencies);
  }
  return state;
}

file_state dalton_state(input_file& file) {
  constexpr std::string_view rows = "the rows of the geometry: label, x, y and z";
  const std::size_t matrix = need_before(file, "Molecular Hessian (au)", none, "the force constants");
  file.seek_line_after(need_before(file, "Molecular geometry (au)", matrix, "the geometry"));
  skip_rows(file, 1, "the rule under the heading of the geometry");
  const int words = std::max(4, number_of_words(next_row(file, rows)));
  file.back_line();
  file_state state = read_atoms(file, {.before_x = words - 3}, rows);
  state.printed.max_gradient = printed_gradient(file, state.natom(), words);
  file.seek_line_after(matrix);
  refuse_symmetry(file, "the same calculation with the word Nosymmetry in the molecule file");
  read_labelled_triangle(file, state.fc);
  std::string_view line;
  if (search_word_free(file, "Isotopic Masses", line)) {
    skip_rows(file, 1, "the rule under the heading of the masses");
    mass_rows(file, words - 2, state.mass);
    check_masses(file, state);
  }
  if (search_word_free(file, "Vibrational Frequencies and IR Intensities", line)) {
    skip_rows(file, 6, "the heading of the frequencies");
    int mode = 0;
    while (file.read_line(line) && to_integer(word_of(line, 1), mode))
      append_numbers(word_of(line, 3), 0, state.printed.frequencies);
  }
  return state;
}

}  // namespace vbn
