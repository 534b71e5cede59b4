// Compares the geometries of a Gaussian calculation by the change of the forces when each is rotated.
#include "readers/gaussian_geometry.hpp"  // for fit_gaussian_coord, compare_checkpoint

#include <algorithm>
#include <cmath>
#include <string>

#include "molecule/constants.hpp"        // for bohr_to_ang
#include "molecule/external_motion.hpp"  // for rotational_residual
#include "molecule/geometry.hpp"         // for largest_difference, superposed_distance
#include "readers/programs.hpp"  // for gaussian_log_coord_before, gaussian_fchk_coord, gaussian_fchk_atoms_of
#include "readers/scan.hpp"      // for search_word_free_last
#include "text/stop.hpp"         // for fail_in

namespace vbn {

namespace {

constexpr double same_geometry = 1.0e-4;  // bohr; the log has six decimals in angstrom
constexpr double same_shape = 1.0e-3;     // bohr, root mean square after the best rotation
constexpr double far_from_log = 0.01;     // angstrom, root mean square after the best rotation
constexpr double same_mass = 3.0e-5;      // relative; natural averages of H differ from isotopes by 1.1e-4
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
  const bool has_checkpoint = gaussian_fchk_coord(checkpoint.file, of_checkpoint);
  const bool has_frequencies = geometry_of_frequencies(log.file, of_frequencies);
  const bool another = has_checkpoint && largest_difference(x, of_checkpoint) > same_geometry;
  const bool earlier = has_frequencies && largest_difference(x, of_frequencies) > same_geometry;
  if (!another && !earlier) return;

  const auto take = [&](bool from_checkpoint) {
    x = from_checkpoint ? of_checkpoint : of_frequencies;
    log.file.warn("the last geometry of " + log.file.name() + " does not fit the force constants of " +
                  checkpoint.file.name() +
                  (from_checkpoint ? "; the coordinates of that file are used"
                                   : "; the last geometry before the frequencies is used"));
  };
  // The last geometry is not that of the frequencies: a later job has another one. The force constants are
  // those of the frequencies, and the coordinates of the checkpoint are in their frame.
  if (has_frequencies && superposed_distance(x, of_frequencies) > same_shape) {
    return take(has_checkpoint && superposed_distance(of_checkpoint, of_frequencies) < same_shape);
  }
  // One shape in several orientations, or a checkpoint of another job.
  const double felt = residual_of(fc, x);
  if (felt < felt_limit) return;
  const double by_checkpoint = another ? residual_of(fc, of_checkpoint) : felt;
  const double by_frequencies = earlier ? residual_of(fc, of_frequencies) : felt;
  if (std::min(by_checkpoint, by_frequencies) > far_better * felt) return;
  take(by_checkpoint <= by_frequencies);
}

void compare_checkpoint(qm_file& log, qm_file& checkpoint, const array1<int>& nat, const array1<double>& mass,
                        const array2<double>& x) {
  if (log.kind != file_kind::gaussian_log || checkpoint.kind != file_kind::gaussian_fchk) return;
  const gaussian_fchk_atoms atoms = gaussian_fchk_atoms_of(checkpoint.file, nat.size());
  for (int i = 1; i <= atoms.nat.size(); ++i) {
    if (atoms.nat(i) == nat(i)) continue;
    fail_in(checkpoint.file.name(),
            "atom " + std::to_string(i) + " has the atomic number " + std::to_string(atoms.nat(i)) +
                ", but " + std::to_string(nat(i)) + " in " + log.file.name(),
            "the checkpoint of the same job");
  }
  for (int i = 1; i <= atoms.mass.size(); ++i) {
    if (std::abs(atoms.mass(i) - mass(i)) <= same_mass * mass(i)) continue;
    log.file.warn("atom " + std::to_string(i) + " weighs " + std::to_string(mass(i)) + " in " +
                  log.file.name() + " and " + std::to_string(atoms.mass(i)) + " in " +
                  checkpoint.file.name() + "; the mass in the log is used");
    break;
  }
  array2<double> own(3, x.cols());
  if (!gaussian_fchk_coord(checkpoint.file, own)) return;
  const double distance = bohr_to_ang * superposed_distance(x, own);
  if (distance > far_from_log) {
    log.file.warn("the geometries of " + log.file.name() + " and " + checkpoint.file.name() + " are " +
                  std::to_string(distance) + " angstrom (root mean square) apart: they are not of one job");
  }
}

}  // namespace vbn
