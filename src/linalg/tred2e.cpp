// Householder reduction of a symmetric matrix to tridiagonal form, with the transformation accumulated.
//
// The arithmetic is that of the published routine, operation for operation: the order of every sum and of the
// changes of every element is the same, so the results agree to the last bit. Only independent operations are
// reordered: the update of the matrix in one step is postponed to the product of the next, so that one pass
// does both, and the columns of the transformation are processed in strips.
#include <algorithm>
#include <cmath>
#include <span>

#include "linalg/eigen.hpp"         // for tred2e
#include "linalg/lane_kernels.hpp"  // for lane_kernels

namespace vbn {
namespace {

// Reduces the matrix whose row i, up to the diagonal, is in column i of w. Leaves the diagonal of the
// tridiagonal form on the diagonal of w, its subdiagonal in e, and above the diagonal of column i the vector
// u of step i, which belongs to the transformation 1 - u u^T / h with h in d(i); h = 0 where the step was
// skipped.
void reduce(array2<double>& w, array1<double>& d, array1<double>& e, const lane_kernels& kernels) {
  const int n = w.rows();
  array1<double> x(n);  // u of the step before, which with y gives the postponed update
  array1<double> y(n);
  array1<double> p(n);
  for (int i = n; i >= 2; --i) {
    const int l = i - 1;
    const std::span<double> u = w.column(i).first(static_cast<std::size_t>(l));
    for (int k = 1; k <= i; ++k) w(k, i) = w(k, i) - x(i) * y(k) - y(i) * x(k);

    double h = 0.0;
    double scale = 0.0;
    if (l > 1)
      for (const double element : u) scale += std::abs(element);
    const bool skipped = scale == 0.0;
    if (skipped) {
      e(i) = u.back();
    } else {
      for (double& element : u) {
        element /= scale;
        h += element * element;
      }
      const double f = u.back();
      const double g = -std::copysign(std::sqrt(h), f);
      e(i) = scale * g;
      h -= f * g;
      u.back() = f - g;
    }
    d(i) = h;

    kernels.update_and_multiply(l, w.data(), n, x.data(), y.data(), u.data(), p.data());
    if (skipped) {
      std::fill_n(x.begin(), l, 0.0);
      std::fill_n(y.begin(), l, 0.0);
      continue;
    }
    double f = 0.0;
    for (int j = 1; j <= l; ++j) {
      p(j) /= h;
      f += p(j) * w(j, i);
    }
    const double hh = f / (h + h);
    for (int j = 1; j <= l; ++j) {
      x(j) = w(j, i);
      y(j) = p(j) - hh * x(j);
    }
  }
  d(1) = 0.0;
  e(1) = 0.0;
}

// z := the product of the transformations that `reduce` left in w and d. Its columns are independent of each
// other; column j is included after step j.
void accumulate(const array2<double>& w, const array1<double>& d, array2<double>& z,
                const lane_kernels& kernels) {
  const int n = w.rows();
  for (int i = 2; i <= n; ++i)
    if (d(i) != 0.0)
      for (int k = 1; k < i; ++k) z(k, i) = w(k, i) / d(i);

  array2<double> strip(strip_lanes, n);
  for (int first = 1; first <= n; first += strip_lanes) {
    const int last = std::min(first + strip_lanes - 1, n);
    std::ranges::fill(strip.span(), 0.0);
    double g[strip_lanes];
    bool multiplied = false;  // g holds the product of step i with the strip
    for (int i = first; i <= n; ++i) {
      const int l = i - 1;
      if (i > first && d(i) != 0.0) {
        if (!multiplied) kernels.multiply_strip(l, w.column(i).data(), strip.data(), g);
        const double* next_u = w.column(std::min(i + 1, n)).data();
        kernels.update_and_multiply_strip(l, z.column(i).data(), next_u, strip.data(), g);
      }
      multiplied = i > last && d(i) != 0.0;
      if (i <= last) {  // column i joins
        const int lane = i - first + 1;
        for (int k = 1; k < i; ++k) strip(lane, k) = 0.0;
        strip(lane, i) = 1.0;
      }
    }
    // The vectors in these columns of z are no longer needed by any strip.
    for (int j = first; j <= last; ++j)
      for (int k = 1; k <= n; ++k) z(k, j) = strip(j - first + 1, k);
  }
}

// The lower triangle of a, stored in rows for `reduce` and reduced.
array2<double> reduced(const array2<double>& a, array1<double>& d, array1<double>& e,
                       const lane_kernels& kernels) {
  const int n = a.rows();
  array2<double> w(n, n);
  for (int j = 1; j <= n; ++j)
    for (int i = j; i <= n; ++i) w(j, i) = a(i, j);
  d = array1<double>(n);
  e = array1<double>(n);
  if (n > 0) reduce(w, d, e, kernels);
  return w;
}

void take_diagonal(const array2<double>& w, array1<double>& d) {
  for (int i = 1; i <= w.rows(); ++i) d(i) = w(i, i);
}

}  // namespace

void tred2e(const array2<double>& a, array1<double>& d, array1<double>& e, array2<double>& z,
            const lane_kernels& kernels) {
  const array2<double> w = reduced(a, d, e, kernels);
  z = array2<double>(a.rows(), a.rows());
  accumulate(w, d, z, kernels);
  take_diagonal(w, d);
}

void tred1e(const array2<double>& a, array1<double>& d, array1<double>& e) {
  take_diagonal(reduced(a, d, e, available_kernels().back()), d);
}

void tred2e(const array2<double>& a, array1<double>& d, array1<double>& e, array2<double>& z) {
  tred2e(a, d, e, z, available_kernels().back());
}

}  // namespace vbn
