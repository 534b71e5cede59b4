// The centre of mass and the distances of geometries.
#include "molecule/geometry.hpp"  // for com

#include <algorithm>
#include <cmath>

#include "linalg/eigen.hpp"  // for eigenvalues_symm

namespace vbn {

namespace {

double sum_of_squares(const array2<double>& x1, const array2<double>& x2) {
  double sum = 0.0;
  for (int i = 1; i <= x1.cols(); ++i) {
    for (int a = 1; a <= 3; ++a) {
      const double difference = x1(a, i) - x2(a, i);
      sum += difference * difference;
    }
  }
  return sum;
}

}  // namespace

void com(const array1<double>& mass, array2<double>& x) {
  double mass_tot = 0.0;
  for (int i = 1; i <= x.cols(); ++i) mass_tot += mass(i);
  for (int a = 1; a <= 3; ++a) {
    double centre = 0.0;
    for (int i = 1; i <= x.cols(); ++i) centre += mass(i) * x(a, i);
    centre /= mass_tot;
    for (int i = 1; i <= x.cols(); ++i) x(a, i) -= centre;
  }
}

double largest_difference(const array2<double>& x1, const array2<double>& x2) {
  double largest = 0.0;
  for (int i = 1; i <= x1.cols(); ++i)
    for (int a = 1; a <= 3; ++a) largest = std::max(largest, std::abs(x1(a, i) - x2(a, i)));
  return largest;
}

double root_sum_square(const array2<double>& x1, const array2<double>& x2) {
  return std::sqrt(sum_of_squares(x1, x2));
}

double root_mean_square_of_coordinates(const array2<double>& x1, const array2<double>& x2) {
  return std::sqrt(sum_of_squares(x1, x2) / (3 * x1.cols()));
}

double root_mean_square_of_atoms(const array2<double>& x1, const array2<double>& x2) {
  return std::sqrt(sum_of_squares(x1, x2) / x1.cols());
}

double superposed_distance(const array2<double>& x1, const array2<double>& x2) {
  const int n = x1.cols();
  const array1<double> alike(n, 1.0);
  array2<double> a = x1;
  array2<double> b = x2;
  com(alike, a);
  com(alike, b);
  array2<double> s(3, 3);
  double squares = 0.0;
  for (int i = 1; i <= n; ++i) {
    for (int p = 1; p <= 3; ++p) {
      squares += a(p, i) * a(p, i) + b(p, i) * b(p, i);
      for (int q = 1; q <= 3; ++q) s(p, q) += a(p, i) * b(q, i);
    }
  }
  array2<double> quaternion(4, 4);
  quaternion(1, 1) = s(1, 1) + s(2, 2) + s(3, 3);
  for (int p = 1; p <= 3; ++p) {
    const int q = p % 3 + 1;
    const int r = q % 3 + 1;
    quaternion(1, p + 1) = quaternion(p + 1, 1) = s(q, r) - s(r, q);
    quaternion(p + 1, p + 1) = s(p, p) - s(q, q) - s(r, r);
    quaternion(p + 1, q + 1) = quaternion(q + 1, p + 1) = s(p, q) + s(q, p);
  }
  const double overlap = eigenvalues_symm(quaternion)(4);
  return std::sqrt(std::max(0.0, squares - 2.0 * overlap) / n);
}

}  // namespace vbn
