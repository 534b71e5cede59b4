// The log of a calculation of spectra and its summary.
#pragma once

#include <string>
#include <vector>

#include "output/spectrum_files.hpp"  // for spectrum_head, spectrum_results
#include "output/staged_files.hpp"    // for staged_files

namespace vbn {

// vbn.spectrum.out: energies, choice of the vibrations, exact moments with those of the bands, lines and
// their completeness, rates, choices, seconds.
void write_spectrum_log(const spectrum_results& r, const spectrum_head& head, double seconds,
                        staged_files& files);

// At most ten lines for a person: vibrations and energy, moments and lines, rates, and the files that were
// written and those of an earlier run that are still there.
std::string spectrum_summary(const spectrum_results& r, const std::vector<std::string>& written,
                             const std::vector<std::string>& earlier);

}  // namespace vbn
