// Tests of axes, frames and the motions that stand behind numbers of modes.
#include "checks/orientation.hpp"  // for warn_of_symmetry_axes

#include <algorithm>
#include <cmath>
#include <string>

#include "checks/wording.hpp"            // for with_digits
#include "linalg/matmul.hpp"             // for matmul
#include "molecule/constants.hpp"        // for au_to_cm, bohr_to_ang, first_vibration, pi_value
#include "molecule/external_motion.hpp"  // for rotational_residual
#include "molecule/geometry.hpp"         // for com, root_mean_square_of_atoms, superposed_distance
#include "symmetry/point_group.hpp"      // for search_op1, symmetry_search
#include "symmetry/tables.hpp"           // for symm_op, op_name

namespace vbn {

namespace {

constexpr double same_axis = 0.5;        // cosine; below it an axis has left its place
constexpr double same_motion = 0.9;      // overlap of two modes
constexpr double other_motion = 0.5;     // overlap below which a number names another motion
constexpr double distinct = 20.0;        // cm-1; frequencies that differ less may be exchanged without harm
constexpr double rotation_limit = 1e-3;  // of an element of the rotation; .dint changes in its fourth digit
constexpr double felt_limit = 0.01;      // rotational residual of copied force constants
constexpr double apart = 0.1;            // angstrom; what a rotation alone would take away
constexpr int listed = 3;                // modes that a message names

constexpr const char* axis_name[] = {"x", "y", "z"};

// The axis onto which the rotation sends axis a (1..3).
int image_of_axis(const array2<double>& rot, int a) {
  int image = 1;
  for (int b = 2; b <= 3; ++b)
    if (std::abs(rot(b, a)) > std::abs(rot(image, a))) image = b;
  return image;
}

// The largest distance between the image of an atom and the atom onto which the operation was found to send
// it.
double image_error(const symmetry_search& found, const array2<double>& x, int p) {
  double largest = 0.0;
  for (int i = 1; i <= x.cols(); ++i) {
    double square = 0.0;
    for (int a = 1; a <= 3; ++a) {
      const double d = symm_op(a, p) * x(a, i) - x(a, found.jreln(i, p));
      square += d * d;
    }
    largest = std::max(largest, std::sqrt(square));
  }
  return largest;
}

}  // namespace

bool warn_of_symmetry_axes(const states& g, const array2<double>& before, const array2<double>& rot,
                           double symm_tol, const messages& say) {
  std::string moved;
  for (int a = 1; a <= 3; ++a) {
    if (std::abs(rot(a, a)) > same_axis) continue;
    if (!moved.empty()) moved += ", ";
    moved.append(axis_name[a - 1]).append(" to ").append(axis_name[image_of_axis(rot, a) - 1]);
  }
  if (moved.empty()) return false;
  const symmetry_search found = search_op1(before, g.atoms.nat, g.atoms.mass, symm_tol, {});
  int worst = op_e;
  double error = symm_tol;
  for (int p = op_e + 1; p <= n_symm_op; ++p) {
    if (!found.op(p)) continue;
    const double own = image_error(found, g.atoms.x, p);
    if (own <= error) continue;
    error = own;
    worst = p;
  }
  if (worst == op_e) return false;
  say.warn(
      "the rotation of state 1 onto state 2 has moved its symmetry axes (" + moved + "), and " +
      std::string(op_name(worst)) + " no longer maps it onto itself (" + with_digits(bohr_to_ang * error, 2) +
      " angstrom off): the representations of its modes are wrong; use eckart_rot = 1 with set_cart = t, "
      "which finds them before the rotation");
  return true;
}

void warn_of_representations(const array1<states>& state, const messages& say) {
  const normal_modes& g = state(1).modes;
  const normal_modes& e = state(2).modes;
  if (state(1).symmetry.new_pgrp != state(2).symmetry.new_pgrp) return;
  int count = 0;
  std::string examples;
  for (int i = first_vibration; i <= g.freq.size(); ++i) {
    for (int j = first_vibration; j <= e.freq.size(); ++j) {
      if (std::abs(g.s(i, j)) < same_motion || g.irrep(i) == e.irrep(j)) continue;
      if (++count > listed) continue;
      examples.append(examples.empty() ? "" : ", ").append(std::to_string(i)).append(" ");
      examples.append(g.irrep(i).str()).append(" and ").append(std::to_string(j)).append(" ");
      examples.append(e.irrep(j).str());
    }
  }
  if (count == 0) return;
  say.warn(
      std::to_string(count) +
      " pairs of modes are one motion (overlap above 0.9) with different representations in the two "
      "states (" +
      examples +
      "): their symmetry axes have different names, and if_symm pairs other modes; pair without if_symm");
}

bool warn_of_late_rotation(const array2<double>& rot, const messages& say) {
  double largest = 0.0;
  for (int a = 1; a <= 3; ++a)
    for (int b = 1; b <= 3; ++b) largest = std::max(largest, std::abs(rot(a, b) - (a == b ? 1.0 : 0.0)));
  if (largest < rotation_limit) return false;
  const double cosine = 0.5 * (rot(1, 1) + rot(2, 2) + rot(3, 3) - 1.0);
  const double angle = 180.0 / pi_value * std::acos(std::clamp(cosine, -1.0, 1.0));
  say.warn("eckart_rot = 1 has rotated state 1 by " + with_digits(angle, 1) +
           " degrees after its internal coordinates were set up: its columns of vbn.dint.dat depend on the "
           "orientation of its file; take them from a run with eckart_rot = 2");
  return true;
}

void warn_of_copied_force_constants(const states& from, const states& to, const messages& say) {
  array2<double> x1 = from.atoms.x;
  array2<double> x2 = to.atoms.x;
  const array1<double> alike(from.atoms.natom, 1.0);
  com(alike, x1);
  com(alike, x2);
  const double given = bohr_to_ang * root_mean_square_of_atoms(x1, x2);
  const double best = bohr_to_ang * superposed_distance(x1, x2);
  if (given - best < apart) return;
  force_constants copied;
  copied.set_fc(to.atoms.sqtmass, from.force.fc());
  const double felt = rotational_residual(copied.fcm(), to.atoms.massau, to.atoms.x);
  if (felt < felt_limit) return;
  say.warn("select_state copies the force constants of " + from.file.ffreq.str() +
           " to a geometry in another orientation: a rotation of the molecule changes its forces by " +
           with_digits(100.0 * felt, 1) + " % of the largest, and the geometries are " +
           with_digits(given, 3) + " angstrom apart, " + with_digits(best, 3) +
           " after a rotation; use two files in one orientation");
}

void warn_of_copied_modes(const normal_modes& from, const normal_modes& to, const messages& say) {
  const array2<double> s = matmul(to.cm, from.cm, op::transposed);
  int count = 0;
  std::string examples;
  for (int i = first_vibration; i <= s.rows(); ++i) {
    int nearest = i;
    for (int j = first_vibration; j <= s.rows(); ++j)
      if (std::abs(s(j, i)) > std::abs(s(nearest, i))) nearest = j;
    if (std::abs(s(i, i)) > other_motion || au_to_cm * std::abs(to.freq(i) - to.freq(nearest)) < distinct)
      continue;
    if (++count > listed) continue;
    examples.append(examples.empty() ? "" : ", ").append("mode ").append(std::to_string(i));
    examples.append(" takes ").append(with_digits(au_to_cm * to.freq(i), 1)).append(" and its motion has ");
    examples.append(with_digits(au_to_cm * to.freq(nearest), 1)).append(" cm-1");
  }
  if (count == 0) return;
  say.warn("same_hessian takes the frequencies of the other state by number, and " + std::to_string(count) +
           " of them belong to other motions (" + examples +
           "); select_state gives both states the same frequencies");
}

bool warn_of_alignment(const array2<double>& x1, const array2<double>& x2, bool rotated,
                       const messages& say) {
  const double given = bohr_to_ang * root_mean_square_of_atoms(x1, x2);
  const double best = bohr_to_ang * superposed_distance(x1, x2);
  if (given - best < std::max(apart, best)) return false;
  say.warn((rotated ? "none of the four rotations has brought state 1 onto state 2"
                    : "eckart_rot leaves the states in different orientations") +
           (": they are " + with_digits(given, 3)) + " angstrom (root mean square) apart, and " +
           with_digits(best, 3) + " in the best superposition; " +
           (rotated ? "the axes of a molecule with equal moments are not unique: use two files in nearly one "
                      "orientation"
                    : "use eckart_rot = 2, or 1"));
  return true;
}

}  // namespace vbn
