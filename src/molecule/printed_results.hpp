// What a frequency file prints of its own results.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vbn {

// What the program printed of its own results; empty where the file does not say. The analysis is held
// against it.
struct printed_results {
  std::vector<double>
      frequencies;  // cm-1, negative for imaginary ones; with or without those of external modes
  std::optional<double> max_gradient;  // largest component of the gradient, hartree/bohr
  std::optional<int> charge;
  std::optional<int> multiplicity;
  std::string method;
  std::string basis_set;
};

}  // namespace vbn
