// Chooses grids from exact moments and puts bands, lines and rates together.
#include "spectra/spectrum.hpp"  // for calculate_spectra

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <mutex>
#include <numbers>
#include <thread>
#include <utility>

#include "checks/wording.hpp"   // for with_digits
#include "spectra/contour.hpp"  // for line_shape_at
#include "spectra/units.hpp"    // for au_to_cm, kelvin_to_au, light_speed
#include "text/stop.hpp"        // for fail

namespace vbn {

namespace {

// Standard deviations that the times must hold below and above the mean: bands have longer tails above.
constexpr double reach_below = 8.0;
constexpr double reach_above = 16.0;
constexpr double least_population = 30.0;  // exp(-30) of the band may lie further below
constexpr double held_quanta = 4.0;  // of the stiffest mode, that they must hold too
constexpr double written_reach = 5.0;      // standard deviations that are written
constexpr double points_a_width = 20.0;
constexpr double window = 500.0;        // cm-1
constexpr double odd_growth = 0.5;      // of the mean with temperature, over the standard deviation at 0 K
constexpr double least_growth = 100.0;  // cm-1
constexpr double least_share = 0.05;    // of the growth, of a mode that is named
constexpr std::size_t named_modes = 3;
constexpr std::size_t named_pairs = 3;
constexpr double most_memory = 2.0e9;  // bytes
constexpr double most_energies = 2.0e7;

std::string whole(double number) { return std::to_string(std::llround(number)); }

double seconds_since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The mode of state 1 that overlaps most with the mode (its place) of the initial state.
int mode_to_leave_out(const direction& d, const vibration_pair& v, int mode) {
  if (d.absorption) return d.mode_i[static_cast<std::size_t>(mode - 1)];
  int most = 1;
  for (int g = 2; g <= v.n(); ++g)
    if (std::abs(v.s(g, mode)) > std::abs(v.s(most, mode))) most = g;
  return v.mode_g[static_cast<std::size_t>(most - 1)];
}

// Warns where the harmonic surfaces widen the band with temperature more than motion can.
void judge_growth(const direction& d, const thermal_band& at, const vibration_pair& v, const messages& say) {
  const line_moments cold = moments_of(d.t, 0.0);
  const double growth = at.exact.mean - cold.mean;
  if (std::abs(growth) <= std::max(odd_growth * cold.sd, least_growth / au_to_cm)) return;
  std::string modes;
  std::string to_leave;
  for (const mode_part& part : at.parts.growth) {
    if (part.final != 0 || part.value / growth < least_share) continue;
    modes += (modes.empty() ? "mode " : ", mode ") +
             std::to_string(d.mode_i[static_cast<std::size_t>(part.mode - 1)]) + " (" +
             with_digits(d.t.w_i(part.mode) * au_to_cm, 1) + " cm-1; " + whole(part.value * au_to_cm) +
             " cm-1 of it)";
    to_leave += (to_leave.empty() ? "" : ", ") + std::to_string(mode_to_leave_out(d, v, part.mode));
  }
  say.warn("the mean of the " + std::string(d.absorption ? "absorption" : "decay") + " at " +
           with_digits(at.temperature, 2) + " K is " + whole(at.exact.mean * au_to_cm) + " cm-1, at 0 K " +
           whole(cold.mean * au_to_cm) +
           " cm-1 from the 0-0 line: the harmonic surfaces do not hold for the motion of " + modes +
           " of state " + (d.absorption ? "1" : "2") + "; leave_out = " + to_leave +
           " leaves the motion out, or use 0 K");
}

void bound_memory(const direction& d, const std::string& file) {
  const auto n = static_cast<double>(d.t.n());
  const auto points = static_cast<double>(d.grid.points);
  const double values = static_cast<double>(d.thermal.size()) * points *
                        (sizeof(correlation_value) + (d.o.v.size() > 0 ? n * sizeof(complex) : 0.0));
  if (values < most_memory && static_cast<double>(d.grid.size) < most_energies) return;
  fail({.what = "the bands need " + whole(points) + " times and " + whole(static_cast<double>(d.grid.size)) +
                " energies, more than fit into memory",
        .file = file,
        .expected = "a larger fwhm, or a smaller range"});
}

double widest_of(const spectrum_results& r) {
  double widest = 0.0;
  for (const line_width& width : r.widths) widest = std::max(widest, width.sigma + width.gamma);
  return widest;
}

// The energy below which a band has at most exp(-least_population) of its intensity: hot lines end there,
// since a line at -E has the strength of the reverse line times exp(-E/kT) and the ratio of the partition
// functions.
double end_of_hot_lines(const direction& d, double temperature) {
  const double kt = temperature * kelvin_to_au;
  if (!(kt > 0.0)) return 0.0;
  double log_ratio = 0.0;
  for (int k = 1; k <= d.t.n(); ++k)
    log_ratio += std::log(std::expm1(-d.t.w_i(k) / kt) / std::expm1(-d.t.w_f(k) / kt));
  return -kt * (least_population + std::max(log_ratio, 0.0));
}

// The grid from the exact moments, the range that is written, and the widths.
void set_grid(direction& d, const spectrum_results& r, const std::string& file) {
  set_range(d, r, file);
  const double widest = widest_of(r);
  double low = d.low;
  // A narrow band of strong lines may have weak ones far from them.
  double high = std::max(d.high, held_quanta * *std::ranges::max_element(d.t.w_f));
  for (const thermal_band& at : d.thermal) {
    const double sd = std::hypot(at.exact.sd, widest);
    const double hot = end_of_hot_lines(d, at.temperature) - reach_below * widest;
    low = std::min(low, std::max(at.exact.mean - reach_below * sd, hot));
    high = std::max(high, at.exact.mean + reach_above * sd);
  }
  d.grid = choose_grid(low, high, energy_step(r.widths), d.offset(r.gap.value_or(0.0)), r.widths);
  bound_memory(d, file);
}

void compute_times(direction& d, const spectrum_results& r, const messages& say) {
  std::vector<double> times;
  for (std::size_t i = 0; i < d.grid.points; ++i) times.push_back(d.grid.step * static_cast<double>(i));
  const std::size_t all = times.size() * d.thermal.size();
  std::mutex guard;
  std::size_t ready = 0;
  int shown = -1;
  for (thermal_band& at : d.thermal) {
    const auto start = std::chrono::steady_clock::now();
    at.chi = correlate(d.t, d.o, at.temperature * kelvin_to_au, times, r.threads, [&](std::size_t count) {
      const std::lock_guard<std::mutex> lock(guard);
      ready += count;
      const int percent = static_cast<int>(100 * ready / all);
      if (percent / 5 == shown) return;
      shown = percent / 5;
      say.begin(std::string(d.absorption ? "absorption" : "decay") + ", times " + std::to_string(percent) +
                " %");
    });
    at.seconds = seconds_since(start);
  }
}

std::vector<complex> column(const correlation& chi, bool dipole) {
  std::vector<complex> values;
  for (const correlation_value& v : chi.values)
    values.push_back(dipole ? v.dipole_fc + v.dipole_mixed + v.dipole_ht : v.fc);
  return values;
}

// Sum, mean and standard deviation of the first band.
void measure(const direction& d, const line_width& width, thermal_band& at) {
  const std::vector<double>& f = at.bands.front().line_shape;
  double first = 0.0;
  double second = 0.0;
  at.sum = 0.0;
  for (std::size_t i = 0; i < f.size(); ++i) at.sum += f[i] * d.grid.energy_step;
  for (std::size_t i = 0; i < f.size(); ++i)
    first += f[i] * (d.grid.energy(i) - at.exact.mean) * d.grid.energy_step;
  at.mean = at.exact.mean + first / at.sum;
  for (std::size_t i = 0; i < f.size(); ++i)
    second += f[i] * std::pow(d.grid.energy(i) - at.mean, 2) * d.grid.energy_step;
  at.sd = std::sqrt(std::max(second / at.sum - width.sigma * width.sigma, 0.0));
}

// The share of a line within `low` and `high`.
double within(double line, double sigma, double low, double high) {
  const double scale = 1.0 / (sigma * std::numbers::sqrt2);
  return 0.5 * (std::erf((high - line) * scale) - std::erf((low - line) * scale));
}

void compare_lines(direction& d, const spectrum_results& r) {
  const auto at = std::ranges::find(d.thermal, r.keys.line_temperature, &thermal_band::temperature);
  if (at == d.thermal.end()) return;
  const line_width width{r.keys.fwhm[0] / (fwhm_of_sigma * au_to_cm), 0.0};
  const std::vector<double> f = band(d.grid, column(at->chi, false), width);
  const double step = window / au_to_cm;
  for (double low = std::floor(d.low / step) * step; low < d.high; low += step) {
    window_share share{low, low + step, 0.0, 0.0};
    for (std::size_t i = 0; i < f.size(); ++i) {
      // A point carries the part of its energy interval that is in the window.
      const double a = std::max(d.grid.energy(i) - 0.5 * d.grid.energy_step, low);
      const double b = std::min(d.grid.energy(i) + 0.5 * d.grid.energy_step, low + step);
      if (b > a) share.exact += f[i] * (b - a);
    }
    for (const vibronic_line& line : d.lines.lines)
      share.lines += line.strength * within(line.energy, width.sigma, low, low + step);
    d.windows.push_back(share);
  }
}

rate crossing(const direction& d, const thermal_band& at, double fwhm, const spectrum_results& r,
              bool internal) {
  rate k{internal ? "internal conversion" : "intersystem crossing",
         at.temperature,
         fwhm,
         0.0,
         0.0,
         0.0,
         0.0,
         true,
         {}};
  double coupling = 1.0;
  transition_operator o;
  if (internal) {
    o.v = d.o.v;
  } else {
    coupling = 0.0;
    for (const double v : r.keys.soc) coupling += v * v / (au_to_cm * au_to_cm);
  }
  const double factor = 2.0 * std::numbers::pi * coupling * au_to_rate;
  for (const double times : {0.5, 1.0, 2.0}) {
    const double sigma = times * fwhm / (fwhm_of_sigma * au_to_cm);
    const tail_value f = line_shape_at(d.t, o, at.temperature * kelvin_to_au, *r.gap, sigma, r.threads);
    const double value = factor * (internal ? f.ic : f.fc);
    k.converged = k.converged && f.converged;
    (times < 1.0 ? k.at_half : times > 1.0 ? k.at_double : k.value) = value;
    if (times != 1.0) continue;
    k.precision = f.precision;
    for (const double share : f.ic_share) k.mode_share.push_back(factor * share);
  }
  return k;
}

void add_crossings(spectrum_results& r, const messages& say) {
  for (const direction& d : r.directions) {
    if (d.absorption) continue;
    for (const bool internal : {true, false}) {
      if (!r.keys.wants(internal ? "ic" : "isc")) continue;
      for (const thermal_band& at : d.thermal) {
        for (const double fwhm : r.keys.fwhm) {
          say.begin("rates");
          r.rates.push_back(crossing(d, at, fwhm, r, internal));
          const rate& k = r.rates.back();
          if (k.converged && k.precision < 1e-3) continue;
          say.warn(
              "the rate of " + k.process + " at " + with_digits(k.temperature, 2) + " K and FWHM " +
              with_digits(fwhm, 1) +
              " cm-1 is not reliable: no line is near the gap; use a larger fwhm or another temperature");
        }
      }
    }
  }
}

// Emitted photons per unit of time and energy, atomic units.
double emitted(double photon, double dipole, double refractive_index) {
  return 4.0 * photon * photon * photon / (3.0 * std::pow(light_speed, 3)) * dipole * refractive_index;
}

// The integral of the emitted photons with the band `f`.
double radiative(const direction& d, const std::vector<double>& f, const spectrum_results& r) {
  double sum = 0.0;
  for (std::size_t i = 0; i < f.size(); ++i) {
    const double w = d.photon(d.grid.energy(i), *r.gap);
    if (w > 0.0) sum += emitted(w, f[i], r.keys.refractive_index) * d.grid.energy_step;
  }
  return sum * au_to_rate;
}

}  // namespace

std::vector<line_width> widths_of(const spectrum_keys& keys) {
  std::vector<line_width> widths;
  for (std::size_t i = 0; i < keys.fwhm.size(); ++i) {
    const double gaussian = keys.fwhm[i] / (fwhm_of_sigma * au_to_cm);
    const double lorentzian = 0.5 / au_to_cm;
    if (keys.shape == "lorentzian") widths.push_back({0.0, keys.fwhm[i] * lorentzian});
    if (keys.shape == "gaussian") widths.push_back({gaussian, 0.0});
    if (keys.shape == "voigt") widths.push_back({gaussian, keys.fwhm_lorentzian[i] * lorentzian});
  }
  return widths;
}

double energy_step(std::span<const line_width> widths) {
  double fwhm = std::numeric_limits<double>::infinity();
  for (const line_width& w : widths) fwhm = std::min(fwhm, std::max(fwhm_of_sigma * w.sigma, 2.0 * w.gamma));
  const double wanted = fwhm * au_to_cm / points_a_width;
  const double power = std::pow(10.0, std::floor(std::log10(wanted)));
  const double digit = wanted / power >= 5.0 ? 5.0 : wanted / power >= 2.0 ? 2.0 : 1.0;
  return digit * power / au_to_cm;
}

void set_range(direction& d, const spectrum_results& r, const std::string& file) {
  d.low = std::numeric_limits<double>::infinity();
  d.high = -d.low;
  for (const thermal_band& at : d.thermal) {
    const double reach = written_reach * std::hypot(at.exact.sd, widest_of(r));
    d.low = std::min(d.low, at.exact.mean - reach);
    d.high = std::max(d.high, at.exact.mean + reach);
  }
  if (!r.keys.range.empty()) {
    const double gap = r.gap.value_or(0.0);
    const double a = r.keys.range[0] / au_to_cm;
    const double b = r.keys.range[1] / au_to_cm;
    const bool down = !d.absorption;
    d.low = down ? gap - b : a - gap;
    d.high = down ? gap - a : b - gap;
  } else if (r.gap) {  // photons have positive energies
    if (d.absorption) d.low = std::max(d.low, -*r.gap);
    if (!d.absorption) d.high = std::min(d.high, *r.gap);
  }
  if (!(d.low < d.high)) {
    fail({.what = "the whole band is at negative photon energies",
          .file = file,
          .expected = "energy, the difference between the states, above the energy of the band"});
  }
}

std::vector<std::size_t> written_energies(const direction& d, const std::optional<double>& gap) {
  std::vector<std::size_t> rows;
  for (std::size_t row = 0; row < d.grid.size; ++row) {
    const std::size_t i = d.absorption ? row : d.grid.size - 1 - row;
    const double energy = d.grid.energy(i);
    if (energy < d.low || energy > d.high) continue;
    if (!gap || d.photon(energy, *gap) > 0.0) rows.push_back(i);
  }
  return rows;
}

double intensity(const direction& d, double photon, double dipole, double refractive_index) {
  // Of absorption the units of wavenumber and line shape cancel.
  if (d.absorption) return absorption_factor * photon * dipole;
  return emitted(photon, dipole, refractive_index) * au_to_rate / au_to_cm;
}

void set_energies(spectrum_results& r) {
  if (r.keys.energy.empty()) return;
  const double given = r.keys.energy[0] / (r.keys.energy_unit == "ev" ? au_to_ev : au_to_cm);
  r.gap = r.keys.energy_is == "0-0" ? given : given + r.zero_point_difference;
  r.minima = *r.gap - r.zero_point_difference;
}

void shape_bands(spectrum_results& r) {
  for (direction& d : r.directions) {
    for (thermal_band& at : d.thermal) {
      const bool dipole = d.o.mu0.size() == 3;
      at.bands.clear();
      for (const line_width& width : r.widths) {
        shaped_band shaped{band(d.grid, column(at.chi, false), width), {}};
        if (dipole) shaped.dipole = band(d.grid, column(at.chi, true), width);
        at.bands.push_back(std::move(shaped));
      }
      measure(d, r.widths.front(), at);
      const std::complex<double> squared_dipole = column(at.chi, true).front();
      for (std::size_t i = 0; i < at.bands.size(); ++i) {
        const double gamma = r.widths[i].gamma;
        if (!(gamma > 0.0)) continue;
        remove_images(d.grid, gamma, at.exact.mean, 1.0, at.bands[i].line_shape);
        if (dipole) remove_images(d.grid, gamma, at.exact.mean, squared_dipole.real(), at.bands[i].dipole);
      }
    }
  }
}

void add_radiative_rates(spectrum_results& r) {
  if (!r.gap || !r.keys.wants("emission") || r.keys.shape != "gaussian") return;
  for (const direction& d : r.directions) {
    if (d.absorption || d.o.mu0.size() != 3) continue;
    for (const thermal_band& at : d.thermal) {
      for (std::size_t i = 0; i < r.widths.size(); ++i) {
        rate k{
            "radiative", at.temperature, r.keys.fwhm[i], radiative(d, at.bands[i].dipole, r), 0, 0, 0, true,
            {}};
        const std::vector<complex> chi = column(at.chi, true);
        const line_width half{0.5 * r.widths[i].sigma, 0.5 * r.widths[i].gamma};
        const line_width twice{2.0 * r.widths[i].sigma, 2.0 * r.widths[i].gamma};
        k.at_half = radiative(d, band(d.grid, chi, half), r);
        k.at_double = radiative(d, band(d.grid, chi, twice), r);
        r.rates.push_back(k);
      }
    }
  }
}

spectrum_results calculate_spectra(const vibration_pair& v, const spectrum_operators& o,
                                   const spectrum_keys& keys, const std::string& file, const messages& say) {
  spectrum_results r;
  r.keys = keys;
  r.v = v;
  r.widths = widths_of(keys);
  r.threads = keys.threads;
  if (r.threads == 0) r.threads = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  for (int k = 1; k <= v.n(); ++k) r.zero_point_difference += 0.5 * (v.w_e(k) - v.w_g(k));
  set_energies(r);
  const bool decays = keys.wants("emission") || keys.wants("ic") || keys.wants("isc");
  for (const bool absorption : {true, false}) {
    if (!(absorption ? keys.wants("absorption") : decays)) continue;
    direction d;
    d.absorption = absorption;
    d.mode_i = absorption ? v.mode_g : v.mode_e;
    d.mode_f = absorption ? v.mode_e : v.mode_g;
    d.t = absorption ? absorption_of(v) : decay_of(v);
    d.o = absorption ? o.absorption : o.decay;
    for (const double temperature : keys.temperature) {
      thermal_band at;
      at.temperature = temperature;
      at.exact = moments_of(d.t, temperature * kelvin_to_au);
      at.parts = parts_of_moments(d.t, temperature * kelvin_to_au, named_modes, named_pairs);
      judge_growth(d, at, v, say);
      d.thermal.push_back(std::move(at));
    }
    set_grid(d, r, file);
    r.directions.push_back(std::move(d));
  }
  for (direction& d : r.directions) compute_times(d, r, say);
  shape_bands(r);
  for (direction& d : r.directions) {
    say.begin("lines");
    d.lines = find_lines(d.t, keys.line_temperature * kelvin_to_au, keys.threshold, keys.line_seconds);
    compare_lines(d, r);
  }
  add_radiative_rates(r);
  add_crossings(r, say);
  return r;
}

}  // namespace vbn
