// Reads the auxiliary files of MOPAC (.aux).
#include <cstdint>
#include <span>
#include <string>

#include "molecule/constants.hpp"   // for bohr_to_ang
#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, fail_missing
#include "readers/scan.hpp"         // for search_word_free_last
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/number.hpp"          // for to_integer, to_real
#include "text/stop.hpp"            // for fail
#include "text/words.hpp"           // for word_of

namespace vbn {

namespace {

constexpr double mdyn_per_angstrom = 0.06423049;  // hartree/bohr^2
constexpr int external = 5;                       // modes after the vibrations, at least

// Moves after the last line of a key, "NAME:UNIT[count]=", and returns its count; -1 for none.
std::int64_t to_key(input_file& file, const std::string& key) {
  std::string_view line;
  int count = -1;
  if (!search_word_free_last(file, key, line)) return count;
  const std::size_t open = line.rfind('[');
  const std::size_t close = line.rfind(']');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open ||
      !to_integer(line.substr(open + 1, close - open - 1), count)) {
    fail(file.here("cannot read the number of values", "the key, [number of values]="));
  }
  return count;
}

// Moves to the values of a key that the run needs, and checks their number.
void to_values(input_file& file, const std::string& key, std::int64_t count, std::string_view what) {
  const std::int64_t found = to_key(file, key);
  if (found < 0) fail_missing(file, what, "the key " + key.substr(1) + ", which FORCE with AUX writes");
  if (found != count) {
    fail(file.here("this number of values does not belong to the atoms", std::to_string(count) + " values"));
  }
}

// The word of each value, over as many lines as they take; lines with # are comments. The next line must not
// begin with another number.
template <class Take>
void each_value(input_file& file, std::size_t count, const std::string& expected, Take take) {
  for (std::size_t read = 0; read < count;) {
    const std::string_view line = next_row(file, expected);
    if (word_of(line, 1).starts_with('#')) continue;
    for (int k = 1; !word_of(line, k).empty(); ++k, ++read) {
      if (read == count) fail(file.here("there are too many values", expected));
      if (!take(read, word_of(line, k))) fail(file.here("cannot read a value", expected));
    }
  }
  std::string_view line;
  double r = 0.0;
  if (file.read_line(line) && to_real(word_of(line, 1), r)) {
    fail(file.here("there are too many values", expected));
  }
}

void read_values(input_file& file, const std::string& key, std::span<double> numbers, std::string_view what) {
  to_values(file, key, static_cast<std::int64_t>(numbers.size()), what);
  each_value(file, numbers.size(), std::to_string(numbers.size()) + " numbers",
             [&](std::size_t i, std::string_view word) { return to_real(word, numbers[i]); });
}

}  // namespace

// The frame of the matrix is that of ORIENTATION_ATOM_X. The matrix is a lower triangle, row after row.
file_state mopac_aux_state(input_file& file) {
  const std::int64_t found = to_key(file, " ATOM_EL[");
  const int natom = static_cast<int>(found);
  if (found < 1) fail_missing(file, "the atoms", "the key ATOM_EL");
  file_state state = sized_state(file, natom);
  each_value(file, state.nat.span().size(), "element symbols", [&](std::size_t i, std::string_view word) {
    return (state.nat.span()[i] = element_of_label(word)) != 0;
  });
  read_values(file, " ORIENTATION_ATOM_X:ANGSTROMS[", state.x.span(), "the coordinates");
  for (double& r : state.x.span()) r /= bohr_to_ang;
  read_values(file, " ISOTOPIC_MASSES[", state.mass.span(), "the masses");
  const std::size_t n3 = static_cast<std::size_t>(state.fc.rows());
  std::vector<double> triangle(n3 * (n3 + 1) / 2);
  read_values(file, " HESSIAN_MATRIX:MILLIDYNES/ANGSTROM/SQRT(MASS(I)*MASS(J))[", triangle,
              "the force constants");
  std::size_t next = 0;
  for (int i = 1; i <= state.fc.rows(); ++i)
    for (int j = 1; j <= i; ++j) state.fc(i, j) = state.fc(j, i) = triangle[next++];
  remove_masses(state.mass, mdyn_per_angstrom, state.fc);
  if (to_key(file, " VIB._FREQ:CM(-1)[") == static_cast<std::int64_t>(n3)) {
    std::vector<double> freq(n3);
    read_values(file, " VIB._FREQ:CM(-1)[", freq, "the frequencies");
    freq.resize(n3 > external ? n3 - external : 0);
    state.printed.frequencies = freq;
  }
  state.printed.method = word_after_last(file, "\n METHOD=", std::string_view::npos);
  return state;
}

}  // namespace vbn
