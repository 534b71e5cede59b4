// Reads normal modes from files in Molden format and rebuilds the force constants.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "linalg/matmul.hpp"        // for matmul
#include "molecule/constants.hpp"   // for au_to_cm, amu_to_au, external_modes
#include "molecule/elements.hpp"    // for average_mass
#include "readers/programs.hpp"     // for the routines
#include "readers/rows.hpp"         // for next_row, row_numbers, fail_missing
#include "readers/scan.hpp"         // for search_word_free
#include "readers/state_parts.hpp"  // for read_atoms, append_numbers
#include "text/stop.hpp"            // for fail_in
#include "text/words.hpp"           // for word_of, number_of_words

namespace vbn {

namespace {

constexpr double overlap_limit =
    1e-3;  // of two mass-weighted modes; more moves frequencies by about its square
constexpr double linear_limit = 1e-3;  // bohr from the line through two atoms

void find_section(input_file& file, std::string_view heading, std::string_view what) {
  std::string_view line;
  file.rewind();
  if (!search_word_free(file, heading, line)) {
    fail_missing(file, what, "the section " + std::string(heading));
  }
}

std::vector<double> frequencies_of_section(input_file& file) {
  find_section(file, "[FREQ]", "the frequencies of normal modes");
  std::vector<double> freq;
  std::string_view line;
  while (file.read_line(line) && number_of_words(line) > 0 && !word_of(line, 1).starts_with('[')) {
    append_numbers(line, 0, freq);
  }
  return freq;
}

// Displacements (n3,modes), a mode a column.
array2<double> read_modes(input_file& file, int n3, int count) {
  find_section(file, "[FR-NORM-COORD]", "the normal modes");
  array2<double> modes(n3, count);
  for (int k = 1; k <= count; ++k) {
    const std::string heading = "vibration " + std::to_string(k);
    next_row(file, heading);
    for (int i = 1; i <= n3; i += 3) {
      const std::string expected = "x, y and z of an atom in " + heading;
      row_numbers(file, next_row(file, expected), 0,
                  modes.column(k).subspan(static_cast<std::size_t>(i - 1), 3), expected);
    }
  }
  return modes;
}

bool is_linear(const array2<double>& x) {
  const int n = x.cols();
  if (n < 3) return true;
  for (int i = 3; i <= n; ++i) {
    double squares = 0.0;
    double length = 0.0;
    for (int a = 1; a <= 3; ++a) {
      const int b = a % 3 + 1;
      const double cross =
          (x(a, 2) - x(a, 1)) * (x(b, i) - x(b, 1)) - (x(b, 2) - x(b, 1)) * (x(a, i) - x(a, 1));
      squares += cross * cross;
      length += (x(a, 2) - x(a, 1)) * (x(a, 2) - x(a, 1));
    }
    if (squares > linear_limit * linear_limit * length) return false;
  }
  return true;
}

// The vibrations: of all modes those of the largest frequencies, as many as the molecule has.
std::vector<int> vibrations_of(const input_file& file, const file_state& state,
                               const std::vector<double>& freq) {
  const int modes = static_cast<int>(freq.size());
  const int least = std::max(0, 3 * state.natom() - external_modes + (is_linear(state.x) ? 1 : 0));
  if (least == 0 || modes < least || modes > 3 * state.natom()) {
    fail_in(file.name(),
            "the file has " + std::to_string(modes) + " frequencies, and its molecule " +
                std::to_string(least) + " vibrations",
            "all normal modes, or a file with the force constants");
  }
  std::vector<int> order;
  for (int k = 1; k <= modes; ++k) order.push_back(k);
  const auto size = [&](int k) { return std::abs(freq[static_cast<std::size_t>(k - 1)]); };
  std::ranges::stable_sort(order, [&](int a, int b) { return size(a) > size(b); });
  order.resize(static_cast<std::size_t>(least));
  return order;
}

// The modes weighted with the roots of the masses, each of length 1.
array2<double> weighted(const array2<double>& modes, const std::vector<int>& chosen,
                        const array1<double>& mass) {
  array2<double> q(modes.rows(), static_cast<int>(chosen.size()));
  for (int k = 1; k <= q.cols(); ++k) {
    double square = 0.0;
    for (int i = 1; i <= q.rows(); ++i) {
      q(i, k) = std::sqrt(mass((i + 2) / 3)) * modes(i, chosen[static_cast<std::size_t>(k - 1)]);
      square += q(i, k) * q(i, k);
    }
    for (double& element : q.column(k)) element /= square > 0.0 ? std::sqrt(square) : 1.0;
  }
  return q;
}

// 1 for a mode without a displacement, which has no length.
double largest_overlap(const array2<double>& q) {
  const array2<double> s = matmul(q, q, op::transposed, op::plain);
  double largest = 0.0;
  for (int l = 1; l <= s.cols(); ++l)
    for (int k = 1; k <= l; ++k)
      largest = std::max(largest, k == l ? std::abs(s(k, k) - 1.0) : std::abs(s(k, l)));
  return largest;
}

}  // namespace

// Mass-weighted normal modes are orthogonal, which tells the masses of the program: those of the most
// abundant isotopes or averages. M^1/2 Q diag(w^2) Q^T M^1/2 are then the force constants without
// translations and rotations.
file_state molden_state(input_file& file) {
  const std::vector<double> freq = frequencies_of_section(file);
  find_section(file, "[FR-COORD]", "the geometry of the normal modes");
  file_state state =
      read_atoms(file, {.label = 1, .before_x = 1}, "the rows of [FR-COORD]: symbol, x, y and z in bohr");
  const std::vector<int> chosen = vibrations_of(file, state, freq);
  const array2<double> modes = read_modes(file, 3 * state.natom(), static_cast<int>(freq.size()));
  array1<double> averages = state.mass;
  for (int i = 1; i <= state.natom(); ++i) averages(i) = average_mass(state.nat(i));
  array2<double> q = weighted(modes, chosen, state.mass);
  double overlap = largest_overlap(q);
  array2<double> with_averages = weighted(modes, chosen, averages);
  const double other_overlap = largest_overlap(with_averages);
  const bool average = other_overlap < overlap;
  if (average) {
    overlap = other_overlap;
    q = std::move(with_averages);
    state.mass = averages;
  }
  char shown[32];
  std::snprintf(shown, sizeof shown, "%.1g", overlap);
  if (!(overlap <= overlap_limit)) {
    fail_in(file.name(), std::string("the mass-weighted normal modes overlap by up to ") + shown,
            "orthogonal modes (at most 0.001): modes with five decimals or more, or the force constants");
  }
  array2<double> scaled = q;
  for (int k = 1; k <= q.cols(); ++k) {
    const double w = freq[static_cast<std::size_t>(chosen[static_cast<std::size_t>(k - 1)] - 1)] / au_to_cm;
    for (double& element : scaled.column(k)) element *= w * std::abs(w);
  }
  state.fc = matmul(scaled, q, op::plain, op::transposed);
  remove_masses(state.mass, amu_to_au, state.fc);
  for (int j = 1; j <= state.fc.cols(); ++j)
    for (int i = 1; i < j; ++i) state.fc(i, j) = state.fc(j, i);
  state.printed.frequencies = freq;
  file.warn(file.name() +
            " has normal modes and no force constants: these are rebuilt from the modes (largest overlap " +
            shown + ") with " + (average ? "average masses" : "isotopic masses") +
            ", and translations and rotations carry none");
  return state;
}

}  // namespace vbn
