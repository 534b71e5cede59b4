// Scales and exchanges the parts of a transition.
#include "spectra/transition.hpp"  // for transition

#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "linalg/blas.hpp"         // for dgetrf_, dgetri_
#include "linalg/blas_memory.hpp"  // for require_blas_memory

namespace vbn {

array2<double> inverse_of(array2<double> a, double& log_det) {
  const int n = a.rows();
  const int lwork = 64 * n;
  std::vector<int> pivots(static_cast<std::size_t>(n));
  std::vector<double> work(static_cast<std::size_t>(lwork));
  int info = 0;
  require_blas_memory();
  dgetrf_(&n, &n, a.data(), &n, pivots.data(), &info);
  if (info != 0) throw std::domain_error("singular matrix");
  log_det = 0.0;
  for (int i = 1; i <= n; ++i) log_det += std::log(std::abs(a(i, i)));
  dgetri_(&n, a.data(), &n, pivots.data(), work.data(), &lwork, &info);
  return a;
}

scaled_transition scaled(const transition& t) {
  const int n = t.n();
  scaled_transition s{array2<double>(n, n), {}, array1<double>(n), 0.0};
  for (int l = 1; l <= n; ++l)
    for (int k = 1; k <= n; ++k) s.j(k, l) = std::sqrt(t.w_i(k) / t.w_f(l)) * t.j(k, l);
  for (int k = 1; k <= n; ++k) s.d(k) = std::sqrt(t.w_i(k)) * t.k(k);
  s.inverse = inverse_of(s.j, s.log_det);
  return s;
}

transition exchanged(const transition& t) {
  const int n = t.n();
  double log_det = 0.0;
  transition other{t.w_f, t.w_i, inverse_of(t.j, log_det), array1<double>(n)};
  for (int l = 1; l <= n; ++l)
    for (int k = 1; k <= n; ++k) other.k(l) -= other.j(l, k) * t.k(k);
  return other;
}

}  // namespace vbn
