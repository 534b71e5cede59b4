// Times the correlation function beside a plain form with LU factors: spectrum_bench [POINTS [MODES...]].
//
// The plain form factors two unsymmetric matrices a time point with zgetrf, as most programs do, and leaves
// the sign of its root open:
//   E+ = J^-T o r (1+y)(1-z) + J o 1/r (1-y)(1+z)      E- = J^-T o r (1-y)(1+z) + J o 1/r (1+y)(1-z)
// Both take turns, a few points each, so that a change of the speed of the machine meets both. Times are CPU
// seconds of one thread for POINTS points (4096), and wall seconds with one and two threads: these need two
// free cores, the CPU seconds of both do not.
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <vector>

#include "linalg/blas.hpp"          // for zgetrf_, zgetrs_
#include "linalg/blas_memory.hpp"   // for use_blas_threads
#include "spectra/correlation.hpp"  // for correlate
#include "spectra/transition.hpp"   // for transition, scaled

namespace {

using vbn::array1;
using vbn::array2;
using vbn::complex;

constexpr double hartree = 219474.6313632;  // cm-1
constexpr double room = 300 * 3.1668e-6;    // hartree
constexpr double step = 40.0;               // atomic units: 1 fs
constexpr int at_once = 64;                 // points before the other form takes over

double cpu_seconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

double wall_seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Modes from 30 to 3030 cm-1, neighbours mixed, all distorted and displaced at random.
vbn::transition made_up(int n) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> part(-1.0, 1.0);
  vbn::transition t{array1<double>(n), array1<double>(n), array2<double>(n, n), array1<double>(n)};
  for (int i = 1; i <= n; ++i) {
    t.w_i(i) = (30.0 + 3000.0 * i / n) / hartree;
    t.w_f(i) = t.w_i(i) * (1.0 + 0.1 * part(random));
    t.k(i) = part(random) * std::sqrt(0.4 / t.w_i(i) * 20 / n);
    t.j(i, i) = 1.0;
  }
  for (int i = 1; i < n; ++i) {
    const double angle = 0.3 * part(random);
    for (int l = 1; l <= n; ++l) {
      const double a = t.j(i, l);
      const double b = t.j(i + 1, l);
      t.j(i, l) = std::cos(angle) * a - std::sin(angle) * b;
      t.j(i + 1, l) = std::sin(angle) * a + std::cos(angle) * b;
    }
  }
  return t;
}

// The plain form, with the memory that it keeps from point to point.
struct plain_form {
  const vbn::transition& t;
  double kt;
  vbn::scaled_transition s = vbn::scaled(t);
  array2<complex> plus = array2<complex>(t.n(), t.n());
  array2<complex> minus = plus;
  std::vector<int> pivots = std::vector<int>(static_cast<std::size_t>(t.n()));

  // chi squared, whose sign is no question.
  complex value(double time) {
    const int n = t.n();
    array1<complex> y(n);
    array1<complex> z(n);
    double log_factor = n * std::log(2.0);
    for (int k = 1; k <= n; ++k) {
      if (kt > 0.0) y(k) = std::exp(-t.w_i(k) * complex(1.0 / kt, -time));
      if (kt > 0.0) log_factor += std::log(-std::expm1(-t.w_i(k) / kt));
      z(k) = std::exp(complex(0.0, -t.w_f(k) * time));
    }
    for (int l = 1; l <= n; ++l) {
      for (int k = 1; k <= n; ++k) {
        const double inverse = s.inverse(l, k);
        const double j = s.j(k, l);
        plus(k, l) = inverse * (1.0 + y(k)) * (1.0 - z(l)) + j * (1.0 - y(k)) * (1.0 + z(l));
        minus(k, l) = inverse * (1.0 - y(k)) * (1.0 + z(l)) + j * (1.0 + y(k)) * (1.0 - z(l));
      }
    }
    array2<complex> x(n, 1);
    array1<double> a(n);
    for (int k = 1; k <= n; ++k) {
      x(k, 1) = (1.0 - y(k)) * s.d(k);
      for (int l = 1; l <= n; ++l) a(l) += s.inverse(l, k) * s.d(k);
    }
    int info = 0;
    const int one = 1;
    zgetrf_(&n, &n, plus.data(), &n, pivots.data(), &info);
    zgetrs_("N", &n, &one, plus.data(), &n, pivots.data(), x.data(), &n, &info);
    complex logs = 2.0 * log_factor;
    for (int i = 1; i <= n; ++i) logs -= std::log(plus(i, i)) + 2.0 * a(i) * (1.0 - z(i)) * x(i, 1);
    int odd = 0;
    for (int i = 1; i <= n; ++i) odd += pivots[static_cast<std::size_t>(i - 1)] != i ? 1 : 0;
    zgetrf_(&n, &n, minus.data(), &n, pivots.data(), &info);
    for (int i = 1; i <= n; ++i) {
      logs -= std::log(minus(i, i));
      odd += pivots[static_cast<std::size_t>(i - 1)] != i ? 1 : 0;
    }
    return (odd % 2 == 0 ? 1.0 : -1.0) * std::exp(logs);
  }
};

// Both forms by turns over the points: CPU seconds of one thread, and the largest difference of their
// squares.
void side_by_side(const vbn::transition& t, double kt, int points) {
  plain_form plain{t, kt};
  double of_plain = 0.0;
  double ours = 0.0;
  double difference = 0.0;
  for (int first = 1; first <= points; first += at_once) {
    std::vector<double> times;
    for (int i = first; i < first + at_once && i <= points; ++i) times.push_back(step * i);
    double start = cpu_seconds();
    std::vector<complex> squares;
    for (const double time : times) squares.push_back(plain.value(time));
    of_plain += cpu_seconds() - start;
    start = cpu_seconds();
    const vbn::correlation chi = vbn::correlate(t, {}, kt, times, 1);
    ours += cpu_seconds() - start;
    for (std::size_t i = 0; i < times.size(); ++i)
      difference = std::max(difference, std::abs(squares[i] - chi.values[i].fc * chi.values[i].fc));
  }
  std::printf("n %4d, %3.0f K: LU %8.2f s, LDL^T %8.2f s, ratio %.2f; squares differ by %.0e\n", t.n(),
              kt > 0.0 ? 300.0 : 0.0, of_plain, ours, of_plain / ours, difference);
}

// One and two threads by turns.
void threads(const vbn::transition& t, double kt, int points) {
  std::vector<double> times;
  for (int i = 1; i <= points / 8; ++i) times.push_back(step * i);
  double seconds[2] = {0.0, 0.0};
  double cpu[2] = {0.0, 0.0};
  for (int round = 0; round < 8; ++round) {
    for (int count = 1; count <= 2; ++count) {
      const double start = wall_seconds();
      const std::clock_t cpu_start = std::clock();
      vbn::correlate(t, {}, kt, times, count);
      seconds[count - 1] += wall_seconds() - start;
      cpu[count - 1] += static_cast<double>(std::clock() - cpu_start) / CLOCKS_PER_SEC;
    }
  }
  std::printf("n %4d, %3.0f K: one thread %.2f s, two %.2f s, ratio %.2f; CPU of two over that of one %.2f\n",
              t.n(), kt > 0.0 ? 300.0 : 0.0, seconds[0], seconds[1], seconds[0] / seconds[1],
              cpu[1] / cpu[0]);
}

}  // namespace

int main(int argc, char** argv) {
  vbn::use_blas_threads(1);
  const int points = argc > 1 ? std::atoi(argv[1]) : 4096;
  std::vector<int> sizes;
  for (int i = 2; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));
  if (sizes.empty()) sizes = {100, 300, 600};
  for (const int n : sizes) {
    const vbn::transition t = made_up(n);
    for (const double kt : {0.0, room}) side_by_side(t, kt, points);
    for (const double kt : {0.0, room}) threads(t, kt, points);
  }
}
