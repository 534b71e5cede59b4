// The files of a calculation of spectra, and the correlation functions read back.
#pragma once

#include <string>

#include "output/staged_files.hpp"  // for staged_files
#include "spectra/spectrum.hpp"     // for spectrum_results
#include "text/input_file.hpp"      // for input_file

namespace vbn {

// What every file says first.
struct spectrum_head {
  std::string version, input, state1, state2;
};

// vbn.absorption.csv and vbn.emission.csv, as `keys.what` asks for.
void write_bands(const spectrum_results& r, const spectrum_head& head, staged_files& files);
// vbn.lines.csv, vbn.correlation.csv, and vbn.rates.csv when there are rates.
void write_lines(const spectrum_results& r, const spectrum_head& head, staged_files& files);
void write_correlation(const spectrum_results& r, const spectrum_head& head, staged_files& files);
void write_rates(const spectrum_results& r, const spectrum_head& head, staged_files& files);

// The correlation functions of a file that `write_correlation` made, with the widths, energies and range of
// `keys`, its bands and radiative rates. Ends the run: a file of another form, or times too short for a
// width.
spectrum_results read_correlation(input_file& from, const spectrum_keys& keys, spectrum_head& head);

// A mode and its quanta as 5^2 22^1.
std::string label(const std::vector<mode_quanta>& quanta, const std::vector<int>& modes);

}  // namespace vbn
