// A whole calculation of spectra, lines and rates from two sets of vibrations.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "input/spectrum_keys.hpp"  // for spectrum_keys
#include "spectra/band.hpp"         // for line_width, time_grid
#include "spectra/correlation.hpp"  // for correlation
#include "spectra/lines.hpp"        // for line_list
#include "spectra/moments.hpp"      // for line_moments, moment_parts
#include "spectra/transition.hpp"   // for transition, transition_operator
#include "spectra/vibrations.hpp"   // for vibration_pair
#include "text/messages.hpp"        // for messages

namespace vbn {

// The bands of one width, over the energies of the grid.
struct shaped_band {
  std::vector<double> line_shape;  // per hartree, integral 1
  std::vector<double> dipole;      // times the squared dipole (e2 bohr2); empty without a dipole
};

struct thermal_band {
  double temperature = 0.0;  // K
  line_moments exact;        // before any time point
  correlation chi;
  std::vector<shaped_band> bands;  // one a width
  double sum = 0.0, mean = 0.0,
         sd = 0.0;     // of the first band, hartree; sd less the broadening, Gaussian only
  moment_parts parts;  // which modes make the exact moments
  double seconds = 0.0;
};

// What share of the exact band the lines hold in a window of energies.
struct window_share {
  double low = 0.0, high = 0.0;  // hartree from the 0-0 line
  double exact = 0.0;            // integral of the band
  double lines = 0.0;
};

// Absorption, or emission and the other decays.
struct direction {
  bool absorption = true;
  std::vector<int> mode_i, mode_f;  // numbers of the modes of the initial and of the final state
  transition t;
  transition_operator o;
  time_grid grid;
  std::vector<thermal_band> thermal;
  line_list lines;
  std::vector<window_share> windows;  // empty when the temperature of the lines is none of the bands'
  double low = 0.0, high = 0.0;       // hartree from the 0-0 line: what is written

  // The photon energy of an energy from the 0-0 line, and the reverse.
  double photon(double energy, double gap) const { return absorption ? gap + energy : gap + (0.0 - energy); }
  // Energies from the 0-0 line of photons at multiples of the step are multiples of it beside this.
  double offset(double gap) const { return absorption ? -gap : gap; }
};

struct rate {
  std::string process;  // "radiative", "internal conversion", "intersystem crossing"
  double temperature = 0.0;
  double fwhm = 0.0;                      // cm-1
  double value = 0.0;                     // 1/s
  double at_half = 0.0, at_double = 0.0;  // with half and twice the width
  double precision = 0.0;                 // relative rounding error
  bool converged = true;
  std::vector<double> mode_share;  // of each promoting mode
};

struct spectrum_results {
  spectrum_keys keys;
  vibration_pair v;
  std::vector<line_width> widths;
  double zero_point_difference = 0.0;  // of e less g, hartree
  std::optional<double> gap;           // 0-0, hartree
  std::optional<double> minima;        // minimum to minimum
  std::vector<direction> directions;
  std::vector<rate> rates;
  int threads = 1;
};

// The dipole and the couplings of a calculation.
struct spectrum_operators {
  transition_operator absorption, decay;
};

// Everything that the keys ask for. Warnings and the names of the stages go to `say`. Ends the run when the
// memory or the number of times is out of bounds, with what to change.
spectrum_results calculate_spectra(const vibration_pair& v, const spectrum_operators& o,
                                   const spectrum_keys& keys, const std::string& file, const messages& say);

// The parts of it that follow from stored correlation functions: energies, written range, bands and radiative
// rates.
void set_energies(spectrum_results& r);
void set_range(direction& d, const spectrum_results& r, const std::string& file);
std::vector<line_width> widths_of(const spectrum_keys& keys);
double energy_step(std::span<const line_width> widths);
void shape_bands(spectrum_results& r);
void add_radiative_rates(spectrum_results& r);

// The energies of the grid that are written, by increasing energy of the photon; with `gap` those of photons.
std::vector<std::size_t> written_energies(const direction& d, const std::optional<double>& gap);

// The molar absorption coefficient (dm3 mol-1 cm-1), or the emitted photons (1/s per cm-1), at a photon
// energy (hartree), from the line shape times the squared dipole (`shaped_band::dipole`).
double intensity(const direction& d, double photon, double dipole, double refractive_index);

}  // namespace vbn
