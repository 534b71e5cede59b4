// Correlation function from two n-fold Gaussian integrals, in sum and difference coordinates.
//
// With z = exp(-i w_f t), h = w_f t/2 and T = tanh(w_i (1/kT - i t)/2),
//   A_s = i tan h + J~^T T J~          A_d = -i cot h + J~^T 1/T J~
//   chi = 2^n |det J~| Prod (1 - e^(-w_i/kT)) (1 - y^2)^-1/2 Prod [(1 + z)(1 - z)]^-1/2
//         det(A_s)^-1/2 det(A_d)^-1/2 exp(v.A_s^-1 v - d.T d),   v = J~^T T d
// Re T and Re 1/T are positive, so all pivots have positive real parts. At T = 0 only the diagonals change
// with time. At T > 0, where the operator is 1, the determinants of
//   B_d = T + i J~ tan h J~^T          B_s = 1/T - i J~ cot h J~^T
// take the place of theirs (the lemma of the determinant of a sum): one real product each instead of two. The
// columns of large tan (or cot) are kept apart as a small border, so nothing is large.
#include "spectra/correlation.hpp"  // for correlate

#include <algorithm>
#include <cmath>

#include "linalg/blas.hpp"         // for dgemm_
#include "linalg/blas_memory.hpp"  // for require_blas_memory
#include "linalg/ldlt.hpp"         // for factor_ldlt, solve_lower, solve_ldlt
#include "linalg/matmul.hpp"       // for matmul
#include "linalg/parallel.hpp"     // for in_parallel, item_work

namespace vbn {

namespace {

constexpr complex i_unit{0.0, 1.0};
constexpr double large = 64.0;    // |tan| or |cot| from which a mode is kept in the border
constexpr int block = 96;         // columns of a product that forms a lower triangle
constexpr std::size_t chunk = 4;  // times that a thread takes at once

// What does not depend on the time.
struct constant_part {
  const transition& t;
  const transition_operator& o;
  double kt;
  scaled_transition s;
  double log_factor = 0.0;   // n ln 2 + ln |det J~| + sum ln(1 - e^(-w_i/kT))
  array2<double> product{};  // (n,n) J~^T J~, at T = 0
  array1<double> v{};        // (n) J~^T d, at T = 0
  double d_squared = 0.0;    // d.d
  array2<double> m{};        // (3,n) dipole derivatives in scaled coordinates
  array1<double> u{}, ju{};  // (n) W_f^1/2 V, J~ of it
  bool has_operator = false;

  int n() const { return t.n(); }
};

constant_part prepare(const transition& t, const transition_operator& o, double kt) {
  constant_part c{t, o, kt, scaled(t)};
  const int n = t.n();
  c.log_factor = n * std::log(2.0) + c.s.log_det;
  for (int k = 1; k <= n; ++k) {
    c.d_squared += c.s.d(k) * c.s.d(k);
    if (kt > 0.0) c.log_factor += std::log(-std::expm1(-t.w_i(k) / kt));
  }
  if (!(kt > 0.0)) {
    c.product = matmul(c.s.j, c.s.j, op::transposed, op::plain);
    c.v = transposed_product(c.s.j, c.s.d.span());
  }
  if (o.mu1.rows() == 3) {
    c.m = o.mu1;
    for (int l = 1; l <= n; ++l)
      for (int a = 1; a <= 3; ++a) c.m(a, l) /= std::sqrt(t.w_f(l));
  }
  if (o.v.size() == n) {
    c.u = o.v;
    c.ju = array1<double>(n);
    for (int l = 1; l <= n; ++l) {
      c.u(l) *= std::sqrt(t.w_f(l));
      for (int k = 1; k <= n; ++k) c.ju(k) += c.s.j(k, l) * c.u(l);
    }
  }
  c.has_operator = c.m.rows() == 3 || c.u.size() == n;
  return c;
}

// The memory of one thread.
struct workspace {
  array2<complex> a, b;     // the two matrices
  array2<double> scaled_j;  // J~ with its rows or columns multiplied
  array2<double> re, im;    // lower triangles of products
  ldlt_panel panel;
  std::vector<complex> tanh;  // T
  std::vector<double> tan;    // tan h
  std::vector<double> weight;
};

// Sum of the principal logarithms of the pivots.
complex log_det(const array2<complex>& a) {
  complex sum = 0.0;
  for (int i = 1; i <= a.rows(); ++i) sum += std::log(a(i, i));
  return sum;
}

// The bilinear form of the columns a and b of L^-1 x with 1/D.
complex form(const array2<complex>& factors, const array2<complex>& x, int a, int b) {
  complex sum = 0.0;
  for (int i = 1; i <= x.rows(); ++i) sum += x(i, a) * x(i, b) / factors(i, i);
  return sum;
}

// Lower triangle of left x right (rows of `left` times columns of op(right)), in block columns.
void lower_product(const array2<double>& left, const array2<double>& right, bool transposed,
                   array2<double>& to) {
  const int n = left.rows();
  const double one = 1.0;
  const double zero = 0.0;
  for (int j = 1; j <= n; j += block) {
    const int columns = std::min(block, n - j + 1);
    const int rows = n - j + 1;
    if (transposed) {  // left^T right
      dgemm_("T", "N", &rows, &columns, &n, &one, &left(1, j), &n, &right(1, j), &n, &zero, &to(j, j), &n);
    } else {  // left right^T
      dgemm_("N", "T", &rows, &columns, &n, &one, &left(j, 1), &n, &right(j, 1), &n, &zero, &to(j, j), &n);
    }
  }
}

// tan h of each mode of f, T of each mode of i; returns the sum of ln(1 - y^2).
complex set_phases(const constant_part& c, double time, workspace& w) {
  complex logs = 0.0;
  for (int k = 1; k <= c.n(); ++k) {
    const auto at = static_cast<std::size_t>(k - 1);
    w.tan[at] = std::tan(0.5 * c.t.w_f(k) * time);
    if (c.kt > 0.0) {
      const complex y = std::exp(-c.t.w_i(k) * complex(1.0 / c.kt, -time));
      w.tanh[at] = (1.0 - y) / (1.0 + y);
      logs += std::log((1.0 - y) * (1.0 + y));
    } else {
      w.tanh[at] = 1.0;
    }
  }
  return logs;
}

// J~^T diag(f) J~ into `to`, f one of T and 1/T.
void form_thermal(const constant_part& c, bool inverse, workspace& w, array2<complex>& to) {
  const int n = c.n();
  for (const bool imaginary : {false, true}) {
    for (int l = 1; l <= n; ++l) {
      for (int k = 1; k <= n; ++k) {
        const complex tanh = w.tanh[static_cast<std::size_t>(k - 1)];
        const complex f = inverse ? 1.0 / tanh : tanh;
        w.scaled_j(k, l) = (imaginary ? f.imag() : f.real()) * c.s.j(k, l);
      }
    }
    lower_product(w.scaled_j, c.s.j, true, imaginary ? w.im : w.re);
  }
  for (int l = 1; l <= n; ++l)
    for (int k = l; k <= n; ++k) to(k, l) = {w.re(k, l), w.im(k, l)};
}

// ln(1 + z) and ln(1 - z), from the same half angle.
complex log_plus(double h) { return std::log(2.0 * std::cos(h) * std::exp(-i_unit * h)); }
complex log_minus(double h) { return std::log(2.0 * i_unit * std::sin(h) * std::exp(-i_unit * h)); }

// Sets A_s in w.a and A_d in w.b.
void form_direct(const constant_part& c, workspace& w) {
  const int n = c.n();
  if (c.kt > 0.0) {
    form_thermal(c, false, w, w.a);
    form_thermal(c, true, w, w.b);
  } else {
    for (int l = 1; l <= n; ++l)
      for (int k = l; k <= n; ++k) w.a(k, l) = w.b(k, l) = c.product(k, l);
  }
  for (int l = 1; l <= n; ++l) {
    const double tan = w.tan[static_cast<std::size_t>(l - 1)];
    w.a(l, l) += i_unit * tan;
    w.b(l, l) -= i_unit / tan;
  }
}

// J~^T f J~ u from J~ u.
array1<complex> thermal_times(const constant_part& c, const workspace& w, bool inverse) {
  array1<complex> product(c.n());
  for (int l = 1; l <= c.n(); ++l) {
    for (int k = 1; k <= c.n(); ++k) {
      const complex tanh = w.tanh[static_cast<std::size_t>(k - 1)];
      product(l) += c.s.j(k, l) * (inverse ? 1.0 / tanh : tanh) * c.ju(k);
    }
  }
  return product;
}

// The parts with operators, from the factors of A_s (w.a) and A_d (w.b); `origin` for t = 0, where A_d is
// infinite. `v` is J~^T T d. Follows Borrelli, Capobianco and Peluso (2012) for the moments of the integrals.
void add_operators(const constant_part& c, const workspace& w, const array1<complex>& v, bool origin,
                   correlation_value& value, std::span<complex> shares) {
  const int n = c.n();
  if (c.m.rows() == 3) {
    array2<complex> s(n, 4);  // v and the derivatives
    array2<complex> d(n, 3);
    for (int l = 1; l <= n; ++l) {
      s(l, 4) = v(l);
      for (int a = 1; a <= 3; ++a) s(l, a) = d(l, a) = c.m(a, l);
    }
    solve_lower(w.a, s);
    if (!origin) solve_lower(w.b, d);
    complex mixed = 0.0;
    complex ht = 0.0;
    for (int a = 1; a <= 3; ++a) {
      const complex eta = -form(w.a, s, a, 4);
      const complex spread = form(w.a, s, a, a) - (origin ? complex(0.0) : form(w.b, d, a, a));
      mixed += 2.0 * c.o.mu0(a) * eta;
      ht += 0.5 * spread + eta * eta;
    }
    value.dipole_mixed = value.fc * mixed;
    value.dipole_ht = value.fc * ht;
  }
  if (c.u.size() != n) return;
  // <P P^T> u = [D A_d^-1 N_d - C A_s^-1 N_s] u/2 + c (c.u), with C = i tan h, D = -i cot h, c = -C A_s^-1 v
  array2<complex> s(n, 2);
  array2<complex> d(n, 1);
  const array1<complex> s_u = thermal_times(c, w, false);
  const array1<complex> d_u = thermal_times(c, w, true);
  for (int l = 1; l <= n; ++l) {
    s(l, 1) = v(l);
    s(l, 2) = s_u(l);
    d(l, 1) = d_u(l);
  }
  solve_ldlt(w.a, s);
  if (!origin) solve_ldlt(w.b, d);
  complex along = 0.0;
  for (int l = 1; l <= n; ++l) along -= i_unit * w.tan[static_cast<std::size_t>(l - 1)] * s(l, 1) * c.u(l);
  for (int l = 1; l <= n; ++l) {
    const complex tangent = i_unit * w.tan[static_cast<std::size_t>(l - 1)];
    const complex of_d = origin ? d(l, 1) : d(l, 1) / tangent;
    const complex share = c.u(l) * (0.5 * (of_d - tangent * s(l, 2)) - tangent * s(l, 1) * along);
    shares[static_cast<std::size_t>(l - 1)] = value.fc * share;
    value.ic += value.fc * share;
  }
}

// The value from A_s and A_d.
correlation_value direct_value(const constant_part& c, double time, workspace& w, std::span<complex> shares) {
  const int n = c.n();
  const bool origin = time == 0.0;
  complex log_chi = c.log_factor - 0.5 * set_phases(c, time, w);
  form_direct(c, w);
  array1<complex> v(n);
  complex d_t_d = c.d_squared;
  if (c.kt > 0.0) {
    d_t_d = 0.0;
    for (int k = 1; k <= n; ++k) d_t_d += c.s.d(k) * c.s.d(k) * w.tanh[static_cast<std::size_t>(k - 1)];
    for (int l = 1; l <= n; ++l)
      for (int k = 1; k <= n; ++k) v(l) += c.s.j(k, l) * (c.s.d(k) * w.tanh[static_cast<std::size_t>(k - 1)]);
  } else {
    for (int l = 1; l <= n; ++l) v(l) = c.v(l);
  }
  factor_ldlt(w.a, w.panel);
  correlation_value value;
  if (origin) {
    value.fc = 1.0;
  } else {
    factor_ldlt(w.b, w.panel);
    for (int l = 1; l <= n; ++l) {
      const double h = 0.5 * c.t.w_f(l) * time;
      log_chi -= 0.5 * (log_plus(h) + log_minus(h));
    }
    array2<complex> x(n, 1);
    for (int l = 1; l <= n; ++l) x(l, 1) = v(l);
    solve_lower(w.a, x);
    value.fc = std::exp(log_chi - 0.5 * (log_det(w.a) + log_det(w.b)) + form(w.a, x, 1, 1) - d_t_d);
  }
  if (c.has_operator) add_operators(c, w, v, origin, value, shares);
  return value;
}

// Sets the lower triangle of f + i J~ g J~^T, g being tan h or -cot h and f T or 1/T; modes with a large g
// are left out and returned.
std::vector<int> form_reduced(const constant_part& c, bool cotangent, workspace& w, array2<complex>& to) {
  const int n = c.n();
  std::vector<int> border;
  for (int l = 1; l <= n; ++l) {
    const double tan = w.tan[static_cast<std::size_t>(l - 1)];
    double g = cotangent ? -1.0 / tan : tan;
    if (!(std::abs(g) < large)) {
      border.push_back(l);
      g = 0.0;
    }
    for (int k = 1; k <= n; ++k) w.scaled_j(k, l) = g * c.s.j(k, l);
  }
  lower_product(w.scaled_j, c.s.j, false, w.re);
  for (int l = 1; l <= n; ++l) {
    for (int k = l; k <= n; ++k) to(k, l) = {0.0, w.re(k, l)};
    const complex tanh = w.tanh[static_cast<std::size_t>(l - 1)];
    to(l, l) += cotangent ? 1.0 / tanh : tanh;
  }
  return border;
}

// ln det of one reduced matrix with its border, less what cancels between the two; `form_of_d` becomes
// d.B^-1 d when it is asked for.
complex reduced_log_det(const constant_part& c, bool cotangent, double time, workspace& w,
                        complex* form_of_d) {
  const int n = c.n();
  const std::vector<int> border = form_reduced(c, cotangent, w, w.a);
  factor_ldlt(w.a, w.panel);
  const int kept = static_cast<int>(border.size());
  array2<complex> x(n, kept + 1);
  for (int l = 1; l <= kept; ++l)
    for (int k = 1; k <= n; ++k) x(k, l) = c.s.j(k, border[static_cast<std::size_t>(l - 1)]);
  for (int k = 1; k <= n; ++k) x(k, kept + 1) = c.s.d(k);
  solve_lower(w.a, x);
  complex logs = log_det(w.a);
  if (form_of_d != nullptr) *form_of_d = form(w.a, x, kept + 1, kept + 1);
  if (kept > 0) {  // 1/(i g) + J~^T B^-1 J~ of the border
    array2<complex> small(kept, kept);
    array2<complex> y(kept, 1);
    for (int l = 1; l <= kept; ++l) {
      for (int k = l; k <= kept; ++k) small(k, l) = form(w.a, x, k, l);
      const double tan = w.tan[static_cast<std::size_t>(border[static_cast<std::size_t>(l - 1)] - 1)];
      small(l, l) += cotangent ? i_unit * tan : -i_unit / tan;
      y(l, 1) = form(w.a, x, l, kept + 1);
    }
    factor_ldlt(small, w.panel);
    solve_lower(small, y);
    logs += log_det(small);
    if (form_of_d != nullptr) *form_of_d -= form(small, y, 1, 1);
  }
  for (int l = 1; l <= n; ++l) {
    const double h = 0.5 * c.t.w_f(l) * time;
    const bool in_border = std::ranges::find(border, l) != border.end();
    logs += in_border != cotangent ? log_minus(h) : log_plus(h);
  }
  return logs;
}

// The value without operator at T > 0.
correlation_value reduced_value(const constant_part& c, double time, workspace& w) {
  correlation_value value;
  value.fc = 1.0;
  if (time == 0.0) return value;
  const complex log_thermal = set_phases(c, time, w);
  complex form_of_d = 0.0;
  const complex logs = log_thermal + reduced_log_det(c, true, time, w, &form_of_d) +
                       reduced_log_det(c, false, time, w, nullptr);
  value.fc = std::exp(c.log_factor - 0.5 * logs - form_of_d);
  return value;
}

workspace memory_of(const constant_part& c) {
  const int n = c.n();
  const auto size = static_cast<std::size_t>(n);
  workspace w;
  w.a = array2<complex>(n, n);
  if (!(c.kt > 0.0) || c.has_operator) w.b = array2<complex>(n, n);
  if (c.kt > 0.0) w.scaled_j = w.re = array2<double>(n, n);
  if (c.kt > 0.0 && c.has_operator) w.im = array2<double>(n, n);
  w.tanh.resize(size);
  w.tan.resize(size);
  return w;
}

}  // namespace

std::size_t correlation_memory(int n) {
  return static_cast<std::size_t>(n) * static_cast<std::size_t>(n) *
         (2 * sizeof(complex) + 3 * sizeof(double));
}

correlation correlate(const transition& t, const transition_operator& o, double kt,
                      std::span<const double> times, int threads, const progress_counter& done) {
  require_blas_memory();
  const constant_part c = prepare(t, o, kt);
  correlation all{kt, {times.begin(), times.end()}, {}, {}};
  all.values.resize(times.size());
  if (c.u.size() == c.n()) all.ic_share = array2<complex>(c.n(), static_cast<int>(times.size()));
  double mu0_squared = 0.0;
  for (const double a : o.mu0) mu0_squared += a * a;

  in_parallel(times.size(), chunk, threads, [&]() -> item_work {
    return [&, w = memory_of(c)](std::size_t i) mutable {
      const std::span<complex> shares =
          all.ic_share.rows() > 0 ? all.ic_share.column(static_cast<int>(i) + 1) : std::span<complex>();
      all.values[i] = c.has_operator || !(kt > 0.0) ? direct_value(c, times[i], w, shares)
                                                    : reduced_value(c, times[i], w);
      all.values[i].dipole_fc = mu0_squared * all.values[i].fc;
      if (done) done(1);
    };
  });
  return all;
}

}  // namespace vbn
