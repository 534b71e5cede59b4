// Reads BAGEL outputs.
#include <algorithm>
#include <span>
#include <string>

#include "molecule/elements.hpp"    // for symbol_to_nat
#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, try_row_numbers, element_masses
#include "readers/state_parts.hpp"  // for the parts of a state
#include "text/stop.hpp"            // for fail

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;

// Reads { "atom" : "C", "xyz" : [ x, y, z ] }, with x, y, z in bohr; false for another line.
bool read_atom(std::string_view line, int& nat, std::span<double> xyz) {
  const std::size_t name = line.find("\"atom\" : \"");
  const std::size_t open = line.find('[');
  const std::size_t close = line.find(']');
  if (name == none || open == none || close == none || close < open) return false;
  const std::string_view label = line.substr(name + 10);
  nat = symbol_to_nat(label.substr(0, label.find('"')));
  return nat != 0 && try_row_numbers(line.substr(open + 1, close - open - 1), 0, xyz);
}

// The masses by which the matrix is divided in the block after it: averages, which are not printed.
void read_masses(input_file& file, const array2<double>& fc, array1<double>& mass) {
  const std::size_t at = file.content().find("++ Mass Weighted Hessian ++", file.position());
  if (at == none) return;
  file.seek_line_after(at);
  array2<double> weighted(fc.rows(), fc.cols());
  read_square_blocks(file, 0, 1, weighted);
  for (int i = 1; i <= mass.size(); ++i) {
    double plain = 0.0;
    double divided = 0.0;
    for (int k = 3 * i - 2; k <= 3 * i; ++k) {
      plain += fc(k, k);
      divided += weighted(k, k);
    }
    if (plain > 0.0 && divided > 0.0) mass(i) = plain / divided;
  }
}

}  // namespace

file_state bagel_state(input_file& file) {
  const std::string expected = "an atom: { \"atom\" : \"symbol\", \"xyz\" : [ x, y, z ] }";
  const std::size_t matrix = need_before(file, "++ Hessian ++", none, "the force constants");
  file.seek_line_after(need_before(file, "*** Geometry ***", matrix, "the geometry"));
  std::vector<int> nat;
  std::vector<double> x;
  int element = 0;
  double xyz[3];
  std::string_view line = next_row(file, expected);
  while (read_atom(line, element, xyz)) {
    nat.push_back(element);
    x.insert(x.end(), xyz, xyz + 3);
    if (!file.read_line(line)) break;
  }
  if (nat.empty()) fail(file.here("cannot read the line", expected));
  const int natom = static_cast<int>(nat.size());
  file_state state = sized_state(file, natom);
  std::ranges::copy(nat, state.nat.begin());
  std::ranges::copy(x, state.x.span().begin());
  element_masses(state.nat, state.mass);
  file.seek_line_after(matrix);
  read_square_blocks(file, 0, 1, state.fc);
  read_masses(file, state.fc, state.mass);
  take_mean_of_triangles(file, state.fc);
  append_rows(file, "Freq (cm-1)", none, state.printed.frequencies);
  std::erase(state.printed.frequencies, 0.0);  // translations and rotations
  return state;
}

}  // namespace vbn
