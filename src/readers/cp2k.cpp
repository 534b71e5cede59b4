// Reads CP2K outputs.
#include "molecule/constants.hpp"   // for amu_to_au
#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, fail_missing
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/words.hpp"           // for number_of_words

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;
constexpr double printed_unit = 1.0e-6;  // the matrix is printed times 10^6
constexpr int words_with_charge = 9;     // of a row of atoms with the nuclear charge

// The last heading of the matrix that is divided by the roots of the masses; newer versions print one that is
// not divided before it.
std::size_t heading_of_matrix(const input_file& file) {
  constexpr std::string_view heading = "VIB| Hessian in cartesian coordinates";
  const std::string_view content = file.content();
  for (std::size_t at = last_before(file, heading, none); at != none; at = last_before(file, heading, at)) {
    if (content.substr(at, content.find('\n', at) - at).find("before multiplying") == none) return at;
  }
  fail_missing(file, "the force constants", "\"" + std::string(heading) + "\"");
}

}  // namespace

file_state cp2k_state(input_file& file) {
  constexpr std::string_view rows = "the rows of the geometry: number, kind, element, ..., mass";
  const std::size_t matrix = heading_of_matrix(file);
  file.seek_line_after(need_before(file, "ATOMIC COORDINATES IN ", matrix, "the geometry"));
  next_row(file, rows);
  const int words = number_of_words(next_row(file, rows));
  file.back_line();
  const bool with_charge = words == words_with_charge;
  file_state state =
      read_atoms(file, {.label = 3, .before_x = with_charge ? 4 : 3, .mass = words, .angstrom = true}, rows);
  file.seek_line_after(matrix);
  read_square_blocks(file, 1, 2, state.fc);
  remove_masses(state.mass, printed_unit * amu_to_au, state.fc);
  take_mean_of_triangles(file, state.fc);
  append_rows(file, "VIB|Frequency (cm^-1)", none, state.printed.frequencies);
  return state;
}

}  // namespace vbn
