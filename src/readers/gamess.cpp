// Reads GAMESS-US and Firefly files: the output, and the punch file with its output beside it.
#include <algorithm>
#include <cmath>
#include <string>

#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, skip_rows, row_integer, mass_rows, fail_missing
#include "readers/scan.hpp"         // for search_word_free
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/number.hpp"          // for to_integer, to_real
#include "text/stop.hpp"            // for fail, fail_in
#include "text/words.hpp"           // for word_of, adjustl, trim

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;
constexpr std::size_t label_columns = 20;  // before the numbers of a row of the output
constexpr std::size_t number_columns = 9;  // of each of its numbers, without blanks between them
constexpr int block_columns = 6;           // two atoms
constexpr std::size_t punch_label = 5;     // number of the row and of its line
constexpr std::size_t punch_columns = 15;
constexpr int punch_width = 5;
constexpr double punch_digits = 1.0e-5;  // hartree/bohr^2, difference to the 6 decimals of the output

constexpr std::string_view heading = "CARTESIAN FORCE CONSTANT MATRIX";

// Number k, from 0, of a line of columns without blanks between them.
double column_number(const input_file& file, std::string_view line, std::size_t first, std::size_t width,
                     int k, const std::string& expected) {
  const std::size_t at = first + static_cast<std::size_t>(k) * width;
  double r = 0.0;
  if (at >= line.size() || !to_real(trim(adjustl(line.substr(at, width))), r)) {
    fail(file.here("cannot read the line", expected));
  }
  return r;
}

// Blocks of two atoms, each with the rows from its first atom on.
void read_blocks(input_file& file, array2<double>& fc) {
  for (int ib = 1; ib <= fc.cols(); ib += block_columns) {
    const int last = std::min(ib + block_columns - 1, fc.cols());
    const std::string numbers = "the numbers of the atoms of the next block, from " +
                                std::to_string((ib + 2) / 3) + " on, their symbols, and X, Y, Z";
    if (row_integer(file, next_row(file, numbers), 1, numbers) != (ib + 2) / 3) {
      fail(file.here("this is not the next block of the matrix", numbers));
    }
    for (int k = 1; k <= 2; ++k) next_row(file, numbers);
    for (int i = ib; i <= fc.rows(); ++i) {
      const char axis = "XYZ"[(i - 1) % 3];
      const std::string expected =
          "a row with \"" + std::string(1, axis) + "\" in column 20 and numbers in nine columns each";
      const std::string_view line = next_row(file, expected);
      if (line.size() < label_columns || line[label_columns - 1] != axis) {
        fail(file.here("this is not the next row of the matrix", expected));
      }
      for (int j = ib; j <= last; ++j) {
        fc(i, j) = column_number(file, line, label_columns, number_columns, j - ib, expected);
        if (i > last) fc(j, i) = fc(i, j);
      }
    }
  }
}

// The geometry printed last before the matrix: that of the input in bohr, or a later one of an optimisation
// in angstrom. Elements follow from the charges, since labels are free.
file_state atoms_before(input_file& file, std::size_t matrix) {
  constexpr std::string_view rows = "the rows of the geometry: symbol, nuclear charge, x, y and z";
  const std::size_t input = need_before(file, "COORDINATES (BOHR)", matrix, "the geometry");
  const std::size_t later = last_before(file, "COORDINATES OF ALL ATOMS ARE (ANGS)", matrix);
  const bool angstrom = later != none && later > input;
  file.seek_line_after(angstrom ? later : input);
  skip_rows(file, angstrom ? 2 : 1, "the heading of the geometry");
  return read_atoms(file, {.charge = 2, .before_x = 2, .angstrom = angstrom}, rows);
}

void read_masses(input_file& file, array1<double>& mass) {
  std::string_view line;
  if (!search_word_free(file, "ATOMIC WEIGHTS (AMU)", line)) return;
  mass_rows(file, 3, mass);
}

// The frequencies without those that the output names as rotations and translations.
void read_frequencies(input_file& file, std::vector<double>& freq) {
  std::string_view line;
  int first = 0;
  int last = 0;
  if (!search_word_free(file, "ARE TAKEN AS ROTATIONS AND TRANSLATIONS", line) ||
      !to_integer(word_of(line, 2), first) || !to_integer(word_of(line, 4), last))
    return;
  append_rows(file, "FREQUENCY:", none, freq);
  const int count = static_cast<int>(freq.size());
  if (first < 1 || last < first || last > count) return freq.clear();
  freq.erase(freq.begin() + first - 1, freq.begin() + last);
}

// Rows of the block $HESS: number of the row modulo 100, number of the line, five numbers in columns.
void read_punched(input_file& file, array2<double>& fc) {
  for (int i = 1; i <= fc.rows(); ++i) {
    for (int j = 1; j <= fc.cols(); j += punch_width) {
      const std::string expected = "row " + std::to_string(i) + ", with its number modulo 100 in two columns";
      const std::string_view line = next_row(file, expected);
      int row = -1;
      if (!to_integer(trim(adjustl(line.substr(0, 2))), row) || row != i % 100) {
        fail(file.here("this is not the next row of the matrix", expected));
      }
      for (int k = 0; k < punch_width && j + k <= fc.cols(); ++k)
        fc(i, j + k) = column_number(file, line, punch_label, punch_columns, k, expected);
    }
  }
}

}  // namespace

file_state gamess_output_state(input_file& file) {
  const std::size_t matrix = last_before(file, heading, none);
  if (matrix == none) {
    fail_missing(file, "the force constants",
                 "\"" + std::string(heading) + "\", which RUNTYP=HESSIAN prints");
  }
  file_state state = atoms_before(file, matrix);
  file.seek_line_after(matrix);
  skip_rows(file, 1, "the rule under the heading of the matrix");
  read_blocks(file, state.fc);
  take_mean_of_triangles(file, state.fc);
  read_masses(file, state.mass);
  read_frequencies(file, state.printed.frequencies);
  return state;
}

file_state gamess_punch_state(input_file& file) {
  const std::string name = beside(file, {".out", ".log", ".gamout"});
  if (name.empty()) {
    fail_in(file.name(), "the block $HESS has no geometry",
            "the output of the same job beside it, with the ending .out, .log or .gamout");
  }
  input_file output(name, file.say());
  file_state state = gamess_output_state(output);
  const array2<double> printed = state.fc;
  const std::size_t block = need_before(file, "$HESS", none, "the force constants");
  file.seek_line_after(block);
  skip_rows(file, 1, "the line of energies");
  read_punched(file, state.fc);
  take_mean_of_triangles(file, state.fc);
  for (std::size_t k = 0; k < printed.span().size(); ++k) {
    if (std::abs(printed.span()[k] - state.fc.span()[k]) < punch_digits) continue;
    fail_in(file.name(), "the force constants are not those of the output " + name,
            "the punch file and the output of one job");
  }
  return state;
}

}  // namespace vbn
