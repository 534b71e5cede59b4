// The course of a run of vbn-spectrum.
#pragma once

#include <string>

#include "app/run_data.hpp"      // for run_data
#include "spectra/spectrum.hpp"  // for spectrum_operators, vibration_pair
#include "text/messages.hpp"     // for messages

namespace vbn {

// Dipole and couplings of an analysis along the vibrations `v`: `dipole` of the keys, or else the dipole
// file, and the coupling file for internal conversion. Ends the run when a file is missing.
spectrum_operators operators_of(const run_data& run, const vibration_pair& v, const spectrum_keys& keys);

// Runs the analysis of the input file, calculates its spectra and writes their files; with `from` not empty
// the correlation functions of that file take the place of the analysis. Returns the summary.
std::string run_spectrum(const std::string& input, const std::string& from, const messages& say);

}  // namespace vbn
