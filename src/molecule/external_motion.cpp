// The vectors of translation and rotation.
#include "molecule/external_motion.hpp"  // for rotational_residual

#include <algorithm>
#include <cmath>
#include <span>

#include "linalg/matmul.hpp"       // for transposed_product
#include "molecule/constants.hpp"  // for external_modes
#include "molecule/geometry.hpp"   // for com

namespace vbn {

namespace {

constexpr double smallest_square = 1.0e-8;  // a vector with at most this square is not normalised
constexpr int first_rotation = 4;

double square(std::span<const double> v) {
  double sum = 0.0;
  for (const double element : v) sum += element * element;
  return sum;
}

}  // namespace

array2<double> get_trans_rot_vec(const array1<double>& mass, const array2<double>& x) {
  const int natom = x.cols();
  array2<double> v(3 * natom, external_modes);
  for (int i = 1; i <= natom; ++i) {
    const int at = 3 * (i - 1);
    const double s = std::sqrt(mass(i));
    const double px = x(1, i);
    const double py = x(2, i);
    const double pz = x(3, i);
    for (int a = 1; a <= 3; ++a) v(at + a, a) = s;
    v(at + 2, 4) = -s * pz;
    v(at + 3, 4) = s * py;
    v(at + 1, 5) = s * pz;
    v(at + 3, 5) = -s * px;
    v(at + 1, 6) = -s * py;
    v(at + 2, 6) = s * px;
  }
  return v;
}

array2<double> formtrm1(const array1<double>& mass, const array2<double>& xc) {
  array2<double> v = get_trans_rot_vec(mass, xc);
  for (int k = 1; k <= external_modes; ++k) {
    const double s2 = square(v.column(k));
    if (s2 <= smallest_square) continue;
    const double factor = 1.0 / std::sqrt(s2);
    for (double& element : v.column(k)) element *= factor;
  }
  return v;
}

double rotational_residual(const array2<double>& h, const array1<double>& mass, array2<double> x) {
  com(mass, x);
  const array2<double> v = formtrm1(mass, x);
  double largest = 0.0;
  for (int j = 1; j <= h.cols(); ++j) largest = std::max(largest, std::sqrt(square(h.column(j))));
  double felt = 0.0;
  for (int axis = first_rotation; axis <= external_modes; ++axis)
    felt = std::max(felt, std::sqrt(square(transposed_product(h, v.column(axis)).span())));
  return largest > 0.0 ? felt / largest : 0.0;
}

}  // namespace vbn
