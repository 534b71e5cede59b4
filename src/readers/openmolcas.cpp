// Reads the file .UnSym of OpenMolcas.
#include <string>
#include <vector>

#include "readers/programs.hpp"     // for unsym_state
#include "readers/rows.hpp"         // for all_numbers, skip_rows
#include "readers/state_parts.hpp"  // for read_atoms, need_before, append_numbers, take_mean_of_triangles
#include "text/stop.hpp"            // for fail
#include "text/words.hpp"           // for word_of

namespace vbn {

namespace {

// The frequencies of all modes after "*FREQUENCIES", up to the next block.
void read_frequencies(input_file& file, std::vector<double>& frequencies) {
  const std::size_t at = file.content().find("*FREQUENCIES");
  if (at == std::string_view::npos) return;
  file.seek_line_after(at);
  for (std::string_view line; file.read_line(line) && !line.starts_with('*');)
    append_numbers(line, 0, frequencies);
}

}  // namespace

// With symmetry the modes are in blocks, but coordinates and matrix are complete.
file_state unsym_state(input_file& file) {
  constexpr std::size_t none = std::string_view::npos;
  const std::size_t matrix = need_before(file, "*BEGIN HESSIAN", none, "the force constants");
  file.seek_line_after(need_before(file, "*BEGIN COORDINATES", none, "the coordinates"));
  skip_rows(file, 1, "the heading of the coordinates");
  file_state state = read_atoms(file, {.label = 1, .charge = 5, .before_x = 1},
                                "the rows of the coordinates: label, x, y, z in bohr and charge");
  file.seek_line_after(matrix);
  skip_rows(file, 1, "the number of coordinates");
  for (int j = 1; j <= state.fc.cols(); ++j) {
    std::string_view line;
    if (!file.read_line(line) || word_of(line, 2) != "Column" || word_of(line, 3) != std::to_string(j)) {
      fail(file.here("cannot find column " + std::to_string(j) + " of the force constants",
                     "* Column and its number"));
    }
    all_numbers(file, state.fc.column(j), "the force constants of a column");
  }
  take_mean_of_triangles(file, state.fc);
  read_frequencies(file, state.printed.frequencies);
  return state;
}

}  // namespace vbn
