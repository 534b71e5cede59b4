// What readers of whole states share: tables of atoms, matrices in blocks of columns, and checks of a state.
#include "readers/state_parts.hpp"  // for the routines

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "molecule/constants.hpp"        // for bohr_to_ang, max_element
#include "molecule/elements.hpp"         // for symbol_to_nat, nat_to_mass
#include "molecule/external_motion.hpp"  // for rotational_residual
#include "readers/rows.hpp"      // for check_natom, next_row, row_numbers, try_row_numbers, fail_missing
#include "readers/triangle.hpp"  // for force_constant_matrix, read_lower_blocks, mirror_upper
#include "text/number.hpp"       // for to_integer, to_real, shortest
#include "text/stop.hpp"         // for fail, fail_in
#include "text/words.hpp"        // for word_of, number_of_words, adjustl

namespace vbn {

namespace {

constexpr double asymmetry_limit = 1.0e-2;  // hartree/bohr^2; more is no noise of a calculation
constexpr double damage_limit = 0.1;        // the same; more is no matrix of force constants
constexpr double frame_limit = 0.05;        // largest relative change of the forces by a rotation
constexpr int dummy = -1;                   // instead of the atomic number of an atom of charge 0
constexpr int triangle_width = 6;           // columns of a block of a labelled triangle
constexpr std::size_t triangle_label = 7;   // characters before its numbers

bool is_integer(std::string_view word, int expected) {
  int i = 0;
  return to_integer(word, i) && i == expected;
}

// Atomic number of a row, 0 for none.
int element_of_row(std::string_view line, const atom_row& row) {
  if (row.charge == 0) return element_of_label(word_of(line, row.label));
  double z = 0.0;
  if (!to_real(word_of(line, row.charge), z) || z < 0.0 || z > max_element || z != std::floor(z)) return 0;
  return z == 0.0 ? dummy : static_cast<int>(z);
}

// Reads the heading of the block that begins at column `ib` and returns its number of columns.
int block_width(input_file& file, int first, int ib, int columns) {
  const std::string expected = "a line of column numbers from " + std::to_string(first + ib - 1) +
                               " on, of " + std::to_string(columns) + " columns";
  const std::string_view heading = next_row(file, expected);
  const int width = number_of_words(heading);
  for (int k = 1; k <= width; ++k) {
    if (!is_integer(word_of(heading, k), first + ib + k - 2)) {
      fail(file.here("these are not the next columns of the matrix", expected));
    }
  }
  if (ib + width - 1 > columns) {
    fail(file.here("the matrix has more columns than three for each atom", expected));
  }
  return width;
}

}  // namespace

int element_of_label(std::string_view label) {
  const auto last = label.find_last_not_of("0123456789");
  return last == std::string_view::npos ? 0 : symbol_to_nat(label.substr(0, last + 1));
}

file_state sized_state(const input_file& file, int natom) {
  check_natom(file, natom);
  file_state state;
  state.nat = array1<int>(natom);
  state.mass = array1<double>(natom);
  state.x = array2<double>(3, natom);
  state.fc = force_constant_matrix(file, natom);
  return state;
}

file_state read_atoms(input_file& file, const atom_row& row, std::string_view table) {
  std::vector<int> nat;
  std::vector<double> mass;
  std::vector<double> x;
  std::string_view line = next_row(file, std::string(table));
  const int words = number_of_words(line);
  for (bool more = true; more && number_of_words(line) == words; more = file.read_line(line)) {
    const int element = element_of_row(line, row);
    double xyz[3];
    double m = nat_to_mass(element);
    if (element == dummy) continue;
    if (element == 0 || !try_row_numbers(line, row.before_x, xyz)) break;
    if (row.mass != 0 && !to_real(word_of(line, row.mass), m)) break;
    nat.push_back(element);
    mass.push_back(m);
    x.insert(x.end(), xyz, xyz + 3);
  }
  const int natom = static_cast<int>(nat.size());
  if (natom == 0) fail(file.here("this is no row of the table of atoms", std::string(table)));
  file_state state = sized_state(file, natom);
  std::ranges::copy(nat, state.nat.begin());
  std::ranges::copy(mass, state.mass.begin());
  std::ranges::transform(x, state.x.span().begin(),
                         [&](double r) { return row.angstrom ? r / bohr_to_ang : r; });
  return state;
}

void read_square_blocks(input_file& file, int first, int words, array2<double>& a) {
  std::vector<double> row;
  for (int ib = 1, width = 0; ib <= a.cols(); ib += width) {
    width = block_width(file, first, ib, a.cols());
    row.resize(static_cast<std::size_t>(width));
    for (int i = 1; i <= a.rows(); ++i) {
      const std::string expected =
          "row " + std::to_string(first + i - 1) + " with " + std::to_string(width) + " numbers";
      const std::string_view line = next_row(file, expected);
      if (!is_integer(word_of(line, 1), first + i - 1)) {
        fail(file.here("this is not the next row of the matrix", expected));
      }
      row_numbers(file, line, words, row, expected);
      for (int k = 0; k < width; ++k) a(i, ib + k) = row[static_cast<std::size_t>(k)];
    }
  }
}

void read_labelled_triangle(input_file& file, array2<double>& a) {
  const std::string expected = "a row of the lower triangle, a label and six numbers at most";
  read_lower_blocks(
      a, triangle_width, [&](int) { next_row(file, "a line of labels of six columns"); },
      [&](std::span<double> numbers) {
        const std::string_view line = next_row(file, expected);
        row_numbers(file, line.substr(std::min(triangle_label, line.size())), 0, numbers, expected);
      });
  mirror_upper(a);
}

void take_mean_of_triangles(const input_file& file, array2<double>& fc) {
  double largest = 0.0;
  for (int i = 1; i <= fc.rows(); ++i) {
    for (int j = 1; j < i; ++j) {
      largest = std::max(largest, std::abs(fc(i, j) - fc(j, i)));
      fc(i, j) = fc(j, i) = 0.5 * (fc(i, j) + fc(j, i));
    }
  }
  const std::string shown = shortest(std::round(1.0e4 * largest) / 1.0e4) + " hartree/bohr^2";
  if (largest > damage_limit) {
    fail_in(file.name(), "the two triangles of the matrix of force constants differ by up to " + shown,
            "a symmetric matrix; rows or columns in the file may be damaged");
  }
  if (largest > asymmetry_limit) {
    file.warn("the two triangles of the force constants of " + file.name() + " differ by up to " + shown +
              "; their means are used, but the steps or the convergence of the numerical "
              "derivatives were not good enough");
  }
}

void remove_masses(const array1<double>& mass, double factor, array2<double>& fc) {
  for (int j = 1; j <= fc.cols(); ++j) {
    for (int i = 1; i <= fc.rows(); ++i) {
      fc(i, j) *= factor * std::sqrt(mass((i + 2) / 3) * mass((j + 2) / 3));
    }
  }
}

void append_numbers(std::string_view line, int words, std::vector<double>& numbers) {
  for (int k = words + 1;; ++k) {
    std::string_view word = word_of(line, k);
    const bool imaginary = word.ends_with('i');
    if (imaginary) word.remove_suffix(1);
    double r = 0.0;
    if (word == "I" && !numbers.empty()) {
      numbers.back() = -numbers.back();
    } else if (to_real(word, r)) {
      numbers.push_back(imaginary ? -r : r);
    } else {
      return;
    }
  }
}

void append_rows(input_file& file, std::string_view label, std::size_t end, std::vector<double>& numbers) {
  std::string_view line;
  while (file.position() < end && file.read_line(line)) {
    line = adjustl(line);
    if (line.starts_with(label)) append_numbers(line.substr(label.size()), 0, numbers);
  }
}

std::size_t last_before(const input_file& file, std::string_view word, std::size_t end) {
  return file.content().substr(0, end).rfind(word);
}

std::string word_after_last(const input_file& file, std::string_view marker, std::size_t end) {
  const std::size_t at = last_before(file, marker, end);
  if (at == std::string_view::npos) return {};
  const std::string_view text = file.content().substr(at + marker.size());
  return std::string(word_of(text.substr(0, text.find_first_of("\r\n")), 1));
}

std::size_t need_before(const input_file& file, std::string_view word, std::size_t end,
                        std::string_view what) {
  const std::size_t at = last_before(file, word, end);
  if (at == std::string_view::npos) {
    fail_missing(file, what,
                 "\"" + std::string(word.substr(word.find_first_not_of("\n "))) + "\"" +
                     (end == at ? "" : " before the force constants"));
  }
  return at;
}

std::string beside(const input_file& file, std::initializer_list<std::string_view> endings) {
  for (const std::string_view ending : endings) {
    std::string name = std::filesystem::path(file.name()).replace_extension(ending).string();
    std::error_code none;
    if (name != file.name() && std::filesystem::is_regular_file(name, none)) return name;
  }
  return {};
}

void check_state(const input_file& file, const file_state& state) {
  const int natom = state.natom();
  check_natom(file, natom);
  if (state.mass.size() != natom || state.x.cols() != natom || state.fc.rows() != 3 * natom) {
    fail_in(file.name(), "the force constants do not belong to " + std::to_string(natom) + " atoms",
            std::to_string(3 * natom) + " rows of as many force constants");
  }
  if (state.geometry_file.empty()) return;
  const double felt = rotational_residual(state.fc, array1<double>(natom, 1.0), state.x);
  if (felt > frame_limit) {
    fail_in(
        file.name(),
        "the geometry of " + state.geometry_file +
            " does not belong to these force constants: a rotation of the molecule changes its forces by " +
            shortest(std::round(1000.0 * felt) / 10.0) + " % of the largest",
        "the geometry of the frequency calculation, in its frame and at a stationary point");
  }
}

}  // namespace vbn
