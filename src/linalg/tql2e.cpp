// Implicit QL iteration for the eigenvalues and eigenvectors of a tridiagonal matrix.
//
// The arithmetic is that of the published routine, operation for operation. The rotations of a sweep depend
// only on d and e, and each row of z on no other row. So the iteration on d and e runs ahead and stores its
// rotations, and a batch of sweeps is applied to a strip of rows while the strip is in cache.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "linalg/eigen.hpp"         // for tql2e
#include "linalg/lane_kernels.hpp"  // for lane_kernels

namespace vbn {
namespace {

constexpr double machep = 2.220446049250313e-16;
constexpr int max_iterations = 30;
constexpr int batch = 120;  // sweeps that are stored before they are applied

// The rows of z in strips: strips(t,j,q) = z(row,j) with row = (q - 1) strip_lanes + t. Lanes past the last
// row stay 0.
array3<double> pack(const array2<double>& z) {
  const int n = z.rows();
  array3<double> strips(strip_lanes, z.cols(), (n + strip_lanes - 1) / strip_lanes);
  for (int q = 1; q <= strips.extent3(); ++q) {
    const int first = (q - 1) * strip_lanes + 1;
    const int rows = std::min(strip_lanes, n - first + 1);
    for (int j = 1; j <= z.cols(); ++j) std::copy_n(&z(first, j), rows, &strips(1, j, q));
  }
  return strips;
}

// Column j of z := column from(j) of the packed matrix.
void unpack(const array3<double>& strips, const array1<int>& from, array2<double>& z) {
  const int n = z.rows();
  for (int q = 1; q <= strips.extent3(); ++q) {
    const int first = (q - 1) * strip_lanes + 1;
    const int rows = std::min(strip_lanes, n - first + 1);
    for (int j = 1; j <= z.cols(); ++j) std::copy_n(&strips(1, from(j), q), rows, &z(first, j));
  }
}

// Sorts the eigenvalues in increasing order by selection, the first of equal ones first, and `from` with
// them.
void sort_rising(array1<double>& d, array1<int>& from) {
  const int n = d.size();
  for (int i = 1; i < n; ++i) {
    int k = i;
    for (int j = i + 1; j <= n; ++j)
      if (d(j) < d(k)) k = j;
    std::swap(d(i), d(k));
    std::swap(from(i), from(k));
  }
}

// Shifts the spectrum from eigenvalue l on and returns the shift.
double shift(array1<double>& d, const array1<double>& e, int l) {
  const double g = d(l);
  const double p = (d(l + 1) - g) / (2.0 * e(l));
  const double r = std::sqrt(p * p + 1.0);
  d(l) = e(l) / (p + std::copysign(r, p));
  const double h = g - d(l);
  for (int i = l + 1; i <= d.size(); ++i) d(i) -= h;
  return h;
}

// One QL transformation of the rows l to m of the tridiagonal matrix; the rotation of columns i and i+1 is
// stored in rotations[i-1].
void transform(array1<double>& d, array1<double>& e, int l, int m, std::span<rotation> rotations) {
  double p = d(m);
  double c = 1.0;
  double s = 0.0;
  for (int i = m - 1; i >= l; --i) {
    const double g = c * e(i);
    const double h = c * p;
    if (std::abs(p) >= std::abs(e(i))) {
      c = e(i) / p;
      const double r = std::sqrt(c * c + 1.0);
      e(i + 1) = s * p * r;
      s = c / r;
      c = 1.0 / r;
    } else {
      c = p / e(i);
      const double r = std::sqrt(c * c + 1.0);
      e(i + 1) = s * e(i) * r;
      s = 1.0 / r;
      c = c * s;
    }
    p = c * d(i) - s * g;
    d(i + 1) = h + s * (c * g + s * d(i));
    rotations[static_cast<std::size_t>(i - 1)] = {c, s};
  }
  e(l) = s * p;
  d(l) = c * p;
}

}  // namespace

void tql2e(array1<double>& d, array1<double>& e, array2<double>& z, int& ierr, const lane_kernels& kernels) {
  const int n = d.size();
  ierr = 0;
  if (n <= 1) return;
  array3<double> strips = pack(z);
  array2<rotation> rotations(n, batch);
  std::vector<sweep> sweeps;
  const auto apply = [&] {
    for (int q = 1; q <= strips.extent3(); ++q)
      kernels.rotate_strip(sweeps.data(), sweeps.size(), &strips(1, 1, q));
    sweeps.clear();
  };

  for (int i = 2; i <= n; ++i) e(i - 1) = e(i);
  e(n) = 0.0;
  double f = 0.0;
  double b = 0.0;
  for (int l = 1; l <= n && ierr == 0; ++l) {
    const double test = (std::abs(d(l)) + std::abs(e(l))) * machep;
    if (b < test) b = test;
    int m = l;
    while (m < n && !(std::abs(e(m)) <= b)) ++m;
    for (int iteration = 1; m > l; ++iteration) {
      if (iteration > max_iterations) {
        ierr = l;
        break;
      }
      f += shift(d, e, l);
      const int number = static_cast<int>(sweeps.size()) + 1;
      sweeps.push_back({l - 1, m - 1, rotations.column(number).data()});
      transform(d, e, l, m, rotations.column(number));
      if (number == batch) apply();
      if (!(std::abs(e(l)) > b)) break;
    }
    if (ierr == 0) d(l) += f;
  }
  apply();

  array1<int> from(n);
  std::iota(from.begin(), from.end(), 1);
  if (ierr == 0) sort_rising(d, from);
  unpack(strips, from, z);
}

void tql2e(array1<double>& d, array1<double>& e, array2<double>& z, int& ierr) {
  tql2e(d, e, z, ierr, available_kernels().back());
}

}  // namespace vbn
