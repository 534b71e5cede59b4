// Principal axes of inertia, the choice among them against a reference, and the step for one state.
#include "frame/inertial.hpp"  // for get_inertial

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "frame/rotation.hpp"      // for rotn, rot_fc
#include "linalg/eigen.hpp"        // for diag_symm, tred2e, tql2e
#include "linalg/matmul.hpp"       // for matmul, transposed
#include "linalg/vector3.hpp"      // for make_right_handed
#include "molecule/constants.hpp"  // for bohr_to_ang
#include "molecule/geometry.hpp"   // for com, root_sum_square, root_mean_square_of_coordinates
#include "text/fixed_text.hpp"     // for text
#include "text/layout.hpp"         // for layout
#include "text/messages.hpp"       // for messages

namespace vbn {

namespace {

constexpr double geometry_eps = 0.001;  // bohr; geometries that differ by more are reported as different
constexpr double turn_eps = 1.0e-6;     // a rotation this close to the identity counts as none

// The identity and the rotations by 180 degrees about x, y, z, as diagonals.
constexpr double axis_signs[4][3] = {
    {+1.0, +1.0, +1.0},
    {+1.0, -1.0, -1.0},
    {-1.0, +1.0, -1.0},
    {-1.0, -1.0, +1.0},
};

// Shifts the centre of mass of `x` to the origin and returns the inertia tensor.
array2<double> centred_inertia_tensor(const array1<double>& mass, array2<double>& x) {
  com(mass, x);
  array2<double> moment(3, 3);
  for (int i = 1; i <= x.cols(); ++i) {
    const double m = mass(i);
    const double px = x(1, i);
    const double py = x(2, i);
    const double pz = x(3, i);
    moment(1, 1) += m * (py * py + pz * pz);
    moment(2, 2) += m * (pz * pz + px * px);
    moment(3, 3) += m * (px * px + py * py);
    moment(1, 2) -= m * px * py;
    moment(2, 3) -= m * py * pz;
    moment(3, 1) -= m * pz * px;
  }
  moment(2, 1) = moment(1, 2);
  moment(3, 2) = moment(2, 3);
  moment(1, 3) = moment(3, 1);
  return moment;
}

// The rotation whose rows are the axes in the columns of `vector`, made right-handed.
array2<double> rotation_onto_axes(array2<double> vector) {
  for (int k = 1; k <= 3; ++k) {
    if (max_abs(vector.column(k)) < 0.0)
      for (int a = 1; a <= 3; ++a) vector(a, k) = -vector(a, k);
  }
  make_right_handed(vector);
  return transposed(vector);
}

// Centres `x` and returns the rotation to its principal axes.
array2<double> principal_rotation(const array1<double>& mass, array2<double>& x) {
  const array2<double> moment = centred_inertia_tensor(mass, x);
  array1<double> eval(3);
  array2<double> vector(3, 3);
  int info = 0;
  diag_symm(moment, eval, vector, info);
  return rotation_onto_axes(vector);
}

// One of the four sign variants of a rotation.
array2<double> sign_variant(int itype, const array2<double>& rotation) {
  array2<double> variant(3, 3);
  for (int j = 1; j <= 3; ++j)
    for (int i = 1; i <= 3; ++i) variant(i, j) = axis_signs[itype - 1][i - 1] * rotation(i, j);
  return variant;
}

// Prints a geometry that differs from that of the frequency file.
void tell_mismatch(const states& state, double d, const text<200>& file, const array2<double>& x_file,
                   const messages& say) {
  static const layout title(
      R"((2x,"The coordinate of atom in file ", a,   " is not equal to that in the file ", a))");
  static const layout coordinates("(6f15.7)");
  say.tell_free({d, geometry_eps});
  say.tell(title, {state.file.ffreq.trimmed(), file.trimmed()});
  for (int i = 1; i <= state.atoms.natom; ++i) {
    say.tell(coordinates, {state.atoms.x(1, i) * bohr_to_ang, state.atoms.x(2, i) * bohr_to_ang,
                           state.atoms.x(3, i) * bohr_to_ang, x_file(1, i), x_file(2, i), x_file(3, i)});
  }
}

void report_if_apart(const states& state, const text<200>& file, const array2<double>& x_file,
                     const messages& say) {
  const double d = root_mean_square_of_coordinates(state.atoms.x, x_file);
  if (d > geometry_eps) tell_mismatch(state, d, file, x_file, say);
}

}  // namespace

void inertm(const array1<double>& mass, array2<double>& x) {
  const array2<double> moment = centred_inertia_tensor(mass, x);
  array1<double> eval(3);
  array1<double> wk(3);
  array2<double> vector(3, 3);
  int ierr = 0;
  tred2e(moment, eval, wk, vector);
  tql2e(eval, wk, vector, ierr);
  rotn(rotation_onto_axes(vector), x.span());
}

void inertm_fc(const array1<double>& mass, array2<double>& x, array2<double>& fc, array2<double>& vector) {
  vector = principal_rotation(mass, x);
  rotn(vector, x.span());
  rot_fc(vector, fc);
}

array2<double> inertmv2_ref(const array1<double>& mass, const array2<double>& x1, array2<double>& x,
                            std::span<double> v1, std::span<double> v2) {
  const array2<double> principal = principal_rotation(mass, x);
  double test_min = 1.0e99;
  int itype_min = 1;
  for (int itype = 1; itype <= 4; ++itype) {
    array2<double> x2 = x;
    rotn(sign_variant(itype, principal), x2.span());
    const double test_dx = root_sum_square(x2, x1) / x.cols();
    if (test_dx < test_min) {
      test_min = test_dx;
      itype_min = itype;
    }
  }
  array2<double> rotation = sign_variant(itype_min, principal);
  rotn(rotation, x.span());
  rotn(rotation, v1);
  rotn(rotation, v2);
  return rotation;
}

array2<double> inertmv_ref(const array1<double>& mass, const array2<double>& x1, array2<double>& x,
                           std::span<double> v) {
  return inertmv2_ref(mass, x1, x, v, {});
}

double max_abs(std::span<const double> v) {
  double largest = 0.0;
  for (const double element : v)
    if (std::abs(element) > std::abs(largest)) largest = element;
  return largest;
}

void get_inertial(states& state, const messages& say) {
  atom_data& atoms = state.atoms;
  array2<double> fc = fcm_to_fc(atoms.sqtmass, state.force.fcm());
  array2<double> vector;
  inertm_fc(atoms.massau, atoms.x, fc, vector);
  state.force.set_fc(atoms.sqtmass, std::move(fc));

  coupling_data& couplings = state.couplings;
  if (couplings.ifnac) {
    inertmv_ref(atoms.mass, atoms.x, couplings.x_nac, couplings.nacme_x.span());
    report_if_apart(state, couplings.fnacm, couplings.x_nac, say);
  }
  dipole_data& dipole = state.dipole;
  if (dipole.ifdip) {
    // The dipole component is the leading index of `tdipd_x`, so a vector of components follows each
    // displacement.
    const array2<double> rotation =
        inertmv2_ref(atoms.mass, atoms.x, dipole.x_dip, dipole.dip0.span(), dipole.tdipd_x.span());
    add_dipole_turn(dipole, rotation);
    report_if_apart(state, dipole.ftdipd, dipole.x_dip, say);
  }
}

void add_dipole_turn(dipole_data& dipole, const array2<double>& rot) {
  dipole.dip_turn = dipole.dip_turn.rows() == 0 ? rot : matmul(rot, dipole.dip_turn);
}

void warn_of_dipole_turn(const dipole_data& dipole, const messages& say) {
  const array2<double>& rot = dipole.dip_turn;
  double largest = 0.0;
  for (int i = 1; i <= rot.rows(); ++i)
    for (int j = 1; j <= rot.cols(); ++j)
      largest = std::max(largest, std::abs(rot(i, j) - (i == j ? 1.0 : 0.0)));
  if (largest <= turn_eps) return;
  say.warn(
      "the transition dipole derivatives in " + dipole.ftdipd.str() +
      " are in another frame than the modes; only their dipole components are rotated, so the derivatives "
      "along the modes are not reliable: use a file in the frame of the final coordinates in the log");
}

}  // namespace vbn
