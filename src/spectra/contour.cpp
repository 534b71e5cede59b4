// Correlation function at complex times by LU factors, with the sign of its root followed along the path.
//
// With r(k,l) = (w_f,l/w_i,k)^1/2, o element by element and a = W_f^1/2 J^-1 K,
//   E+ = J^-T o r (1+y)(1-z) + J o 1/r (1-y)(1+z)      E- = J^-T o r (1-y)(1+z) + J o 1/r (1+y)(1-z)
//   chi = 2^n Prod (1 - e^(-w_i/kT)) (det E+ det E-)^-1/2 exp(-a.(1 - z) E+^-1 (1 - y) d)
#include "spectra/contour.hpp"  // for line_shape_at

#include <algorithm>
#include <cmath>
#include <numbers>

#include "linalg/blas.hpp"         // for zgetrf_, zgetrs_
#include "linalg/blas_memory.hpp"  // for require_blas_memory
#include "linalg/ldlt.hpp"         // for complex
#include "linalg/matmul.hpp"       // for matmul_add
#include "linalg/parallel.hpp"     // for in_parallel, item_work

namespace vbn {

namespace {

constexpr complex i_unit{0.0, 1.0};
constexpr double end_of_damping = 8.9;  // of sigma t: exp(-t^2/2) < 1e-17
constexpr double first_span = 12.0;     // standard deviations of the shifted band in the first step
constexpr double agreement = 1e-8;      // of the results of two steps, relative
constexpr double rounding = 1e-13;      // of the largest term of the sum
constexpr int most_halvings = 6;
constexpr double largest_bend = 0.5;  // of the phase between neighbouring points
constexpr int most_bisections = 12;

struct path_part {
  const transition& t;
  const transition_operator& o;
  double kt;
  scaled_transition s;
  array1<double> a;  // W_f^1/2 J^-1 K
  array1<double> u, ju;
  double log_factor = 0.0;
};

path_part prepare(const transition& t, const transition_operator& o, double kt) {
  const int n = t.n();
  path_part c{t, o, kt, scaled(t), array1<double>(n), {}, {}};
  c.log_factor = n * std::log(2.0);
  for (int k = 1; k <= n; ++k) {
    if (kt > 0.0) c.log_factor += std::log(-std::expm1(-t.w_i(k) / kt));
    for (int l = 1; l <= n; ++l) c.a(l) += c.s.inverse(l, k) * c.s.d(k);
  }
  if (o.v.size() == n) {
    c.u = c.ju = array1<double>(n);
    for (int l = 1; l <= n; ++l) {
      c.u(l) = o.v(l) * std::sqrt(t.w_f(l));
      for (int k = 1; k <= n; ++k) c.ju(k) += c.s.j(k, l) * c.u(l);
    }
  }
  return c;
}

// ln chi, its imaginary part known up to multiples of pi, and the momentum forms over chi_FC.
struct path_value {
  complex time;
  complex log_chi;
  std::vector<complex> shares;
};

complex log_det_of_lu(const array2<complex>& a, const std::vector<int>& pivots) {
  complex sum = 0.0;
  for (int i = 1; i <= a.rows(); ++i) {
    sum += std::log(a(i, i));
    if (pivots[static_cast<std::size_t>(i - 1)] != i) sum += i_unit * std::numbers::pi;
  }
  return sum;
}

void solve_lu(const array2<complex>& a, const std::vector<int>& pivots, array2<complex>& b) {
  const int n = a.rows();
  const int columns = b.cols();
  int info = 0;
  zgetrs_("N", &n, &columns, a.data(), &n, pivots.data(), b.data(), &n, &info);
}

path_value value_at(const path_part& c, complex time, bool with_shares) {
  const int n = c.t.n();
  array1<complex> y(n);
  array1<complex> z(n);
  for (int k = 1; k <= n; ++k) {
    if (c.kt > 0.0) y(k) = std::exp(-c.t.w_i(k) * (1.0 / c.kt - i_unit * time));
    z(k) = std::exp(-i_unit * c.t.w_f(k) * time);
  }
  array2<complex> plus(n, n);
  array2<complex> minus(n, n);
  for (int l = 1; l <= n; ++l) {
    for (int k = 1; k <= n; ++k) {
      const complex inverse = c.s.inverse(l, k);
      const complex j = c.s.j(k, l);
      plus(k, l) = inverse * (1.0 + y(k)) * (1.0 - z(l)) + j * (1.0 - y(k)) * (1.0 + z(l));
      minus(k, l) = inverse * (1.0 - y(k)) * (1.0 + z(l)) + j * (1.0 + y(k)) * (1.0 - z(l));
    }
  }
  std::vector<int> pivots_plus(static_cast<std::size_t>(n));
  std::vector<int> pivots_minus(static_cast<std::size_t>(n));
  int info = 0;
  zgetrf_(&n, &n, plus.data(), &n, pivots_plus.data(), &info);
  zgetrf_(&n, &n, minus.data(), &n, pivots_minus.data(), &info);
  const bool momenta = with_shares && c.u.size() == n;
  array2<complex> p(n, momenta ? 2 : 1);
  array2<complex> m(n, 1);
  for (int k = 1; k <= n; ++k) {
    p(k, 1) = (1.0 - y(k)) * c.s.d(k);
    if (!momenta) continue;
    p(k, 2) = (1.0 - y(k)) * c.ju(k);
    m(k, 1) = (1.0 + y(k)) * c.ju(k);
  }
  solve_lu(plus, pivots_plus, p);
  complex x = 0.0;
  for (int l = 1; l <= n; ++l) x -= c.a(l) * (1.0 - z(l)) * p(l, 1);
  path_value value{time, {}, {}};
  value.log_chi =
      c.log_factor + x - 0.5 * (log_det_of_lu(plus, pivots_plus) + log_det_of_lu(minus, pivots_minus));
  if (!momenta) return value;
  solve_lu(minus, pivots_minus, m);
  complex along = 0.0;
  for (int l = 1; l <= n; ++l) along -= (1.0 - z(l)) * p(l, 1) * c.u(l);
  for (int l = 1; l <= n; ++l) {
    const complex pp = 0.5 * ((1.0 + z(l)) * m(l, 1) - (1.0 - z(l)) * p(l, 2));
    value.shares.push_back(c.u(l) * (pp - (1.0 - z(l)) * p(l, 1) * along));
  }
  return value;
}

// Whether J~^T f J~ - g, f and g diagonal, is positive definite, or with `sign` -1 negative definite.
bool definite(const path_part& c, const std::vector<double>& f, const std::vector<double>& g, double sign) {
  const int n = c.t.n();
  array2<double> weighted = c.s.j;
  array2<double> a(n, n);
  for (int l = 1; l <= n; ++l) {
    a(l, l) = -sign * g[static_cast<std::size_t>(l - 1)];
    for (int k = 1; k <= n; ++k) weighted(k, l) *= sign * f[static_cast<std::size_t>(k - 1)];
  }
  matmul_add(1.0, c.s.j, op::transposed, weighted, op::plain, 1.0, a);
  int info = 0;
  dpotrf_("L", &n, a.data(), &n, &info);
  return info == 0;
}

// Whether the trace exists at t = i eta: the two Gaussian integrals of real matrices must converge.
bool exists(const path_part& c, double eta) {
  if (eta == 0.0) return true;
  if (c.kt > 0.0 && 1.0 / c.kt + eta <= 0.0) return false;
  std::vector<double> f;
  std::vector<double> g;
  for (int k = 1; k <= c.t.n(); ++k) {
    f.push_back(c.kt > 0.0 ? std::tanh(0.5 * c.t.w_i(k) * (1.0 / c.kt + eta)) : 1.0);
    g.push_back(std::tanh(0.5 * c.t.w_f(k) * eta));
  }
  if (!definite(c, f, g, 1.0)) return false;
  for (double& x : f) x = 1.0 / x;
  for (double& x : g) x = 1.0 / x;
  return definite(c, f, g, eta > 0.0 ? -1.0 : 1.0);
}

// ln chi(i eta), which is real; infinite where the trace does not exist.
double log_at_shift(const path_part& c, double eta) {
  return exists(c, eta) ? value_at(c, i_unit * eta, false).log_chi.real() : INFINITY;
}

// The shift with the smallest integrand at t = 0: a convex function, by golden section.
double best_shift(const path_part& c, double energy, double sigma) {
  const auto size = [&](double eta) {
    return -energy * eta + log_at_shift(c, eta) + 0.5 * sigma * sigma * eta * eta;
  };
  double step = 0.05 / *std::ranges::max_element(c.t.w_f);
  if (size(-step) < size(step)) step = -step;
  double near = 0.0;
  double far = step;
  while (size(2.0 * far) < size(far)) {
    near = far;
    far *= 2.0;
  }
  far *= 2.0;
  constexpr double golden = 0.6180339887498949;
  double inner = near + (1.0 - golden) * (far - near);
  double outer = near + golden * (far - near);
  double size_inner = size(inner);
  double size_outer = size(outer);
  while (std::abs(far - near) > 1e-3 * std::max(std::abs(far), std::abs(step))) {
    if (size_inner < size_outer) {
      far = outer;
      outer = inner;
      size_outer = size_inner;
      size_inner = size(inner = near + (1.0 - golden) * (far - near));
    } else {
      near = inner;
      inner = outer;
      size_inner = size_outer;
      size_outer = size(outer = near + golden * (far - near));
    }
  }
  return 0.5 * (near + far);
}

double nearest_branch(double phase, double expected) {
  return phase + std::numbers::pi * std::round((expected - phase) / std::numbers::pi);
}

// The phase at `to` on the branch that goes on from the phases at two times before, `from` the later one.
// Where it bends much, the interval is halved.
double follow(const path_part& c, const path_value& before, const path_value& from, const path_value& to,
              int depth) {
  const double slope = (from.log_chi.imag() - before.log_chi.imag()) / (from.time - before.time).real();
  const double expected = from.log_chi.imag() + slope * (to.time - from.time).real();
  const double phase = nearest_branch(to.log_chi.imag(), expected);
  if (std::abs(phase - expected) < largest_bend || depth == most_bisections) return phase;
  path_value middle = value_at(c, 0.5 * (from.time + to.time), false);
  middle.log_chi.imag(follow(c, before, from, middle, depth + 1));
  return follow(c, from, middle, to, depth + 1);
}

// Values at the times step (first + i stride) + i eta, `threads` at a time.
std::vector<path_value> values_on_path(const path_part& c, double eta, double first, double stride,
                                       std::size_t count, int threads) {
  std::vector<path_value> values(count);
  in_parallel(count, 1, threads, [&]() -> item_work {
    return [&](std::size_t i) {
      values[i] = value_at(c, complex(first + stride * static_cast<double>(i), eta), true);
    };
  });
  return values;
}

void follow_phases(const path_part& c, std::vector<path_value>& path) {
  path[0].log_chi.imag(0.0);
  // The first interval: from 0, where the phase is 0, with the slope of a short step.
  path_value start = value_at(c, path[0].time + 1e-3 * (path[1].time - path[0].time), false);
  start.log_chi.imag(nearest_branch(start.log_chi.imag(), 0.0));
  path[1].log_chi.imag(follow(c, path[0], start, path[1], 0));
  for (std::size_t i = 2; i < path.size(); ++i)
    path[i].log_chi.imag(follow(c, path[i - 2], path[i - 1], path[i], 0));
}

// What tells the precision of a sum over the path.
struct path_sum {
  double largest = 0.0;    // sum of the magnitudes of its terms
  double of_others = 0.0;  // the result from every other point
};

// The integrals over the path, into `value`.
path_sum add_up(const path_part& c, const std::vector<path_value>& path, double energy, double sigma,
                tail_value& value) {
  path_sum sum;
  const bool couplings = c.u.size() > 0;
  const double step = (path[1].time - path[0].time).real();
  value.fc = value.ic = 0.0;
  value.ic_share.assign(couplings ? static_cast<std::size_t>(c.t.n()) : 0, 0.0);
  for (std::size_t i = 0; i < path.size(); ++i) {
    const complex time = path[i].time;
    const complex term =
        (i == 0 ? 0.5 : 1.0) * step / std::numbers::pi *
        std::exp(i_unit * energy * time + path[i].log_chi - 0.5 * sigma * sigma * time * time);
    complex factor = couplings ? 0.0 : 1.0;
    for (const complex share : path[i].shares) factor += share;
    value.fc += term.real();
    sum.largest += std::abs(term * factor);
    if (i % 2 == 0) sum.of_others += 2.0 * (term * factor).real();
    for (std::size_t l = 0; l < value.ic_share.size(); ++l) {
      const double part = (term * path[i].shares[l]).real();
      value.ic_share[l] += part;
      value.ic += part;
    }
  }
  value.points = static_cast<int>(path.size());
  return sum;
}

}  // namespace

tail_value line_shape_at(const transition& t, const transition_operator& o, double kt, double energy,
                         double sigma, int threads) {
  require_blas_memory();
  const path_part c = prepare(t, o, kt);
  tail_value best;
  best.eta = best_shift(c, energy, sigma);
  const double d = 1e-3 / *std::ranges::max_element(t.w_f);
  const double curvature =
      (log_at_shift(c, best.eta + d) - 2.0 * log_at_shift(c, best.eta) + log_at_shift(c, best.eta - d)) /
      (d * d);
  const double sd = std::sqrt((std::isfinite(curvature) ? std::max(curvature, 0.0) : 0.0) + sigma * sigma);
  const double end = end_of_damping / sigma;
  std::size_t count = static_cast<std::size_t>(std::ceil(end * first_span * sd / std::numbers::pi)) + 2;
  std::vector<path_value> path =
      values_on_path(c, best.eta, 0.0, end / static_cast<double>(count), count, threads);
  double last = 0.0;
  for (int halving = 0; halving <= most_halvings; ++halving) {
    if (halving > 0) {
      const double step = end / static_cast<double>(2 * count);
      const std::vector<path_value> between = values_on_path(c, best.eta, step, 2.0 * step, count, threads);
      std::vector<path_value> both;
      for (std::size_t i = 0; i < count; ++i) {
        both.push_back(path[i]);
        both.push_back(between[i]);
      }
      path = std::move(both);
      count *= 2;
    }
    follow_phases(c, path);
    const path_sum sum = add_up(c, path, energy, sigma, best);
    const double now = c.u.size() > 0 ? best.ic : best.fc;
    best.precision = rounding * sum.largest / std::abs(now);
    if (halving == 0) last = sum.of_others;
    best.converged = std::abs(now - last) <= agreement * std::abs(now) + rounding * sum.largest;
    if (best.converged) break;
    last = now;
  }
  return best;
}

}  // namespace vbn
