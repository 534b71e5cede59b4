// Reads ORCA files: the Hessian file, and the output, which only leads to it.
#include <string>

#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, row_integer, fail_missing
#include "readers/scan.hpp"         // for search_word
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/stop.hpp"            // for fail, fail_in
#include "text/words.hpp"           // for word_of

namespace vbn {

namespace {

// Moves after the heading "$name" of a block; false when there is none.
bool to_block(input_file& file, std::string_view name) {
  std::string_view line;
  file.rewind();
  while (search_word(file, 1, name, line)) {
    if (word_of(line, 1) == name) return true;
  }
  return false;
}

// Moves to a block of the file that the run needs, and reads the number at its start.
int start_block(input_file& file, std::string_view name, std::string_view what) {
  if (!to_block(file, name)) fail_missing(file, what, "a line \"" + std::string(name) + "\"");
  const std::string expected = "the size of the block " + std::string(name);
  return row_integer(file, next_row(file, expected), 1, expected);
}

// The frequencies of the vibrations: translations and rotations are printed as zero.
std::vector<double> printed_frequencies(input_file& file) {
  std::vector<double> freq;
  std::string_view line;
  if (!to_block(file, "$vibrational_frequencies") || !file.skip_lines(1)) return freq;
  while (file.read_line(line) && !word_of(line, 2).empty()) append_numbers(line, 1, freq);
  std::erase(freq, 0.0);
  return freq;
}

}  // namespace

// The matrix is the full square, as the numerical derivatives gave it; the program takes the mean of both
// triangles.
file_state orca_hess_state(input_file& file) {
  const int natom = start_block(file, "$atoms", "the atoms");
  file_state state = read_atoms(file, {.label = 1, .before_x = 2, .mass = 2},
                                "the rows of $atoms: symbol, mass in amu, x, y and z in bohr");
  if (natom != state.natom()) {
    fail(file.here("the block $atoms has " + std::to_string(state.natom()) + " rows of atoms",
                   std::to_string(natom) + " rows, as its first line says"));
  }
  const int n3 = start_block(file, "$hessian", "the force constants");
  if (n3 != state.fc.rows()) {
    fail(file.here("the size of the matrix does not belong to " + std::to_string(natom) + " atoms",
                   std::to_string(state.fc.rows())));
  }
  read_square_blocks(file, 0, 1, state.fc);
  take_mean_of_triangles(file, state.fc);
  state.printed.frequencies = printed_frequencies(file);
  return state;
}

file_state orca_output_state(input_file& file) {
  const std::string name = beside(file, {".hess"});
  if (name.empty()) {
    fail_in(file.name(), "an ORCA output holds no force constants",
            "the file with the ending .hess that the frequency calculation (Freq, NumFreq or AnFreq) writes");
  }
  file.warn("an ORCA output holds no force constants: everything is read from " + name + " instead of " +
            file.name());
  input_file hess(name, file.say());
  return orca_hess_state(hess);
}

}  // namespace vbn
