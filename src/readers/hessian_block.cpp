// Reads the block "$hessian" of xtb and Turbomole, whose geometry is in another file.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "molecule/constants.hpp"   // for bohr_to_ang
#include "molecule/elements.hpp"    // for average_mass
#include "readers/programs.hpp"     // for hessian_block_state
#include "readers/rows.hpp"         // for skip_rows, try_row_numbers
#include "readers/state_parts.hpp"  // for sized_state, element_of_label, take_mean_of_triangles
#include "text/number.hpp"          // for to_real
#include "text/stop.hpp"            // for fail, fail_in
#include "text/words.hpp"           // for word_of, number_of_words, trim, adjustl

namespace vbn {

namespace {

constexpr std::size_t none = std::string_view::npos;

// The first of the names that is a file in the folder of `file`; otherwise the run ends with all of them.
std::string partner(const input_file& file, std::initializer_list<std::string_view> names) {
  const std::filesystem::path folder = std::filesystem::path(file.name()).parent_path();
  std::string all;
  for (const std::string_view name : names) {
    std::string path = (folder / name).string();
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path, ignored)) return path;
    all.append(all.empty() ? "" : " or ").append(path);
  }
  fail_in(file.name(), "this file holds no geometry, and there is no " + all,
          "the optimised geometry of the same calculation beside the force constants");
}

// A geometry in the XYZ format (symbol, x, y, z in angstrom), or the block "$coord" of Turbomole (x, y, z in
// bohr, symbol, perhaps further words). The size of the force constants is checked with that of their file.
file_state read_geometry(input_file& geometry, const input_file& matrix) {
  const std::size_t block = geometry.content().find("$coord");
  const bool xyz_format = block == none;
  if (xyz_format) {
    skip_rows(geometry, 2, "the number of atoms and the title");
  } else {
    geometry.seek_line_after(block);
  }
  std::vector<int> nat;
  std::vector<double> x;
  for (std::string_view line; geometry.read_line(line) && !line.starts_with('$') && !trim(line).empty();) {
    double xyz[3];
    const int element = element_of_label(word_of(line, xyz_format ? 1 : 4));
    if (element == 0 || !try_row_numbers(line, xyz_format ? 1 : 0, xyz)) {
      fail(geometry.here("cannot read an atom",
                         xyz_format ? "symbol, x, y and z in angstrom" : "x, y, z in bohr and the symbol"));
    }
    nat.push_back(element);
    for (const double component : xyz) x.push_back(xyz_format ? component / bohr_to_ang : component);
  }
  if (nat.empty()) fail_in(geometry.name(), "the geometry has no atoms", "a row for each atom");
  file_state state = sized_state(matrix, static_cast<int>(nat.size()));
  std::ranges::copy(nat, state.nat.begin());
  std::ranges::copy(x, state.x.span().begin());
  return state;
}

// The numbers of a block up to the next "$". Turbomole writes the row and the part of the row in the first
// five columns, which xtb leaves blank.
std::vector<double> block_numbers(input_file& file, bool& numbered) {
  constexpr std::size_t label = 5;
  std::vector<double> numbers;
  for (std::string_view line; file.read_line(line) && !line.starts_with('$');) {
    const bool has_label = !trim(line.substr(0, label)).empty();
    numbered = numbered || has_label;
    const std::string_view row = has_label ? line.substr(std::min(label, line.size())) : line;
    for (int k = 1; k <= number_of_words(row); ++k) {
      double number = 0.0;
      if (!to_real(word_of(row, k), number)) {
        fail(file.here("cannot read a row of the matrix",
                       "force constants; a block that begins with \"level\" is a guess of an optimisation"));
      }
      numbers.push_back(number);
    }
  }
  return numbers;
}

void take_square(const input_file& file, const std::vector<double>& numbers, file_state& state) {
  const std::size_t n3 = 3 * static_cast<std::size_t>(state.natom());
  if (numbers.size() != n3 * n3) {
    fail_in(file.name(),
            std::to_string(numbers.size()) + " force constants do not belong to the " +
                std::to_string(state.natom()) + " atoms of " + state.geometry_file,
            std::to_string(n3 * n3) + " numbers, or the geometry of the same calculation");
  }
  std::ranges::copy(numbers, state.fc.span().begin());
  take_mean_of_triangles(file, state.fc);
}

// The weights of aoforce; those of hydrogen and carbon are of 1961.
double weight_of_aoforce(int nat) { return nat == 1 ? 1.00797 : nat == 6 ? 12.01115 : average_mass(nat); }

}  // namespace

file_state hessian_block_state(input_file& file) {
  std::size_t heading = file.content().starts_with("$hessian") ? 0 : file.content().find("\n$hessian");
  if (heading == none) heading = file.content().find("\n$nprhessian");
  if (heading == none) heading = 0;  // "$nprhessian" in the first line
  const std::string_view first = file.seek_line_after(heading == 0 ? 0 : heading + 1);
  if (first.find("file=") != none) {
    fail_in(file.name(), "the force constants are in another file",
            "the file named in \"" + std::string(adjustl(first)) + "\", with the file coord beside it");
  }
  bool numbered = false;
  const std::vector<double> numbers = block_numbers(file, numbered);
  const std::string name =
      numbered ? partner(file, {"coord"}) : partner(file, {"xtbopt.xyz", "xtbopt.coord"});
  input_file atoms(name, file.say());
  file_state state = read_geometry(atoms, file);
  state.geometry_file = name;
  // Both programs weigh with natural averages.
  for (int i = 1; i <= state.natom(); ++i)
    state.mass(i) = numbered ? weight_of_aoforce(state.nat(i)) : average_mass(state.nat(i));
  take_square(file, numbers, state);
  return state;
}

}  // namespace vbn
