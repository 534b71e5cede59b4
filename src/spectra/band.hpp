// Line shapes of finite width from a correlation function.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "linalg/ldlt.hpp"  // for complex

namespace vbn {

// The broadening of every line: a Gaussian, a Lorentzian, or with both a Voigt profile. Hartree.
struct line_width {
  double sigma = 0.0;  // standard deviation of the Gaussian
  double gamma = 0.0;  // half width at half maximum of the Lorentzian
};

inline constexpr double fwhm_of_sigma = 2.3548200450309493;  // 2 (2 ln 2)^1/2

// What the width multiplies chi(t) with, exp(-sigma^2 t^2/2 - gamma t), and the time from which it is below
// 1e-17.
double damping(const line_width& width, double time);
double end_of_damping(const line_width& width);

// Times 0, step, 2 step ... for energies at multiples of `energy_step`: `size` times fill the transform, of
// which the first `points` are computed and the others are zero.
struct time_grid {
  double step = 0.0;  // atomic units
  std::size_t points = 0;
  std::size_t size = 0;
  double first_energy = 0.0, energy_step = 0.0;  // hartree

  double energy(std::size_t i) const { return first_energy + static_cast<double>(i) * energy_step; }
};

// The grid for bands between `low` and `high` (hartree), and times until every width has damped. A band
// repeats with the period of the grid, so what lies beyond one end appears at the other. Energies are
// multiples of the step from `offset`.
time_grid choose_grid(double low, double high, double energy_step, double offset,
                      std::span<const line_width> widths);

// F at the energies of the grid (per hartree), by FFT. `chi` are the values at its first times.
std::vector<double> band(const time_grid& grid, std::span<const complex> chi, const line_width& width);

// Takes from a band of integral `weight` about `centre` the wings of its repetitions, which reach far for a
// Lorentzian of half width `gamma`: those of one line there, which far away are those of the band.
void remove_images(const time_grid& grid, double gamma, double centre, double weight, std::vector<double>& f);

// F at one energy, by a sum over the times.
double band_at(const time_grid& grid, std::span<const complex> chi, const line_width& width, double energy);

}  // namespace vbn
