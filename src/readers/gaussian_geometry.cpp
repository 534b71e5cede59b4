// Compares the geometries of a Gaussian calculation by the change of the forces when each is rotated.
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord

#include <algorithm>
#include <string>

#include "molecule/external_motion.hpp"  // for rotational_residual
#include "molecule/geometry.hpp"         // for largest_difference
#include "readers/programs.hpp"          // for gaussian_log_coord_before, gaussian_fchk_coord
#include "readers/scan.hpp"              // for search_word_free_last

namespace vbn {

namespace {

constexpr double same_geometry = 1.0e-4;  // bohr; the log has six decimals in angstrom
constexpr double felt_limit = 0.005;      // largest relative change of the forces that counts as noise
constexpr double far_better = 0.1;        // ratio to the change with the last geometry of the log

// `rotational_residual` of the Cartesian force constants, all atoms alike.
double residual_of(const array2<double>& fc, const array2<double>& x) {
  return rotational_residual(fc, array1<double>(x.cols(), 1.0), x);
}

// The last geometry before the frequencies; false for a log without frequencies.
bool geometry_of_frequencies(input_file& log, array2<double>& x) {
  std::string_view line;
  return search_word_free_last(log, "Harmonic frequencies", line) &&
         gaussian_log_coord_before(log, log.position(), x);
}

}  // namespace

void fit_gaussian_coord(qm_file& log, qm_file& checkpoint, const array2<double>& fc, array2<double>& x) {
  if (log.kind != file_kind::gaussian_log || checkpoint.kind != file_kind::gaussian_fchk) return;
  array2<double> of_checkpoint(3, x.cols());
  array2<double> of_frequencies(3, x.cols());
  const bool another = gaussian_fchk_coord(checkpoint.file, of_checkpoint) &&
                       largest_difference(x, of_checkpoint) > same_geometry;
  const bool earlier = geometry_of_frequencies(log.file, of_frequencies) &&
                       largest_difference(x, of_frequencies) > same_geometry;
  if (!another && !earlier) return;

  const double felt = residual_of(fc, x);
  if (felt < felt_limit) return;
  const double by_checkpoint = another ? residual_of(fc, of_checkpoint) : felt;
  const double by_frequencies = earlier ? residual_of(fc, of_frequencies) : felt;
  if (std::min(by_checkpoint, by_frequencies) > far_better * felt) return;
  const bool take_checkpoint = by_checkpoint <= by_frequencies;
  x = take_checkpoint ? of_checkpoint : of_frequencies;
  log.file.warn("the last geometry of " + log.file.name() + " does not fit the force constants of " +
                checkpoint.file.name() +
                (take_checkpoint ? "; the coordinates of that file are used"
                                 : "; the last geometry before the frequencies is used"));
}

}  // namespace vbn
