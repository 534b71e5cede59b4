// The centre of mass and the distances of geometries.
#include "molecule/geometry.hpp"  // for com

#include <algorithm>
#include <cmath>

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

}  // namespace vbn
