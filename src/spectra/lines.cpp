// Branch and bound over the occupations of the modes of a Gaussian state.
#include "spectra/lines.hpp"  // for find_lines

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <numeric>
#include <utility>

namespace vbn {

namespace {

using clock = std::chrono::steady_clock;

constexpr std::size_t largest_table = 20'000'000;  // values of one recursion
constexpr double least_log = -600.0;               // of its first value
// The search runs with one threshold after the other, so that an early end leaves the list of the one before.
constexpr double first_thresholds[] = {0.1,  0.05, 0.02, 0.01, 5e-3, 2e-3, 1e-3, 5e-4, 2e-4, 1e-4, 5e-5,
                                       2e-5, 1e-5, 5e-6, 2e-6, 1e-6, 5e-7, 2e-7, 1e-7, 5e-8, 2e-8};

// A Gaussian state of real wave function, in coordinates scaled to the frequencies of its modes: covariances
// of coordinates and momenta (1/2 for an empty mode) and mean coordinates.
struct gaussian_state {
  array2<double> x, p;
  array1<double> mean;

  int modes() const { return mean.size(); }
};

// The initial state over the modes of f (1..n); with `kt` before them the copies that hold the quanta of i.
gaussian_state initial_state(const transition& t, double kt) {
  const int n = t.n();
  const scaled_transition s = scaled(t);
  const int first = kt > 0.0 ? n : 0;  // modes before those of f
  gaussian_state g{array2<double>(first + n, first + n), array2<double>(first + n, first + n),
                   array1<double>(first + n)};
  for (int k = 1; k <= n; ++k) {
    const double half = kt > 0.0 ? 0.5 * t.w_i(k) / kt : INFINITY;
    const double spread = 0.5 / std::tanh(half);
    const double shared = kt > 0.0 ? 0.5 / std::sinh(half) : 0.0;
    for (int l = 1; l <= n; ++l) {
      g.mean(first + l) -= s.inverse(l, k) * s.d(k);
      for (int m = 1; m <= n; ++m) {
        g.x(first + l, first + m) += spread * s.inverse(l, k) * s.inverse(m, k);
        g.p(first + l, first + m) += spread * s.j(k, l) * s.j(k, m);
      }
      if (first == 0) continue;
      g.x(k, n + l) = g.x(n + l, k) = shared * s.inverse(l, k);
      g.p(k, n + l) = g.p(n + l, k) = -shared * s.j(k, l);
    }
    if (first > 0) g.x(k, k) = g.p(k, k) = spread;
  }
  return g;
}

// Coefficients of the generating function exp(w.A w/2 + g.w) of a state's elements between number states.
struct generator {
  array2<double> same, other;  // A within bra or ket; between bra and ket
  array1<double> linear;
  double log_empty = 0.0;  // logarithm of the probability that all modes are empty
};

generator generator_of(const gaussian_state& g, const std::vector<int>& modes) {
  const int n = static_cast<int>(modes.size());
  array2<double> x(n, n);
  array2<double> p(n, n);
  array1<double> mean(n);
  for (int l = 1; l <= n; ++l) {
    const int at = modes[static_cast<std::size_t>(l - 1)];
    mean(l) = g.mean(at);
    for (int k = 1; k <= n; ++k) {
      const int row = modes[static_cast<std::size_t>(k - 1)];
      x(k, l) = g.x(row, at) + (k == l ? 0.5 : 0.0);
      p(k, l) = g.p(row, at) + (k == l ? 0.5 : 0.0);
    }
  }
  double log_x = 0.0;
  double log_p = 0.0;
  if (n > 0) {
    x = inverse_of(std::move(x), log_x);
    p = inverse_of(std::move(p), log_p);
  }
  generator f{array2<double>(n, n), array2<double>(n, n), array1<double>(n)};
  double square = 0.0;
  for (int l = 1; l <= n; ++l) {
    for (int k = 1; k <= n; ++k) {
      f.same(k, l) = 0.5 * (p(k, l) - x(k, l));
      f.other(k, l) = (k == l ? 1.0 : 0.0) - 0.5 * (p(k, l) + x(k, l));
      f.linear(k) += x(k, l) * mean(l) / std::numbers::sqrt2;
      square += mean(k) * x(k, l) * mean(l);
    }
  }
  f.log_empty = -0.5 * (log_x + log_p + square);
  return f;
}

// The coefficients with indices up to `limits`, first index fastest, from (n_k + 1)^1/2 R(n + 1_k) = g_k R(n)
// + sum A_kl n_l^1/2 R(n - 1_l). `a(k,l)` and `g(k)` count from 0.
template <class Matrix, class Vector>
std::vector<double> coefficients(const std::vector<int>& limits, double first, const Matrix& a,
                                 const Vector& g) {
  const std::size_t rank = limits.size();
  std::vector<std::size_t> stride(rank + 1, 1);
  for (std::size_t k = 0; k < rank; ++k) stride[k + 1] = stride[k] * static_cast<std::size_t>(limits[k] + 1);
  std::vector<double> values(stride[rank]);
  std::vector<int> at(rank, 0);
  values[0] = first;
  for (std::size_t i = 1; i < values.size(); ++i) {
    for (std::size_t k = 0; ++at[k] > limits[k]; ++k) at[k] = 0;
    std::size_t k = 0;
    while (at[k] == 0) ++k;
    const std::size_t below = i - stride[k];
    double sum = g(k) * values[below];
    for (std::size_t l = k; l < rank; ++l) {
      const int quanta = at[l] - (l == k ? 1 : 0);
      if (quanta > 0) sum += a(k, l) * std::sqrt(quanta) * values[below - stride[l]];
    }
    values[i] = sum / std::sqrt(at[k]);
  }
  return values;
}

// A pattern: modes with their quanta, in the order of the search.
struct pattern {
  std::vector<int> modes, quanta;
};

class search {
 public:
  search(const transition& t, double kt)
      : t_(t), state_(initial_state(t, kt)), first_(kt > 0.0 ? t.n() : 0), rare_first_(modes_by_rarity()) {
    std::vector<int> all(static_cast<std::size_t>(state_.modes()));
    std::iota(all.begin(), all.end(), 1);
    whole_ = generator_of(state_, all);
  }

  // False when the time was over; the list is not complete then.
  bool run(double threshold, clock::time_point end) {
    threshold_ = threshold;
    end_ = end;
    ended_ = false;
    lines_.clear();
    visit({}, 1.0, rare_first_);
    return !ended_;
  }

  double overlap(const pattern& at) const {
    const std::size_t rank = at.modes.size();
    const auto a = [&](std::size_t k, std::size_t l) { return whole_.same(at.modes[k], at.modes[l]); };
    const auto g = [&](std::size_t k) { return whole_.linear(at.modes[k]); };
    const double empty = std::exp(0.5 * whole_.log_empty);
    return rank == 0 ? empty : coefficients(at.quanta, empty, a, g).back();
  }

  std::vector<vibronic_line>& lines() { return lines_; }
  std::size_t marginals() const { return marginals_; }

 private:
  // The modes that are least often excited come first: then most patterns that begin with them end at once.
  std::vector<int> modes_by_rarity() const {
    std::vector<std::pair<double, int>> found;
    for (int k = 1; k <= state_.modes(); ++k) found.emplace_back(-generator_of(state_, {k}).log_empty, k);
    std::ranges::sort(found);
    std::vector<int> order;
    order.reserve(found.size());
    for (const auto& [empty, mode] : found) order.push_back(mode);
    return order;
  }

  // The probabilities of the pattern with 0, 1, 2 ... quanta in one more mode, until less than the threshold
  // is left of `total`, the probability of the pattern. Empty when the time is over.
  std::vector<double> extended(const pattern& at, int mode, double total) {
    pattern more = at;
    more.modes.push_back(mode);
    const generator f = generator_of(state_, more.modes);
    // Of a large displacement the first value underflows; the others grow by as much as it is small.
    const double log_first = std::max(f.log_empty, least_log);
    const double scale = std::exp(f.log_empty - log_first);
    const std::size_t rank = more.modes.size();
    const auto a = [&](std::size_t k, std::size_t l) {
      const int row = static_cast<int>(k / 2) + 1;
      const int column = static_cast<int>(l / 2) + 1;
      return (k % 2 == l % 2 ? f.same : f.other)(row, column);
    };
    const auto g = [&](std::size_t k) { return f.linear(static_cast<int>(k / 2) + 1); };
    for (int highest = 3;; highest *= 2) {
      std::vector<int> limits;  // bra and ket of each mode
      std::size_t size = 1;
      for (std::size_t k = 0; k < rank; ++k) {
        const int limit = k + 1 < rank ? at.quanta[k] : highest;
        limits.insert(limits.end(), {limit, limit});
        size *= static_cast<std::size_t>(limit + 1) * static_cast<std::size_t>(limit + 1);
      }
      if (size > largest_table || clock::now() > end_) {
        ended_ = true;
        return {};
      }
      const std::vector<double> values = coefficients(limits, std::exp(log_first), a, g);
      marginals_ += static_cast<std::size_t>(highest) + 1;
      // The elements whose bra and ket are the pattern with m quanta in the mode.
      const std::size_t block =
          size / (static_cast<std::size_t>(highest + 1) * static_cast<std::size_t>(highest + 1));
      std::vector<double> probability;
      double left = total;
      for (int m = 0; m <= highest; ++m) {
        const auto column = static_cast<std::size_t>(m) * static_cast<std::size_t>(highest + 2);
        probability.push_back(scale * values[block - 1 + column * block]);
        left -= probability.back();
        if (left < threshold_) return probability;
      }
    }
  }

  void add_line(const pattern& at) {
    const double amplitude = overlap(at);
    if (amplitude * amplitude < threshold_) return;
    vibronic_line line{0.0, amplitude * amplitude, amplitude, {}, {}};
    for (std::size_t k = 0; k < at.modes.size(); ++k) {
      const int mode = at.modes[k];
      const int quanta = at.quanta[k];
      if (mode > first_) {
        line.final.push_back({mode - first_, quanta});
        line.energy += quanta * t_.w_f(mode - first_);
      } else {
        line.initial.push_back({mode, quanta});
        line.energy -= quanta * t_.w_i(mode);
      }
    }
    std::ranges::sort(line.initial, {}, &mode_quanta::mode);
    std::ranges::sort(line.final, {}, &mode_quanta::mode);
    lines_.push_back(std::move(line));
  }

  // All lines that contain the pattern and, besides, quanta in `candidates` alone.
  void visit(const pattern& at, double total, const std::vector<int>& candidates) {
    add_line(at);
    struct branch {
      std::size_t place;  // among the modes that survive
      std::vector<double> probability;
    };
    std::vector<int> surviving;
    std::vector<branch> branches;
    for (const int mode : candidates) {
      std::vector<double> probability = extended(at, mode, total);
      if (ended_) return;
      if (total - probability[0] < threshold_) continue;
      branches.push_back({surviving.size(), std::move(probability)});
      surviving.push_back(mode);
    }
    for (const branch& b : branches) {
      pattern more = at;
      more.modes.push_back(surviving[b.place]);
      more.quanta.push_back(0);
      const std::vector<int> after(surviving.begin() + static_cast<std::ptrdiff_t>(b.place) + 1,
                                   surviving.end());
      for (std::size_t m = 1; m < b.probability.size(); ++m) {
        if (b.probability[m] < threshold_) continue;
        more.quanta.back() = static_cast<int>(m);
        visit(more, b.probability[m], after);
        if (ended_) return;
      }
    }
  }

  const transition& t_;
  gaussian_state state_;
  int first_;
  std::vector<int> rare_first_;
  generator whole_;
  double threshold_ = 1.0;
  clock::time_point end_;
  bool ended_ = false;
  std::size_t marginals_ = 0;
  std::vector<vibronic_line> lines_;
};

}  // namespace

line_list find_lines(const transition& t, double kt, double threshold, double seconds) {
  const auto end =
      clock::now() + std::chrono::duration_cast<clock::duration>(std::chrono::duration<double>(seconds));
  search over(t, kt);
  line_list list;
  list.complete_above = 1.0;
  std::vector<double> thresholds;
  for (const double above : first_thresholds)
    if (above > threshold) thresholds.push_back(above);
  thresholds.push_back(threshold);
  for (const double above : thresholds) {
    if (!over.run(above, end)) break;
    list.lines = std::move(over.lines());
    list.complete_above = above;
    list.finished = above == threshold;
  }
  list.marginals = over.marginals();
  std::ranges::sort(list.lines, [](const vibronic_line& a, const vibronic_line& b) {
    return a.energy != b.energy ? a.energy < b.energy : a.strength > b.strength;
  });
  for (const vibronic_line& line : list.lines) list.sum += line.strength;
  return list;
}

double overlap_of(const transition& t, const std::vector<mode_quanta>& initial,
                  const std::vector<mode_quanta>& final) {
  // At any temperature, less the root of the population.
  const double kt = *std::ranges::max_element(t.w_i);
  pattern at;
  double log_population = 0.0;
  for (const double w : t.w_i) log_population += std::log(-std::expm1(-w / kt));
  for (const mode_quanta& q : initial) {
    at.modes.push_back(q.mode);
    at.quanta.push_back(q.quanta);
    log_population -= q.quanta * t.w_i(q.mode) / kt;
  }
  for (const mode_quanta& q : final) {
    at.modes.push_back(t.n() + q.mode);
    at.quanta.push_back(q.quanta);
  }
  return search(t, kt).overlap(at) * std::exp(-0.5 * log_population);
}

}  // namespace vbn
