// Moments of the energy difference of the two surfaces over the thermal state of the first.
#include "spectra/moments.hpp"  // for moments_of

#include <algorithm>
#include <cmath>

#include "linalg/matmul.hpp"  // for matmul

namespace vbn {

namespace {

// The mean square of a coordinate, coth(w/2kT)/(2w).
double mean_square(double w, double kt) { return kt > 0.0 ? 0.5 / (w * std::tanh(0.5 * w / kt)) : 0.5 / w; }

}  // namespace

line_moments moments_of(const transition& t, double kt) {
  const int n = t.n();
  double log_det = 0.0;
  array2<double> b = inverse_of(t.j, log_det);  // W_f J^-1
  for (int k = 1; k <= n; ++k)
    for (int l = 1; l <= n; ++l) b(l, k) *= t.w_f(l);
  const array2<double> g = matmul(b, b, op::transposed, op::plain);
  line_moments m;
  double variance = 0.0;
  array1<double> s(n);
  for (int k = 1; k <= n; ++k) s(k) = mean_square(t.w_i(k), kt);
  for (int k = 1; k <= n; ++k) {
    double gradient = 0.0;
    for (int l = 1; l <= n; ++l) {
      gradient += g(k, l) * t.k(l);
      const double h = g(k, l) - (k == l ? t.w_i(k) * t.w_i(k) : 0.0);
      variance += 0.5 * h * h * s(k) * s(l);
    }
    m.reorganisation += 0.5 * t.k(k) * gradient;
    m.mean += 0.5 * (g(k, k) - t.w_i(k) * t.w_i(k)) * s(k) - 0.5 * (t.w_f(k) - t.w_i(k));
    variance += gradient * gradient * s(k);
  }
  m.mean += m.reorganisation;
  m.sd = std::sqrt(variance);
  return m;
}

std::vector<pair_share> growth_of_mean(const transition& t, double kt, std::size_t count, std::size_t pairs) {
  const int n = t.n();
  double log_det = 0.0;
  const array2<double> inverse = inverse_of(t.j, log_det);
  const auto by_energy = [](const pair_share& a, const pair_share& b) { return a.energy > b.energy; };
  std::vector<std::vector<pair_share>> modes;
  for (int k = 1; k <= n; ++k) {
    const double growth = 0.5 * (mean_square(t.w_i(k), kt) - mean_square(t.w_i(k), 0.0));
    std::vector<pair_share> of_mode{{k, 0, -growth * t.w_i(k) * t.w_i(k)}};
    for (int l = 1; l <= n; ++l) {
      const double b = inverse(l, k) * t.w_f(l);
      of_mode.push_back({k, l, growth * b * b});
      of_mode.front().energy += of_mode.back().energy;
    }
    std::sort(of_mode.begin() + 1, of_mode.end(), by_energy);
    of_mode.resize(1 + std::min(pairs, static_cast<std::size_t>(n)));
    modes.push_back(std::move(of_mode));
  }
  std::ranges::sort(modes, [&](const auto& a, const auto& b) { return by_energy(a.front(), b.front()); });
  std::vector<pair_share> all;
  for (std::size_t k = 0; k < std::min(count, modes.size()); ++k)
    all.insert(all.end(), modes[k].begin(), modes[k].end());
  return all;
}

}  // namespace vbn
