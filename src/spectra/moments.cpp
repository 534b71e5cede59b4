// Moments of the energy difference of the two surfaces over the thermal state of the first.
#include "spectra/moments.hpp"  // for moments_of

#include <algorithm>
#include <cmath>
#include <utility>

#include "linalg/matmul.hpp"  // for matmul

namespace vbn {

namespace {

// The mean square of a coordinate, coth(w/2kT)/(2w).
double mean_square(double w, double kt) { return kt > 0.0 ? 0.5 / (w * std::tanh(0.5 * w / kt)) : 0.5 / w; }

// The surface of f in the coordinates of i: second derivatives and gradient at the minimum of i.
struct surface {
  array2<double> b;         // (n,n) W_f J^-1: rows the modes of f
  array2<double> g;         // (n,n) second derivatives
  array1<double> gradient;  // (n) G K
};

surface surface_of(const transition& t) {
  const int n = t.n();
  double log_det = 0.0;
  surface s{inverse_of(t.j, log_det), {}, array1<double>(n)};
  for (int k = 1; k <= n; ++k)
    for (int l = 1; l <= n; ++l) s.b(l, k) *= t.w_f(l);
  s.g = matmul(s.b, s.b, op::transposed, op::plain);
  for (int l = 1; l <= n; ++l)
    for (int k = 1; k <= n; ++k) s.gradient(k) += s.g(k, l) * t.k(l);
  return s;
}

// The second derivative that f has more than i.
double difference(const surface& s, const transition& t, int k, int l) {
  return s.g(k, l) - (k == l ? t.w_i(k) * t.w_i(k) : 0.0);
}

// The part of mode k of i in the variance.
double variance_of(const surface& s, const transition& t, double kt, int k) {
  const double mean_k = mean_square(t.w_i(k), kt);
  double sum = s.gradient(k) * s.gradient(k) * mean_k;
  for (int l = 1; l <= t.n(); ++l) {
    const double h = difference(s, t, k, l);
    sum += 0.5 * h * h * mean_k * mean_square(t.w_i(l), kt);
  }
  return sum;
}

void keep_largest(std::vector<mode_part>& parts, std::size_t count) {
  std::ranges::stable_sort(
      parts, [](const mode_part& a, const mode_part& b) { return std::abs(a.value) > std::abs(b.value); });
  parts.resize(std::min(count, parts.size()));
}

}  // namespace

line_moments moments_of(const transition& t, double kt) {
  const surface s = surface_of(t);
  line_moments m;
  double variance = 0.0;
  for (int k = 1; k <= t.n(); ++k) {
    m.reorganisation += 0.5 * t.k(k) * s.gradient(k);
    m.mean += 0.5 * difference(s, t, k, k) * mean_square(t.w_i(k), kt) - 0.5 * (t.w_f(k) - t.w_i(k));
    variance += variance_of(s, t, kt, k);
  }
  m.mean += m.reorganisation;
  m.sd = std::sqrt(variance);
  return m;
}

moment_parts parts_of_moments(const transition& t, double kt, std::size_t count, std::size_t pairs) {
  const int n = t.n();
  const surface s = surface_of(t);
  moment_parts parts;
  double variance = 0.0;
  for (int k = 1; k <= n; ++k) {
    double along = 0.0;
    for (int l = 1; l <= n; ++l) along += s.b(k, l) * t.k(l);
    parts.reorganisation.push_back({k, 0, 0.5 * along * along});
    const double growth = 0.5 * (mean_square(t.w_i(k), kt) - mean_square(t.w_i(k), 0.0));
    parts.growth.push_back({k, 0, growth * difference(s, t, k, k)});
    parts.variance.push_back({k, 0, variance_of(s, t, kt, k)});
    variance += parts.variance.back().value;
  }
  for (mode_part& part : parts.variance) part.value /= variance > 0.0 ? variance : 1.0;
  keep_largest(parts.reorganisation, count);
  keep_largest(parts.growth, count);
  keep_largest(parts.variance, count);
  std::vector<mode_part> with_pairs;
  for (const mode_part& of_mode : parts.growth) {
    const int k = of_mode.mode;
    const double growth = 0.5 * (mean_square(t.w_i(k), kt) - mean_square(t.w_i(k), 0.0));
    std::vector<mode_part> onto;
    for (int l = 1; l <= n; ++l) onto.push_back({k, l, growth * s.b(l, k) * s.b(l, k)});
    keep_largest(onto, pairs);
    with_pairs.push_back(of_mode);
    with_pairs.insert(with_pairs.end(), onto.begin(), onto.end());
  }
  parts.growth = std::move(with_pairs);
  return parts;
}

}  // namespace vbn
