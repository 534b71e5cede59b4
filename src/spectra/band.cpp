// Damped correlation functions and their Fourier transform.
#include "spectra/band.hpp"  // for band

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <numbers>

namespace vbn {

namespace {

constexpr complex i_unit{0.0, 1.0};
constexpr double log_of_end = 39.0;  // exp(-39) < 1e-17

// The smallest number of at least `least` without prime factors above 5.
std::size_t fast_size(std::size_t least) {
  for (std::size_t n = std::max<std::size_t>(least, 2);; ++n) {
    std::size_t rest = n;
    for (const std::size_t prime : {2U, 3U, 5U})
      while (rest % prime == 0) rest /= prime;
    if (rest == 1 && n % 2 == 0) return n;
  }
}

struct fftw_delete {
  void operator()(fftw_complex* p) const { fftw_free(p); }
};

}  // namespace

double damping(const line_width& width, double time) {
  return std::exp(-0.5 * width.sigma * width.sigma * time * time - width.gamma * time);
}

double end_of_damping(const line_width& width) {
  // The positive root of sigma^2 t^2/2 + gamma t = log_of_end.
  const double s2 = width.sigma * width.sigma;
  return 2.0 * log_of_end / (width.gamma + std::sqrt(width.gamma * width.gamma + 2.0 * s2 * log_of_end));
}

time_grid choose_grid(double low, double high, double energy_step, double offset,
                      std::span<const line_width> widths) {
  double end = 0.0;
  for (const line_width& width : widths) end = std::max(end, end_of_damping(width));
  time_grid grid;
  grid.energy_step = energy_step;
  grid.first_energy = offset + std::floor((low - offset) / energy_step) * energy_step;
  grid.size = fast_size(static_cast<std::size_t>(std::ceil((high - low) / energy_step)) + 2);
  grid.step = 2.0 * std::numbers::pi / (static_cast<double>(grid.size) * energy_step);
  // Half of the transform at most: later times are those of the conjugate.
  grid.points = std::min(static_cast<std::size_t>(std::ceil(end / grid.step)) + 1, grid.size / 2);
  return grid;
}

std::vector<double> band(const time_grid& grid, std::span<const complex> chi, const line_width& width) {
  static std::mutex planner;  // FFTW makes one plan at a time
  const std::unique_ptr<fftw_complex, fftw_delete> memory(fftw_alloc_complex(grid.size));
  if (!memory) throw std::bad_alloc();
  // FFTW's complex numbers have the layout of std::complex.
  auto* const values = reinterpret_cast<complex*>(memory.get());  // NOLINT
  fftw_plan plan = nullptr;
  {
    const std::lock_guard<std::mutex> lock(planner);
    plan = fftw_plan_dft_1d(static_cast<int>(grid.size), memory.get(), memory.get(), FFTW_BACKWARD,
                            FFTW_ESTIMATE);
  }
  std::fill(values, values + grid.size, complex(0.0));
  for (std::size_t i = 0; i < chi.size(); ++i) {
    const double time = grid.step * static_cast<double>(i);
    values[i] =
        (i == 0 ? 0.5 : 1.0) * chi[i] * damping(width, time) * std::exp(i_unit * grid.first_energy * time);
  }
  fftw_execute(plan);
  std::vector<double> f(grid.size);
  for (std::size_t m = 0; m < f.size(); ++m) f[m] = values[m].real() * grid.step / std::numbers::pi;
  const std::lock_guard<std::mutex> lock(planner);
  fftw_destroy_plan(plan);
  return f;
}

void remove_images(const time_grid& grid, double gamma, double centre, double weight,
                   std::vector<double>& f) {
  const double period = static_cast<double>(grid.size) * grid.energy_step;
  const double a = 2.0 * std::numbers::pi * gamma / period;
  for (std::size_t i = 0; i < f.size(); ++i) {
    const double x = grid.energy(i) - centre;
    const double all = std::sinh(a) / (std::cosh(a) - std::cos(2.0 * std::numbers::pi * x / period)) / period;
    f[i] -= weight * (all - gamma / (std::numbers::pi * (x * x + gamma * gamma)));
  }
}

double band_at(const time_grid& grid, std::span<const complex> chi, const line_width& width, double energy) {
  double sum = 0.0;
  for (std::size_t i = 0; i < chi.size(); ++i) {
    const double time = grid.step * static_cast<double>(i);
    sum += (i == 0 ? 0.5 : 1.0) * damping(width, time) * (chi[i] * std::exp(i_unit * energy * time)).real();
  }
  return sum * grid.step / std::numbers::pi;
}

}  // namespace vbn
