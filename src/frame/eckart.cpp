// The candidate rotations, the choice among them, and their effect on state 1.
#include "frame/eckart.hpp"  // for do_eckart

#include <cmath>
#include <vector>

#include "frame/inertial.hpp"      // for add_dipole_turn
#include "frame/rotation.hpp"      // for rotn, rotate_force
#include "linalg/eigen.hpp"        // for tred2e, tql2e
#include "linalg/vector3.hpp"      // for make_right_handed
#include "molecule/constants.hpp"  // for bohr_to_ang
#include "molecule/geometry.hpp"   // for root_mean_square_of_coordinates
#include "text/layout.hpp"         // for layout
#include "text/output_file.hpp"    // for output_file

namespace vbn {

namespace {

constexpr double widest_fixed = 1.0e6;  // angstrom; a distance from here on is printed with an exponent
constexpr int ncandidate = 4;

// Signs of the three outer products of axes in each candidate: an even number is negative.
constexpr double candidate_signs[ncandidate][3] = {
    {+1.0, +1.0, +1.0},
    {-1.0, -1.0, +1.0},
    {+1.0, -1.0, -1.0},
    {-1.0, +1.0, -1.0},
};

// Eigenvectors of a symmetric 3 x 3 matrix by increasing eigenvalue, with the signs from the solver.
array2<double> axes_of(const array2<double>& a) {
  array1<double> d(3);
  array1<double> e(3);
  array2<double> z(3, 3);
  int ierr = 0;
  tred2e(a, d, e, z);
  tql2e(d, e, z, ierr);
  return z;
}

array2<double> candidate(const array3<double>& t, int j) {
  array2<double> rot(3, 3);
  for (int k = 1; k <= 3; ++k)
    for (int i = 1; i <= 3; ++i) rot(i, k) = t(i, k, j);
  return rot;
}

// Root mean square displacement per coordinate, in angstrom, between x1 rotated by `rot` and x2.
double distance(array2<double> x1, const array2<double>& x2, const array2<double>& rot) {
  rotn(rot, x1.span());
  return bohr_to_ang * root_mean_square_of_coordinates(x1, x2);
}

void report_candidates(output_file& fout, const array3<double>& t, const array1<double>& dis, int minj) {
  static const layout rule("(80(1h_))");
  static const layout fixed(R"(("Eckart rotation", i4, 2x,"Delta x =", x,  f14.7))");
  static const layout scientific(R"(("Eckart rotation", i4, 2x,"Delta x =", x, es18.7))");
  static const layout matrix("((3f15.7))");
  static const layout selected(R"(("Select rotation",i4))");
  for (int j = 1; j <= ncandidate; ++j) {
    fout.write(rule);
    fout.write(std::abs(dis(j)) < widest_fixed ? fixed : scientific, {j, dis(j)});
    std::vector<double> by_rows;
    for (int i = 1; i <= 3; ++i)
      for (int k = 1; k <= 3; ++k) by_rows.push_back(t(i, k, j));
    fout.write(matrix, by_rows);
  }
  fout.write(rule);
  fout.write(selected, {minj});
}

}  // namespace

array3<double> get_eckart_rot(const array2<double>& x1, const array2<double>& x2,
                              const array1<double>& mass) {
  array2<double> a(3, 3);
  array2<double> a1(3, 3);
  array2<double> a2(3, 3);
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j)
      for (int k = 1; k <= x1.cols(); ++k) a(i, j) += mass(k) * x1(i, k) * x2(j, k);
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 3; ++j) {
      for (int k = 1; k <= 3; ++k) {
        a1(i, j) += a(i, k) * a(j, k);
        a2(i, j) += a(k, i) * a(k, j);
      }
    }
  }

  array2<double> z1 = axes_of(a1);
  array2<double> z2 = axes_of(a2);
  make_right_handed(z1);
  for (int k = 1; k <= 2; ++k) {
    double overlap = 0.0;
    for (int i = 1; i <= 3; ++i) overlap += z2(i, k) * z1(i, k);
    if (overlap < 0.0)
      for (int i = 1; i <= 3; ++i) z2(i, k) = -z2(i, k);
  }
  make_right_handed(z2);

  array3<double> t(3, 3, ncandidate);
  for (int j = 1; j <= ncandidate; ++j) {
    for (int k = 1; k <= 3; ++k) {
      for (int i = 1; i <= 3; ++i) {
        double sum = 0.0;
        for (int axis = 1; axis <= 3; ++axis)
          sum += candidate_signs[j - 1][axis - 1] * (z2(i, axis) * z1(k, axis));
        t(i, k, j) = sum;
      }
    }
  }
  return t;
}

array2<double> do_eckart(const array2<double>& x1, const array2<double>& x2, const array1<double>& mass,
                         int set_eckart_order, output_file& fout) {
  static const layout rule("(80(1h_))");
  static const layout title(R"(("Do Eckart rotation",/))");
  static const layout manual(R"(("Set Eckart rotation matrix manually"))");
  static const layout automatic(R"(("Set Eckart rotation matrix automatically"))");
  static const layout index(R"(("The index of Eckart matrix order = ", i0))");

  const array3<double> eckart_rot_matrix = get_eckart_rot(x1, x2, mass);
  fout.write(rule);
  fout.write(title);

  array1<double> dis(ncandidate);
  for (int j = 1; j <= ncandidate; ++j) dis(j) = distance(x1, x2, candidate(eckart_rot_matrix, j));

  int minj = 1;
  if (set_eckart_order >= 1 && set_eckart_order <= ncandidate) {
    minj = set_eckart_order;
    fout.write(manual);
    fout.write(index, {set_eckart_order});
  } else {
    double mindis = 1.0e99;
    for (int j = 1; j <= ncandidate; ++j) {
      if (dis(j) < mindis) {
        mindis = dis(j);
        minj = j;
      }
    }
    fout.write(automatic);
    fout.write(index, {minj});
  }
  report_candidates(fout, eckart_rot_matrix, dis, minj);
  return candidate(eckart_rot_matrix, minj);
}

void rotate_state(const array2<double>& rot, bool with_couplings, bool with_dipole, states& g) {
  rotn(rot, g.atoms.x.span());
  rotate_force(rot, g.atoms.sqtmass, g.force);
  rotn(rot, g.modes.cm.span());
  if (with_couplings) rotn(rot, g.couplings.nacme_x.span());
  if (with_dipole) {
    rotn(rot, g.dipole.dip0.span());
    rotn(rot, g.dipole.tdipd_x.span());
    if (g.dipole.ifdip) add_dipole_turn(g.dipole, rot);
  }
}

}  // namespace vbn
