// Reads the restart files of Jaguar (.01.in).
#include <string>

#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, row_numbers, row_integer, fail_missing
#include "readers/scan.hpp"         // for search_word
#include "readers/state_parts.hpp"  // for read_atoms
#include "readers/triangle.hpp"     // for read_lower_blocks, mirror_upper
#include "text/stop.hpp"            // for fail

namespace vbn {

// Cartesian coordinates in the block &zmat, and the lower triangle in the block &hess: the number of the
// first of five columns alone on a line, then rows with their number.
file_state jaguar_state(input_file& file) {
  constexpr int width = 5;
  const std::string expected = "the number of the row, then the force constants of the lower triangle";
  std::string_view line;
  if (!search_word(file, 1, "&zmat", line)) fail_missing(file, "the atoms", "the block &zmat");
  file_state state =
      read_atoms(file, {.label = 1, .before_x = 1, .angstrom = true},
                 "the rows of &zmat with Cartesian coordinates in angstrom: label, x, y and z");
  file.rewind();
  if (!search_word(file, 1, "&hess", line)) fail_missing(file, "the force constants", "the block &hess");
  const auto numbered = [&](std::string_view row, int number) {
    if (row_integer(file, row, 1, expected) != number) {
      fail(file.here("this is not number " + std::to_string(number) + " of the matrix", expected));
    }
  };
  int next_row_number = 0;
  read_lower_blocks(
      state.fc, width,
      [&](int column) {
        numbered(next_row(file, "the number of the first column of a block"), column);
        next_row_number = column;
      },
      [&](std::span<double> numbers) {
        const std::string_view row = next_row(file, expected);
        numbered(row, next_row_number++);
        row_numbers(file, row, 1, numbers, expected);
      });
  if (file.read_line(line) && !line.starts_with("&")) {
    fail(file.here("the block &hess is larger than three rows for each atom", "the line & that ends it"));
  }
  mirror_upper(state.fc);
  return state;
}

}  // namespace vbn
