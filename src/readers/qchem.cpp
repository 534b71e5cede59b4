// Reads Q-Chem outputs.
#include <algorithm>
#include <string>

#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, row_numbers, row_integer, skip_rows, fail_missing
#include "readers/scan.hpp"         // for search_word_free
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/number.hpp"          // for to_real
#include "text/stop.hpp"            // for fail
#include "text/words.hpp"           // for word_of, number_of_words, lowercase

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;
constexpr int weighted_width = 6;  // columns of its blocks
constexpr int mass_word = 7;       // of "Atom    1 Element C  Has Mass   12.00000"

constexpr std::string_view analytic = "\n Hessian of the SCF Energy";
constexpr std::string_view numerical = "\n Final Hessian.";
constexpr std::string_view weighted = "\n Mass-Weighted Hessian Matrix:";
constexpr std::string_view steps = "# Starting finite difference calculation";
constexpr std::string_view orientation = "Standard Nuclear Orientation";

// The last of the matrices of a kind, npos for none.
std::size_t last_of(const input_file& file, std::string_view heading) {
  const std::size_t at = last_before(file, heading, none);
  return at == none ? none : at + 1;
}

// The heading of the geometry that belongs to a matrix: the last before it, in a job of finite differences
// the last before its first step.
std::size_t geometry_of(const input_file& file, std::size_t matrix, bool finite_differences) {
  const std::size_t first_step = finite_differences ? last_before(file, steps, matrix) : none;
  return need_before(file, orientation, std::min(first_step, matrix), "the geometry of the force constants");
}

// The block without numbers of columns and rows, a blank line between blocks.
void read_weighted(input_file& file, array2<double>& a) {
  for (int ib = 1; ib <= a.cols(); ib += weighted_width) {
    const int width = std::min(weighted_width, a.cols() - ib + 1);
    const std::string expected = "a row of the matrix with " + std::to_string(width) + " numbers";
    double row[weighted_width];
    for (int i = 1; i <= a.rows(); ++i) {
      const std::string_view line = next_row(file, expected);
      if (number_of_words(line) != width) fail(file.here("cannot read the line", expected));
      row_numbers(file, line, 0, {row, static_cast<std::size_t>(width)}, expected);
      for (int k = 0; k < width; ++k) a(i, ib + k) = row[k];
    }
    std::string_view line;
    if (file.read_line(line) && !word_of(line, 1).empty()) {
      fail(file.here("the block has too many rows",
                     "a blank line after " + std::to_string(a.rows()) + " rows"));
    }
  }
}

// "b3lyp" of "METHOD b3lyp" or "method = b3lyp" in the last group $rem of the text; empty for none.
std::string rem_value(std::string_view text, std::string_view variable) {
  std::string value;
  text.remove_prefix(std::min(text.rfind("\n$rem"), text.size()));
  text = text.substr(0, text.find("\n$end"));
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (lowercase(word_of(line, 1)) == variable) value = word_of(line, word_of(line, 2) == "=" ? 3 : 2);
  }
  return value;
}

// The masses after the matrix, before the next job; those of the isotopes stay where there are none.
void read_masses(input_file& file, std::size_t end, file_state& state) {
  constexpr std::string_view expected =
      "the atoms in their order: Atom, number, Element, symbol, Has Mass, amu";
  std::string_view line;
  for (int i = 1; i <= state.natom(); ++i) {
    if (!search_word_free(file, " Has Mass ", line) || file.position() > end) return;
    if (row_integer(file, line, 2, expected) != i || element_of_label(word_of(line, 4)) != state.nat(i) ||
        !to_real(word_of(line, mass_word), state.mass(i))) {
      fail(file.here("this is not the mass of atom " + std::to_string(i), std::string(expected)));
    }
  }
}

}  // namespace

file_state qchem_state(input_file& file) {
  const std::size_t by_steps = last_of(file, numerical);
  const std::size_t plain = last_of(file, analytic);
  std::size_t matrix = by_steps == none || (plain != none && plain > by_steps) ? plain : by_steps;
  const bool divided = matrix == none;  // by the roots of the masses
  if (divided) matrix = last_of(file, weighted);
  if (matrix == none) {
    fail_missing(
        file, "the force constants",
        "\"Hessian of the SCF Energy\" or \"Final Hessian.\"; from version 5.4 on ask for gui = 2 in "
        "$rem and give the formatted checkpoint (.fchk), or ask for vibman_print = 4");
  }
  const std::size_t next_job = std::min(file.content().find("Welcome to Q-Chem", matrix),
                                        file.content().find("\nRunning Job ", matrix));
  const std::string_view heading = file.seek_line_after(geometry_of(file, matrix, matrix == by_steps));
  const bool angstrom = heading.find("Bohr") == none;
  skip_rows(file, 2, "the heading of the table of atoms");
  file_state state = read_atoms(file, {.label = 2, .before_x = 2, .angstrom = angstrom},
                                "the rows of the orientation: number, element, x, y and z");
  file.seek_line_after(matrix);
  if (divided) {
    read_weighted(file, state.fc);
  } else {
    read_square_blocks(file, 1, 1, state.fc);
  }
  const std::size_t after_matrix = file.position();
  append_rows(file, "Frequency:", next_job, state.printed.frequencies);
  file.seek_line_after(after_matrix - 1);
  read_masses(file, next_job, state);
  const std::string_view before = file.content().substr(0, matrix);
  state.printed.method = rem_value(before, "method");
  if (rem_value(before, "correlation").empty() && state.printed.method.empty())
    state.printed.method = rem_value(before, "exchange");
  state.printed.basis_set = rem_value(before, "basis");
  if (divided) remove_masses(state.mass, 1.0, state.fc);  // hartree/(bohr^2 amu)
  take_mean_of_triangles(file, state.fc);
  return state;
}

}  // namespace vbn
