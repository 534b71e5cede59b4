// Warnings about results that may not be reliable.
#include "checks/plausibility.hpp"  // for warn_of_files

#include <algorithm>
#include <cmath>
#include <string>

#include "checks/wording.hpp"            // for with_digits, of_state
#include "frame/inertial.hpp"            // for inertm
#include "molecule/constants.hpp"        // for au_to_cm, bohr_to_ang, external_modes, first_vibration
#include "molecule/external_motion.hpp"  // for rotational_residual
#include "molecule/geometry.hpp"         // for root_mean_square_of_atoms
#include "text/messages.hpp"             // for messages

namespace vbn {

namespace {

constexpr double frame_limit = 0.005;  // largest relative change of the forces by a rotation of the molecule
constexpr double linear_limit = 1.0e-3;  // distance from the axis of a linear molecule, bohr
constexpr double near_zero = 10.0;       // cm-1; a mode below it is not a vibration, or a very soft one
constexpr double far_apart = 0.3;        // root mean square distance of the geometries, angstrom
constexpr double little_alike = 0.35;    // mean square of the largest overlap of each mode

bool is_linear(const states& state) {
  array2<double> x = state.atoms.x;
  inertm(state.atoms.massau, x);
  for (int i = 1; i <= state.atoms.natom; ++i) {
    if (std::hypot(x(2, i), x(3, i)) > linear_limit) return false;
  }
  return state.atoms.natom > 1;
}

}  // namespace

void warn_of_files(const array1<states>& state, const messages& say) {
  for (int k = 1; k <= 2; ++k) {
    if (state(k).file.ifoniom) continue;  // the other layer acts on its atoms
    const double felt = rotational_residual(state(k).force.fcm(), state(k).atoms.massau, state(k).atoms.x);
    if (felt < frame_limit) continue;
    say.warn(of_state(state(k), k) + ": a rotation of the molecule changes its forces by " +
             with_digits(100.0 * felt, 1) +
             " % of the largest; the Hessian is in another frame than the geometry, or the geometry is not a "
             "stationary point");
  }
}

void warn_of_modes(const array1<states>& state, bool for_tables, const messages& say) {
  for (int k = 1; k <= 2; ++k) {
    const states& it = state(k);
    if (for_tables && is_linear(it)) {
      say.warn(of_state(it, k) +
               ": the molecule is linear and has five external modes; mode 6 is a vibration, but sums "
               "and tables from mode 7 on leave it out");
    }
    int imaginary = 0;
    int zero = 0;
    for (int i = 1; i <= it.atoms.n3; ++i) {
      const double freq = au_to_cm * it.modes.freq(i);
      if (freq < -near_zero) ++imaginary;
      if (std::abs(freq) <= near_zero) ++zero;
    }
    if (imaginary > 0) {
      say.warn(of_state(it, k) + ": " + std::to_string(imaginary) + " imaginary frequencies, the lowest " +
               with_digits(au_to_cm * it.modes.freq(1), 2) + " cm-1" +
               (for_tables ? "; they come first and move translations or rotations to higher numbers, which "
                             "then count in Delta DUSH and in the sums over vibrations"
                           : ""));
    }
    if (zero > external_modes) {
      say.warn(of_state(it, k) + ": " + std::to_string(zero) + " frequencies below " +
               with_digits(near_zero, 1) +
               " cm-1, six of which are translations and rotations; the Huang-Rhys factors of the others "
               "are not reliable");
    }
  }
}

void warn_of_distance(const array1<states>& state, const messages& say) {
  const states& one = state(1);
  const double distance = bohr_to_ang * root_mean_square_of_atoms(state(2).atoms.x, one.atoms.x);
  if (distance > far_apart) {
    say.warn(
        "the two geometries are " + with_digits(distance, 3) +
        " angstrom (root mean square) apart: another conformer or another order of the atoms, or a motion "
        "too large for Cartesian displacements");
  }
  if (one.atoms.n3 < first_vibration) return;
  double alike = 0.0;
  for (int i = first_vibration; i <= one.atoms.n3; ++i) {
    double largest = 0.0;
    for (int j = first_vibration; j <= one.atoms.n3; ++j)
      largest = std::max(largest, std::abs(one.modes.s(i, j)));
    alike += largest * largest;
  }
  alike /= one.atoms.n3 - external_modes;
  if (alike < little_alike) {
    say.warn("the modes of the two states hardly resemble each other (mean square of the largest overlaps " +
             with_digits(alike, 2) + "): another conformer or another order of the atoms");
  }
}

}  // namespace vbn
