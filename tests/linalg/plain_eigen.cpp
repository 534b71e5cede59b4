// The published Householder and QL routines written out loop by loop.
#include "tests/linalg/plain_eigen.hpp"  // for tred2e, tql2e

#include <cmath>
#include <utility>

namespace vbn::plain {
namespace {

constexpr double machep = 2.220446049250313e-16;
constexpr int max_iterations = 30;

}  // namespace

void tred2e(const array2<double>& a, array1<double>& d, array1<double>& e, array2<double>& z) {
  const int n = a.rows();
  d = array1<double>(n);
  e = array1<double>(n);
  z = array2<double>(n, n);
  if (n == 0) return;
  for (int i = 1; i <= n; ++i)
    for (int j = 1; j <= i; ++j) z(i, j) = a(i, j);

  for (int i = n; i >= 2; --i) {
    const int l = i - 1;
    double h = 0.0;
    double scale = 0.0;
    if (l > 1)
      for (int k = 1; k <= l; ++k) scale += std::abs(z(i, k));
    if (scale == 0.0) {
      e(i) = z(i, l);
    } else {
      for (int k = 1; k <= l; ++k) {
        z(i, k) /= scale;
        h += z(i, k) * z(i, k);
      }
      double f = z(i, l);
      double g = -std::copysign(std::sqrt(h), f);
      e(i) = scale * g;
      h -= f * g;
      z(i, l) = f - g;
      f = 0.0;
      for (int j = 1; j <= l; ++j) {
        z(j, i) = z(i, j) / h;
        g = 0.0;
        for (int k = 1; k <= j; ++k) g += z(j, k) * z(i, k);
        for (int k = j + 1; k <= l; ++k) g += z(k, j) * z(i, k);
        e(j) = g / h;
        f += e(j) * z(i, j);
      }
      const double hh = f / (h + h);
      for (int j = 1; j <= l; ++j) {
        f = z(i, j);
        g = e(j) - hh * f;
        e(j) = g;
        for (int k = 1; k <= j; ++k) z(j, k) = z(j, k) - f * e(k) - g * z(i, k);
      }
    }
    d(i) = h;
  }

  d(1) = 0.0;
  e(1) = 0.0;
  for (int i = 1; i <= n; ++i) {
    const int l = i - 1;
    if (d(i) != 0.0) {
      for (int j = 1; j <= l; ++j) {
        double g = 0.0;
        for (int k = 1; k <= l; ++k) g += z(i, k) * z(k, j);
        for (int k = 1; k <= l; ++k) z(k, j) -= g * z(k, i);
      }
    }
    d(i) = z(i, i);
    z(i, i) = 1.0;
    for (int j = 1; j <= l; ++j) {
      z(i, j) = 0.0;
      z(j, i) = 0.0;
    }
  }
}

void tql2e(array1<double>& d, array1<double>& e, array2<double>& z, int& ierr) {
  const int n = d.size();
  ierr = 0;
  if (n <= 1) return;
  for (int i = 2; i <= n; ++i) e(i - 1) = e(i);
  e(n) = 0.0;
  double f = 0.0;
  double b = 0.0;

  for (int l = 1; l <= n; ++l) {
    int iteration = 0;
    double h = (std::abs(d(l)) + std::abs(e(l))) * machep;
    if (b < h) b = h;
    int m = l;
    while (m < n && !(std::abs(e(m)) <= b)) ++m;
    if (m > l) {
      do {
        if (iteration == max_iterations) {
          ierr = l;
          return;
        }
        ++iteration;
        double g = d(l);
        double p = (d(l + 1) - g) / (2.0 * e(l));
        double r = std::sqrt(p * p + 1.0);
        d(l) = e(l) / (p + std::copysign(r, p));
        h = g - d(l);
        for (int i = l + 1; i <= n; ++i) d(i) -= h;
        f += h;
        p = d(m);
        double c = 1.0;
        double s = 0.0;
        for (int i = m - 1; i >= l; --i) {
          g = c * e(i);
          h = c * p;
          if (std::abs(p) >= std::abs(e(i))) {
            c = e(i) / p;
            r = std::sqrt(c * c + 1.0);
            e(i + 1) = s * p * r;
            s = c / r;
            c = 1.0 / r;
          } else {
            c = p / e(i);
            r = std::sqrt(c * c + 1.0);
            e(i + 1) = s * e(i) * r;
            s = 1.0 / r;
            c = c * s;
          }
          p = c * d(i) - s * g;
          d(i + 1) = h + s * (c * g + s * d(i));
          for (int k = 1; k <= n; ++k) {
            h = z(k, i + 1);
            z(k, i + 1) = s * z(k, i) + c * h;
            z(k, i) = c * z(k, i) - s * h;
          }
        }
        e(l) = s * p;
        d(l) = c * p;
      } while (std::abs(e(l)) > b);
    }
    d(l) += f;
  }

  for (int i = 1; i < n; ++i) {
    int k = i;
    for (int j = i + 1; j <= n; ++j)
      if (d(j) < d(k)) k = j;
    if (k == i) continue;
    std::swap(d(i), d(k));
    for (int j = 1; j <= n; ++j) std::swap(z(j, i), z(j, k));
  }
}

}  // namespace vbn::plain
