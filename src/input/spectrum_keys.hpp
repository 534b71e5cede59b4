// The keys of the group &spectrum and their reading.
#pragma once

#include <string>
#include <vector>

#include "text/input_file.hpp"  // for input_file

namespace vbn {

// The keys with their defaults.
struct spectrum_keys {
  std::vector<std::string> what{"absorption", "emission"};
  std::vector<double> temperature{0.0, 298.15};  // K
  std::string shape = "gaussian";
  std::vector<double> fwhm{200.0};      // cm-1, of the Gaussian or the Lorentzian
  std::vector<double> fwhm_lorentzian;  // cm-1, of the Lorentzian part of each Voigt profile
  std::vector<double> energy;           // one value or none
  std::string energy_unit = "cm-1";
  std::string energy_is = "minima";
  std::vector<double> range;   // lowest and highest, cm-1
  std::vector<double> dipole;  // three components, e bohr; without them the dipole file
  std::vector<double> soc;     // cm-1, the norm or three components
  double refractive_index = 1.0;
  std::vector<int> leave_out;  // modes of state 1
  double threshold = 1e-4;
  double line_seconds = 1.0;
  double line_temperature = 0.0;  // K
  std::string displacements = "cartesian";
  int threads = 0;  // 0: one for each core

  bool wants(const std::string& name) const;
};

// All keys with their values in one line, but for `threads`, which changes no result.
std::string values_of(const spectrum_keys& keys);

// Reads the group "&spectrum" of the file and checks every value that does not depend on the molecule. A
// group that is absent, an unknown key, a value that cannot be, each ends the run with a message that shows
// the place.
spectrum_keys read_spectrum_group(const input_file& file);

}  // namespace vbn
