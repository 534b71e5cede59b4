// The three projections of translations and rotations out of the Hessian.
#include "frame/projection.hpp"  // for get_proj_hessian

#include <cmath>
#include <span>
#include <utility>

#include "linalg/blas.hpp"               // for ddot_
#include "linalg/matmul.hpp"             // for matmul, matmul_add
#include "molecule/constants.hpp"        // for external_modes
#include "molecule/external_motion.hpp"  // for get_trans_rot_vec, formtrm1
#include "molecule/geometry.hpp"         // for com
#include "text/messages.hpp"             // for messages

namespace vbn {

namespace {

constexpr double smallest_square = 1.0e-8;  // a vector with at most this square counts as zero
constexpr int one = 1;                      // stride of a column

double* column(array2<double>& v, int j) { return v.column(j).data(); }

double dot(int n, const double* v1, const double* v2) { return ddot_(&n, v1, &one, v2, &one); }

void vscal(double skal, std::span<double> v) {
  for (double& element : v) element *= skal;
}

// Places of the coordinates of atom i in a vector of all coordinates.
int slot(int i, int a) { return 3 * (i - 1) + a; }

// Orthonormalises columns 2 to 6 of `v` against the columns before them; column 1 is unchanged. A column that
// depends on those before it becomes zero, with lines on standard output.
void gram_schmidt(array2<double>& v, const messages& say) {
  const int n = v.rows();
  for (int i = 2; i <= external_modes; ++i) {
    double* const vi = column(v, i);
    for (int j = 1; j < i; ++j) {
      const double* const vj = column(v, j);
      const double d = dot(n, vj, vi);
      for (int k = 0; k < n; ++k) vi[k] -= d * vj[k];
    }
    const double r = dot(n, vi, vi);
    if (r > smallest_square) {
      vscal(1.0 / std::sqrt(r), v.column(i));
      continue;
    }
    for (double& element : v.column(i)) element = 0.0;
    say.tell_free({"Dependent rotation vector no.", i - 3});
    say.tell_free({"found in ECKART; assuming linear geometry"});
  }
}

// h := (I - w1) h (I - w1) with w1 = v v^T, as the sum of its terms.
void project_out(const array2<double>& v, array2<double>& h) {
  const int n = h.rows();
  array2<double> hessp = h;
  array2<double> w1(n, n);
  array2<double> w2(n, n);
  matmul_add(1.0, v, op::plain, v, op::transposed, 0.0, w1);
  matmul_add(1.0, w1, op::plain, h, op::plain, 0.0, w2);
  matmul_add(1.0, w2, op::plain, w1, op::plain, 1.0, hessp);
  matmul_add(-1.0, w1, op::plain, h, op::plain, 1.0, hessp);
  matmul_add(-1.0, h, op::plain, w1, op::plain, 1.0, hessp);
  h = hessp;
}

}  // namespace

void projtrm_rot(const array2<double>& x, const array1<double>& mass, array2<double>& hess) {
  const int n = hess.rows();
  array2<double> xc = x;
  com(mass, xc);
  const array2<double> v = formtrm1(mass, xc);
  array2<double> p(n, n);
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i <= n; ++i) {
      double sum = 0.0;
      for (int k = 1; k <= external_modes; ++k) sum += v(i, k) * v(j, k);
      p(i, j) = (i == j ? 1.0 : 0.0) - sum;
    }
  }
  hess = matmul(p, matmul(hess, p));
}

void project_xhessian_rot(const array2<double>& x, array2<double>& hess, const messages& say) {
  const int natom = x.cols();
  array2<double> v(hess.rows(), external_modes);
  // The root in single precision gives translations that are not exactly of unit length. Columns 2 and 3 are
  // normalised below; column 1 is not.
  const double vnorm = 1.0 / static_cast<double>(std::sqrt(static_cast<float>(natom)));
  for (int i = 1; i <= natom; ++i) {
    for (int a = 1; a <= 3; ++a) v(slot(i, a), a) = vnorm;
    v(slot(i, 2), 4) = x(3, i);
    v(slot(i, 3), 4) = -x(2, i);
    v(slot(i, 1), 5) = -x(3, i);
    v(slot(i, 3), 5) = x(1, i);
    v(slot(i, 1), 6) = x(2, i);
    v(slot(i, 2), 6) = -x(1, i);
  }
  gram_schmidt(v, say);
  project_out(v, hess);
}

void project_mhessian_rot(const array2<double>& x, const array1<double>& mass, array2<double>& fcm) {
  const int n = fcm.rows();
  array2<double> xc = x;
  com(mass, xc);
  array2<double> v = get_trans_rot_vec(mass, xc);
  for (int k = 1; k <= external_modes; ++k) {
    // The rotation about the axis of a linear molecule is only rounding errors; it is set to zero and not
    // normalised.
    const double square = dot(n, column(v, k), column(v, k));
    for (double& element : v.column(k))
      element = square > smallest_square ? element / std::sqrt(square) : 0.0;
  }
  gram_schmidt(v, messages());
  project_out(v, fcm);
}

void get_proj_hessian(const atom_data& atoms, int proj_hessian, force_constants& force, const messages& say) {
  if (proj_hessian == 1) {
    array2<double> fcm = force.fcm();
    projtrm_rot(atoms.x, atoms.massau, fcm);
    force.set_fcm(atoms.sqtmass, std::move(fcm));
  } else if (proj_hessian == 2) {
    array2<double> fc = force.fc();
    project_xhessian_rot(atoms.x, fc, say);
    force.set_fc(atoms.sqtmass, std::move(fc));
  } else if (proj_hessian == 3) {
    array2<double> fcm = force.fcm();
    project_mhessian_rot(atoms.x, atoms.massau, fcm);
    force.set_fcm(atoms.sqtmass, std::move(fcm));
  }
}

}  // namespace vbn
