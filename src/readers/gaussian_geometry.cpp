// Compares the geometries of a Gaussian calculation by how little its force constants feel a turn of each.
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "readers/programs.hpp"  // for gaussian_log_coord, gaussian_fchk_coord
#include "readers/scan.hpp"  // for search_word_free_last, search_word_del_space, search_word_last_del_space
#include "text/stop.hpp"     // for warn

namespace vbn {

namespace {

constexpr double same_geometry = 1.0e-4;  // bohr; the log has six decimals in angstrom
constexpr double felt_limit = 0.005;      // part of the Hessian that a turn may feel as noise
constexpr double far_better = 0.1;        // part of what the last geometry of the log feels

// Largest difference of two geometries in a coordinate.
double distance(const array2<double>& a, const array2<double>& b) {
  double largest = 0.0;
  for (int i = 1; i <= a.cols(); ++i) {
    for (int k = 1; k <= 3; ++k) largest = std::max(largest, std::abs(a(k, i) - b(k, i)));
  }
  return largest;
}

// How much of its largest force a turn of the geometry about its middle feels by the force constants: the
// length of the force over all three axes, in parts of the longest column of the matrix times the length of
// the step.
double turn_felt(const array2<double>& fc, const array2<double>& x) {
  double middle[3] = {0.0, 0.0, 0.0};
  for (int i = 1; i <= x.cols(); ++i) {
    for (int k = 1; k <= 3; ++k) middle[k - 1] += x(k, i) / x.cols();
  }
  double longest = 0.0;
  for (int j = 1; j <= fc.cols(); ++j) {
    const std::span<const double> column = fc.column(j);
    longest = std::max(longest, std::inner_product(column.begin(), column.end(), column.begin(), 0.0));
  }
  double force2 = 0.0;
  double step2 = 0.0;
  for (int axis = 0; axis < 3; ++axis) {
    const int a = (axis + 1) % 3;
    const int b = (axis + 2) % 3;
    std::vector<double> force(static_cast<std::size_t>(fc.rows()), 0.0);
    const auto move = [&](int j, double step) {
      const std::span<const double> column = fc.column(j);
      for (std::size_t i = 0; i < force.size(); ++i) force[i] += column[i] * step;
      step2 += step * step;
    };
    for (int i = 1; i <= x.cols(); ++i) {
      move(3 * (i - 1) + a + 1, -(x(b + 1, i) - middle[b]));
      move(3 * (i - 1) + b + 1, x(a + 1, i) - middle[a]);
    }
    for (const double f : force) force2 += f * f;
  }
  return longest * step2 > 0.0 ? std::sqrt(force2 / (longest * step2)) : 0.0;
}

// The last geometry before the frequencies; false when it is the last of the log, or is not told.
bool geometry_of_frequencies(input_file& log, array2<double>& x) {
  constexpr std::string_view heading = "Center Atomic Atomic Coordinates";
  std::string_view line;
  if (!search_word_free_last(log, "Harmonic frequencies", line)) return false;
  const std::size_t frequencies = log.position();
  if (!search_word_del_space(log, heading, line)) return false;
  input_file before = input_file::from_memory(log.name(), log.content().substr(0, frequencies));
  if (!search_word_last_del_space(before, heading, line)) return false;
  gaussian_log_coord(before, x);
  return true;
}

}  // namespace

void fit_gaussian_coord(qm_file& log, qm_file& checkpoint, const array2<double>& fc, array2<double>& x) {
  if (log.kind != file_kind::gaussian_log || checkpoint.kind != file_kind::gaussian_fchk) return;
  array2<double> of_checkpoint(3, x.cols());
  array2<double> of_frequencies(3, x.cols());
  const bool another =
      gaussian_fchk_coord(checkpoint.file, of_checkpoint) && distance(x, of_checkpoint) > same_geometry;
  const bool earlier =
      geometry_of_frequencies(log.file, of_frequencies) && distance(x, of_frequencies) > same_geometry;
  if (!another && !earlier) return;

  const double felt = turn_felt(fc, x);
  if (felt < felt_limit) return;
  const double by_checkpoint = another ? turn_felt(fc, of_checkpoint) : felt;
  const double by_frequencies = earlier ? turn_felt(fc, of_frequencies) : felt;
  if (std::min(by_checkpoint, by_frequencies) > far_better * felt) return;
  const bool take_checkpoint = by_checkpoint <= by_frequencies;
  x = take_checkpoint ? of_checkpoint : of_frequencies;
  warn("the last geometry of " + log.file.name() + " does not fit the force constants of " +
       checkpoint.file.name() +
       (take_checkpoint ? "; the coordinates of that file are taken"
                        : "; the last geometry before the frequencies is taken"));
}

}  // namespace vbn
