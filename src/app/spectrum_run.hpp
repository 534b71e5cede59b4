// The course of a run of vbn-spectrum.
#pragma once

#include <string>

#include "text/messages.hpp"  // for messages

namespace vbn {

// Runs the analysis of the input file, calculates its spectra and writes their files; with `from` not empty
// the correlation functions of that file take the place of the analysis. Returns the summary.
std::string run_spectrum(const std::string& input, const std::string& from, const messages& say);

}  // namespace vbn
